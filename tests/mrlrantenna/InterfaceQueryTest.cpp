// Queries of the interface's properties, the list of interfaces, and the words for codes.
#include "DeviceTest.h"

#include <cstdint>

namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace calls = test::calls;

constexpr const char* NOT_CONNECTED_LINE =
    "The Op Code is set to wlan_intf_opcode_current_connection and the client is not currently "
    "connected to a network";

WLAN_INTF_OPCODE opcodeOf(unsigned int number) {
    return static_cast<WLAN_INTF_OPCODE>(number);
}

class InterfaceQuery : public test::DeviceTest {
protected:
    // Connected, so that every opcode has an answer.
    WirelessDevice& openedConnected() {
        radiosim::Scenario scenario;
        scenario.interfaces.front().connection.emplace().ssid = "Lab";
        startRadio(std::move(scenario));
        return opened();
    }
};

// --- each opcode ---

struct Opcode {
    const char* name;
    unsigned int number;
    std::uint32_t size;
    /// Whether the answer has left its mark in the device.
    bool (*kept)(const WirelessDevice& device);
};

const Opcode opcodes[] = {
    {"AutoconfEnabled", 1, 4, [](const WirelessDevice& d) { return d.m_autoconfEnabled == 1; }},
    {"BackgroundScanEnabled", 2, 4,
     [](const WirelessDevice& d) { return d.m_backgroundScanEnabled == 1; }},
    {"MediaStreamingMode", 3, 4,
     [](const WirelessDevice& d) { return d.m_mediaStreamingMode == 1; }},
    {"RadioState", 4, 772, [](const WirelessDevice& d) { return d.m_radioStateData != nullptr; }},
    {"BssType", 5, 4, [](const WirelessDevice& d) { return d.m_bssTypeData != nullptr; }},
    {"InterfaceState", 6, 4,
     [](const WirelessDevice& d) { return d.m_interfaceStateData != nullptr; }},
    {"CurrentConnection", 7, 604,
     [](const WirelessDevice& d) { return d.m_connectionAttributes != nullptr; }},
    {"ChannelNumber", 8, 4, [](const WirelessDevice& d) { return d.m_channelNumber != 0; }},
    {"InfrastructurePairs", 9, 12,
     [](const WirelessDevice& d) { return d.m_infrastructureCipherPairs != nullptr; }},
    {"AdhocPairs", 10, 12, [](const WirelessDevice& d) { return d.m_adhocCipherPairs != nullptr; }},
    {"CountryOrRegionList", 11, 8,
     [](const WirelessDevice& d) { return d.m_countryOrRegionList != nullptr; }},
    {"Statistics", 0x10000101, 368,
     [](const WirelessDevice& d) { return d.m_statistics != nullptr; }},
    {"Rssi", 0x10000102, 4, [](const WirelessDevice& d) { return d.m_rssi != 0; }},
};

class QueryOfOpcode : public InterfaceQuery, public testing::WithParamInterface<Opcode> {
protected:
    // The radio state has been read during construction.
    static void forgetRadioState(WirelessDevice& device) { device.m_radioStateData = nullptr; }
};

TEST_P(QueryOfOpcode, KeepsAnAnswerOfExactlyTheExpectedSize) {
    const Opcode& opcode = GetParam();
    WirelessDevice& device = openedConnected();
    forgetRadioState(device);
    ASSERT_FALSE(opcode.kept(device));
    EXPECT_TRUE(device.queryWirelessLanInterface(opcodeOf(opcode.number)));
    EXPECT_TRUE(opcode.kept(device));
    EXPECT_THAT(radio().callTexts(), ElementsAre(calls::query("h1", opcode.number, opcode.size)));
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_P(QueryOfOpcode, RefusesAnyOtherSizeSilentlyAndKeepsNothing) {
    const Opcode& opcode = GetParam();
    WirelessDevice& device = openedConnected();
    forgetRadioState(device);
    for (const std::uint32_t size : {opcode.size - 1, opcode.size + 1, opcode.size * 2, 0U}) {
        radio().clearFaults();
        radio().addFault({.function = "WlanQueryInterface", .nth = 1, .dataSize = size});
        EXPECT_FALSE(device.queryWirelessLanInterface(opcodeOf(opcode.number))) << size;
        EXPECT_FALSE(opcode.kept(device)) << size;
    }
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_TRUE(device.m_errorText.empty());
    EXPECT_EQ(radio().callCount("WlanFreeMemory"), 0U);
}

TEST_P(QueryOfOpcode, TakesASuccessWithoutABlockForNoAnswer) {
    const Opcode& opcode = GetParam();
    WirelessDevice& device = openedConnected();
    EXPECT_TRUE(device.queryWirelessLanInterface(opcodeOf(opcode.number)));
    ASSERT_TRUE(opcode.kept(device));
    radio().addFault({.function = "WlanQueryInterface", .nth = 1, .noData = true});
    EXPECT_TRUE(device.queryWirelessLanInterface(opcodeOf(opcode.number)));
    EXPECT_FALSE(opcode.kept(device));
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_P(QueryOfOpcode, NeverFreesABlock) {
    const Opcode& opcode = GetParam();
    WirelessDevice& device = openedConnected();
    const std::size_t before = radio().liveBlocks();
    for (std::size_t i = 1; i <= 3; ++i) {
        ASSERT_TRUE(device.queryWirelessLanInterface(opcodeOf(opcode.number)));
        EXPECT_EQ(radio().liveBlocks(), before + i);
    }
    close();
    EXPECT_EQ(radio().liveBlocks(), before + 3);
    EXPECT_EQ(radio().callCount("WlanFreeMemory"), 0U);
}

TEST_P(QueryOfOpcode, ReportsAMissingConnectionWhateverTheOpcode) {
    const Opcode& opcode = GetParam();
    WirelessDevice& device = openedConnected();
    radio().addFault({.function = "WlanQueryInterface", .code = ERROR_INVALID_STATE});
    EXPECT_FALSE(device.queryWirelessLanInterface(opcodeOf(opcode.number)));
    EXPECT_THAT(lines(), ElementsAre(test::LineSaying(NOT_CONNECTED_LINE)));
    EXPECT_EQ(device.m_errorText.getUTF8String().bytes(), localized("ERROR_INVALID_STATE"));
}

INSTANTIATE_TEST_SUITE_P(Opcodes, QueryOfOpcode, testing::ValuesIn(opcodes),
                         [](const auto& row) { return row.param.name; });

TEST_F(InterfaceQuery, KeepsTheLastBlockWhenALaterAnswerIsRefused) {
    WirelessDevice& device = openedConnected();
    ASSERT_TRUE(device.queryWirelessLanInterface(wlan_intf_opcode_bss_type));
    const DOT11_BSS_TYPE* const first = device.m_bssTypeData;
    EXPECT_EQ(*first, dot11_BSS_type_infrastructure);
    radio().addFault({.function = "WlanQueryInterface", .nth = 1, .dataSize = 3U});
    EXPECT_FALSE(device.queryWirelessLanInterface(wlan_intf_opcode_bss_type));
    EXPECT_EQ(device.m_bssTypeData, first);
    EXPECT_TRUE(device.queryWirelessLanInterface(wlan_intf_opcode_bss_type));
    EXPECT_NE(device.m_bssTypeData, first);
    EXPECT_EQ(*first, dot11_BSS_type_infrastructure); // still there to be read
}

TEST_F(InterfaceQuery, AcceptsAnOpcodeWithoutAFieldAndForgetsTheAnswer) {
    WirelessDevice& device = openedConnected();
    EXPECT_TRUE(device.queryWirelessLanInterface(opcodeOf(12)));
    EXPECT_THAT(radio().callTexts(), ElementsAre(calls::query("h1", 12, 4)));
    for (const Opcode& opcode : opcodes) {
        EXPECT_EQ(opcode.kept(device), opcode.number == 4) << opcode.name;
    }
    EXPECT_EQ(radio().liveBlocks(), 2U);
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(InterfaceQuery, TheSwitchesRecordThatAnAnswerCameNotWhatItSaid) {
    radiosim::Scenario scenario;
    scenario.interfaces.front().autoconf = false;
    scenario.interfaces.front().backgroundScan = false;
    scenario.interfaces.front().mediaStreaming = false;
    startRadio(std::move(scenario));
    WirelessDevice& device = opened();
    for (const unsigned int opcode : {1U, 2U, 3U}) {
        EXPECT_TRUE(device.queryWirelessLanInterface(opcodeOf(opcode)));
    }
    EXPECT_EQ(device.m_autoconfEnabled, 1);
    EXPECT_EQ(device.m_backgroundScanEnabled, 1);
    EXPECT_EQ(device.m_mediaStreamingMode, 1);
}

// What the service handed out last.
PVOID g_lastBlock = nullptr;

DWORD WINAPI rememberingQuery(HANDLE handle, const GUID* guid, WLAN_INTF_OPCODE opcode,
                              PVOID reserved, DWORD* size, PVOID* block,
                              WLAN_OPCODE_VALUE_TYPE* type) {
    const DWORD result = test::PatchedApi::service().WlanQueryInterface(
        handle, guid, opcode, reserved, size, block, type);
    g_lastBlock = *block;
    return result;
}

TEST_F(InterfaceQuery, ChannelAndRssiKeepTheAddressOfTheBlockNotItsContent) {
    WirelessDevice& device = openedConnected();
    test::PatchedApi patched;
    patched->WlanQueryInterface = &rememberingQuery;
    const auto mark = [] {
        return static_cast<mrl::Uint32>(reinterpret_cast<std::uintptr_t>(g_lastBlock));
    };
    ASSERT_TRUE(device.queryWirelessLanInterface(wlan_intf_opcode_channel_number));
    EXPECT_EQ(device.m_channelNumber, mark());
    ASSERT_TRUE(device.queryWirelessLanInterface(wlan_intf_opcode_rssi));
    EXPECT_EQ(device.m_rssi, static_cast<mrl::Int32>(mark()));
}

struct ListLength {
    std::size_t items;
    bool accepted;
};

class QueryOfAList : public InterfaceQuery, public testing::WithParamInterface<ListLength> {};

TEST_P(QueryOfAList, AcceptsExactlyOneItem) {
    radiosim::Scenario scenario;
    radiosim::Interface& facts = scenario.interfaces.front();
    facts.infrastructurePairs.assign(GetParam().items, radiosim::AuthCipherPair{});
    facts.adhocPairs.assign(GetParam().items, radiosim::AuthCipherPair{});
    facts.countries.assign(GetParam().items, "DE");
    startRadio(std::move(scenario));
    WirelessDevice& device = opened();
    for (const unsigned int opcode : {9U, 10U, 11U}) {
        EXPECT_EQ(device.queryWirelessLanInterface(opcodeOf(opcode)), GetParam().accepted)
            << opcode;
    }
    EXPECT_EQ(device.m_infrastructureCipherPairs != nullptr, GetParam().accepted);
    EXPECT_EQ(device.m_adhocCipherPairs != nullptr, GetParam().accepted);
    EXPECT_EQ(device.m_countryOrRegionList != nullptr, GetParam().accepted);
    EXPECT_THAT(lines(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Lengths, QueryOfAList,
                         testing::Values(ListLength{0, false}, ListLength{1, true},
                                         ListLength{2, false}, ListLength{5, false}),
                         [](const auto& row) {
                             return "Of" + std::to_string(row.param.items) + "Items";
                         });

TEST_F(InterfaceQuery, TheInterfaceStateDecidesWhetherTheDeviceIsConnectedEvenWithoutALog) {
    radiosim::Scenario scenario;
    scenario.interfaces.front().connection.emplace().ssid = "Lab";
    startRadio(std::move(scenario));
    WirelessDevice& device = opened();
    mrl::LogFactory::setPriority(mrl::LogFactory::OFF);
    EXPECT_TRUE(device.queryWirelessLanInterface(wlan_intf_opcode_interface_state));
    EXPECT_EQ(*device.m_interfaceStateData, wlan_interface_state_connected);
    EXPECT_TRUE(device.m_connected);

    // Neither connected nor disconnected: what was said last stays.
    radio().setState(0, wlan_interface_state_associating);
    EXPECT_TRUE(device.queryWirelessLanInterface(wlan_intf_opcode_interface_state));
    EXPECT_TRUE(device.m_connected);
    radio().setState(0, wlan_interface_state_disconnected);
    EXPECT_TRUE(device.queryWirelessLanInterface(wlan_intf_opcode_interface_state));
    EXPECT_FALSE(device.m_connected);
}

// --- failures ---

struct QueryError {
    DWORD code;
    const char* sentence;
};

class QueryFailure : public InterfaceQuery, public testing::WithParamInterface<QueryError> {};

TEST_P(QueryFailure, IsLoggedInOneSentence) {
    WirelessDevice& device = openedConnected();
    radio().addFault({.function = "WlanQueryInterface", .code = GetParam().code});
    EXPECT_FALSE(device.queryWirelessLanInterface(wlan_intf_opcode_statistics));
    EXPECT_THAT(lines(), ElementsAre(test::LineSaying(GetParam().sentence)));
    EXPECT_EQ(device.m_statistics, nullptr);
    EXPECT_EQ(device.m_errorText.empty(), GetParam().code != ERROR_INVALID_STATE);
    EXPECT_TRUE(device.m_initialized);
    EXPECT_THAT(raised(), IsEmpty());
}

constexpr QueryError queryErrors[] = {
    {87, "Client Handle is NULL or invalid, Interface Guid is NULL, Reserved is not NULL, pointer "
         "of pointer to Data is NULL, or Data Size is NULL."},
    {6, "The handle to Client Handle was not found in the handle table."},
    {5023, NOT_CONNECTED_LINE},
    {8, "Failed to allocate memory for the query results."},
    {5, "The user does not have sufficient permissions to query the parameters"},
    {1, "Unknown error code"},
    {50, "Unknown error code"},
    {1168, "Unknown error code"},
    {0x80342002, "Unknown error code"},
    {0xFFFFFFFF, "Unknown error code"},
};
INSTANTIATE_TEST_SUITE_P(Codes, QueryFailure, testing::ValuesIn(queryErrors),
                         [](const auto& row) { return "Code" + std::to_string(row.param.code); });

TEST_F(InterfaceQuery, TheErrorTextStaysAfterALaterSuccess) {
    WirelessDevice& device = opened();
    EXPECT_FALSE(device.populateWLANConnectionAtrributes());
    EXPECT_TRUE(device.populateRadioState());
    EXPECT_EQ(device.m_errorText.getUTF8String().bytes(), localized("ERROR_INVALID_STATE"));
}

struct NamedQuery {
    const char* name;
    unsigned int opcode;
    bool (WirelessDevice::*run)();
    const char* line;
};

class NamedQueryOfADevice : public InterfaceQuery,
                            public testing::WithParamInterface<NamedQuery> {};

TEST_P(NamedQueryOfADevice, AsksForItsOpcode) {
    WirelessDevice& device = openedConnected();
    EXPECT_TRUE((device.*GetParam().run)());
    ASSERT_EQ(radio().calls().size(), 1U);
    EXPECT_THAT(radio().callTexts().front(),
                HasSubstr("\"opcode\":" + std::to_string(GetParam().opcode) + ","));
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_P(NamedQueryOfADevice, LogsItsFailureWithThePaddedNameAfterTheReason) {
    WirelessDevice& device = openedConnected();
    radio().addFault(
        {.function = "WlanQueryInterface", .opcode = GetParam().opcode, .code = ERROR_BUSY});
    EXPECT_FALSE((device.*GetParam().run)());
    EXPECT_THAT(lines(), ElementsAre(test::LineSaying("Unknown error code"),
                                     test::LineSaying(GetParam().line)));
}

TEST_P(NamedQueryOfADevice, LogsARefusedSizeWithThatLineAlone) {
    WirelessDevice& device = openedConnected();
    radio().addFault(
        {.function = "WlanQueryInterface", .opcode = GetParam().opcode, .dataSize = 5U});
    EXPECT_FALSE((device.*GetParam().run)());
    EXPECT_THAT(lines(), ElementsAre(test::LineSaying(GetParam().line)));
}

const NamedQuery namedQueries[] = {
    {"RadioState", 4, &WirelessDevice::populateRadioState,
     "The queryWirelessLanInterface call with OPCODE wlan_intf_opcode_radio_state  failed"},
    {"CurrentConnection", 7, &WirelessDevice::populateWLANConnectionAtrributes,
     "The queryWirelessLanInterface call with OPCODE wlan_intf_opcode_current_connection    "
     "failed"},
    {"BackgroundScan", 2, &WirelessDevice::isScanEnabled,
     "The queryWirelessLanInterface call with OPCODE wlan_intf_opcode_background_scan_enabled "
     "failed"},
};
INSTANTIATE_TEST_SUITE_P(Queries, NamedQueryOfADevice, testing::ValuesIn(namedQueries),
                         [](const auto& row) { return row.param.name; });

TEST_F(InterfaceQuery, WithoutAConnectionTheConnectionQuerySaysSo) {
    WirelessDevice& device = opened();
    EXPECT_FALSE(device.populateWLANConnectionAtrributes());
    EXPECT_THAT(lines(),
                ElementsAre(test::LineSaying(NOT_CONNECTED_LINE),
                            test::LineSaying("The queryWirelessLanInterface call with OPCODE "
                                             "wlan_intf_opcode_current_connection    failed")));
    EXPECT_EQ(device.m_errorText.getUTF8String().bytes(), localized("ERROR_INVALID_STATE"));
    EXPECT_EQ(device.m_connectionAttributes, nullptr);
}

TEST_F(InterfaceQuery, ScanningCountsAsEnabledWhereverTheQuestionIsAnswered) {
    radiosim::Scenario scenario;
    scenario.interfaces.front().backgroundScan = false;
    startRadio(std::move(scenario));
    WirelessDevice& device = opened();
    EXPECT_TRUE(device.isScanEnabled());
    radio().addFault({.function = "WlanQueryInterface", .opcode = 2U, .noData = true});
    EXPECT_FALSE(device.isScanEnabled());
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(InterfaceQuery, TracesItsOperations) {
    WirelessDevice& device = openedConnected();
    EXPECT_THAT(
        scopesOf([&] { device.queryWirelessLanInterface(wlan_intf_opcode_interface_state); }),
        ElementsAre("queryWirelessLanInterface()", "getInterfaceStateString()"));
    EXPECT_THAT(scopesOf([&] { device.populateWLANConnectionAtrributes(); }),
                ElementsAre("populateWLANConnectionAtrributes()", "queryWirelessLanInterface()"));
    EXPECT_THAT(scopesOf([&] { device.isScanEnabled(); }),
                ElementsAre("isScanEnabled()", "queryWirelessLanInterface()"));
    EXPECT_THAT(scopesOf([&] { device.isAPIVersionSupported(); }),
                ElementsAre("isAPIVersionSupported()"));
    EXPECT_THAT(scopesOf([&] { WirelessDevice::getAuthAlgoString(DOT11_AUTH_ALGO_WPA); }),
                ElementsAre("getAuthAlgoString()"));
    EXPECT_THAT(scopesOf([&] { device.getInterfaceDescription(); }),
                ElementsAre("getInterfaceDescription()", "enumerateInterfaces()",
                            "getInterfaceStateString()"));
}

// --- the list of interfaces ---

constexpr const char* SECOND_GUID = "01234567-89ab-cdef-0123-456789abcdef";

class InterfaceList : public test::DeviceTest {
protected:
    // The second one is not the device's.
    static radiosim::Scenario two() {
        radiosim::Scenario scenario;
        scenario.interfaces.resize(2);
        radiosim::Interface& own = scenario.interfaces[0];
        own.description = "Card A";
        own.connection.emplace().ssid = "Lab";
        radiosim::Interface& other = scenario.interfaces[1];
        other.guid = SECOND_GUID;
        other.description = "Card B";
        return scenario;
    }
};

TEST_F(InterfaceList, IsLoggedLineByLine) {
    startRadio(two());
    WirelessDevice& device = opened();
    EXPECT_TRUE(device.enumerateInterfaces());
    EXPECT_THAT(lines(),
                ElementsAre(test::LineSaying("There are 2 interfaces in the system."),
                            test::LineSaying("Interface : 0"),
                            test::LineSaying(std::string("GUID: ") + radiosim::FIRST_INTERFACE),
                            test::LineSaying("Interface Description: Card A"),
                            test::LineSaying("State: \"connected\""),
                            test::LineSaying("Interface : 1"),
                            test::LineSaying(std::string("GUID: ") + SECOND_GUID),
                            test::LineSaying("Interface Description -NOT USED-: Card B"),
                            test::LineSaying("State: \"disconnected\"")));
    EXPECT_EQ(device.m_interfaceDescription.getUTF8String().bytes(), "Card A");
}

TEST_F(InterfaceList, IsQueriedOnTheDevicesHandleAndNeverFreed) {
    startRadio(two());
    WirelessDevice& device = opened();
    EXPECT_TRUE(device.enumerateInterfaces());
    const std::string guid = SECOND_GUID;
    EXPECT_THAT(
        radio().callTexts(),
        ElementsAre(R"(WlanEnumInterfaces {"handle":"h1","reserved":null} = 0 {"interfaces":2})",
                    testing::StartsWith("UuidToStringW "), testing::StartsWith("RpcStringFreeW "),
                    R"(UuidToStringW {"guid":")" + guid + R"("} = 0 {"text":")" + guid + "\"}",
                    R"(RpcStringFreeW {"text":")" + guid + R"("} = 0 {})"));
    EXPECT_EQ(radio().leaks().texts, 0U);
    EXPECT_EQ(radio().liveBlocks(), 2U); // the radio state and the list
}

TEST_F(InterfaceList, FindsTheDeviceWhereverItStands) {
    radiosim::Scenario scenario = two();
    std::swap(scenario.interfaces[0], scenario.interfaces[1]);
    startRadio(std::move(scenario));
    EXPECT_EQ(opened().getInterfaceDescription().getUTF8String().bytes(), "Card A");
    EXPECT_THAT(lines(), Contains(test::LineSaying("Interface Description -NOT USED-: Card B")));
}

TEST_F(InterfaceList, OfNoInterfaceLeavesTheDescriptionAndSucceeds) {
    WirelessDevice& device = opened();
    device.m_interfaceDescription = mrl::String("as it was");
    radio().removeInterface(0);
    EXPECT_TRUE(device.enumerateInterfaces());
    EXPECT_THAT(lines(), ElementsAre(test::LineSaying("There are 0 interfaces in the system.")));
    EXPECT_EQ(device.m_interfaceDescription.getUTF8String().bytes(), "as it was");
}

TEST_F(InterfaceList, WithoutAMatchLeavesTheDescriptionAndSucceeds) {
    startRadio(two());
    WirelessDevice& device = opened();
    device.m_interfaceGuid.Data4[7] ^= 1; // differs in the last byte alone
    EXPECT_TRUE(device.enumerateInterfaces());
    EXPECT_TRUE(device.m_interfaceDescription.empty());
    EXPECT_THAT(lines(), Contains(test::LineSaying("Interface Description -NOT USED-: Card A")));
}

TEST_F(InterfaceList, ThatCannotBeReadFailsSilently) {
    WirelessDevice& device = opened();
    device.m_interfaceDescription = mrl::String("as it was");
    radio().addFault({.function = "WlanEnumInterfaces", .nth = 1, .code = ERROR_NOT_ENOUGH_MEMORY});
    EXPECT_FALSE(device.enumerateInterfaces());
    radio().addFault({.function = "WlanEnumInterfaces", .nth = 1, .noData = true});
    EXPECT_FALSE(device.enumerateInterfaces());
    radio().addFault({.function = "WlanEnumInterfaces", .nth = 1, .code = ERROR_INVALID_HANDLE});
    EXPECT_EQ(device.getInterfaceDescription().getUTF8String().bytes(), "as it was");
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(InterfaceList, WithoutAServiceIsNotEvenAskedFor) {
    radio().addFault({.function = "WlanOpenHandle", .code = ERROR_SERVICE_NOT_ACTIVE});
    WirelessDevice& device = opened();
    EXPECT_FALSE(device.enumerateInterfaces());
    EXPECT_TRUE(device.getInterfaceDescription().empty());
    EXPECT_THAT(radio().callNames(), ElementsAre("WlanOpenHandle", "WlanOpenHandle"));
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(InterfaceList, AGuidWithoutATextIsLeftOut) {
    WirelessDevice& device = opened();
    radio().addFault({.function = "UuidToStringW", .code = 14U});
    EXPECT_TRUE(device.enumerateInterfaces());
    EXPECT_THAT(lines(), Each(Not(HasSubstr("GUID"))));
    EXPECT_EQ(radio().callCount("RpcStringFreeW"), 0U);
    EXPECT_EQ(device.m_interfaceDescription.getUTF8String().bytes(), "Simulated Wireless Adapter");
}

TEST_F(InterfaceList, ConnectedFollowsTheLastInterfaceThatSaysSoWhileLoggingIsOn) {
    startRadio(two());
    WirelessDevice& device = opened();
    device.m_connected = true;
    device.enumerateInterfaces();
    EXPECT_FALSE(device.m_connected); // the second one is disconnected

    radio().setState(1, wlan_interface_state_discovering);
    device.enumerateInterfaces();
    EXPECT_TRUE(device.m_connected);
}

TEST_F(InterfaceList, ConnectedStaysAsItIsWhileLoggingIsOff) {
    startRadio(two());
    WirelessDevice& device = opened();
    mrl::LogFactory::setPriority(2);
    EXPECT_TRUE(device.enumerateInterfaces());
    EXPECT_FALSE(device.m_connected);
    device.m_connected = true;
    EXPECT_TRUE(device.enumerateInterfaces());
    EXPECT_TRUE(device.m_connected);
    EXPECT_EQ(device.m_interfaceDescription.getUTF8String().bytes(), "Card A");
}

TEST_F(InterfaceList, ADescriptionBeyondAsciiReachesTheLog) {
    radiosim::Scenario scenario;
    scenario.interfaces.front().description = "Übertragung 無線";
    startRadio(std::move(scenario));
    EXPECT_EQ(opened().getInterfaceDescription().getUTF8String().bytes(), "Übertragung 無線");
    EXPECT_THAT(lines(), Contains(test::LineSaying("Interface Description: Übertragung 無線")));
}

DWORD WINAPI enumWithoutTerminators(HANDLE handle, PVOID reserved,
                                    WLAN_INTERFACE_INFO_LIST** list) {
    const DWORD result = test::PatchedApi::service().WlanEnumInterfaces(handle, reserved, list);
    std::fill(std::begin((*list)->InterfaceInfo[0].strInterfaceDescription),
              std::end((*list)->InterfaceInfo[0].strInterfaceDescription), MRL_TEXT('x'));
    return result;
}

TEST_F(InterfaceList, ADescriptionThatFillsItsArrayEndsThere) {
    WirelessDevice& device = opened();
    test::PatchedApi patched;
    patched->WlanEnumInterfaces = &enumWithoutTerminators;
    EXPECT_EQ(device.getInterfaceDescription().getUTF8String().bytes(), std::string(256, 'x'));
}

// --- words ---

struct StateWord {
    int state;
    const char* word;
};

class InterfaceStateWords : public test::DeviceTest,
                            public testing::WithParamInterface<StateWord> {};

TEST_P(InterfaceStateWords, AreInDoubleQuotesUnlessInvalid) {
    WirelessDevice& device = opened();
    for (const bool before : {false, true}) {
        device.m_connected = before;
        const mrl::Char* const words =
            device.getInterfaceStateString(static_cast<WLAN_INTERFACE_STATE>(GetParam().state));
        EXPECT_EQ(mrl::String(words).getUTF8String().bytes(), GetParam().word);
        const bool after = GetParam().state == 1 || (GetParam().state != 4 && before);
        EXPECT_EQ(device.m_connected, after);
    }
}

constexpr StateWord stateWords[] = {
    {0, "\"not ready\""},
    {1, "\"connected\""},
    {2, "\"ad hoc network formed\""},
    {3, "\"disconnecting\""},
    {4, "\"disconnected\""},
    {5, "\"associating\""},
    {6, "\"discovering\""},
    {7, "\"authenticating\""},
    {8, "invalid interface state"},
    {-1, "invalid interface state"},
    {INT32_MAX, "invalid interface state"},
};

std::string inName(int number) {
    return number < 0 ? "Minus" + std::to_string(-number) : std::to_string(number);
}

INSTANTIATE_TEST_SUITE_P(States, InterfaceStateWords, testing::ValuesIn(stateWords),
                         [](const auto& row) { return inName(row.param.state); });

struct AlgorithmWord {
    int algorithm;
    const char* key; ///< of a localized text, or null
    const char* word;
};

class AlgorithmWords : public test::DeviceTest,
                       public testing::WithParamInterface<AlgorithmWord> {};

TEST_P(AlgorithmWords, AreStandardNamesOrLocalizedTexts) {
    const AlgorithmWord& row = GetParam();
    const mrl::String words =
        WirelessDevice::getAuthAlgoString(static_cast<DOT11_AUTH_ALGORITHM>(row.algorithm));
    EXPECT_EQ(words.getUTF8String().bytes(), row.key != nullptr ? localized(row.key) : row.word);
}

constexpr AlgorithmWord algorithmWords[] = {
    {1, "AUTHENTICATION_OPEN", ""},
    {2, "AUTHENTICATION_SHARED_KEY", ""},
    {3, nullptr, "WPA"},
    {4, nullptr, "WPA PSK"},
    {5, nullptr, "WPA none"},
    {6, nullptr, "RSNA"},
    {7, nullptr, "RSNA PSK"},
    {0, "UNKNOWN_AUTHENTICATION_ALGORITHM", ""},
    {8, "UNKNOWN_AUTHENTICATION_ALGORITHM", ""},
    {9, "UNKNOWN_AUTHENTICATION_ALGORITHM", ""},
    {-1, "UNKNOWN_AUTHENTICATION_ALGORITHM", ""},
};
INSTANTIATE_TEST_SUITE_P(Algorithms, AlgorithmWords, testing::ValuesIn(algorithmWords),
                         [](const auto& row) { return inName(row.param.algorithm); });

TEST_F(InterfaceQuery, AlgorithmWordsAreCopies) {
    const mrl::String wpa = WirelessDevice::getAuthAlgoString(DOT11_AUTH_ALGO_WPA);
    const mrl::String rsna = WirelessDevice::getAuthAlgoString(DOT11_AUTH_ALGO_RSNA);
    EXPECT_EQ(wpa.getUTF8String().bytes(), "WPA");
    EXPECT_EQ(rsna.getUTF8String().bytes(), "RSNA");
}

} // namespace
