// The search for the access point: a forced scan, then polling for at most half a minute.
#include "ModuleTest.h"

#include <MRLrAntenna.h>

namespace {

using radiosim::AccessPoint;
using radiosim::Signal;
using testing::Contains;
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
    // In the list, from a moment on, but not among what a scan hears.
    static AccessPoint listedOnly(const char* ssid, unsigned int listed, long long fromMs = 0) {
        return {.ssid = ssid,
                .signal = listed,
                .from = std::chrono::milliseconds(fromMs),
                .bss = std::vector<radiosim::Bss>{}};
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

TEST_F(AccessPointSearch, TakesTheGivenNameAsItIs) {
    startRadio({{.ssid = "Lab"}});
    EXPECT_FALSE(search(" Lab").found);
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
}

TEST_F(AccessPointSearch, ASecondScanThatHearsTheNameCounts) {
    startRadio(radiosim::Scenario{.interfaces = {{.accessPoints = {heardAt("Lab", 30, 80)}}},
                                  .faults = {{.function = "WlanScan", .nth = 1, .code = 170U}}});
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

TEST_F(AccessPointSearch, KeepsPollingUntilTheNameShows) {
    startRadio({listedOnly("Lab", 70, 2 * SCAN_MS + 250), {.ssid = "Other"}});
    EXPECT_EQ(search("Lab").strength, 70U);
    EXPECT_THAT(clock().sleeps(), ElementsAre(SCAN_MS, SCAN_MS, POLL_MS, POLL_MS, POLL_MS));
}

TEST_F(AccessPointSearch, ANameThatShowsInTheLastPollIsFound) {
    startRadio({listedOnly("Lab", 70, 2 * SCAN_MS + 30000), {.ssid = "Other"}});
    EXPECT_TRUE(search("Lab").found);
}

TEST_F(AccessPointSearch, AListThatFillsAfterBeingEmptyIsNoEmptyList) {
    startRadio({listedOnly("Lab", 70, 2 * SCAN_MS + 29950)});
    EXPECT_TRUE(search("Lab").found);
    EXPECT_THAT(raised(), IsEmpty());
}

TEST_F(AccessPointSearch, ARadioThatGoesOffOnTheWayEndsItThen) {
    startRadio({{.ssid = "Other"}});
    int polls = 0;
    radio().onCall([&](const radiosim::Call& call) {
        if (call.function == "WlanGetAvailableNetworkList" && ++polls == 3) {
            radio().setRadio(0, 0, std::nullopt, 2);
        }
    });
    const Outcome outcome = search("Lab");
    EXPECT_FALSE(outcome.found);
    EXPECT_FALSE(outcome.radioOn);
    EXPECT_EQ(polls, 3);
}

TEST_F(AccessPointSearch, WorksOnlyOnListsThatTheServiceDelivers) {
    startRadio(radiosim::Scenario{
        .interfaces = {{.accessPoints = {listedOnly("Lab", 30)}}},
        .faults = {{.function = "WlanGetAvailableNetworkList", .nth = 1, .code = 8U},
                   {.function = "WlanGetAvailableNetworkList", .nth = 2, .code = 6U}}});
    EXPECT_TRUE(search("Lab").found);
    EXPECT_THAT(clock().sleeps(), ElementsAre(SCAN_MS, SCAN_MS, POLL_MS, POLL_MS));
    EXPECT_THAT(raisedKeys(), ElementsAre("ERROR_NOT_ENOUGH_MEMORY"));
}

} // namespace
