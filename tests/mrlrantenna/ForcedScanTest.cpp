// The forced scan and the look-up of a name among what it heard.
#include "DeviceTest.h"

namespace {

using radiosim::AccessPoint;
using radiosim::Bss;
using radiosim::Signal;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr mrl::Uint32 UNTOUCHED = 4711;
constexpr const char* SECOND_GUID = "01234567-89ab-cdef-0123-456789abcdef";

class ForcedScan : public test::DeviceTest {
protected:
    struct Outcome {
        bool matched;
        mrl::Uint32 strength;

        bool operator==(const Outcome&) const = default;
    };

    WirelessDevice& openedHearing(std::vector<AccessPoint> accessPoints) {
        startRadio(std::move(accessPoints));
        return opened();
    }
    static Outcome scan(WirelessDevice& device, const char* ssid) {
        Outcome outcome{false, UNTOUCHED};
        outcome.matched = device.forceScanMatched(ssid, outcome.strength);
        return outcome;
    }
    Outcome scanHearing(std::vector<AccessPoint> accessPoints, const char* ssid) {
        return scan(openedHearing(std::move(accessPoints)), ssid);
    }
    static Outcome heard(mrl::Uint32 strength) { return {true, strength}; }
    static Outcome notHeard() { return {false, UNTOUCHED}; }
};

TEST_F(ForcedScan, ScansOnAHandleOfItsOwnWaitsAndReadsWhatWasHeard) {
    WirelessDevice& device = openedHearing({{.ssid = "Lab", .signal = 64U}});
    const test::Journal journal;
    EXPECT_EQ(scan(device, "Lab"), heard(64));
    const std::string guid = radiosim::FIRST_INTERFACE;
    EXPECT_THAT(
        radio().callTexts(),
        ElementsAre(R"(WlanOpenHandle {"clientVersion":1,"reserved":null} = 0 )"
                    R"({"negotiatedVersion":1,"handle":"h2"})",
                    R"(WlanEnumInterfaces {"handle":"h2","reserved":null} = 0 {"interfaces":1})",
                    R"(WlanScan {"handle":"h2","interface":")" + guid +
                        R"(","ssid":null,"informationElement":null,"reserved":null} = 0 {})",
                    R"(WlanGetNetworkBssList {"handle":"h2","interface":")" + guid +
                        R"(","ssid":null,"bssType":3,"securityEnabled":false,"reserved":null})"
                        R"( = 0 {"entries":1})"));
    EXPECT_THAT(journal.entries({"call", "pause"}),
                ElementsAre("call WlanOpenHandle = 0", "call WlanEnumInterfaces = 0",
                            "call WlanScan = 0", "pause 7000 ms",
                            "call WlanGetNetworkBssList = 0"));
}

TEST_F(ForcedScan, HearsWhatAppearsWithTheScan) {
    EXPECT_EQ(
        scanHearing({{.ssid = "Lab", .signal = 64U, .visible = radiosim::Visible::AFTER_SCAN}},
                    "Lab"),
        heard(64));
}

TEST_F(ForcedScan, LeavesItsHandleAndItsListsEachTime) {
    WirelessDevice& device = openedHearing({{.ssid = "Lab"}});
    const radiosim::Leaks before = radio().leaks();
    for (std::size_t i = 1; i <= 3; ++i) {
        scan(device, i == 2 ? "Nowhere" : "Lab");
        EXPECT_EQ(radio().leaks().handles, before.handles + i);
        EXPECT_EQ(radio().leaks().blocks, before.blocks + 2 * i);
    }
    EXPECT_EQ(radio().callCount("WlanCloseHandle"), 0U);
    EXPECT_EQ(radio().callCount("WlanFreeMemory"), 0U);
    // The device closes its own handle and no other.
    close();
    EXPECT_EQ(radio().openHandles(), 3U);
    EXPECT_EQ(radio().callCount("WlanCloseHandle"), 1U);
}

TEST_F(ForcedScan, LeavesTheDeviceAsItIs) {
    WirelessDevice& device = openedHearing({{.ssid = "Lab"}});
    const HANDLE handle = device.m_clientHandle;
    scan(device, "Lab");
    EXPECT_EQ(device.m_clientHandle, handle);
    EXPECT_EQ(device.m_negotiatedVersion, 2U);
    EXPECT_EQ(device.m_visibleNetworks.size(), 0U);
    EXPECT_EQ(device.m_signalQuality, 0U);
}

TEST_F(ForcedScan, NeedsNoInitializedDevice) {
    startRadio({{.ssid = "Lab", .signal = 64U}});
    WirelessDevice& device = open(deviceWith({}));
    ASSERT_FALSE(device.m_initialized);
    EXPECT_EQ(scan(device, "Lab"), heard(64));
    EXPECT_FALSE(device.m_initialized);
}

TEST_F(ForcedScan, LogsEachNameUpToTheMatch) {
    WirelessDevice& device = openedHearing(
        {{.ssid = "Guest"}, {.ssid = "", .hidden = true}, {.ssid = " Lab "}, {.ssid = "Attic"}});
    scan(device, "lab");
    EXPECT_THAT(lines(), ElementsAre("1601 forceScanMatched::Enumerated SSID: Guest",
                                     "1603 forceScanMatched::Test SSID: lab",
                                     "1601 forceScanMatched::Enumerated SSID:  Lab ",
                                     "1603 forceScanMatched::Test SSID: lab"));
}

// --- matching ---

TEST_F(ForcedScan, MatchesInAnyLetterCase) {
    EXPECT_EQ(scanHearing({{.ssid = "LAB", .signal = 12U}}, "lAb"), heard(12));
}

TEST_F(ForcedScan, MatchesAnEnumeratedNameWithBlanksAroundIt) {
    EXPECT_EQ(scanHearing({{.ssid = "Lab ", .signal = 12U}}, "Lab"), heard(12));
    EXPECT_EQ(scanHearing({{.ssid = "  lab\t", .signal = 13U}}, "Lab"), heard(13));
}

TEST_F(ForcedScan, NeverMatchesAGivenNameWithBlanksAroundIt) {
    for (const char* wanted : {" Lab", "Lab ", " Lab "}) {
        EXPECT_EQ(scanHearing({{.ssid = "Lab"}, {.ssid = " Lab"}, {.ssid = " Lab "}}, wanted),
                  notHeard());
        EXPECT_EQ(lines().at(1), std::string("1603 forceScanMatched::Test SSID: ") + wanted);
        close();
    }
}

TEST_F(ForcedScan, MatchesNoPartOfAName) {
    EXPECT_EQ(scanHearing({{.ssid = "Lab-5G"}, {.ssid = "La"}}, "Lab"), notHeard());
    EXPECT_EQ(scanHearing({{.ssid = "La b"}}, "Lab"), notHeard());
}

TEST_F(ForcedScan, TakesTheFirstMatchEvenWhenALaterOneIsStronger) {
    const std::vector<Bss> radios = {{.linkQuality = Signal(30U)}, {.linkQuality = Signal(90U)}};
    EXPECT_EQ(scanHearing({{.ssid = "Guest", .signal = 99U},
                           {.ssid = "lab", .bss = radios},
                           {.ssid = "Lab", .signal = 100U}},
                          "Lab"),
              heard(30));
}

TEST_F(ForcedScan, ReportsTheLinkQualityAsItIs) {
    for (const unsigned int quality : {0U, 1U, 100U, 255U}) {
        EXPECT_EQ(scanHearing({{.ssid = "Lab", .signal = quality}}, "Lab"), heard(quality));
        close();
    }
}

TEST_F(ForcedScan, NeverMatchesAHiddenNetworkEvenForAnEmptyName) {
    EXPECT_EQ(scanHearing({{.ssid = "Lab", .hidden = true}}, "Lab"), notHeard());
    EXPECT_EQ(scanHearing({{.ssid = "Lab", .hidden = true}, {.ssid = ""}}, ""), notHeard());
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(ForcedScan, ANameOfBlanksAloneIsEmptyOnceTrimmed) {
    EXPECT_EQ(scanHearing({{.ssid = "   ", .signal = 9U}}, ""), heard(9));
}

TEST_F(ForcedScan, LivesWithALengthThatLies) {
    const std::string name(32, 'x');
    EXPECT_EQ(scanHearing({{.ssid = name, .signal = 9U, .ssidLength = 0xFFFFFFFFU}}, name.c_str()),
              heard(9));
}

TEST_F(ForcedScan, ReadsEachByteAsACharacter) {
    EXPECT_EQ(scanHearing({{.ssid = "Caf\xE9", .signal = 9U}}, "Caf\u00E9"), heard(9));
    EXPECT_EQ(scanHearing({{.ssid = std::string("Lab\0x", 5), .signal = 8U}}, "Lab"), heard(8));
}

// --- the first interface, whatever the device ---

TEST_F(ForcedScan, ScansOnTheFirstInterfaceWhateverTheDevicesOwnIs) {
    radiosim::Scenario scenario;
    scenario.interfaces = {
        {.guid = SECOND_GUID, .accessPoints = {{.ssid = "There", .signal = 33U}}},
        {.accessPoints = {{.ssid = "Here", .signal = 66U}}},
    };
    startRadio(std::move(scenario));
    WirelessDevice& device = opened();
    ASSERT_TRUE(device.m_initialized);
    EXPECT_EQ(scan(device, "There"), heard(33));
    EXPECT_EQ(scan(device, "Here"), notHeard());
}

// --- failures ---

struct FailingCall {
    const char* function;
    std::size_t calls;
    std::size_t sleeps;
    std::size_t blocks;
};

class ForcedScanFailure : public ForcedScan, public testing::WithParamInterface<FailingCall> {};

TEST_P(ForcedScanFailure, EndsTheAttemptAtOnceAndSilently) {
    const FailingCall& step = GetParam();
    WirelessDevice& device = openedHearing({{.ssid = "Lab"}});
    const radiosim::Leaks before = radio().leaks();
    radio().addFault({.function = step.function, .code = ERROR_NOT_ENOUGH_MEMORY});
    EXPECT_EQ(scan(device, "Lab"), notHeard());
    EXPECT_EQ(radio().calls().size(), step.calls);
    EXPECT_EQ(clock().sleeps().size(), step.sleeps);
    EXPECT_EQ(radio().leaks().handles, before.handles + (step.calls > 1 ? 1 : 0));
    EXPECT_EQ(radio().leaks().blocks, before.blocks + step.blocks);
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_THAT(raised(), IsEmpty());
}

constexpr FailingCall failingCalls[] = {
    {"WlanOpenHandle", 1, 0, 0},
    {"WlanEnumInterfaces", 2, 0, 0},
    {"WlanScan", 3, 0, 1},
    {"WlanGetNetworkBssList", 4, 1, 1},
};
INSTANTIATE_TEST_SUITE_P(Calls, ForcedScanFailure, testing::ValuesIn(failingCalls),
                         [](const auto& row) { return row.param.function; });

TEST_F(ForcedScan, WithNothingHeardFailsSilentlyAfterTheWait) {
    EXPECT_EQ(scanHearing({}, "Lab"), notHeard());
    EXPECT_THAT(clock().sleeps(), ElementsAre(7000));
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(ForcedScan, WithTheRadioOffFailsWithoutAWait) {
    WirelessDevice& device = openedHearing({{.ssid = "Lab"}});
    radio().setRadio(0, 0, 2, {});
    EXPECT_EQ(scan(device, "Lab"), notHeard());
    EXPECT_THAT(clock().sleeps(), IsEmpty());
    EXPECT_THAT(raised(), IsEmpty());
}

TEST_F(ForcedScan, WithoutAnyInterfaceReadsNoneAndFails) {
    WirelessDevice& device = openedHearing({{.ssid = "Lab"}});
    radio().removeInterface(0);
    EXPECT_EQ(scan(device, "Lab"), notHeard());
    EXPECT_THAT(clock().sleeps(), IsEmpty());
}

TEST_F(ForcedScan, LivesWithSuccessesThatHandOutNothing) {
    WirelessDevice& device = openedHearing({{.ssid = "Lab"}});
    radio().addFault({.function = "WlanEnumInterfaces", .nth = 1, .noData = true});
    EXPECT_EQ(scan(device, "Lab"), notHeard());
    radio().addFault({.function = "WlanGetNetworkBssList", .nth = 1, .noData = true});
    EXPECT_EQ(scan(device, "Lab"), notHeard());
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(ForcedScan, OpensNoTraceScope) {
    WirelessDevice& device = openedHearing({});
    EXPECT_THAT(scopesOf([&device] { scan(device, "Lab"); }), IsEmpty());
}

} // namespace
