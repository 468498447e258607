// The verdicts of the level test, through the real framework, on the simulated radio.
#include <levels/SignalLevelTest.h>

#include "SignalTest.h"
#include <levels/LimitsId.h>

#include <map>

namespace test {
namespace {

using radiosim::AccessPoint;
using radiosim::Bss;
using radiosim::Level;
using tesk5::TestResult;
using testing::ElementsAre;
using testing::IsEmpty;

class SignalLevelVerdicts : public SignalTest {
protected:
    TestResult verdictAt(const Level& level, const Settings& settings) {
        startRadio({AccessPoint{.ssid = "Lab", .bss = {{radioAt(level)}}}});
        give(settings);
        return levels::SignalLevelTest(device());
    }

    std::vector<std::string> findings(bool complete = true) {
        std::vector<std::string> keys;
        for (const tesk5::Finding& finding : levels::checkLevelParameters(complete)) {
            EXPECT_FALSE(finding.good);
            keys.push_back(finding.key.utf8());
        }
        return keys;
    }
};

// Made when a test runs: the parameters are made by another file's static initialisation.
Settings limits() {
    return {{parameters::warningLevel, "-60"},
            {parameters::failingLevel, "-70"},
            {parameters::guardBand, "2"}};
}

TEST_F(SignalLevelVerdicts, PassAboveEveryLimit) {
    EXPECT_EQ(verdictAt(-50, limits()), TestResult::PASS());
    EXPECT_THAT(raisedKeys(), IsEmpty());
    ASSERT_EQ(measurements().size(), 1U);
    EXPECT_EQ(measurements()[0].value.text(), "-50.0");
    EXPECT_EQ(measurements()[0].unit.utf8(), "dBm");
    EXPECT_EQ(measurements()[0].limits.size(), 2U);
}

TEST_F(SignalLevelVerdicts, SayHowMuchWasDroppedAndWhy) {
    const Level none =
        Level::Shape{.start = -50, .steps = {{.at = 200ms, .by = 60}, {.at = 500ms, .by = -60}}};
    EXPECT_EQ(verdictAt(none, limits()), TestResult::PASS());
    std::map<std::string, std::string> figures;
    for (const tesk5::Figure& figure : measurements().at(0).figures) {
        figures[figure.name.utf8()] = figure.value.text();
    }
    EXPECT_EQ(figures["NoLevels"], "3");
    EXPECT_EQ(figures["NotHeardAgain"], "1") << "the first look";
}

TEST_F(SignalLevelVerdicts, FailBelowTheFailingLevelAndItsGuardBand) {
    EXPECT_EQ(verdictAt(-73, limits()), TestResult::FAIL());
    EXPECT_THAT(raisedKeys(), ElementsAre("LEVEL_BELOW_FAILING"));
}

TEST_F(SignalLevelVerdicts, WarnBetweenTheLimits) {
    EXPECT_EQ(verdictAt(-65, limits()), TestResult::WARN());
    EXPECT_THAT(raisedKeys(), ElementsAre("LEVEL_BELOW_WARNING"));
}

TEST_F(SignalLevelVerdicts, WarnNearEitherLimit) {
    EXPECT_EQ(verdictAt(-71, limits()), TestResult::WARN());
    EXPECT_EQ(verdictAt(-69, {}), TestResult::WARN());
    EXPECT_EQ(verdictAt(-59, {}), TestResult::WARN());
    EXPECT_THAT(raisedKeys(), ElementsAre("LEVEL_TOO_CLOSE", "LEVEL_TOO_CLOSE", "LEVEL_TOO_CLOSE"));
}

TEST_F(SignalLevelVerdicts, CountTheOffset) {
    EXPECT_EQ(verdictAt(-73, limits()), TestResult::FAIL());
    EXPECT_EQ(verdictAt(-73, {{parameters::offset, "20.5"}}), TestResult::PASS());
    EXPECT_EQ(measurements().back().value.text(), "-52.5");
}

TEST_F(SignalLevelVerdicts, WarnOfTooMuchSpread) {
    const Level noisy = Level::Shape{.start = -40, .deviation = 4};
    EXPECT_EQ(verdictAt(noisy, {{parameters::failingLevel, "-70"}}), TestResult::PASS());
    EXPECT_EQ(verdictAt(noisy, {{parameters::maxSpread, "2"}}), TestResult::WARN());
    EXPECT_THAT(raisedKeys(), ElementsAre("SPREAD_TOO_LARGE"));
}

TEST_F(SignalLevelVerdicts, WarnOfADrift) {
    const Level falling = Level::Shape{.start = -40, .driftPerSecond = -3, .deviation = 0.3};
    EXPECT_EQ(verdictAt(falling, {{parameters::failingLevel, "-70"}}), TestResult::PASS());
    EXPECT_EQ(verdictAt(falling, {{parameters::maxDrift, "2"}}), TestResult::WARN());
    EXPECT_THAT(raisedKeys(), ElementsAre("DRIFT_TOO_LARGE"));
}

TEST_F(SignalLevelVerdicts, FailWhateverElseIsToBeWarnedOf) {
    const Level noisy = Level::Shape{.start = -85, .deviation = 4};
    EXPECT_EQ(verdictAt(noisy, {{parameters::failingLevel, "-70"}, {parameters::maxSpread, "2"}}),
              TestResult::FAIL());
    EXPECT_THAT(raisedKeys(), ElementsAre("LEVEL_BELOW_FAILING", "SPREAD_TOO_LARGE"));
}

TEST_F(SignalLevelVerdicts, CannotRunWithTheReason) {
    give({{parameters::failingLevel, "-70"}});
    struct {
        std::vector<AccessPoint> accessPoints;
        const char* event;
    } const scenes[] = {
        {{}, "NO_LEVEL_NOT_SEEN"},
        {{{.ssid = "Lab", .bss = {{{.rssi = -60, .heardUntil = 0ms}}}}}, "NO_LEVEL_ONLY_OLD"},
        {{{.ssid = "Lab", .bss = {{radioAt(0)}}}}, "NO_LEVEL_NO_NUMBERS"},
        {{{.ssid = "Lab", .bss = {{{.rssi = -60, .heardEvery = 3s}}}}}, "NO_LEVEL_TOO_FEW"},
        {{{.ssid = "Lab", .bss = {{radioAt(-50), radioAt(-65, 1)}}}}, "NO_LEVEL_AMBIGUOUS"},
    };
    for (const auto& [accessPoints, event] : scenes) {
        startRadio(accessPoints);
        EXPECT_EQ(levels::SignalLevelTest(device()), TestResult::CANNOTRUN()) << event;
        ASSERT_FALSE(raised().empty());
        EXPECT_EQ(raisedKeys().back(), event);
    }
    EXPECT_THAT(measurements(), IsEmpty());
}

TEST_F(SignalLevelVerdicts, CannotRunWithTheRadioOffAndAskForAdvice) {
    give({{parameters::failingLevel, "-70"}});
    startRadio(radiosim::Scenario{.interfaces = {{.phys = {{.software = 2}}}}});
    EXPECT_EQ(levels::SignalLevelTest(device()), TestResult::CANNOTRUN());
    EXPECT_THAT(raisedKeys(), ElementsAre("NO_LEVEL_RADIO_OFF"));
    EXPECT_TRUE(adviceRequested());
}

TEST_F(SignalLevelVerdicts, ReadWithTheUnitsOfTheirNumbers) {
    verdictAt(-73, limits());
    const auto& event = raised().back();
    // Units do not part from their numbers at the end of a line.
    EXPECT_EQ(event.text, "The level of \"Lab\", -73.0\u00A0dBm, is below the failing level of "
                          "-70\u00A0dBm by more than the guard band of 2.0\u00A0dB.");
}

TEST_F(SignalLevelVerdicts, NameTheCandidatesOfAName) {
    give({{parameters::failingLevel, "-70"}});
    startRadio({AccessPoint{.ssid = "Lab", .bss = {{radioAt(-50), radioAt(-65, 1)}}}});
    levels::SignalLevelTest(device());
    EXPECT_THAT(raisedLines().back(), testing::HasSubstr("02:00:00:00:01:00, 2437 MHz, -50.0 dBm; "
                                                         "02:00:00:00:01:01, 2437 MHz, -65.0 dBm"));
}

TEST_F(SignalLevelVerdicts, FollowAnAddressAndABand) {
    give({{parameters::ssid, ""},
          {parameters::bssid, "02-00-00-00-01-01"},
          {parameters::failingLevel, "-70"}});
    startRadio({AccessPoint{.ssid = "Lab", .bss = {{radioAt(-50), radioAt(-85, 1)}}}});
    EXPECT_EQ(levels::SignalLevelTest(device()), TestResult::FAIL());
    give({{parameters::bssid, ""}, {parameters::ssid, "Lab"}, {parameters::band, "5"}});
    Bss five = radioAt(-50, 1);
    five.channel = 36;
    startRadio({AccessPoint{.ssid = "Lab", .bss = {{radioAt(-85), five}}}});
    EXPECT_EQ(levels::SignalLevelTest(device()), TestResult::PASS());
}

TEST_F(SignalLevelVerdicts, FindANameByItsBytesAndByItsText) {
    give({{parameters::failingLevel, "-70"}});
    const auto shows = [this](const char* name) {
        startRadio({AccessPoint{.ssid = name, .bss = {{radioAt(-50)}}}});
        return levels::SignalLevelTest(device());
    };
    give({{parameters::ssid, "B\xC3\xBCro"}});
    EXPECT_EQ(shows("B\xC3\xBCro"), TestResult::PASS());
    give({{parameters::ssid, "hex:42C3BC726F"}});
    EXPECT_EQ(shows("B\xC3\xBCro"), TestResult::PASS());
    give({{parameters::ssid, "hex:42FC726F"}});
    EXPECT_EQ(shows("B\xFCro"), TestResult::PASS());
    EXPECT_EQ(shows("B\xC3\xBCro"), TestResult::CANNOTRUN());
}

TEST_F(SignalLevelVerdicts, RefuseParametersThatDoNotGoTogether) {
    give({{parameters::failingLevel, "-70"}});
    EXPECT_THAT(findings(), IsEmpty());
    give({{parameters::bssid, "02:00"}});
    EXPECT_THAT(findings(), ElementsAre("CHECK_NO_BSSID"));
    give({{parameters::bssid, ""}, {parameters::ssid, ""}});
    EXPECT_THAT(findings(), ElementsAre("CHECK_NO_TARGET"));
    EXPECT_THAT(findings(false), IsEmpty());
    give({{parameters::ssid, "Lab"}, {parameters::warningLevel, "-75"}});
    EXPECT_THAT(findings(), ElementsAre("CHECK_LEVELS_SWAPPED"));
    give({{parameters::warningLevel, "-66"}, {parameters::guardBand, "2"}});
    EXPECT_THAT(findings(), IsEmpty());
    give({{parameters::guardBand, "2.5"}});
    EXPECT_THAT(findings(), ElementsAre("CHECK_GUARD_BAND_TOO_WIDE"));
    // Guard bands that touch, in numbers whose difference is a little less than twice one of them.
    give({{parameters::warningLevel, "-69.4"}, {parameters::guardBand, "0.3"}});
    EXPECT_THAT(findings(), IsEmpty());
    give({{parameters::warningLevel, ""}, {parameters::failingLevel, ""}});
    EXPECT_THAT(findings(), ElementsAre("CHECK_NO_LIMIT"));
}

TEST_F(SignalLevelVerdicts, RefuseLimitsThatAreNotThoseOfTheirIdentifier) {
    const std::string id =
        levels::limitsId("Lab", 1, {.warning = -60, .failing = -70, .guardBand = 2});
    give({{parameters::warningLevel, "-60.0"},
          {parameters::failingLevel, "-70"},
          {parameters::guardBand, "2"},
          {parameters::limits, id.c_str()}});
    EXPECT_THAT(findings(), IsEmpty());
    give({{parameters::guardBand, "1"}});
    EXPECT_THAT(findings(), ElementsAre("CHECK_OTHER_LIMITS"));
    give({{parameters::limits, ""}});
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(SignalLevelVerdicts, RefuseLevelsInPercent) {
    EXPECT_STREQ(parameters::failingLevel->refusal("70"), "LEVEL_WITHOUT_SIGN");
    EXPECT_TRUE(parameters::failingLevel->accepts("-70"));
    EXPECT_FALSE(parameters::failingLevel->accepts("-111"));
    EXPECT_FALSE(parameters::failingLevel->accepts("-9"));
}

} // namespace
} // namespace test
