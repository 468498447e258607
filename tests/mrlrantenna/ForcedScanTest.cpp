// The forced scan and the look-up of a name among what it heard.
#include "DeviceTest.h"

namespace {

using radiosim::AccessPoint;
using radiosim::Bss;
using radiosim::Signal;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr mrl::Uint32 UNTOUCHED = 4711;
class ForcedScan : public test::DeviceTest {
protected:
    struct Outcome {
        bool matched;
        mrl::Uint32 strength;

        bool operator==(const Outcome&) const = default;
    };

    static Outcome scan(WirelessDevice& device, const char* ssid) {
        Outcome outcome{false, UNTOUCHED};
        outcome.matched = device.forceScanMatched(ssid, outcome.strength);
        return outcome;
    }
    static Outcome heard(mrl::Uint32 strength) { return {true, strength}; }
    static Outcome notHeard() { return {false, UNTOUCHED}; }
};

TEST_F(ForcedScan, ScansOnAHandleOfItsOwnWaitsAndReadsWhatWasHeard) {
    WirelessDevice& device = openedSeeing({{.ssid = "Lab", .signal = 64U}});
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

TEST_F(ForcedScan, LeavesItsHandleAndItsListsEachTime) {
    WirelessDevice& device = openedSeeing({{.ssid = "Lab"}});
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

TEST_F(ForcedScan, NeedsNoInitializedDevice) {
    startRadio({{.ssid = "Lab", .signal = 64U}});
    WirelessDevice& device = open(deviceWith({}));
    ASSERT_FALSE(device.m_initialized);
    EXPECT_EQ(scan(device, "Lab"), heard(64));
    EXPECT_FALSE(device.m_initialized);
}

TEST_F(ForcedScan, LogsEachNameUpToTheMatch) {
    WirelessDevice& device = openedSeeing(
        {{.ssid = "Guest"}, {.ssid = "", .hidden = true}, {.ssid = " Lab "}, {.ssid = "Attic"}});
    scan(device, "lab");
    EXPECT_THAT(lines(), ElementsAre("1601 forceScanMatched::Enumerated SSID: Guest",
                                     "1603 forceScanMatched::Test SSID: lab",
                                     "1601 forceScanMatched::Enumerated SSID:  Lab ",
                                     "1603 forceScanMatched::Test SSID: lab"));
}

// --- matching ---

TEST_F(ForcedScan, MatchesAHeardNameTrimmedAndInAnyLetterCase) {
    const std::string longest(32, 'x');
    const struct {
        std::vector<AccessPoint> heard;
        std::string wanted;
        std::optional<mrl::Uint32> strength;
    } rows[] = {
        {{{.ssid = "LAB", .signal = 12U}}, "lAb", 12U},
        {{{.ssid = "Lab ", .signal = 12U}}, "Lab", 12U},
        {{{.ssid = "  lab\t", .signal = 13U}}, "Lab", 13U},
        {{{.ssid = "   ", .signal = 9U}}, "", 9U},
        // The given name is not trimmed.
        {{{.ssid = "Lab"}, {.ssid = " Lab"}, {.ssid = " Lab "}}, " Lab", {}},
        {{{.ssid = "Lab"}, {.ssid = "Lab "}}, "Lab ", {}},
        // No part of a name.
        {{{.ssid = "Lab-5G"}, {.ssid = "La"}, {.ssid = "La b"}}, "Lab", {}},
        // The first match wins, even when a later one is stronger.
        {{{.ssid = "Guest", .signal = 99U},
          {.ssid = "lab",
           .bss = std::vector<Bss>{{.linkQuality = Signal(30U)}, {.linkQuality = Signal(90U)}}},
          {.ssid = "Lab", .signal = 100U}},
         "Lab",
         30U},
        // The quality as it is.
        {{{.ssid = "Lab", .signal = 0U}}, "Lab", 0U},
        {{{.ssid = "Lab", .signal = 255U}}, "Lab", 255U},
        // Never a hidden network.
        {{{.ssid = "Lab", .hidden = true}}, "Lab", {}},
        {{{.ssid = "Lab", .hidden = true}, {.ssid = ""}}, "", {}},
        // A length that lies, and one character a byte.
        {{{.ssid = longest, .signal = 9U, .ssidLength = 0xFFFFFFFFU}}, longest, 9U},
        {{{.ssid = "Caf\xE9", .signal = 9U}}, "Caf\u00E9", 9U},
        {{{.ssid = std::string("Lab\0x", 5), .signal = 8U}}, "Lab", 8U},
    };
    for (const auto& [heard, wanted, strength] : rows) {
        EXPECT_EQ(scan(openedSeeing(heard), wanted.c_str()),
                  (Outcome{strength.has_value(), strength.value_or(UNTOUCHED)}))
            << wanted;
    }
}

// --- the first interface, whatever the device ---

TEST_F(ForcedScan, ScansOnTheFirstInterfaceWhateverTheDevicesOwnIs) {
    startRadio(radiosim::Scenario{.interfaces = {
                                      {.guid = "01234567-89ab-cdef-0123-456789abcdef",
                                       .accessPoints = {{.ssid = "There", .signal = 33U}}},
                                      {.accessPoints = {{.ssid = "Here", .signal = 66U}}},
                                  }});
    WirelessDevice& device = opened();
    ASSERT_TRUE(device.m_initialized);
    EXPECT_EQ(scan(device, "There"), heard(33));
    EXPECT_EQ(scan(device, "Here"), notHeard());
}

// --- failures ---

TEST_F(ForcedScan, EndsAtOnceAndSilentlyWhereACallFails) {
    constexpr struct {
        const char* function;
        std::size_t calls;
        std::size_t pauses;
        std::size_t handles;
        std::size_t blocks;
    } steps[] = {
        {"WlanOpenHandle", 1, 0, 0, 0},
        {"WlanEnumInterfaces", 2, 0, 1, 0},
        {"WlanScan", 3, 0, 1, 1},
        {"WlanGetNetworkBssList", 4, 1, 1, 1},
    };
    for (const auto& step : steps) {
        SCOPED_TRACE(step.function);
        WirelessDevice& device = openedSeeing({{.ssid = "Lab"}});
        clock().forgetSleeps();
        const radiosim::Leaks before = radio().leaks();
        radio().addFault({.function = step.function, .nth = 1, .code = ERROR_NOT_ENOUGH_MEMORY});
        EXPECT_EQ(scan(device, "Lab"), notHeard());
        EXPECT_EQ(radio().calls().size(), step.calls);
        EXPECT_EQ(clock().sleeps().size(), step.pauses);
        EXPECT_EQ(radio().leaks().handles, before.handles + step.handles);
        EXPECT_EQ(radio().leaks().blocks, before.blocks + step.blocks);
        EXPECT_THAT(lines(), IsEmpty());
        EXPECT_THAT(raised(), IsEmpty());
    }
}

TEST_F(ForcedScan, RequestsAdviceWhenAccessIsDenied) {
    WirelessDevice& device = openedSeeing({{.ssid = "Lab"}});
    for (const DWORD code : {DWORD{ERROR_BUSY}, DWORD{ERROR_ACCESS_DENIED}}) {
        radio().addFault({.function = "WlanScan", .nth = 1, .code = code});
        EXPECT_EQ(scan(device, "Lab"), notHeard());
        EXPECT_EQ(adviceRequested(), code == ERROR_ACCESS_DENIED);
    }
}

TEST_F(ForcedScan, WithNothingHeardFailsSilentlyAfterTheWait) {
    EXPECT_EQ(scan(openedSeeing({}), "Lab"), notHeard());
    EXPECT_THAT(clock().sleeps(), ElementsAre(7000));
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(ForcedScan, WithoutAnyInterfaceReadsNoneAndFails) {
    WirelessDevice& device = openedSeeing({{.ssid = "Lab"}});
    radio().removeInterface(0);
    EXPECT_EQ(scan(device, "Lab"), notHeard());
    EXPECT_THAT(clock().sleeps(), IsEmpty());
}

TEST_F(ForcedScan, LivesWithSuccessesThatHandOutNothing) {
    WirelessDevice& device = openedSeeing({{.ssid = "Lab"}});
    radio().addFault({.function = "WlanEnumInterfaces", .nth = 1, .noData = true});
    EXPECT_EQ(scan(device, "Lab"), notHeard());
    radio().addFault({.function = "WlanGetNetworkBssList", .nth = 1, .noData = true});
    EXPECT_EQ(scan(device, "Lab"), notHeard());
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(ForcedScan, OpensNoTraceScope) {
    WirelessDevice& device = openedSeeing({});
    EXPECT_THAT(scopesOf([&device] { scan(device, "Lab"); }), IsEmpty());
}

} // namespace
