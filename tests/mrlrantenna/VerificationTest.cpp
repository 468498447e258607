// The verification test from end to end: parameters in; out come the result and, in the order in
// which others see them, log lines, events, phases, calls of the radio and pauses.
#include "VerificationRun.h"

#include <MRLrAntenna.h>

#include <algorithm>

namespace {

using radiosim::AccessPoint;
using tesk5::TestResult;
using testing::ElementsAre;
using testing::IsEmpty;

using Order = std::vector<std::string>;

const std::string SOURCE = "modules/src/windows/diag/mrlrantenna/MRLrAntenna.cpp:";
const std::string TEST = "WirelessSignalStrengthVerificationTest::";
const std::string SEARCH = "getAccessPointSignalStrength";

class Verification : public test::VerificationRun {
protected:
    // What a run does. Lines of the module stand as they are, calls by their functions; the rest as
    // the journal has it.
    Order orderOf(TestResult result, const char* ssid, const char* warn = "40",
                  const char* fail = "20") {
        const test::Journal journal;
        EXPECT_EQ(verify(ssid, warn, fail), result);
        Order order;
        for (const std::string& entry : journal.entries()) {
            const std::string line = "log 1 mrlrantenna: ";
            if (entry.starts_with(line)) {
                order.push_back(entry.substr(line.size()));
            } else if (entry.starts_with("call ")) {
                order.push_back(entry.substr(5, entry.find(' ', 5) - 5));
            } else if (!entry.starts_with("log ")) {
                order.push_back(entry);
            }
        }
        return order;
    }
    // What follows the last entry that is `entry`.
    static Order behind(const std::string& entry, const Order& order) {
        return {std::find(order.rbegin(), order.rend(), entry).base(), order.end()};
    }

    // "DetectedSignalStrength 70% of 0..100 WarningSignalStrength 40 warning"
    std::string theMeasurement() const {
        if (measurements().size() != 1) {
            return std::to_string(measurements().size()) + " measurements";
        }
        const tesk5::Measurement& one = measurements().front();
        std::string all = one.name.utf8() + " " + one.value.text() + " " + one.unit.utf8() +
                          " of " + one.lowest.text() + ".." + one.highest.text();
        for (const tesk5::Limit& limit : one.limits) {
            all += " " + limit.name.utf8() + " " + limit.value.text() + " " +
                   severityName(limit.severity);
        }
        return all;
    }

    // "VISIBLE_NETWORKS of 0..100: Office 61% Lab 70% measured"
    std::string theSurvey() const {
        if (surveys().size() != 1) {
            return std::to_string(surveys().size()) + " surveys";
        }
        const tesk5::Survey& one = surveys().front();
        std::string all =
            one.name.utf8() + " of " + one.lowest.text() + ".." + one.highest.text() + ":";
        for (const tesk5::Survey::Entry& entry : one.entries) {
            all += " " + entry.name.utf8() + " " + entry.value.text() + one.unit.utf8() +
                   (entry.measured ? " measured" : "");
        }
        return all;
    }
};

// --- a whole run ---

TEST_F(Verification, PassesInThisOrder) {
    startRadio({{.ssid = "Office", .signal = 61U, .bss = std::vector<radiosim::Bss>()},
                {.ssid = "Lab",
                 .signal = 50U,
                 .bss = std::vector<radiosim::Bss>{{.linkQuality = radiosim::Signal(60U)}}}});
    EXPECT_THAT(
        orderOf(TestResult::PASS(), "  lab\t"),
        ElementsAre("250 " + TEST + "SSID to test: lab",
                    // the device and its radio
                    "WlanOpenHandle", "UuidFromStringW", "WlanRegisterNotification",
                    "WlanQueryInterface",
                    // the forced scan
                    "progress SCANNING 45 s", "WlanOpenHandle", "WlanEnumInterfaces", "WlanScan",
                    "pause 7000 ms", "WlanGetNetworkBssList",
                    "154 " + SEARCH + "::forcedScanSignalStrength: 60",
                    // the search
                    "progress SEARCHING 31 s", "WlanGetAvailableNetworkList", "WlanFreeMemory",
                    "WlanQueryInterface", "179 " + SEARCH + "::SSID Being Compared: Office",
                    "179 " + SEARCH + "::SSID Being Compared: Lab", "survey VISIBLE_NETWORKS",
                    "181 " + SEARCH + "::Found the matching SSID: Lab",
                    "183 " + SEARCH + "::getSignalStrength(): 50",
                    "187 " + SEARCH + "::forcedScanSignalStrength returned better result: 60",
                    "WlanCloseHandle",
                    // the verdict
                    "265 " + TEST + SEARCH + "() returned signal strength: 60 for the SSID: lab",
                    "268 " + TEST + "warning signal strength parameter: 40",
                    "271 " + TEST + "failing signal strength parameter: 20",
                    "measurement DetectedSignalStrength"));
    EXPECT_EQ(theSurvey(), "VISIBLE_NETWORKS of 0..100: Office 61% Lab 50% measured");
}

TEST_F(Verification, FailsInThisOrderWhenNoNetworkHasTheName) {
    startRadio({AccessPoint{.ssid = "Other", .signal = 50U}});
    // Thresholds that make no sense are never read.
    const Order order = orderOf(TestResult::FAIL(), "Lab", "0", "0");
    EXPECT_THAT(Order(order.begin() + 5, order.begin() + 19),
                ElementsAre("progress SCANNING 45 s", "WlanOpenHandle", "WlanEnumInterfaces",
                            "WlanScan", "pause 7000 ms", "WlanGetNetworkBssList",
                            "progress SCANNING_AGAIN 38 s", "WlanOpenHandle", "WlanEnumInterfaces",
                            "WlanScan", "pause 7000 ms", "WlanGetNetworkBssList",
                            "154 " + SEARCH + "::forcedScanSignalStrength: 0",
                            "progress SEARCHING 31 s"));
    EXPECT_EQ(std::count(order.begin(), order.end(), "pause 100 ms"), 300);
    EXPECT_THAT(
        behind("pause 100 ms", order),
        ElementsAre("WlanGetAvailableNetworkList", "WlanFreeMemory", "WlanQueryInterface",
                    "179 " + SEARCH + "::SSID Being Compared: Other",
                    "194 " + SEARCH +
                        "() was not able to find a matching SSID: Lab after trying for 30 seconds",
                    "survey VISIBLE_NETWORKS", "WlanCloseHandle",
                    "event error ACCESS_POINT_NOT_FOUND",
                    "262 " + TEST + "SSID: Lab was not found"));
    EXPECT_EQ(theSurvey(), "VISIBLE_NETWORKS of 0..100: Other 50%");
    EXPECT_THAT(raisedLines(),
                ElementsAre("error ACCESS_POINT_NOT_FOUND " + SOURCE + "261 SSIDName=\"Lab\""));
}

TEST_F(Verification, DoesNotLookAtTheRadioInTheEndWhenTheListStaysEmpty) {
    startRadio(std::vector<AccessPoint>{});
    const Order order = orderOf(TestResult::FAIL(), "Lab");
    EXPECT_EQ(std::count(order.begin(), order.end(), "pause 100 ms"), 300);
    EXPECT_THAT(behind("pause 100 ms", order),
                ElementsAre("WlanGetAvailableNetworkList", "WlanFreeMemory",
                            "163 " + SEARCH + "::Did not find any access point",
                            "event error NO_ACCESS_POINT_FOUND", "WlanCloseHandle",
                            "event error ACCESS_POINT_NOT_FOUND",
                            "262 " + TEST + "SSID: Lab was not found"));
    EXPECT_EQ(raisedLines().front(), "error NO_ACCESS_POINT_FOUND " + SOURCE + "164");
}

TEST_F(Verification, CannotRunWithTheRadioOffAndRaisesNothing) {
    startRadio(radiosim::Scenario{.interfaces = {{.phys = {{.software = 2}, {.software = 1}},
                                                  .accessPoints = {{.ssid = "Lab"}}}}});
    EXPECT_THAT(behind("progress SEARCHING 31 s", orderOf(TestResult::CANNOTRUN(), "Lab")),
                ElementsAre("WlanGetAvailableNetworkList", "WlanFreeMemory", "WlanQueryInterface",
                            "WlanCloseHandle", "256 The wireless radio is in off state"));
}

TEST_F(Verification, AnEmptyNameIsABadParameterAndNothingIsSearched) {
    EXPECT_THAT(
        orderOf(TestResult::BADPARAMS(), ""),
        ElementsAre("245 " + TEST + "SSID parameter was not set", "event warning SSID_NOT_SET"));
    EXPECT_THAT(raisedLines(), ElementsAre("warning SSID_NOT_SET " + SOURCE + "246"));
}

TEST_F(Verification, ANameOfBlanksIsSearchedAsAnEmptyOneAndNotFound) {
    startRadio({{.ssid = "Lab"}, {.ssid = " "}});
    EXPECT_EQ(orderOf(TestResult::FAIL(), "  ").front(), "250 " + TEST + "SSID to test: ");
    EXPECT_THAT(raisedLines(),
                ElementsAre("error ACCESS_POINT_NOT_FOUND " + SOURCE + "261 SSIDName=\"\""));
}

// --- the verdict ---

struct Rating {
    unsigned int warn;
    unsigned int fail;
    unsigned int strength;
    TestResult result;
};

void PrintTo(const Rating& rating, std::ostream* out) {
    *out << "warn " << rating.warn << ", fail " << rating.fail << ", strength " << rating.strength;
}

class VerificationRating : public Verification, public testing::WithParamInterface<Rating> {};

TEST_P(VerificationRating, FollowsTheThresholds) {
    const Rating& row = GetParam();
    const std::string warn = std::to_string(row.warn);
    const std::string fail = std::to_string(row.fail);
    const std::string strength = std::to_string(row.strength);
    startRadio({{.ssid = "Lab", .signal = row.strength}});
    const Order order = orderOf(row.result, "Lab", warn.c_str(), fail.c_str());

    Order expected = {"265 " + TEST + SEARCH + "() returned signal strength: " + strength +
                          " for the SSID: Lab",
                      "268 " + TEST + "warning signal strength parameter: " + warn,
                      "271 " + TEST + "failing signal strength parameter: " + fail,
                      "measurement DetectedSignalStrength"};
    Order events;
    const auto expectWeak = [&](const std::string& severity, int place, const std::string& level,
                                const std::string& threshold) {
        const std::string weak = severity + " FAILING_SIGNAL_STRENGTH_DETECTED";
        expected.push_back("event " + weak);
        expected.push_back(std::to_string(place + 1) + " " + TEST + "SSID: Lab " + level +
                           " signal strength: " + threshold +
                           " detected signal strength: " + strength);
        // The warning threshold travels as the failing one.
        events.push_back(weak + " " + SOURCE + std::to_string(place) +
                         " SSIDName=\"Lab\" FailingSignalStrength=" + threshold +
                         " DetectedSignalStrength=" + strength);
    };
    if (row.result == TestResult::FAIL()) {
        expectWeak("error", 282, "failing", fail);
    } else if (row.result == TestResult::WARN()) {
        expectWeak("warning", 291, "warning", warn);
    }
    EXPECT_EQ(behind("WlanCloseHandle", order), expected);
    EXPECT_EQ(raisedLines(), events);
    EXPECT_EQ(theMeasurement(),
              "DetectedSignalStrength " + strength + " % of 0..100" +
                  (row.warn == 0 ? "" : " WarningSignalStrength " + warn + " warning") +
                  (row.fail == 0 ? "" : " FailingSignalStrength " + fail + " error"));
}

INSTANTIATE_TEST_SUITE_P(
    Thresholds, VerificationRating,
    testing::Values(Rating{40, 20, 19, TestResult::FAIL()}, Rating{40, 20, 20, TestResult::FAIL()},
                    Rating{40, 20, 21, TestResult::WARN()}, Rating{40, 20, 40, TestResult::WARN()},
                    Rating{40, 20, 41, TestResult::PASS()},
                    // A threshold of 0 switches its level off.
                    Rating{30, 0, 0, TestResult::WARN()}, Rating{30, 0, 31, TestResult::PASS()},
                    Rating{0, 99, 99, TestResult::FAIL()}, Rating{0, 99, 100, TestResult::PASS()},
                    Rating{99, 0, 99, TestResult::WARN()}, Rating{99, 0, 100, TestResult::PASS()},
                    Rating{2, 1, 1, TestResult::FAIL()}, Rating{99, 98, 98, TestResult::FAIL()},
                    Rating{1, 0, 1, TestResult::WARN()},
                    // Compared unsigned: a negative quality is a large one.
                    Rating{40, 20, 0xFFFFFFFFU, TestResult::PASS()}));

struct BadThresholds {
    const char* warn;
    const char* fail;
    std::string line; // behind "signalStrengthParametersValid::"
    const char* event;
    std::string variables; // behind the event's source file
};

void PrintTo(const BadThresholds& bad, std::ostream* out) {
    *out << "warn " << bad.warn << ", fail " << bad.fail;
}

class VerificationBadThresholds : public Verification,
                                  public testing::WithParamInterface<BadThresholds> {};

TEST_P(VerificationBadThresholds, AreReportedAfterTheSearchAndDecideNothingElse) {
    const BadThresholds& bad = GetParam();
    startRadio({{.ssid = "Lab", .signal = 1U}});
    const Order order =
        behind("WlanCloseHandle", orderOf(TestResult::BADPARAMS(), "Lab", bad.warn, bad.fail));
    const auto shown = [](const char* threshold) {
        return std::string(*threshold == '\0' ? "0" : threshold);
    };
    std::string line = bad.line;
    line.insert(4, "signalStrengthParametersValid::");
    EXPECT_THAT(order,
                ElementsAre(testing::StartsWith("265 "),
                            "268 " + TEST + "warning signal strength parameter: " + shown(bad.warn),
                            "271 " + TEST + "failing signal strength parameter: " + shown(bad.fail),
                            line, std::string("event warning ") + bad.event,
                            "275 " + TEST + "invalid params caused the test to return"));
    EXPECT_THAT(raisedLines(),
                ElementsAre(std::string("warning ") + bad.event + " " + SOURCE + bad.variables));
}

TEST_F(Verification, NamesTheParameterOutOfRangeAsItIsSpelt) {
    startRadio({{.ssid = "Lab", .signal = 1U}});
    orderOf(TestResult::BADPARAMS(), "Lab", "0", "100");
    EXPECT_EQ(raised().back().text, "The parameter FailingSignalStrength is out of range. It must "
                                    "lie between 0 and 99 percent.");
}

const BadThresholds badThresholds[] = {
    {"0", "0",
     "207 Both WarningSignalStrength and FailingSignalStrength parameters have been set to ZERO "
     "values",
     "WARN_AND_FAIL_SIGNAL_STRENGTH_SET_ZERO", "208"},
    {"", "",
     "207 Both WarningSignalStrength and FailingSignalStrength parameters have been set to ZERO "
     "values",
     "WARN_AND_FAIL_SIGNAL_STRENGTH_SET_ZERO", "208"},
    {"100", "20",
     "213 WarningSignalStrength has been populated with value: 100 which is out of range",
     "PARAM_OUT_OF_RANGE", "215 ParamName=\"WarningSignalStrength\""},
    // The warning threshold is checked first.
    {"4294967295", "4294967295",
     "213 WarningSignalStrength has been populated with value: 4294967295 which is out of range",
     "PARAM_OUT_OF_RANGE", "215 ParamName=\"WarningSignalStrength\""},
    {"40", "100",
     "220 FailingSignalStrengh has been populated with value: 100 which is out of range",
     "PARAM_OUT_OF_RANGE", "222 ParamName=\"FailingSignalStrengh\""},
    {"0", "100",
     "220 FailingSignalStrengh has been populated with value: 100 which is out of range",
     "PARAM_OUT_OF_RANGE", "222 ParamName=\"FailingSignalStrengh\""},
    {"1", "1",
     "228 FailingSignalStrengh signal strength: 1 is higher than the WarningSignalStrength: 1",
     "FAIL_SIGNAL_STRENGTH_HIGHER_THAN_WARN",
     "231 FailingSignalStrength=1 WarningSignalStrength=1"},
    {"50", "50",
     "228 FailingSignalStrengh signal strength: 50 is higher than the WarningSignalStrength: 50",
     "FAIL_SIGNAL_STRENGTH_HIGHER_THAN_WARN",
     "231 FailingSignalStrength=50 WarningSignalStrength=50"},
    {"20", "40",
     "228 FailingSignalStrengh signal strength: 40 is higher than the WarningSignalStrength: 20",
     "FAIL_SIGNAL_STRENGTH_HIGHER_THAN_WARN",
     "231 FailingSignalStrength=40 WarningSignalStrength=20"},
};
INSTANTIATE_TEST_SUITE_P(Thresholds, VerificationBadThresholds, testing::ValuesIn(badThresholds));

// --- the log ---

TEST_F(Verification, TracesTheCheckOfThresholdsAroundItsRefusal) {
    const test::CapturedLog traced(0);
    EXPECT_FALSE(signalStrengthParametersValid(0, 0));
    EXPECT_THAT(traced.texts(),
                ElementsAre("> signalStrengthParametersValid (" + SOURCE + "204)",
                            testing::StartsWith("207 "), "< signalStrengthParametersValid"));
}

TEST_F(Verification, TracesItsOperationsWithTheirPlaces) {
    const test::CapturedLog traced(0);
    startRadio({{.ssid = "Lab", .signal = 70U}});
    verify();
    Order scopes;
    for (const test::CapturedLog::Line& line : traced.lines()) {
        if (line.priority == 0 && line.logger == test::MODULE_LOGGER) {
            scopes.push_back(line.text);
        }
    }
    EXPECT_THAT(scopes, ElementsAre("> WirelessSignalStrengthVerificationTest (" + SOURCE + "241)",
                                    "> getAccessPointSignalStrength (" + SOURCE + "144)",
                                    "< getAccessPointSignalStrength",
                                    "> signalStrengthParametersValid (" + SOURCE + "204)",
                                    "< signalStrengthParametersValid",
                                    "< WirelessSignalStrengthVerificationTest"));
}

TEST_F(Verification, TracesTheLifeOfItsDeviceInsideTheSearch) {
    const test::CapturedLog traced(0);
    startRadio({{.ssid = "Lab", .signal = 70U}});
    verify();
    const Order texts = traced.texts();
    const auto search =
        std::find(texts.begin(), texts.end(), "> getAccessPointSignalStrength (" + SOURCE + "144)");
    const auto end = std::find(texts.begin(), texts.end(), "< getAccessPointSignalStrength");
    ASSERT_NE(search, texts.end());
    ASSERT_NE(end, texts.end());
    EXPECT_THAT(*std::prev(search), testing::StartsWith("250 "));
    EXPECT_THAT(*std::next(search), testing::StartsWith("> populateRadioState()"));
    EXPECT_EQ(*std::prev(end), "< closeHandle()");
}

TEST_F(Verification, KeepsSilentWhenTheLoggerIsSetHigher) {
    mrl::LogFactory::createLogger(test::MODULE_LOGGER).setPriority(2);
    startRadio({{.ssid = "Lab"}});
    verify();
    EXPECT_THAT(logged(test::MODULE_LOGGER), IsEmpty());
    EXPECT_EQ(moduleLogger(), nullptr);
    mrl::LogFactory::createLogger(test::MODULE_LOGGER).clearPriority();
    EXPECT_NE(moduleLogger(), nullptr);
}

} // namespace
