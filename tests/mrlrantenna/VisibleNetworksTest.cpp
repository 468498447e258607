// The list of visible networks: what is logged of each, what is kept, and what a failure means.
#include "DeviceTest.h"

#include <mrl/AssertionFailure.h>
#include <mrl/Exception.h>

#include <cstring>

namespace {

using radiosim::AccessPoint;
using radiosim::Connection;
using tesk5::TestResult;
using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr DWORD RADIO_IS_OFF = 0x80342002;
constexpr const char* DEVICE_SOURCE = "modules/src/windows/diag/mrlrantenna/WirelessDevice.cpp";

class VisibleNetworks : public test::DeviceTest {
protected:
    WirelessDevice& openedSeeing(std::vector<AccessPoint> accessPoints) {
        startRadio(std::move(accessPoints));
        return opened();
    }
    WirelessDevice& openedConnected(std::vector<AccessPoint> accessPoints, Connection connection) {
        radiosim::Scenario scenario;
        scenario.interfaces.front().accessPoints = std::move(accessPoints);
        scenario.interfaces.front().connection = std::move(connection);
        startRadio(std::move(scenario));
        return opened();
    }

    static std::vector<std::string> namesOf(const WirelessDevice& device) {
        std::vector<std::string> names;
        for (const VisibleNetwork& network : device.m_visibleNetworks) {
            names.push_back(utf8(network.getSsid()));
        }
        return names;
    }
    static std::vector<std::string> refreshedNames(WirelessDevice& device) {
        EXPECT_TRUE(device.getVisibleNetworkList());
        return namesOf(device);
    }
    // The lines from `number` on begin with it.
    std::vector<std::string> linesNumbered(const std::string& number) const {
        std::vector<std::string> found;
        for (const std::string& line : lines()) {
            if (line.starts_with(number + " ")) {
                found.push_back(line);
            }
        }
        return found;
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

TEST_F(VisibleNetworks, EveryPropertyIsLoggedInOrder) {
    WirelessDevice& device = openedSeeing({{.ssid = "Lab",
                                            .signal = 57U,
                                            .profile = "Lab profile",
                                            .connected = true,
                                            .bssidCount = 3U}});
    EXPECT_TRUE(device.getVisibleNetworkList());
    EXPECT_THAT(lines(),
                ElementsAre("1154 Total 1 networks are visible.",
                            "1157 Network 0:", "1268 SSID: Lab", "1273 Security enabled.",
                            "1288 Contains 3 BSSIDs.", "1293 Has a matching profile: Lab profile.",
                            "1299 Currently connected.", "1320 The network is connectable.",
                            "1326 BSS type: " + localized("INFRASTRUCTURE"),
                            "1346 Signal quality: 57%",
                            "1351 Default authentication algorithm: RSNA PSK",
                            "1355 Default cipher algorithm: RSNA PSK"));
}

TEST_F(VisibleNetworks, TheOtherSideOfEveryPropertyIsLoggedToo) {
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
}

TEST_F(VisibleNetworks, ARecordHoldsTheWordsForAUser) {
    WirelessDevice& device = openedSeeing(
        {{.ssid = "Lab", .signal = 57U, .profile = "Lab", .connected = true, .auth = 4},
         {.ssid = "Open",
          .signal = 8U,
          .connected = false,
          .secured = false,
          .auth = 99,
          .bssType = 2,
          .connectable = false}});
    ASSERT_THAT(refreshedNames(device), ElementsAre("Lab", "Open"));

    const VisibleNetwork& lab = device.m_visibleNetworks[0];
    EXPECT_EQ(utf8(lab.getSecurity()), localized("ENABLED"));
    EXPECT_EQ(utf8(lab.getConnectable()), localized("YES"));
    EXPECT_EQ(utf8(lab.getBssType()), localized("INFRASTRUCTURE"));
    EXPECT_EQ(utf8(lab.getAuthAlgorithm()), "WPA PSK");
    EXPECT_EQ(utf8(lab.getConnected()), localized("YES"));
    EXPECT_EQ(lab.m_signalQuality, 57);
    EXPECT_TRUE(lab.m_isConnected);

    const VisibleNetwork& open = device.m_visibleNetworks[1];
    EXPECT_EQ(utf8(open.getSecurity()), localized("NOT_ENABLED"));
    EXPECT_EQ(utf8(open.getConnectable()), localized("NO"));
    EXPECT_EQ(utf8(open.getBssType()), localized("AD_HOC_INDEPENDENT"));
    EXPECT_EQ(utf8(open.getAuthAlgorithm()), localized("UNKNOWN_AUTHENTICATION_ALGORITHM"));
    EXPECT_EQ(utf8(open.getConnected()), localized("NO"));
    EXPECT_EQ(open.m_signalQuality, 8);
    EXPECT_FALSE(open.m_isConnected);

    EXPECT_TRUE(lab.m_spareText1.empty());
    EXPECT_TRUE(lab.m_spareText2.empty());
    EXPECT_TRUE(lab.m_signalQualityText.empty());
}

TEST_F(VisibleNetworks, AreRecordedWithoutALogToo) {
    WirelessDevice& device = openedSeeing({{.ssid = "Lab", .connectable = false}});
    mrl::LogFactory::setPriority(mrl::LogFactory::OFF);
    EXPECT_THAT(refreshedNames(device), ElementsAre("Lab"));
    EXPECT_EQ(utf8(device.m_visibleNetworks[0].getConnectable()), localized("NO"));
    EXPECT_EQ(radio().callCount("WlanReasonCodeToString"), 1U);
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(VisibleNetworks, AHiddenOneIsCountedButNeitherLoggedNorKept) {
    WirelessDevice& device =
        openedSeeing({{.ssid = "Secret", .hidden = true}, {.ssid = ""}, {.ssid = "Lab"}});
    EXPECT_THAT(refreshedNames(device), ElementsAre("Lab"));
    EXPECT_EQ(device.m_numVisibleNetworks, 3U);
    const std::vector<std::string> logged = lines();
    ASSERT_GE(logged.size(), 5U);
    EXPECT_THAT(std::vector<std::string>(logged.begin(), logged.begin() + 5),
                ElementsAre("1154 Total 3 networks are visible.", "1157 Network 0:",
                            "1157 Network 1:", "1157 Network 2:", "1268 SSID: Lab"));
}

TEST_F(VisibleNetworks, CountingRefreshesAndCountsTheRecords) {
    WirelessDevice& device = openedSeeing(
        {{.ssid = "Lab"}, {.ssid = "Lab"}, {.ssid = "", .hidden = true}, {.ssid = "Guest"}});
    EXPECT_EQ(device.getNumVisibleNetworks(), 2U);
    EXPECT_EQ(device.m_numVisibleNetworks, 2U);
    EXPECT_THAT(lines(), Contains("1154 Total 4 networks are visible."));
}

TEST_F(VisibleNetworks, CountingAFailedListGivesNone) {
    WirelessDevice& device = openedSeeing({{.ssid = "Lab"}});
    EXPECT_EQ(device.getNumVisibleNetworks(), 1U);
    radio().addFault({.function = "WlanGetAvailableNetworkList", .code = ERROR_BUSY});
    EXPECT_EQ(device.getNumVisibleNetworks(), 0U);
    EXPECT_EQ(device.m_numVisibleNetworks, 0U);
}

TEST_F(VisibleNetworks, ANewRefreshReplacesTheList) {
    WirelessDevice& device = openedSeeing({{.ssid = "Lab"}, {.ssid = "Guest"}});
    EXPECT_THAT(refreshedNames(device), ElementsAre("Lab", "Guest"));
    radio().setAccessPoints(0, {{.ssid = "Attic"}});
    EXPECT_THAT(refreshedNames(device), ElementsAre("Attic"));
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
    const char* line;
    const char* event;
    int eventLine;
    TestResult result;
};

class NetworkListFailure : public VisibleNetworks, public testing::WithParamInterface<ListError> {};

TEST_P(NetworkListFailure, EmptiesTheListLogsItsSentenceAndRaisesItsEvent) {
    const ListError& error = GetParam();
    WirelessDevice& device = openedSeeing({{.ssid = "Lab"}});
    device.getVisibleNetworkList();
    const std::size_t blocks = radio().liveBlocks();
    log().clear();
    radio().addFault({.function = "WlanGetAvailableNetworkList", .code = error.code});
    EXPECT_FALSE(device.getVisibleNetworkList());
    EXPECT_THAT(namesOf(device), IsEmpty());
    EXPECT_EQ(device.m_numVisibleNetworks, 1U); // counts what was reported last
    EXPECT_EQ(radio().liveBlocks(), blocks);

    std::vector<std::string> expectedLines;
    if (error.line != nullptr) {
        expectedLines.emplace_back(error.line);
    }
    EXPECT_THAT(lines(), ElementsAreArray(expectedLines));
    std::vector<std::string> expectedEvents;
    if (error.event != nullptr) {
        expectedEvents.push_back(std::string("error ") + error.event + " " + DEVICE_SOURCE + ":" +
                                 std::to_string(error.eventLine));
    }
    std::vector<std::string> events;
    for (const tesk5::RaisedEvent& event : raised()) {
        events.push_back(test::text(event));
    }
    EXPECT_THAT(events, ElementsAreArray(expectedEvents));
}

TEST_P(NetworkListFailure, IsClassifiedForTheCaller) {
    EXPECT_EQ(opened().reportNetworkListError("WlanGetAvailableNetworkList", GetParam().code),
              GetParam().result);
}

const ListError listErrors[] = {
    {ERROR_INVALID_PARAMETER,
     "1172 The win32 call of WlanGetAvailableNetworkList returned an error related to Client "
     "Handle is NULL or invalid, Interface Guid is NULL, Reserved is not NULL, Available Network "
     "List is NULL, or the dwFlags parameter value is not set to one of the valid values",
     nullptr, 0, TestResult::INTERNALERROR()},
    {ERROR_INVALID_HANDLE,
     "1180 The win32 call of WlanGetAvailableNetworkList returned an error related to client "
     "handle where the client handle was not found in the handle table.",
     nullptr, 0, TestResult::INTERNALERROR()},
    {RADIO_IS_OFF,
     "1188 The win32 call of WlanGetAvailableNetworkList returned an error related to the radio "
     "being turned off. The radio for the interface is turned off. There are no available "
     "networks when the radio is off.",
     "ERROR_NDIS_DOT11_POWER_STATE_INVALID", 1189, TestResult::CANNOTRUN()},
    {ERROR_NOT_ENOUGH_MEMORY,
     "1195 The win32 call of WlanGetAvailableNetworkList returned an error related to memory "
     "allocation. Failed to allocate memory for the query results.",
     "ERROR_NOT_ENOUGH_MEMORY", 1196, TestResult::CANNOTRUN()},
    {ERROR_ACCESS_DENIED, nullptr, nullptr, 0, TestResult::FAIL()},
    {ERROR_INVALID_STATE, nullptr, nullptr, 0, TestResult::FAIL()},
    {1, nullptr, nullptr, 0, TestResult::FAIL()},
    {0xFFFFFFFF, nullptr, nullptr, 0, TestResult::FAIL()},
};
INSTANTIATE_TEST_SUITE_P(Codes, NetworkListFailure, testing::ValuesIn(listErrors),
                         [](const auto& row) { return "Code" + std::to_string(row.param.code); });

TEST_F(VisibleNetworks, WithTheRadioOffThereIsAnEventAndNoList) {
    WirelessDevice& device = openedSeeing({{.ssid = "Lab"}});
    device.getVisibleNetworkList();
    radio().setRadio(0, 0, 2, {});
    EXPECT_FALSE(device.getVisibleNetworkList());
    EXPECT_THAT(namesOf(device), IsEmpty());
    EXPECT_THAT(raisedKeys(), ElementsAre("ERROR_NDIS_DOT11_POWER_STATE_INVALID"));
}

TEST_F(VisibleNetworks, ADeniedListRequestsAdviceAndNoOtherFailureDoes) {
    WirelessDevice& device = opened();
    radio().addFault(
        {.function = "WlanGetAvailableNetworkList", .nth = 1, .code = ERROR_GEN_FAILURE});
    EXPECT_FALSE(device.getVisibleNetworkList());
    EXPECT_FALSE(adviceRequested());
    radio().addFault(
        {.function = "WlanGetAvailableNetworkList", .nth = 1, .code = ERROR_ACCESS_DENIED});
    EXPECT_FALSE(device.getVisibleNetworkList());
    EXPECT_TRUE(adviceRequested());
}

TEST_F(VisibleNetworks, ASentenceFollowsTheCallsNameDirectly) {
    opened().reportNetworkListError("AnyCall", ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_THAT(lines(), ElementsAre("1195 The win32 call of AnyCall returned an error related to "
                                     "memory allocation. Failed to allocate memory for the query "
                                     "results."));
}

TEST_F(VisibleNetworks, ASuccessWithoutAListIsNone) {
    WirelessDevice& device = openedSeeing({{.ssid = "Lab"}});
    device.getVisibleNetworkList();
    radio().addFault({.function = "WlanGetAvailableNetworkList", .noData = true});
    EXPECT_FALSE(device.getVisibleNetworkList());
    EXPECT_THAT(namesOf(device), IsEmpty());
}

// --- one record a name ---

TEST_F(VisibleNetworks, TheFirstEntryOfANameWins) {
    WirelessDevice& device =
        openedSeeing({{.ssid = "Lab", .signal = 20U, .connected = false},
                      {.ssid = "Lab", .signal = 90U, .profile = "Lab", .connected = true}});
    ASSERT_THAT(refreshedNames(device), ElementsAre("Lab"));
    EXPECT_EQ(device.m_visibleNetworks[0].m_signalQuality, 20);
    EXPECT_FALSE(device.m_visibleNetworks[0].m_isConnected);
    EXPECT_THAT(linesNumbered("1268"), ElementsAre("1268 SSID: Lab", "1268 SSID: Lab"));
}

TEST_F(VisibleNetworks, KeepTheShorterNameAndDropTheLongerOneThatFollows) {
    EXPECT_THAT(refreshedNames(openedSeeing({{.ssid = "Lab"}, {.ssid = "Lab-5G"}})),
                ElementsAre("Lab"));
}

TEST_F(VisibleNetworks, KeepBothWhenTheLongerNameComesFirst) {
    EXPECT_THAT(refreshedNames(openedSeeing({{.ssid = "Lab-5G"}, {.ssid = "Lab"}})),
                ElementsAre("Lab-5G", "Lab"));
}

TEST_F(VisibleNetworks, AStoredNameMayStandAnywhereInADroppedOne) {
    EXPECT_THAT(refreshedNames(openedSeeing({{.ssid = "Guest"},
                                             {.ssid = "Lab"},
                                             {.ssid = "My Lab"},
                                             {.ssid = "The Lab 2"},
                                             {.ssid = "La"}})),
                ElementsAre("Guest", "Lab", "La"));
}

TEST_F(VisibleNetworks, LetterCaseDistinguishesNames) {
    EXPECT_THAT(refreshedNames(openedSeeing({{.ssid = "lab"}, {.ssid = "Lab"}, {.ssid = "LAB"}})),
                ElementsAre("lab", "Lab", "LAB"));
}

TEST_F(VisibleNetworks, BlanksDistinguishNamesInOneDirection) {
    EXPECT_THAT(refreshedNames(openedSeeing({{.ssid = "Lab "}, {.ssid = "Lab"}, {.ssid = " Lab"}})),
                ElementsAre("Lab ", "Lab"));
}

TEST_F(VisibleNetworks, AreTheSameWhenTheSecondNameOccursInTheFirst) {
    WirelessDevice& device = opened();
    const auto named = [](const char* name) {
        VisibleNetwork network;
        network.m_ssid = mrl::String(name);
        return network;
    };
    EXPECT_TRUE(device.isSame(named("Lab"), named("Lab")));
    EXPECT_TRUE(device.isSame(named("Lab-5G"), named("Lab")));
    EXPECT_TRUE(device.isSame(named("My Lab"), named("Lab")));
    EXPECT_FALSE(device.isSame(named("Lab"), named("Lab-5G")));
    EXPECT_FALSE(device.isSame(named("lab"), named("Lab")));
    EXPECT_FALSE(device.isSame(named(""), named("Lab")));
}

TEST_F(VisibleNetworks, RecordsThatACallerPutIntoTheListCountToo) {
    WirelessDevice& device = openedSeeing({{.ssid = "Lab"}});
    device.getVisibleNetworkList();
    VisibleNetwork attic;
    attic.m_ssid = "Attic";
    device.m_visibleNetworks.append(attic);
    VisibleNetwork guests;
    guests.m_ssid = "Attic guests";
    device.addVisibleNetwork(guests);
    EXPECT_THAT(namesOf(device), ElementsAre("Lab", "Attic"));
    device.m_visibleNetworks.clear();
    device.addVisibleNetwork(guests);
    EXPECT_THAT(namesOf(device), ElementsAre("Attic guests"));
}

TEST_F(VisibleNetworks, ARecordRenamedInTheListCountsUnderItsNewName) {
    WirelessDevice& device = openedSeeing({{.ssid = "Lab"}});
    device.getVisibleNetworkList();
    device.m_visibleNetworks[0].m_ssid = "Attic";
    VisibleNetwork added;
    for (const char* name : {"Lab-5G", "Attic guests"}) {
        added.m_ssid = name;
        device.addVisibleNetwork(added);
    }
    EXPECT_THAT(namesOf(device), ElementsAre("Attic", "Lab-5G"));
}

TEST_F(VisibleNetworks, AnAddedRecordIsACopy) {
    WirelessDevice& device = opened();
    VisibleNetwork network;
    network.m_ssid = mrl::String("Lab");
    device.addVisibleNetwork(network);
    network.m_ssid = mrl::String("Guest");
    EXPECT_THAT(namesOf(device), ElementsAre("Lab"));
}

// --- signal quality ---

TEST_F(VisibleNetworks, TheConnectionsQualityReplacesAReportOfNothingOrEverything) {
    for (const unsigned int reported : {0U, 100U}) {
        WirelessDevice& device =
            openedConnected({{.ssid = "Lab", .signal = reported}}, {.ssid = "Lab", .quality = 63U});
        ASSERT_TRUE(device.getVisibleNetworkList());
        EXPECT_EQ(device.m_visibleNetworks[0].m_signalQuality, 63);
        EXPECT_EQ(device.m_signalQuality, 63U);
        EXPECT_THAT(linesNumbered("1339"), ElementsAre("1339 Signal quality: 63%"));
        EXPECT_THAT(linesNumbered("1346"), IsEmpty());
        close();
    }
}

TEST_F(VisibleNetworks, EvenTheSameQualityIsLoggedAsTheConnections) {
    WirelessDevice& device =
        openedConnected({{.ssid = "Lab", .signal = 100U}}, {.ssid = "Lab", .quality = 100U});
    device.getVisibleNetworkList();
    EXPECT_THAT(linesNumbered("1339"), ElementsAre("1339 Signal quality: 100%"));
}

TEST_F(VisibleNetworks, AnotherNetworksReportOfNothingOrEverythingIsKept) {
    WirelessDevice& device =
        openedConnected({{.ssid = "Attic", .signal = 0U}, {.ssid = "lab", .signal = 100U}},
                        {.ssid = "Lab", .quality = 63U});
    ASSERT_TRUE(device.getVisibleNetworkList());
    EXPECT_EQ(device.m_visibleNetworks[0].m_signalQuality, 0);
    EXPECT_EQ(device.m_visibleNetworks[1].m_signalQuality, 100);
    EXPECT_EQ(device.m_signalQuality, 0U);
    EXPECT_THAT(linesNumbered("1346"),
                ElementsAre("1346 Signal quality: 0%", "1346 Signal quality: 100%"));
    EXPECT_THAT(linesNumbered("1339"), IsEmpty());
}

TEST_F(VisibleNetworks, EveryOtherReportIsTrustedWithoutAQuery) {
    for (const unsigned int reported : {1U, 50U, 99U, 101U}) {
        WirelessDevice& device =
            openedConnected({{.ssid = "Lab", .signal = reported}}, {.ssid = "Lab", .quality = 63U});
        ASSERT_TRUE(device.getVisibleNetworkList());
        EXPECT_EQ(device.m_visibleNetworks[0].m_signalQuality, static_cast<int>(reported));
        EXPECT_EQ(radio().callCount("WlanQueryInterface"), 0U);
        close();
    }
}

TEST_F(VisibleNetworks, WithoutAConnectionADistrustedReportIsKeptAndTheQueryLogged) {
    WirelessDevice& device = openedSeeing({{.ssid = "Lab", .signal = 100U}});
    device.m_signalQuality = 5;
    ASSERT_TRUE(device.getVisibleNetworkList());
    EXPECT_EQ(device.m_visibleNetworks[0].m_signalQuality, 100);
    EXPECT_EQ(device.m_signalQuality, 5U);
    EXPECT_THAT(lines(), Contains(test::LineSaying("The queryWirelessLanInterface call with OPCODE "
                                                   "wlan_intf_opcode_current_connection    "
                                                   "failed")));
    EXPECT_THAT(linesNumbered("1346"), ElementsAre("1346 Signal quality: 100%"));
    EXPECT_EQ(radio().callCount("WlanFreeMemory"), 1U);
}

TEST_F(VisibleNetworks, AConnectionAnswerWithoutABlockIsNone) {
    WirelessDevice& device =
        openedConnected({{.ssid = "Lab", .signal = 0U}}, {.ssid = "Lab", .quality = 63U});
    radio().addFault({.function = "WlanQueryInterface", .opcode = 7U, .noData = true});
    ASSERT_TRUE(device.getVisibleNetworkList());
    EXPECT_THAT(linesNumbered("1346"), ElementsAre("1346 Signal quality: 0%"));
}

TEST_F(VisibleNetworks, TheDistrustedNetworkNeedNotBeTheOneFlaggedAsConnected) {
    WirelessDevice& device = openedConnected({{.ssid = "Lab", .signal = 0U, .connected = false}},
                                             {.ssid = "Lab", .quality = 41U});
    ASSERT_TRUE(device.getVisibleNetworkList());
    EXPECT_EQ(device.m_visibleNetworks[0].m_signalQuality, 41);
    EXPECT_FALSE(device.m_visibleNetworks[0].m_isConnected);
}

// --- names ---

TEST_F(VisibleNetworks, ANameMayFillAllThirtyTwoBytes) {
    const std::string name = "0123456789abcdef0123456789ABCDEF";
    ASSERT_EQ(name.size(), 32U);
    EXPECT_THAT(refreshedNames(openedSeeing({{.ssid = name}})), ElementsAre(name));
}

TEST_F(VisibleNetworks, ALengthBeyondThirtyTwoIsCutToIt) {
    const std::string name = "0123456789abcdef0123456789ABCDEF";
    for (const std::uint32_t length : {33U, 255U, 0x80000000U, 0xFFFFFFFFU}) {
        EXPECT_THAT(refreshedNames(openedSeeing({{.ssid = name, .ssidLength = length}})),
                    ElementsAre(name))
            << length;
        close();
    }
}

TEST_F(VisibleNetworks, AShorterLengthCutsTheName) {
    EXPECT_THAT(refreshedNames(openedSeeing({{.ssid = "Laboratory", .ssidLength = 3U}})),
                ElementsAre("Lab"));
}

TEST_F(VisibleNetworks, EachByteIsACharacter) {
    // A name in UTF-8 and one in Latin-1.
    EXPECT_THAT(refreshedNames(openedSeeing({{.ssid = "B\xC3\xBCro"}, {.ssid = "Caf\xE9\xFF"}})),
                ElementsAre("B\u00C3\u00BCro", "Caf\u00E9\u00FF"));
}

TEST_F(VisibleNetworks, AByteOfZeroEndsAName) {
    WirelessDevice& device =
        openedSeeing({{.ssid = std::string("Lab\0-5G", 7)}, {.ssid = std::string("\0Lab", 4)}});
    EXPECT_THAT(refreshedNames(device), ElementsAre("Lab"));
    EXPECT_THAT(linesNumbered("1268"), ElementsAre("1268 SSID: Lab"));
}

TEST_F(VisibleNetworks, ControlCharactersInANameDoNotBreakTheLog) {
    WirelessDevice& device = openedSeeing({{.ssid = "a\nb"}});
    EXPECT_THAT(refreshedNames(device), ElementsAre("a\nb"));
    EXPECT_THAT(linesNumbered("1268"), ElementsAre(Not(HasSubstr("\n"))));
}

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

TEST_F(VisibleNetworks, AProfileNameThatFillsItsArrayEndsThere) {
    WirelessDevice& device = opened();
    WLAN_AVAILABLE_NETWORK network{};
    std::fill(std::begin(network.strProfileName), std::end(network.strProfileName), MRL_TEXT('p'));
    network.dwFlags = WLAN_AVAILABLE_NETWORK_HAS_PROFILE;
    network.dot11Ssid = {1, {'x'}};
    network.wlanSignalQuality = 50;
    device.printNetworkInfo(&network);
    EXPECT_THAT(lines(), Contains("1293 Has a matching profile: " + std::string(256, 'p') + "."));
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

DWORD WINAPI reasonWithoutTerminator(DWORD /*code*/, DWORD size, WCHAR* buffer,
                                     PVOID /*reserved*/) {
    std::fill(buffer, buffer + size, MRL_TEXT('r'));
    return ERROR_SUCCESS;
}

TEST_F(VisibleNetworks, AReasonThatFillsItsBufferEndsThere) {
    WirelessDevice& device = opened();
    test::PatchedApi patched;
    patched->WlanReasonCodeToString = &reasonWithoutTerminator;
    device.printReason(1);
    EXPECT_THAT(lines(), ElementsAre("1377  The reason is \"" + std::string(256, 'r') + "\"."));
}

struct BssTypeWord {
    int type;
    const char* key;
};

class BssTypeWords : public VisibleNetworks, public testing::WithParamInterface<BssTypeWord> {};

TEST_P(BssTypeWords, AreLocalized) {
    EXPECT_EQ(utf8(opened().getBssTypeString(static_cast<DOT11_BSS_TYPE>(GetParam().type))),
              localized(GetParam().key));
}

constexpr BssTypeWord bssTypeWords[] = {
    {1, "INFRASTRUCTURE"},   {2, "AD_HOC_INDEPENDENT"}, {3, "ANY"},
    {0, "UNKNOWN_BSS_TYPE"}, {4, "UNKNOWN_BSS_TYPE"},   {-1, "UNKNOWN_BSS_TYPE"},
};
INSTANTIATE_TEST_SUITE_P(Types, BssTypeWords, testing::ValuesIn(bssTypeWords), [](const auto& row) {
    return row.param.type < 0 ? std::string("Negative") : std::to_string(row.param.type);
});

struct Rating {
    int quality;
    const char* key; ///< null: no word
};

class SignalQualityRating : public VisibleNetworks, public testing::WithParamInterface<Rating> {};

TEST_P(SignalQualityRating, IsALocalizedWordKeptInTheRecord) {
    VisibleNetwork network;
    network.m_signalQualityText = mrl::String("before");
    network.m_signalQuality = GetParam().quality;
    const std::string word = GetParam().key != nullptr ? localized(GetParam().key) : "";
    EXPECT_EQ(utf8(network.getSignalQualityText()), word);
    EXPECT_EQ(utf8(network.m_signalQualityText), word);
}

constexpr Rating ratings[] = {
    {INT32_MAX, "EXCELLENT"},
    {101, "EXCELLENT"},
    {100, "EXCELLENT"},
    {80, "EXCELLENT"},
    {79, "VERY_GOOD"},
    {60, "VERY_GOOD"},
    {59, "GOOD"},
    {40, "GOOD"},
    {39, "LOW"},
    {20, "LOW"},
    {19, "VERY_LOW"},
    {1, "VERY_LOW"},
    {0, "NO_SIGNAL"},
    {-1, nullptr},
    {INT32_MIN, nullptr},
};
INSTANTIATE_TEST_SUITE_P(Qualities, SignalQualityRating, testing::ValuesIn(ratings),
                         [](const auto& row) {
                             const std::string number = std::to_string(row.param.quality);
                             return row.param.quality < 0 ? "Minus" + number.substr(1) : number;
                         });

TEST_F(VisibleNetworks, ANewRecordIsEmpty) {
    const VisibleNetwork network;
    for (const mrl::String& text :
         {network.m_spareText1, network.getSsid(), network.getSecurity(), network.getConnectable(),
          network.getBssType(), network.getAuthAlgorithm(), network.m_spareText2,
          network.getConnected(), network.m_signalQualityText}) {
        EXPECT_TRUE(text.empty());
    }
    EXPECT_EQ(network.m_signalQuality, 0);
    EXPECT_FALSE(network.m_isConnected);
}

// --- trace scopes ---

TEST_F(VisibleNetworks, TraceEachOperationOfARefresh) {
    WirelessDevice& device = openedConnected({{.ssid = "Lab", .signal = 0U, .connectable = false}},
                                             {.ssid = "Lab", .quality = 50U});
    EXPECT_THAT(scopesOf([&device] { device.getNumVisibleNetworks(); }),
                ElementsAre("getNumVisibleNetworks()", "getVisibleNetworkList()",
                            "printNetworkInfo()", "SsidToStringW()", "printReason()",
                            "getBssTypeString()", "populateWLANConnectionAtrributes()",
                            "queryWirelessLanInterface()", "SsidToStringW()", "getAuthAlgoString()",
                            "addVisibleNetwork()"));
}

TEST_F(VisibleNetworks, TraceNothingForTheErrorReportAndTheRating) {
    WirelessDevice& device = opened();
    EXPECT_THAT(scopesOf([&device] {
                    device.reportNetworkListError("AnyCall", ERROR_INVALID_HANDLE);
                    VisibleNetwork().getSignalQualityText();
                }),
                IsEmpty());
    EXPECT_THAT(scopesOf([&device] { device.isSame(VisibleNetwork(), VisibleNetwork()); }),
                ElementsAre("isSame()"));
}

} // namespace
