// The search for the access point: a forced scan, then polling for at most half a minute.
#include "ModuleTest.h"

#include <MRLrAntenna.h>

#include <numeric>

namespace {

using radiosim::AccessPoint;
using radiosim::Fault;
using radiosim::Signal;
using test::text;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr long long POLL_MS = 100;
constexpr long long SCAN_MS = 7000;

class AccessPointSearch : public test::ModuleTest {
protected:
    struct Outcome {
        bool found;
        unsigned int strength;
        bool radioOn;
    };

    // As the verification test calls it.
    Outcome search(const char* ssid) {
        Outcome outcome{false, 0, true};
        outcome.found = getAccessPointSignalStrength(device(), mrl::String(ssid), outcome.strength,
                                                     outcome.radioOn);
        return outcome;
    }

    // What the list shows, while the scan hears a link quality of its own.
    static AccessPoint heardAt(const char* ssid, unsigned int listed, unsigned int heard) {
        return {.ssid = ssid,
                .signal = listed,
                .bss = std::vector<radiosim::Bss>{{.linkQuality = Signal(heard)}}};
    }
    // In the list, but not among what a scan hears.
    static AccessPoint listedOnly(const char* ssid, unsigned int listed) {
        return {.ssid = ssid, .signal = listed, .bss = std::vector<radiosim::Bss>{}};
    }

    long long waited() {
        const std::vector<long long> all = clock().sleeps();
        return std::accumulate(all.begin(), all.end(), 0LL);
    }
};

TEST_F(AccessPointSearch, FindsANameThatDiffersInLetterCaseAndSurroundingBlanks) {
    startRadio({{.ssid = " LAB  ", .signal = 61U}});
    const Outcome outcome = search("lab");
    EXPECT_TRUE(outcome.found);
    EXPECT_EQ(outcome.strength, 61U);
    EXPECT_TRUE(outcome.radioOn);
    EXPECT_THAT(logged(test::MODULE_LOGGER),
                Contains("179 getAccessPointSignalStrength::SSID Being Compared: LAB"));
}

TEST_F(AccessPointSearch, ReturnsTheBetterOfScanAndList) {
    startRadio({heardAt("Lab", 40, 55)});
    EXPECT_EQ(search("Lab").strength, 55U);
    EXPECT_THAT(logged(test::MODULE_LOGGER),
                Contains("187 getAccessPointSignalStrength::forcedScanSignalStrength returned "
                         "better result: 55"));

    startRadio({heardAt("Lab", 55, 40)});
    EXPECT_EQ(search("Lab").strength, 55U);
    startRadio({heardAt("Lab", 55, 55)});
    log().clear();
    EXPECT_EQ(search("Lab").strength, 55U);
    EXPECT_THAT(logged(test::MODULE_LOGGER), Not(Contains(HasSubstr("187 "))));
}

TEST_F(AccessPointSearch, TheScanAloneDoesNotFindWhatTheListNeverShows) {
    AccessPoint scanOnly{.ssid = "Lab", .signal = 90U};
    scanOnly.inNetworkList = false;
    startRadio({scanOnly, {.ssid = "Other"}});
    const Outcome outcome = search("Lab");
    EXPECT_FALSE(outcome.found);
    EXPECT_EQ(outcome.strength, 0U);
    EXPECT_TRUE(outcome.radioOn);
    EXPECT_EQ(waited(), SCAN_MS + 30000);
}

TEST_F(AccessPointSearch, ScansOnceWhenTheScanHearsTheName) {
    startRadio({{.ssid = "Lab"}});
    search("Lab");
    EXPECT_EQ(radio().callCount("WlanScan"), 1U);
    EXPECT_THAT(clock().sleeps(), ElementsAre(SCAN_MS));
}

TEST_F(AccessPointSearch, ScansExactlyOnceMoreWhenItDoesNot) {
    startRadio({listedOnly("Lab", 30)});
    const Outcome outcome = search("Lab");
    EXPECT_EQ(outcome.strength, 30U);
    EXPECT_EQ(radio().callCount("WlanScan"), 2U);
    EXPECT_THAT(clock().sleeps(), ElementsAre(SCAN_MS, SCAN_MS));
    EXPECT_THAT(logged(test::MODULE_LOGGER),
                Contains("154 getAccessPointSignalStrength::forcedScanSignalStrength: 0"));
}

TEST_F(AccessPointSearch, ASecondScanThatHearsTheNameCounts) {
    radiosim::Scenario scenario;
    scenario.interfaces.front().accessPoints = {heardAt("Lab", 30, 80)};
    scenario.faults = {{.function = "WlanScan", .nth = 1, .code = 170U}};
    startRadio(scenario);
    EXPECT_EQ(search("Lab").strength, 80U);
    EXPECT_THAT(clock().sleeps(), ElementsAre(SCAN_MS));
}

TEST_F(AccessPointSearch, TheFirstMatchInListOrderWins) {
    startRadio({listedOnly("Other", 99), listedOnly("lab", 20), listedOnly("LAB", 80)});
    EXPECT_EQ(search("Lab").strength, 20U);
}

TEST_F(AccessPointSearch, NamesOfBlanksAreSkippedAndNeverLogged) {
    startRadio({listedOnly("   ", 99), listedOnly("Lab", 20)});
    EXPECT_EQ(search("Lab").strength, 20U);
    EXPECT_THAT(logged(test::MODULE_LOGGER),
                ElementsAre("154 getAccessPointSignalStrength::forcedScanSignalStrength: 0",
                            "179 getAccessPointSignalStrength::SSID Being Compared: Lab",
                            "181 getAccessPointSignalStrength::Found the matching SSID: Lab",
                            "183 getAccessPointSignalStrength::getSignalStrength(): 20"));
}

TEST_F(AccessPointSearch, AnEmptyNameIsFoundNowhere) {
    startRadio({{.ssid = "  "}, {.ssid = "Lab"}});
    EXPECT_FALSE(search("").found);
}

TEST_F(AccessPointSearch, KeepsPollingUntilTheNameShows) {
    AccessPoint late = listedOnly("Lab", 70);
    late.from = std::chrono::milliseconds(2 * SCAN_MS + 250);
    startRadio({late, {.ssid = "Other"}});
    EXPECT_EQ(search("Lab").strength, 70U);
    EXPECT_THAT(clock().sleeps(), ElementsAre(SCAN_MS, SCAN_MS, POLL_MS, POLL_MS, POLL_MS));
}

TEST_F(AccessPointSearch, GivesUpOnANonEmptyListAfterHalfAMinuteWithoutAnEvent) {
    startRadio({{.ssid = "Other"}});
    EXPECT_FALSE(search("Lab").found);
    EXPECT_EQ(waited(), 2 * SCAN_MS + 30000);
    EXPECT_THAT(raised(), IsEmpty());
    EXPECT_EQ(logged(test::MODULE_LOGGER).back(),
              "194 getAccessPointSignalStrength() was not able to find a matching SSID: Lab after "
              "trying for 30 seconds");
    // Polls at 0.0 s, 0.1 s, ..., 30.0 s: the last one counts.
    EXPECT_EQ(radio().callCount("WlanGetAvailableNetworkList"), 301U);
}

TEST_F(AccessPointSearch, ANameThatShowsInTheLastPollIsFound) {
    AccessPoint late = listedOnly("Lab", 70);
    late.from = std::chrono::milliseconds(2 * SCAN_MS + 30000);
    startRadio({late, {.ssid = "Other"}});
    EXPECT_TRUE(search("Lab").found);
}

TEST_F(AccessPointSearch, GivesUpOnAnEmptyListAfterHalfAMinuteWithItsEvent) {
    startRadio(std::vector<AccessPoint>{});
    const Outcome outcome = search("Lab");
    EXPECT_FALSE(outcome.found);
    EXPECT_TRUE(outcome.radioOn);
    EXPECT_EQ(waited(), 2 * SCAN_MS + 30000);
    ASSERT_EQ(raised().size(), 1U);
    EXPECT_EQ(text(raised()[0]), "error NO_ACCESS_POINT_FOUND "
                                 "modules/src/windows/diag/mrlrantenna/MRLrAntenna.cpp:164");
    EXPECT_EQ(logged(test::MODULE_LOGGER).back(),
              "163 getAccessPointSignalStrength::Did not find any access point");
}

TEST_F(AccessPointSearch, AListThatFillsAfterBeingEmptyIsNoEmptyList) {
    AccessPoint late = listedOnly("Lab", 70);
    late.from = std::chrono::milliseconds(2 * SCAN_MS + 29950);
    startRadio({late});
    EXPECT_TRUE(search("Lab").found);
    EXPECT_THAT(raised(), IsEmpty());
}

TEST_F(AccessPointSearch, ARadioThatIsOffEndsItEvenWithAListFull) {
    radiosim::Scenario scenario;
    scenario.interfaces.front().accessPoints = {{.ssid = "Lab", .signal = 90U}};
    // The second PHY keeps the list alive; the first is the one that is looked at.
    scenario.interfaces.front().phys = {{.software = 2, .hardware = 1},
                                        {.software = 1, .hardware = 1}};
    startRadio(scenario);
    const Outcome outcome = search("Lab");
    EXPECT_FALSE(outcome.found);
    EXPECT_FALSE(outcome.radioOn);
    EXPECT_EQ(outcome.strength, 0U);
    EXPECT_THAT(raised(), IsEmpty());
    EXPECT_EQ(radio().callCount("WlanGetAvailableNetworkList"), 1U);
    EXPECT_THAT(logged(test::MODULE_LOGGER), Each(HasSubstr("154 ")));
}

TEST_F(AccessPointSearch, ARadioThatGoesOffOnTheWayEndsItThen) {
    startRadio({{.ssid = "Other"}});
    int polls = 0;
    radio().onCall([&](const radiosim::Call& call) {
        if (call.function == "WlanGetAvailableNetworkList" && ++polls == 3) {
            radio().setRadio(0, 0, std::nullopt, 2);
        }
    });
    EXPECT_FALSE(search("Lab").radioOn);
    EXPECT_EQ(polls, 3);
}

TEST_F(AccessPointSearch, ClosesItsHandleOnEveryPathAndLeavesThoseOfTheScans) {
    startRadio({{.ssid = "Lab"}});
    search("Lab");
    EXPECT_EQ(radio().openHandles(), 1U) << "one forced scan";
    search("Nowhere");
    EXPECT_EQ(radio().openHandles(), 3U) << "two more forced scans";
    radio().setRadio(0, 0, 2, std::nullopt);
    search("Lab");
    EXPECT_EQ(radio().openHandles(), 5U);
}

TEST_F(AccessPointSearch, WorksOnlyOnListsThatTheServiceDelivers) {
    radiosim::Scenario scenario;
    scenario.interfaces.front().accessPoints = {listedOnly("Lab", 30)};
    scenario.faults = {{.function = "WlanGetAvailableNetworkList", .nth = 1, .code = 8U},
                       {.function = "WlanGetAvailableNetworkList", .nth = 2, .code = 6U}};
    startRadio(scenario);
    EXPECT_TRUE(search("Lab").found);
    EXPECT_THAT(clock().sleeps(), ElementsAre(SCAN_MS, SCAN_MS, POLL_MS, POLL_MS));
    EXPECT_THAT(raisedKeys(), ElementsAre("ERROR_NOT_ENOUGH_MEMORY"));
}

} // namespace
