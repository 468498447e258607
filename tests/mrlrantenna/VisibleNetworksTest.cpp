// The list of visible networks: what is logged of each, what is kept, and what a failure means.
#include "DeviceTest.h"
#include "Faults.h"

#include <mrl/Exception.h>

namespace {

using radiosim::AccessPoint;
using radiosim::Connection;
using tesk5::TestResult;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

using Texts = std::vector<std::string>;

class VisibleNetworks : public test::DeviceTest {
protected:
    // The texts of a record for a user, in the order of its fields, then its quality and
    // connection.
    static Texts textsOf(const VisibleNetwork& network) {
        return {utf8(network.getSsid()),
                utf8(network.getSecurity()),
                utf8(network.getConnectable()),
                utf8(network.getBssType()),
                utf8(network.getAuthAlgorithm()),
                utf8(network.getConnected()),
                std::to_string(network.m_signalQuality),
                network.m_isConnected ? "connected" : "not connected"};
    }
    static Texts namesOf(const WirelessDevice& device) {
        Texts names;
        for (const VisibleNetwork& network : device.m_visibleNetworks) {
            names.push_back(utf8(network.getSsid()));
        }
        return names;
    }
    static Texts refreshedNames(WirelessDevice& device) {
        EXPECT_TRUE(device.getVisibleNetworkList());
        return namesOf(device);
    }
};

// --- the list ---

TEST_F(VisibleNetworks, AreAskedForOnceAndTheListIsFreed) {
    WirelessDevice& device = openedSeeing({{.ssid = "Lab"}});
    const std::size_t before = radio().liveBlocks();
    EXPECT_TRUE(device.getVisibleNetworkList());
    EXPECT_THAT(radio().callTexts(),
                ElementsAre(std::string(R"(WlanGetAvailableNetworkList {"handle":"h1",)") +
                                R"("interface":")" + radiosim::FIRST_INTERFACE +
                                R"(","flags":0,"reserved":null} = 0 {"networks":1})",
                            R"(WlanFreeMemory {"memory":"set"} = 0 {})"));
    EXPECT_EQ(radio().liveBlocks(), before);
    EXPECT_TRUE(device.m_initialized);
}

TEST_F(VisibleNetworks, NoneAtAllIsAListToo) {
    WirelessDevice& device = openedSeeing({});
    device.m_numVisibleNetworks = 9;
    EXPECT_TRUE(device.getVisibleNetworkList());
    EXPECT_THAT(lines(), ElementsAre("1154 Total 0 networks are visible."));
    EXPECT_EQ(device.m_visibleNetworks.size(), 0U);
    EXPECT_EQ(device.m_numVisibleNetworks, 0U);
    EXPECT_EQ(radio().callCount("WlanFreeMemory"), 1U);
}

TEST_F(VisibleNetworks, EveryPropertyIsLoggedInOrderAndRecorded) {
    WirelessDevice& device = openedSeeing({{.ssid = "Lab",
                                            .signal = 57U,
                                            .profile = "Lab profile",
                                            .connected = true,
                                            .auth = 4,
                                            .bssidCount = 3U}});
    EXPECT_TRUE(device.getVisibleNetworkList());
    EXPECT_THAT(lines(),
                ElementsAre("1154 Total 1 networks are visible.",
                            "1157 Network 0:", "1268 SSID: Lab", "1273 Security enabled.",
                            "1288 Contains 3 BSSIDs.", "1293 Has a matching profile: Lab profile.",
                            "1299 Currently connected.", "1320 The network is connectable.",
                            "1326 BSS type: " + localized("INFRASTRUCTURE"),
                            "1346 Signal quality: 57%",
                            "1351 Default authentication algorithm: WPA PSK",
                            "1355 Default cipher algorithm: WPA PSK"));
    const VisibleNetwork& lab = device.m_visibleNetworks[0];
    EXPECT_EQ(textsOf(lab),
              (Texts{"Lab", localized("ENABLED"), localized("YES"), localized("INFRASTRUCTURE"),
                     "WPA PSK", localized("YES"), "57", "connected"}));
    EXPECT_TRUE(lab.m_spareText1.empty());
    EXPECT_TRUE(lab.m_spareText2.empty());
    EXPECT_TRUE(lab.m_signalQualityText.empty());
}

TEST_F(VisibleNetworks, TheOtherSideOfEveryPropertyIsLoggedAndRecordedToo) {
    WirelessDevice& device = openedSeeing({{.ssid = "Open",
                                            .signal = 8U,
                                            .connected = false,
                                            .secured = false,
                                            .auth = 1,
                                            .cipher = 0,
                                            .bssType = 2,
                                            .connectable = false,
                                            .reason = 0x28003}});
    EXPECT_TRUE(device.getVisibleNetworkList());
    EXPECT_THAT(
        lines(),
        ElementsAre("1154 Total 1 networks are visible.", "1157 Network 0:", "1268 SSID: Open",
                    "1279 Security not enabled.", "1288 Contains 1 BSSIDs.",
                    "1305 Currently not connected.", "1314 The network is not connectable. ",
                    "1377  The reason is \"The wireless network is blocked by group policy.\".",
                    "1326 BSS type: " + localized("AD_HOC_INDEPENDENT"), "1346 Signal quality: 8%",
                    "1351 Default authentication algorithm: " + localized("AUTHENTICATION_OPEN"),
                    "1355 Default cipher algorithm: " + localized("AUTHENTICATION_OPEN")));
    EXPECT_THAT(radio().callTexts(),
                Contains(StartsWith(R"(WlanReasonCodeToString {"reasonCode":163843,)"
                                    R"("bufferSize":256,"reserved":null} = 0)")));
    EXPECT_EQ(
        textsOf(device.m_visibleNetworks[0]),
        (Texts{"Open", localized("NOT_ENABLED"), localized("NO"), localized("AD_HOC_INDEPENDENT"),
               localized("AUTHENTICATION_OPEN"), localized("NO"), "8", "not connected"}));
}

TEST_F(VisibleNetworks, AreRecordedWithoutALogToo) {
    WirelessDevice& device = openedSeeing({{.ssid = "Lab", .connectable = false}});
    mrl::LogFactory::setPriority(mrl::LogFactory::OFF);
    EXPECT_THAT(refreshedNames(device), ElementsAre("Lab"));
    EXPECT_EQ(utf8(device.m_visibleNetworks[0].getConnectable()), localized("NO"));
    EXPECT_EQ(radio().callCount("WlanReasonCodeToString"), 1U);
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(VisibleNetworks, AHiddenOneIsReportedButNeitherLoggedNorRecordedNorCounted) {
    WirelessDevice& device = openedSeeing(
        {{.ssid = "Secret", .hidden = true}, {.ssid = ""}, {.ssid = "Lab"}, {.ssid = "Lab"}});
    EXPECT_THAT(refreshedNames(device), ElementsAre("Lab"));
    EXPECT_EQ(device.m_numVisibleNetworks, 4U);
    Texts logged = lines();
    ASSERT_GE(logged.size(), 5U);
    logged.resize(5);
    EXPECT_THAT(logged, ElementsAre("1154 Total 4 networks are visible.", "1157 Network 0:",
                                    "1157 Network 1:", "1157 Network 2:", "1268 SSID: Lab"));
    EXPECT_EQ(device.getNumVisibleNetworks(), 1U);
    EXPECT_EQ(device.m_numVisibleNetworks, 1U);
}

TEST_F(VisibleNetworks, AFailedListOrASuccessWithoutOneGivesNone) {
    WirelessDevice& device = openedSeeing({{.ssid = "Lab"}});
    for (const radiosim::Fault& fault :
         {radiosim::Fault{.function = "WlanGetAvailableNetworkList", .nth = 1, .code = 170U},
          radiosim::Fault{.function = "WlanGetAvailableNetworkList", .nth = 1, .noData = true}}) {
        EXPECT_EQ(device.getNumVisibleNetworks(), 1U);
        radio().addFault(fault);
        EXPECT_FALSE(device.getVisibleNetworkList());
        EXPECT_THAT(namesOf(device), IsEmpty());
        radio().addFault(fault);
        EXPECT_EQ(device.getNumVisibleNetworks(), 0U);
        EXPECT_EQ(device.m_numVisibleNetworks, 0U);
    }
}

TEST_F(VisibleNetworks, TheOldListIsGoneBeforeTheServiceIsAskedForANewOne) {
    WirelessDevice& device = openedSeeing({{.ssid = "Lab"}});
    ASSERT_EQ(device.getNumVisibleNetworks(), 1U);
    std::vector<mrl::Uint32> sizes;
    // Called after the service's answer, before the module reads it.
    radio().onCall([&](const radiosim::Call& call) {
        if (call.function == "WlanGetAvailableNetworkList") {
            sizes.push_back(device.m_visibleNetworks.size());
        }
    });
    device.getNumVisibleNetworks();
    radio().onCall(nullptr);
    EXPECT_THAT(sizes, ElementsAre(0U));
}

TEST_F(VisibleNetworks, GrowTheListByDoublingAndClearItToEight) {
    std::vector<AccessPoint> many;
    for (char c = 'a'; c < 'a' + 17; ++c) {
        many.push_back({.ssid = std::string(1, c)});
    }
    WirelessDevice& device = openedSeeing(many);
    EXPECT_EQ(device.getNumVisibleNetworks(), 17U);
    EXPECT_EQ(device.m_visibleNetworks.capacity(), 32U);
    radio().setAccessPoints(0, {});
    EXPECT_EQ(device.getNumVisibleNetworks(), 0U);
    EXPECT_EQ(device.m_visibleNetworks.capacity(), 8U);
}

TEST_F(VisibleNetworks, ARecordBeyondTheEndRaisesTheBoundsAssertion) {
    WirelessDevice& device = openedSeeing({{.ssid = "Lab"}});
    device.getVisibleNetworkList();
    EXPECT_THROW(static_cast<void>(device.m_visibleNetworks[1]), mrl::StructuredException);
}

// --- failures ---

TEST_F(VisibleNetworks, StayAsTheyWereWhenTheHandleCannotBeOpened) {
    WirelessDevice& device = openedSeeing({{.ssid = "Lab"}});
    device.getVisibleNetworkList();
    log().clear();
    device.m_initialized = false;
    radio().addFault({.function = "WlanOpenHandle", .code = ERROR_NOT_ENOUGH_MEMORY});
    EXPECT_FALSE(device.getVisibleNetworkList());
    EXPECT_THAT(namesOf(device), ElementsAre("Lab"));
    EXPECT_EQ(device.getNumVisibleNetworks(), 1U);
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_THAT(raised(), IsEmpty());
}

struct ListError {
    DWORD code;
    TestResult result;
};

class NetworkListFailure : public VisibleNetworks, public testing::WithParamInterface<ListError> {};

TEST_P(NetworkListFailure, EmptiesTheListLogsItsSentenceAndRaisesItsEvent) {
    const auto& [code, result] = GetParam();
    WirelessDevice& device = openedSeeing({{.ssid = "Lab"}});
    device.getVisibleNetworkList();
    const std::size_t blocks = radio().liveBlocks();
    log().clear();
    radio().addFault({.function = "WlanGetAvailableNetworkList", .nth = 1, .code = code});
    const test::Journal journal;
    EXPECT_FALSE(device.getVisibleNetworkList());
    // The event follows its sentence.
    const Texts noted = journal.entries({"log", "event"});
    EXPECT_EQ(!noted.empty() && noted.back().starts_with("event "),
              !test::listFailure(code).events.empty());
    EXPECT_THAT(namesOf(device), IsEmpty());
    EXPECT_EQ(device.m_numVisibleNetworks, 1U); // counts what was reported last
    EXPECT_EQ(radio().liveBlocks(), blocks);
    EXPECT_EQ(lines(), test::listFailure(code).lines);
    EXPECT_EQ(raisedLines(), test::listFailure(code).events);
    // A refusal that the location settings cause is explained.
    EXPECT_EQ(adviceRequested(), code == ERROR_ACCESS_DENIED);
    EXPECT_EQ(device.reportNetworkListError("WlanGetAvailableNetworkList", code), result);
}

INSTANTIATE_TEST_SUITE_P(Codes, NetworkListFailure,
                         testing::Values(ListError{87, TestResult::INTERNALERROR()},
                                         ListError{6, TestResult::INTERNALERROR()},
                                         ListError{0x80342002, TestResult::CANNOTRUN()},
                                         ListError{8, TestResult::CANNOTRUN()},
                                         ListError{5, TestResult::FAIL()},
                                         ListError{5023, TestResult::FAIL()},
                                         ListError{31, TestResult::FAIL()},
                                         ListError{0xFFFFFFFF, TestResult::FAIL()}),
                         [](const auto& row) { return "Code" + std::to_string(row.param.code); });

DWORD WINAPI refusingWithAList(HANDLE handle, const GUID* guid, DWORD flags, PVOID reserved,
                               WLAN_AVAILABLE_NETWORK_LIST** list) {
    test::PatchedApi::service().WlanGetAvailableNetworkList(handle, guid, flags, reserved, list);
    return ERROR_BUSY;
}

TEST_F(VisibleNetworks, AListThatComesWithAFailureIsNotReadButFreed) {
    WirelessDevice& device = openedSeeing({{.ssid = "Lab"}});
    const std::size_t blocks = radio().liveBlocks();
    test::PatchedApi patched;
    patched->WlanGetAvailableNetworkList = &refusingWithAList;
    EXPECT_FALSE(device.getVisibleNetworkList());
    EXPECT_THAT(namesOf(device), IsEmpty());
    EXPECT_EQ(radio().liveBlocks(), blocks);
}

TEST_F(VisibleNetworks, ASentenceFollowsTheCallsNameDirectly) {
    opened().reportNetworkListError("AnyCall", ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_THAT(lines(), ElementsAre("1195 The win32 call of AnyCall returned an error related to "
                                     "memory allocation. Failed to allocate memory for the query "
                                     "results."));
}

// --- one record a name ---

TEST_F(VisibleNetworks, TheFirstEntryOfANameWins) {
    WirelessDevice& device =
        openedSeeing({{.ssid = "Lab", .signal = 20U, .connected = false},
                      {.ssid = "Lab", .signal = 90U, .profile = "Lab", .connected = true}});
    ASSERT_THAT(refreshedNames(device), ElementsAre("Lab"));
    EXPECT_EQ(device.m_visibleNetworks[0].m_signalQuality, 20);
    EXPECT_FALSE(device.m_visibleNetworks[0].m_isConnected);
}

TEST_F(VisibleNetworks, AreDroppedWhenTheirNameContainsAStoredOne) {
    const struct {
        std::vector<AccessPoint> seen;
        Texts kept;
    } rows[] = {
        {{{.ssid = "Lab"}, {.ssid = "Lab-5G"}}, {"Lab"}},
        {{{.ssid = "Lab-5G"}, {.ssid = "Lab"}}, {"Lab-5G", "Lab"}},
        // Anywhere in it.
        {{{.ssid = "Lab"}, {.ssid = "My Lab"}, {.ssid = "The Lab 2"}, {.ssid = "La"}},
         {"Lab", "La"}},
        {{{.ssid = "lab"}, {.ssid = "Lab"}, {.ssid = "LAB"}}, {"lab", "Lab", "LAB"}},
        {{{.ssid = "Lab "}, {.ssid = "Lab"}, {.ssid = " Lab"}}, {"Lab ", "Lab"}},
    };
    for (const auto& [seen, kept] : rows) {
        EXPECT_EQ(refreshedNames(openedSeeing(seen)), kept);
    }
}

TEST_F(VisibleNetworks, AreTheSameWhenTheSecondNameOccursInTheFirst) {
    WirelessDevice& device = opened();
    EXPECT_TRUE(device.isSame(named("Lab"), named("Lab")));
    EXPECT_TRUE(device.isSame(named("Lab-5G"), named("Lab")));
    EXPECT_TRUE(device.isSame(named("My Lab"), named("Lab")));
    EXPECT_FALSE(device.isSame(named("Lab"), named("Lab-5G")));
    EXPECT_FALSE(device.isSame(named("lab"), named("Lab")));
    EXPECT_FALSE(device.isSame(named(""), named("Lab")));
}

TEST_F(VisibleNetworks, RecordsThatACallerPutIntoTheListOrRenamedThereCountToo) {
    WirelessDevice& device = openedSeeing({{.ssid = "Lab"}});
    device.getVisibleNetworkList();
    device.m_visibleNetworks[0].m_ssid = "Attic";
    device.m_visibleNetworks.append(named("Cellar"));
    VisibleNetwork added;
    for (const char* name : {"Lab-5G", "Attic guests", "Cellar guests"}) {
        added.m_ssid = name;
        device.addVisibleNetwork(added); // takes a copy
    }
    EXPECT_THAT(namesOf(device), ElementsAre("Attic", "Cellar", "Lab-5G"));
}

// --- signal quality ---

// What the list reports of "Lab", what the current connection is, and what is made of it.
struct Quality {
    std::uint32_t reported;
    std::optional<Connection> connection;
    mrl::Int32 recorded;
    bool ofTheConnection;
    std::size_t queries;
};

class SignalQuality : public VisibleNetworks, public testing::WithParamInterface<Quality> {};

TEST_P(SignalQuality, IsTheConnectionsWhereTheListSaysNothingOrEverything) {
    const Quality& row = GetParam();
    // Which network the list flags as connected decides nothing.
    WirelessDevice& device =
        openedOn({.connection = row.connection,
                  .accessPoints = {{.ssid = "Lab", .signal = row.reported, .connected = false}}});
    device.m_signalQuality = 5;
    ASSERT_TRUE(device.getVisibleNetworkList());
    EXPECT_EQ(device.m_visibleNetworks[0].m_signalQuality, row.recorded);
    EXPECT_FALSE(device.m_visibleNetworks[0].m_isConnected);
    EXPECT_EQ(static_cast<mrl::Int32>(device.m_signalQuality),
              row.ofTheConnection ? row.recorded : 5);
    const std::string line = " Signal quality: " + std::to_string(row.recorded) + "%";
    EXPECT_THAT(lines(), Contains((row.ofTheConnection ? "1339" : "1346") + line));
    EXPECT_THAT(lines(), Not(Contains(StartsWith(row.ofTheConnection ? "1346 Sig" : "1339 Sig"))));
    EXPECT_EQ(radio().callCount("WlanQueryInterface"), row.queries);
}

std::optional<Connection> to(const char* ssid, std::uint32_t quality) {
    return Connection{.ssid = ssid, .quality = quality};
}

INSTANTIATE_TEST_SUITE_P(
    Reports, SignalQuality,
    testing::Values(
        Quality{0, to("Lab", 63), 63, true, 1}, Quality{100, to("Lab", 63), 63, true, 1},
        Quality{100, to("Lab", 100), 100, true, 1}, // the same, yet the connection's
        Quality{0, to("lab", 63), 0, false, 1},     // another network
        Quality{100, to("Lab 2", 63), 100, false, 1}, Quality{100, {}, 100, false, 1},
        Quality{1, to("Lab", 63), 1, false, 0}, Quality{50, to("Lab", 63), 50, false, 0},
        Quality{99, to("Lab", 63), 99, false, 0}, Quality{101, to("Lab", 63), 101, false, 0}));

TEST_F(VisibleNetworks, AConnectionAnswerWithoutABlockIsNone) {
    WirelessDevice& device =
        openedOn({.connection = to("Lab", 63), .accessPoints = {{.ssid = "Lab", .signal = 0U}}});
    radio().addFault({.function = "WlanQueryInterface", .opcode = 7U, .noData = true});
    ASSERT_TRUE(device.getVisibleNetworkList());
    EXPECT_THAT(lines(), Contains("1346 Signal quality: 0%"));
}

// --- names ---

TEST_F(VisibleNetworks, ANameIsWrittenIntoTheCallersBuffer) {
    WirelessDevice& device = opened();
    DOT11_SSID ssid{5, {'H', 'e', 'l', 'l', 'o'}};
    mrl::Char buffer[33];
    std::fill(std::begin(buffer), std::end(buffer), MRL_TEXT('?'));
    EXPECT_EQ(device.SsidToStringW(buffer, 33, &ssid), buffer);
    EXPECT_EQ(mrl::CharView(buffer, 6), mrl::CharView(MRL_TEXT("Hello\0"), 6));
    EXPECT_EQ(buffer[6], MRL_TEXT('?'));

    ssid.uSSIDLength = 0;
    device.SsidToStringW(buffer, 33, &ssid);
    EXPECT_EQ(buffer[0], 0);
    EXPECT_EQ(buffer[1], MRL_TEXT('e'));

    ssid.uSSIDLength = 5;
    device.SsidToStringW(buffer, 3, &ssid);
    EXPECT_EQ(mrl::CharView(buffer), mrl::CharView(MRL_TEXT("He")));
    EXPECT_EQ(device.SsidToStringW(nullptr, 0, &ssid), nullptr);
}

TEST_F(VisibleNetworks, NoNetworkAtAllIsNothingToPrint) {
    WirelessDevice& device = opened();
    device.printNetworkInfo(nullptr);
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_THAT(namesOf(device), IsEmpty());
    EXPECT_THAT(radio().callTexts(), IsEmpty());
}

// --- reasons, BSS types, ratings ---

TEST_F(VisibleNetworks, AReasonWithoutATextIsLoggedAsItsCode) {
    WirelessDevice& device = opened();
    radio().addFault(
        {.function = "WlanReasonCodeToString", .nth = 1, .code = ERROR_INVALID_PARAMETER});
    device.printReason(0xFFFFFFFF);
    device.printReason(0x28002);
    EXPECT_THAT(lines(),
                ElementsAre("1381  The reason code is 4294967295.",
                            "1377  The reason is \"The wireless network is not visible.\"."));
}

TEST_F(VisibleNetworks, ABssTypeIsALocalizedWord) {
    constexpr struct {
        int type;
        const char* key;
    } rows[] = {
        {1, "INFRASTRUCTURE"},   {2, "AD_HOC_INDEPENDENT"}, {3, "ANY"},
        {0, "UNKNOWN_BSS_TYPE"}, {4, "UNKNOWN_BSS_TYPE"},   {-1, "UNKNOWN_BSS_TYPE"},
    };
    for (const auto& [type, key] : rows) {
        EXPECT_EQ(utf8(opened().getBssTypeString(static_cast<DOT11_BSS_TYPE>(type))),
                  localized(key));
    }
}

TEST_F(VisibleNetworks, ARatingIsALocalizedWordKeptInTheRecord) {
    const struct {
        std::vector<mrl::Int32> qualities;
        std::string word;
    } rows[] = {
        {{INT32_MAX, 101, 100, 80}, localized("EXCELLENT")},
        {{79, 60}, localized("VERY_GOOD")},
        {{59, 40}, localized("GOOD")},
        {{39, 20}, localized("LOW")},
        {{19, 1}, localized("VERY_LOW")},
        {{0}, localized("NO_SIGNAL")},
        {{-1, INT32_MIN}, ""},
    };
    VisibleNetwork network;
    for (const auto& [qualities, word] : rows) {
        for (const mrl::Int32 quality : qualities) {
            network.m_signalQualityText = "before";
            network.m_signalQuality = quality;
            EXPECT_EQ(utf8(network.getSignalQualityText()), word) << quality;
            EXPECT_EQ(utf8(network.m_signalQualityText), word) << quality;
        }
    }
}

TEST_F(VisibleNetworks, ANewRecordIsEmpty) {
    const VisibleNetwork network;
    EXPECT_EQ(textsOf(network), (Texts{"", "", "", "", "", "", "0", "not connected"}));
    EXPECT_TRUE(network.m_spareText1.empty());
    EXPECT_TRUE(network.m_spareText2.empty());
    EXPECT_TRUE(network.m_signalQualityText.empty());
}

// --- trace scopes ---

TEST_F(VisibleNetworks, TraceEachOperationOfARefresh) {
    WirelessDevice& device =
        openedOn({.connection = to("Lab", 50),
                  .accessPoints = {{.ssid = "Lab", .signal = 0U, .connectable = false}}});
    EXPECT_THAT(scopesOf([&device] { device.getNumVisibleNetworks(); }),
                ElementsAre("getNumVisibleNetworks()", "getVisibleNetworkList()",
                            "printNetworkInfo()", "SsidToStringW()", "printReason()",
                            "getBssTypeString()", "populateWLANConnectionAtrributes()",
                            "queryWirelessLanInterface()", "SsidToStringW()", "getAuthAlgoString()",
                            "addVisibleNetwork()"));
}

TEST_F(VisibleNetworks, TraceTheLinesAndStepsOfARecordInThisOrder) {
    WirelessDevice& device = openedSeeing({{.ssid = "Lab", .signal = 57U, .auth = 4}});
    EXPECT_THAT(traceOf([&device] { device.getVisibleNetworkList(); }),
                ElementsAre("> getVisibleNetworkList()", "WlanGetAvailableNetworkList",
                            "1154 Total 1 networks are visible.",
                            "1157 Network 0:", "> printNetworkInfo()", "> SsidToStringW()",
                            "< SsidToStringW()", "1268 SSID: Lab", "1273 Security enabled.",
                            "1288 Contains 1 BSSIDs.", "1305 Currently not connected.",
                            "1320 The network is connectable.", "> getBssTypeString()",
                            "< getBssTypeString()", "1326 BSS type: " + localized("INFRASTRUCTURE"),
                            "1346 Signal quality: 57%", "> getAuthAlgoString()",
                            "< getAuthAlgoString()",
                            "1351 Default authentication algorithm: WPA PSK",
                            "1355 Default cipher algorithm: WPA PSK", "> addVisibleNetwork()",
                            "< addVisibleNetwork()", "< printNetworkInfo()", "WlanFreeMemory",
                            "< getVisibleNetworkList()"));
}

TEST_F(VisibleNetworks, TraceTheOpeningOfTheDeviceInsideTheQuery) {
    WirelessDevice& device = opened();
    device.m_initialized = false;
    radio().addFault({.function = "WlanOpenHandle", .code = 5U});
    EXPECT_THAT(scopesOf([&] { device.getNumVisibleNetworks(); }),
                ElementsAre("getNumVisibleNetworks()", "getVisibleNetworkList()", "initialize()",
                            "openHandle()", "closeHandle()"));
}

TEST_F(VisibleNetworks, TraceANameForWhichThereIsNoRoom) {
    const DOT11_SSID ssid{3, {'L', 'a', 'b'}};
    WirelessDevice& device = opened();
    EXPECT_THAT(scopesOf([&] { device.SsidToStringW(nullptr, 0, &ssid); }),
                ElementsAre("SsidToStringW()"));
}

TEST_F(VisibleNetworks, TraceNothingForTheErrorReportAndTheRating) {
    WirelessDevice& device = opened();
    EXPECT_THAT(scopesOf([&device] {
                    device.reportNetworkListError("AnyCall", ERROR_INVALID_HANDLE);
                    VisibleNetwork().getSignalQualityText();
                }),
                IsEmpty());
    EXPECT_THAT(scopesOf([&device] { device.printNetworkInfo(nullptr); }),
                ElementsAre("printNetworkInfo()"));
    EXPECT_THAT(scopesOf([&device] { device.isSame(VisibleNetwork(), VisibleNetwork()); }),
                ElementsAre("isSame()"));
}

} // namespace
