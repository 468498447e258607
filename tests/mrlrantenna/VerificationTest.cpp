// The verification test from end to end: parameters in; result, events, log lines and platform
// calls out.
#include "VerificationWithParameters.h"

namespace {

using radiosim::AccessPoint;
using tesk5::TestResult;
using test::text;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char* SOURCE = "modules/src/windows/diag/mrlrantenna/MRLrAntenna.cpp";
constexpr const char* PREFIX = "WirelessSignalStrengthVerificationTest::";

class Verification : public test::VerificationWithParameters {
protected:
    // The one event raised, as a line.
    std::string theEvent() const {
        return raised().size() == 1 ? text(raised().front())
                                    : std::to_string(raised().size()) + " events";
    }

    static std::string at(int line) { return std::string(SOURCE) + ":" + std::to_string(line); }
};

TEST_F(Verification, AnEmptyNameIsABadParameterAndNothingIsSearched) {
    radio().clearCalls();
    EXPECT_EQ(verify("", "40", "20"), TestResult::BADPARAMS());
    EXPECT_EQ(theEvent(), "warning SSID_NOT_SET " + at(246));
    EXPECT_THAT(
        logged(test::MODULE_LOGGER),
        ElementsAre("245 WirelessSignalStrengthVerificationTest::SSID parameter was not set"));
    EXPECT_THAT(radio().calls(), IsEmpty());
}

TEST_F(Verification, ANameOfBlanksIsSearchedAsAnEmptyOneAndNotFound) {
    startRadio({{.ssid = "Lab"}, {.ssid = " "}});
    EXPECT_EQ(verify("  ", "40", "20"), TestResult::FAIL());
    EXPECT_EQ(theEvent(), "error ACCESS_POINT_NOT_FOUND " + at(261) + " SSIDName=\"\"");
    EXPECT_THAT(logged(test::MODULE_LOGGER),
                Contains("250 WirelessSignalStrengthVerificationTest::SSID to test: "));
}

TEST_F(Verification, TrimsTheNameBeforeItSearches) {
    startRadio({{.ssid = "Lab", .signal = 70U}});
    EXPECT_EQ(verify("  Lab\t", "40", "20"), TestResult::PASS());
}

TEST_F(Verification, ARadioThatIsOffCannotBeTestedAndTheTestItselfRaisesNothing) {
    radiosim::Scenario scenario;
    scenario.interfaces.front().accessPoints = {{.ssid = "Lab"}};
    scenario.interfaces.front().phys = {{.software = 2}, {.software = 1}};
    startRadio(scenario);
    EXPECT_EQ(verify("Lab", "40", "20"), TestResult::CANNOTRUN());
    EXPECT_THAT(raised(), IsEmpty());
    EXPECT_EQ(logged(test::MODULE_LOGGER).back(), "256 The wireless radio is in off state");
}

TEST_F(Verification, AMissingAccessPointFailsEvenWithThresholdsThatMakeNoSense) {
    startRadio({{.ssid = "Other"}});
    EXPECT_EQ(verify("Lab", "0", "0"), TestResult::FAIL());
    EXPECT_EQ(theEvent(), "error ACCESS_POINT_NOT_FOUND " + at(261) + " SSIDName=\"Lab\"");
    EXPECT_EQ(logged(test::MODULE_LOGGER).back(),
              "262 WirelessSignalStrengthVerificationTest::SSID: Lab was not found");
    EXPECT_THAT(logged(test::MODULE_LOGGER), Not(Contains(HasSubstr("threshold"))));
    EXPECT_THAT(logged(test::MODULE_LOGGER), Not(Contains(HasSubstr("268 "))));
}

TEST_F(Verification, AnEmptyListRaisesItsOwnEventFirst) {
    startRadio(std::vector<AccessPoint>{});
    EXPECT_EQ(verify("Lab", "40", "20"), TestResult::FAIL());
    EXPECT_THAT(raisedKeys(), ElementsAre("NO_ACCESS_POINT_FOUND", "ACCESS_POINT_NOT_FOUND"));
}

struct Rating {
    const char* warn;
    const char* fail;
    unsigned int strength;
    TestResult result;
    std::string event; // severity, key, line and variables; empty for none
};

void PrintTo(const Rating& rating, std::ostream* out) {
    *out << "warn " << rating.warn << ", fail " << rating.fail << ", strength " << rating.strength;
}

const std::string DETECTED = "FAILING_SIGNAL_STRENGTH_DETECTED " + std::string(SOURCE);

class VerificationRating : public Verification, public testing::WithParamInterface<Rating> {};

TEST_P(VerificationRating, FollowsTheThresholds) {
    const Rating& rating = GetParam();
    startRadio({{.ssid = "Lab", .signal = rating.strength}});
    EXPECT_EQ(verify("Lab", rating.warn, rating.fail), rating.result);
    if (rating.event.empty()) {
        EXPECT_THAT(raised(), IsEmpty());
    } else {
        EXPECT_EQ(theEvent(), rating.event);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Thresholds, VerificationRating,
    testing::Values(
        Rating{"40", "20", 19, TestResult::FAIL(),
               "error " + DETECTED +
                   ":282 SSIDName=\"Lab\" FailingSignalStrength=20 DetectedSignalStrength=19"},
        Rating{"40", "20", 20, TestResult::FAIL(),
               "error " + DETECTED +
                   ":282 SSIDName=\"Lab\" FailingSignalStrength=20 DetectedSignalStrength=20"},
        // The warning threshold travels as the failing one.
        Rating{"40", "20", 21, TestResult::WARN(),
               "warning " + DETECTED +
                   ":291 SSIDName=\"Lab\" FailingSignalStrength=40 DetectedSignalStrength=21"},
        Rating{"40", "20", 40, TestResult::WARN(),
               "warning " + DETECTED +
                   ":291 SSIDName=\"Lab\" FailingSignalStrength=40 DetectedSignalStrength=40"},
        Rating{"40", "20", 41, TestResult::PASS(), ""},
        // A threshold of 0 switches its level off.
        Rating{"30", "0", 0, TestResult::WARN(),
               "warning " + DETECTED +
                   ":291 SSIDName=\"Lab\" FailingSignalStrength=30 DetectedSignalStrength=0"},
        Rating{"30", "", 31, TestResult::PASS(), ""},
        Rating{"0", "99", 99, TestResult::FAIL(),
               "error " + DETECTED +
                   ":282 SSIDName=\"Lab\" FailingSignalStrength=99 DetectedSignalStrength=99"},
        Rating{"0", "99", 100, TestResult::PASS(), ""},
        Rating{"99", "0", 99, TestResult::WARN(),
               "warning " + DETECTED +
                   ":291 SSIDName=\"Lab\" FailingSignalStrength=99 DetectedSignalStrength=99"},
        Rating{"99", "0", 100, TestResult::PASS(), ""},
        Rating{"2", "1", 1, TestResult::FAIL(),
               "error " + DETECTED +
                   ":282 SSIDName=\"Lab\" FailingSignalStrength=1 DetectedSignalStrength=1"},
        Rating{"99", "98", 98, TestResult::FAIL(),
               "error " + DETECTED +
                   ":282 SSIDName=\"Lab\" FailingSignalStrength=98 DetectedSignalStrength=98"},
        // Compared unsigned: a negative quality is a large one.
        Rating{"40", "20", 0xFFFFFFFFU, TestResult::PASS(), ""}));

struct BadThresholds {
    const char* warn;
    const char* fail;
    std::string event;
    std::string line;
};

void PrintTo(const BadThresholds& bad, std::ostream* out) {
    *out << "warn " << bad.warn << ", fail " << bad.fail;
}

class VerificationBadThresholds : public Verification,
                                  public testing::WithParamInterface<BadThresholds> {};

TEST_P(VerificationBadThresholds, AreReportedAfterTheSearchAndDecideNothingElse) {
    const BadThresholds& bad = GetParam();
    startRadio({{.ssid = "Lab", .signal = 1U}});
    EXPECT_EQ(verify("Lab", bad.warn, bad.fail), TestResult::BADPARAMS());
    EXPECT_EQ(theEvent(), bad.event);
    const std::vector<std::string> lines = logged(test::MODULE_LOGGER);
    ASSERT_GE(lines.size(), 2U);
    EXPECT_EQ(lines[lines.size() - 2], bad.line);
    EXPECT_EQ(
        lines.back(),
        "275 WirelessSignalStrengthVerificationTest::invalid params caused the test to return");
}

std::string warning(const char* key, int line, const std::string& variables) {
    return std::string("warning ") + key + " " + SOURCE + ":" + std::to_string(line) + variables;
}

const std::string BOTH_ZERO = "207 signalStrengthParametersValid::Both WarningSignalStrength and "
                              "FailingSignalStrength parameters have been set to ZERO values";

INSTANTIATE_TEST_SUITE_P(
    Thresholds, VerificationBadThresholds,
    testing::Values(
        BadThresholds{"0", "0", warning("WARN_AND_FAIL_SIGNAL_STRENGTH_SET_ZERO", 208, ""),
                      BOTH_ZERO},
        BadThresholds{"", "", warning("WARN_AND_FAIL_SIGNAL_STRENGTH_SET_ZERO", 208, ""),
                      BOTH_ZERO},
        BadThresholds{"100", "20",
                      warning("PARAM_OUT_OF_RANGE", 215, " ParamName=\"WarningSignalStrength\""),
                      "213 signalStrengthParametersValid::WarningSignalStrength has been populated "
                      "with value: 100 which is out of range"},
        // The warning threshold is checked first.
        BadThresholds{"4294967295", "4294967295",
                      warning("PARAM_OUT_OF_RANGE", 215, " ParamName=\"WarningSignalStrength\""),
                      "213 signalStrengthParametersValid::WarningSignalStrength has been populated "
                      "with value: 4294967295 which is out of range"},
        BadThresholds{"40", "100",
                      warning("PARAM_OUT_OF_RANGE", 222, " ParamName=\"FailingSignalStrengh\""),
                      "220 signalStrengthParametersValid::FailingSignalStrengh has been populated "
                      "with value: 100 which is out of range"},
        BadThresholds{"0", "100",
                      warning("PARAM_OUT_OF_RANGE", 222, " ParamName=\"FailingSignalStrengh\""),
                      "220 signalStrengthParametersValid::FailingSignalStrengh has been populated "
                      "with value: 100 which is out of range"},
        BadThresholds{"50", "50",
                      warning("FAIL_SIGNAL_STRENGTH_HIGHER_THAN_WARN", 231,
                              " FailingSignalStrength=50 WarningSignalStrength=50"),
                      "228 signalStrengthParametersValid::FailingSignalStrengh signal strength: 50 "
                      "is higher than the WarningSignalStrength: 50"},
        BadThresholds{"20", "40",
                      warning("FAIL_SIGNAL_STRENGTH_HIGHER_THAN_WARN", 231,
                              " FailingSignalStrength=40 WarningSignalStrength=20"),
                      "228 signalStrengthParametersValid::FailingSignalStrengh signal strength: 40 "
                      "is higher than the WarningSignalStrength: 20"}));

TEST_F(Verification, LogsAPassLineByLine) {
    startRadio({{.ssid = "Lab", .signal = 70U}});
    EXPECT_EQ(verify("lab", "40", "20"), TestResult::PASS());
    EXPECT_THAT(raised(), IsEmpty());
    EXPECT_THAT(
        logged(test::MODULE_LOGGER),
        ElementsAre(
            std::string("250 ") + PREFIX + "SSID to test: lab",
            "154 getAccessPointSignalStrength::forcedScanSignalStrength: 70",
            "179 getAccessPointSignalStrength::SSID Being Compared: Lab",
            "181 getAccessPointSignalStrength::Found the matching SSID: Lab",
            "183 getAccessPointSignalStrength::getSignalStrength(): 70",
            std::string("265 ") + PREFIX +
                "getAccessPointSignalStrength() returned signal strength: 70 for the SSID: lab",
            std::string("268 ") + PREFIX + "warning signal strength parameter: 40",
            std::string("271 ") + PREFIX + "failing signal strength parameter: 20"));
}

TEST_F(Verification, LogsAWeakSignal) {
    startRadio({{.ssid = "Lab", .signal = 20U}});
    verify("Lab", "40", "20");
    EXPECT_EQ(logged(test::MODULE_LOGGER).back(),
              "283 WirelessSignalStrengthVerificationTest::SSID: Lab failing signal strength: 20 "
              "detected signal strength: 20");
    startRadio({{.ssid = "Lab", .signal = 30U}});
    verify("Lab", "40", "20");
    EXPECT_EQ(logged(test::MODULE_LOGGER).back(),
              "292 WirelessSignalStrengthVerificationTest::SSID: Lab warning signal strength: 40 "
              "detected signal strength: 30");
}

TEST_F(Verification, WritesEveryLineAtPriorityOne) {
    startRadio({{.ssid = "Lab", .signal = 20U}});
    verify("Lab", "40", "20");
    for (const test::CapturedLog::Line& line : log().lines()) {
        EXPECT_EQ(line.priority, 1) << line.text;
    }
}

TEST_F(Verification, TracesItsOperationsWithTheirPlaces) {
    const test::CapturedLog traced(0);
    startRadio({{.ssid = "Lab", .signal = 70U}});
    verify("Lab", "40", "20");
    const std::string file = std::string(" (") + SOURCE;
    std::vector<std::string> scopes;
    for (const test::CapturedLog::Line& line : traced.lines()) {
        if (line.priority == 0 && line.logger == test::MODULE_LOGGER) {
            scopes.push_back(line.text);
        }
    }
    EXPECT_THAT(scopes, ElementsAre("> WirelessSignalStrengthVerificationTest" + file + ":241)",
                                    "> getAccessPointSignalStrength" + file + ":144)",
                                    "< getAccessPointSignalStrength",
                                    "> signalStrengthParametersValid" + file + ":204)",
                                    "< signalStrengthParametersValid",
                                    "< WirelessSignalStrengthVerificationTest"));
}

TEST_F(Verification, KeepsSilentWhenTheLoggerIsSetHigher) {
    mrl::LogFactory::createLogger(test::MODULE_LOGGER).setPriority(2);
    startRadio({{.ssid = "Lab"}});
    verify("Lab", "40", "20");
    EXPECT_THAT(logged(test::MODULE_LOGGER), IsEmpty());
    EXPECT_EQ(moduleLogger(), nullptr);
    mrl::LogFactory::createLogger(test::MODULE_LOGGER).clearPriority();
    EXPECT_NE(moduleLogger(), nullptr);
}

TEST_F(Verification, MakesExactlyThesePlatformCalls) {
    startRadio({{.ssid = "Lab", .signal = 70U}});
    radio().clearCalls();
    EXPECT_EQ(verify("Lab", "40", "20"), TestResult::PASS());
    const std::string guid = radiosim::FIRST_INTERFACE;
    const std::string own = R"({"handle":"h1","interface":")" + guid + R"(",)";
    const std::string scan = R"({"handle":"h2","interface":")" + guid + R"(",)";
    const std::string readRadio = "WlanQueryInterface " + own +
                                  R"("opcode":4,"reserved":null,"valueType":null} = 0 )"
                                  R"({"dataSize":772})";
    EXPECT_THAT(
        radio().callTexts(),
        ElementsAre(
            // The device: opened, parsed, registered for every source, radio read.
            R"(WlanOpenHandle {"clientVersion":2,"reserved":null} = 0 )"
            R"({"negotiatedVersion":2,"handle":"h1"})",
            R"(UuidFromStringW {"text":")" + guid + R"("} = 0 {})",
            R"(WlanRegisterNotification {"handle":"h1","source":65535,"ignoreDuplicate":true,)"
            R"("callback":"set","context":null,"reserved":null,"previousSource":null} = 0 {})",
            readRadio,
            // The forced scan, on a handle of its own that stays open.
            R"(WlanOpenHandle {"clientVersion":1,"reserved":null} = 0 )"
            R"({"negotiatedVersion":1,"handle":"h2"})",
            R"(WlanEnumInterfaces {"handle":"h2","reserved":null} = 0 {"interfaces":1})",
            "WlanScan " + scan + R"("ssid":null,"informationElement":null,"reserved":null} = 0 {})",
            "WlanGetNetworkBssList " + scan +
                R"("ssid":null,"bssType":3,"securityEnabled":false,"reserved":null} = 0 )"
                R"({"entries":1})",
            // One poll: the list and its release, then the radio.
            "WlanGetAvailableNetworkList " + own +
                R"("flags":0,"reserved":null} = 0 {"networks":1})",
            R"(WlanFreeMemory {"memory":"set"} = 0 {})", readRadio,
            // The device's end.
            R"(WlanCloseHandle {"handle":"h1","reserved":null} = 0 {})"));
    EXPECT_EQ(radio().openHandles(), 1U);
    // Two radio states, the interfaces and what the scan heard are kept.
    EXPECT_EQ(radio().liveBlocks(), 4U);
}

} // namespace
