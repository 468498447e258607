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
using test::CONNECTION_QUERY_LINE;
using test::LineSaying;

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
        return openedOn({.connection = radiosim::Connection{.ssid = "Lab"}});
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

TEST_P(QueryOfOpcode, KeepsAnAnswerOfExactlyTheExpectedSizeUntilTheNextAndFreesNone) {
    const Opcode& opcode = GetParam();
    WirelessDevice& device = openedConnected();
    forgetRadioState(device);
    ASSERT_FALSE(opcode.kept(device));
    EXPECT_TRUE(device.queryWirelessLanInterface(opcodeOf(opcode.number)));
    EXPECT_TRUE(opcode.kept(device));
    EXPECT_THAT(radio().callTexts(), ElementsAre(calls::query("h1", opcode.number, opcode.size)));
    // A success without a block is no answer.
    radio().addFault({.function = "WlanQueryInterface", .nth = 1, .noData = true});
    EXPECT_TRUE(device.queryWirelessLanInterface(opcodeOf(opcode.number)));
    EXPECT_FALSE(opcode.kept(device));
    EXPECT_THAT(lines(), IsEmpty());
    close();
    EXPECT_EQ(radio().liveBlocks(), 2U); // of the construction and of the first query
}

TEST_P(QueryOfOpcode, RefusesAnyOtherSizeSilentlyAndKeepsNothing) {
    const Opcode& opcode = GetParam();
    WirelessDevice& device = openedConnected();
    forgetRadioState(device);
    for (const std::uint32_t size : {opcode.size - 1, opcode.size + 1, opcode.size * 2, 0U}) {
        radio().addFault({.function = "WlanQueryInterface", .nth = 1, .dataSize = size});
        EXPECT_FALSE(device.queryWirelessLanInterface(opcodeOf(opcode.number))) << size;
        EXPECT_FALSE(opcode.kept(device)) << size;
    }
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_TRUE(device.m_errorText.empty());
    EXPECT_EQ(radio().callCount("WlanFreeMemory"), 0U);
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
    WirelessDevice& device =
        openedOn({.autoconf = false, .backgroundScan = false, .mediaStreaming = false});
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

TEST_F(InterfaceQuery, AcceptsAListOfExactlyOneItem) {
    // Of one item: in QueryOfOpcode.
    for (const std::size_t items : {0U, 2U, 5U}) {
        const std::vector<radiosim::AuthCipherPair> pairs(items);
        WirelessDevice& device = openedOn({.infrastructurePairs = pairs,
                                           .adhocPairs = pairs,
                                           .countries = std::vector<std::string>(items, "DE")});
        for (const unsigned int opcode : {9U, 10U, 11U}) {
            EXPECT_FALSE(device.queryWirelessLanInterface(opcodeOf(opcode))) << opcode;
        }
        EXPECT_THAT(lines(), IsEmpty());
    }
}

TEST_F(InterfaceQuery, TheInterfaceStateDecidesWhetherTheDeviceIsConnectedEvenWithoutALog) {
    WirelessDevice& device = openedConnected();
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

TEST_F(InterfaceQuery, AFailureIsLoggedInOneSentence) {
    constexpr struct {
        DWORD code;
        const char* sentence;
    } errors[] = {
        {87, "Client Handle is NULL or invalid, Interface Guid is NULL, Reserved is not NULL, "
             "pointer of pointer to Data is NULL, or Data Size is NULL."},
        {6, "The handle to Client Handle was not found in the handle table."},
        {5023, NOT_CONNECTED_LINE}, // whatever the opcode
        {8, "Failed to allocate memory for the query results."},
        {5, "The user does not have sufficient permissions to query the parameters"},
        {1, "Unknown error code"},
        {0x80342002, "Unknown error code"},
        {0xFFFFFFFF, "Unknown error code"},
    };
    for (const auto& [code, sentence] : errors) {
        SCOPED_TRACE(code);
        WirelessDevice& device = openedConnected();
        radio().addFault({.function = "WlanQueryInterface", .code = code});
        EXPECT_FALSE(device.queryWirelessLanInterface(wlan_intf_opcode_statistics));
        EXPECT_THAT(lines(), ElementsAre(LineSaying(sentence)));
        EXPECT_EQ(device.m_statistics, nullptr);
        EXPECT_EQ(utf8(device.m_errorText),
                  code == ERROR_INVALID_STATE ? localized("ERROR_INVALID_STATE") : "");
        EXPECT_TRUE(device.m_initialized);
        EXPECT_THAT(raised(), IsEmpty());
    }
}

TEST_F(InterfaceQuery, OfAnOpcodeWithoutAFieldCanFailToo) {
    WirelessDevice& device = openedConnected();
    radio().addFault({.function = "WlanQueryInterface", .opcode = 12U, .code = 87U});
    EXPECT_FALSE(device.queryWirelessLanInterface(opcodeOf(12)));
}

TEST_F(InterfaceQuery, WithoutAConnectionTheErrorTextIsSetAndStays) {
    WirelessDevice& device = opened();
    EXPECT_FALSE(device.populateWLANConnectionAtrributes());
    EXPECT_THAT(lines(),
                ElementsAre(LineSaying(NOT_CONNECTED_LINE), LineSaying(CONNECTION_QUERY_LINE)));
    EXPECT_EQ(device.m_connectionAttributes, nullptr);
    EXPECT_TRUE(device.populateRadioState());
    EXPECT_EQ(utf8(device.m_errorText), localized("ERROR_INVALID_STATE"));
}

TEST_F(InterfaceQuery, ANamedQueryAsksForItsOpcodeAndLogsARefusalWithThePaddedName) {
    constexpr struct {
        unsigned int opcode;
        bool (WirelessDevice::*run)();
        const char* line;
    } queries[] = {
        {4, &WirelessDevice::populateRadioState, test::RADIO_QUERY_LINE},
        {7, &WirelessDevice::populateWLANConnectionAtrributes, CONNECTION_QUERY_LINE},
        {2, &WirelessDevice::isScanEnabled,
         "The queryWirelessLanInterface call with OPCODE wlan_intf_opcode_background_scan_enabled "
         "failed"},
    };
    for (const auto& [opcode, run, line] : queries) {
        WirelessDevice& device = openedConnected();
        EXPECT_TRUE((device.*run)());
        ASSERT_EQ(radio().calls().size(), 1U);
        EXPECT_THAT(radio().callTexts().front(),
                    HasSubstr("\"opcode\":" + std::to_string(opcode) + ","));
        EXPECT_THAT(lines(), IsEmpty());
        // A size that is not expected is refused without a line of its own.
        radio().addFault({.function = "WlanQueryInterface", .opcode = opcode, .dataSize = 5U});
        EXPECT_FALSE((device.*run)());
        EXPECT_THAT(lines(), ElementsAre(LineSaying(line)));
    }
}

TEST_F(InterfaceQuery, ScanningCountsAsEnabledWhereverTheQuestionIsAnswered) {
    WirelessDevice& device = openedOn({.backgroundScan = false});
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
    device.m_initialized = false;
    EXPECT_THAT(scopesOf([&] { device.getInterfaceDescription(); }),
                ElementsAre("getInterfaceDescription()", "enumerateInterfaces()", "initialize()",
                            "openHandle()", "closeHandle()", "isAPIVersionSupported()",
                            "getInterfaceStateString()"));
}

// --- the list of interfaces ---

constexpr const char* SECOND_GUID = "01234567-89ab-cdef-0123-456789abcdef";

class InterfaceList : public test::DeviceTest {
protected:
    // The second one is not the device's.
    static radiosim::Scenario two() {
        return {.interfaces = {
                    {.description = "Card A", .connection = radiosim::Connection{.ssid = "Lab"}},
                    {.guid = SECOND_GUID, .description = "Card B"}}};
    }
};

TEST_F(InterfaceList, IsQueriedOnTheDevicesHandleLoggedLineByLineAndNeverFreed) {
    startRadio(two());
    WirelessDevice& device = opened();
    EXPECT_TRUE(device.enumerateInterfaces());
    EXPECT_THAT(lines(),
                ElementsAre(LineSaying("There are 2 interfaces in the system."),
                            LineSaying("Interface : 0"),
                            LineSaying(std::string("GUID: ") + radiosim::FIRST_INTERFACE),
                            LineSaying("Interface Description: Card A"),
                            LineSaying("State: \"connected\""), LineSaying("Interface : 1"),
                            LineSaying(std::string("GUID: ") + SECOND_GUID),
                            LineSaying("Interface Description -NOT USED-: Card B"),
                            LineSaying("State: \"disconnected\"")));
    EXPECT_EQ(utf8(device.m_interfaceDescription), "Card A");
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
    EXPECT_EQ(utf8(opened().getInterfaceDescription()), "Card A");
}

TEST_F(InterfaceList, OfNoInterfaceLeavesTheDescriptionAndSucceeds) {
    WirelessDevice& device = opened();
    device.m_interfaceDescription = mrl::String("as it was");
    radio().removeInterface(0);
    EXPECT_TRUE(device.enumerateInterfaces());
    EXPECT_THAT(lines(), ElementsAre(LineSaying("There are 0 interfaces in the system.")));
    EXPECT_EQ(utf8(device.m_interfaceDescription), "as it was");
}

TEST_F(InterfaceList, WithoutAMatchLeavesTheDescriptionAndSucceeds) {
    startRadio(two());
    WirelessDevice& device = opened();
    device.m_interfaceGuid.Data4[7] ^= 1; // differs in the last byte alone
    EXPECT_TRUE(device.enumerateInterfaces());
    EXPECT_TRUE(device.m_interfaceDescription.empty());
    EXPECT_THAT(lines(), Contains(LineSaying("Interface Description -NOT USED-: Card A")));
}

TEST_F(InterfaceList, ThatCannotBeReadFailsSilently) {
    WirelessDevice& device = opened();
    device.m_interfaceDescription = mrl::String("as it was");
    for (const radiosim::Fault& fault :
         {radiosim::Fault{.function = "WlanEnumInterfaces", .nth = 1, .code = 8U},
          radiosim::Fault{.function = "WlanEnumInterfaces", .nth = 1, .noData = true},
          radiosim::Fault{.function = "WlanOpenHandle", .nth = 1, .code = 1062U}}) {
        device.m_initialized = fault.function != "WlanOpenHandle";
        radio().clearCalls();
        radio().addFault(fault);
        EXPECT_FALSE(device.enumerateInterfaces());
        EXPECT_EQ(radio().callNames().back(), fault.function); // which ends it
        EXPECT_EQ(utf8(device.m_interfaceDescription), "as it was");
    }
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(InterfaceList, AGuidWithoutATextIsLeftOut) {
    WirelessDevice& device = opened();
    radio().addFault({.function = "UuidToStringW", .code = 14U});
    EXPECT_TRUE(device.enumerateInterfaces());
    EXPECT_THAT(lines(), Each(Not(HasSubstr("GUID"))));
    EXPECT_EQ(radio().callCount("RpcStringFreeW"), 0U);
    EXPECT_EQ(utf8(device.m_interfaceDescription), "Simulated Wireless Adapter");
}

TEST_F(InterfaceList, ConnectedFollowsTheLastInterfaceThatSaysSoWhileLoggingIsOn) {
    startRadio(two());
    WirelessDevice& device = opened();
    device.m_connected = true;
    device.enumerateInterfaces();
    EXPECT_FALSE(device.m_connected); // the second one is disconnected
    mrl::LogFactory::setPriority(2);
    device.m_connected = true;
    device.enumerateInterfaces();
    EXPECT_TRUE(device.m_connected);

    mrl::LogFactory::setPriority(1);
    radio().setState(1, wlan_interface_state_discovering);
    device.m_connected = false;
    device.enumerateInterfaces();
    EXPECT_TRUE(device.m_connected);
    mrl::LogFactory::setPriority(2);
    device.m_connected = false;
    device.enumerateInterfaces();
    EXPECT_FALSE(device.m_connected);
    EXPECT_EQ(utf8(device.m_interfaceDescription), "Card A");
}

TEST_F(InterfaceList, ADescriptionBeyondAsciiReachesTheLog) {
    EXPECT_EQ(utf8(openedOn({.description = "Übertragung 無線"}).getInterfaceDescription()),
              "Übertragung 無線");
    EXPECT_THAT(lines(), Contains(LineSaying("Interface Description: Übertragung 無線")));
}

// --- words ---

class WordsOfADevice : public test::DeviceTest {};

TEST_F(WordsOfADevice, OfInterfaceStatesAreInDoubleQuotesUnlessInvalid) {
    constexpr struct {
        int state;
        const char* word;
    } rows[] = {
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
    WirelessDevice& device = opened();
    for (const auto& [state, word] : rows) {
        for (const bool before : {false, true}) {
            SCOPED_TRACE(state);
            device.m_connected = before;
            const mrl::String words(
                device.getInterfaceStateString(static_cast<WLAN_INTERFACE_STATE>(state)));
            EXPECT_EQ(utf8(words), word);
            EXPECT_EQ(device.m_connected, state == 1 || (state != 4 && before));
        }
    }
}

TEST_F(WordsOfADevice, OfAlgorithmsAreCopiesOfStandardNamesOrLocalizedTexts) {
    const std::string unknown = localized("UNKNOWN_AUTHENTICATION_ALGORITHM");
    const struct {
        int algorithm;
        std::string word;
    } rows[] = {
        {1, localized("AUTHENTICATION_OPEN")},
        {2, localized("AUTHENTICATION_SHARED_KEY")},
        {3, "WPA"},
        {4, "WPA PSK"},
        {5, "WPA none"},
        {6, "RSNA"},
        {7, "RSNA PSK"},
        {0, unknown},
        {8, unknown},
        {-1, unknown},
    };
    std::vector<mrl::String> words;
    for (const auto& row : rows) {
        words.push_back(
            WirelessDevice::getAuthAlgoString(static_cast<DOT11_AUTH_ALGORITHM>(row.algorithm)));
    }
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        EXPECT_EQ(utf8(words[i]), rows[i].word) << rows[i].algorithm;
    }
}

} // namespace
