// The framework's half of the doctor: which device suits which test, and the advice after a run.
// The module's half, the check of its service and its examination, is set by the test.
#include "FrameworkTest.h"

namespace test {

namespace {

using tesk5::ExaminationDepth;
using tesk5::Findings;

const int CANNOTRUN = TestResult::CANNOTRUN().value();

struct Examinations : FrameworkTest {
    std::vector<std::string> examined;

    static void stopService() {
        g_module.service = {"SERVICE_STOPPED", false, {{"Error", mrl::Uint32(1062)}}};
    }
    // The module's half: records its calls and reports `findings`.
    void examineSaying(Findings findings) {
        g_module.examine = [this, findings = std::move(findings)](
                               const DiagDevice& device, ExaminationDepth depth, Findings& all) {
            examined.push_back(device.name().utf8() +
                               (depth == ExaminationDepth::QUICK ? " quickly" : " thoroughly"));
            all.insert(all.end(), findings.begin(), findings.end());
        };
    }
};

// The command doctor, with a test "A" that must not run.
struct Doctor : Examinations {
    Doctor() {
        registerTest("A", [](const DiagDevice&) {
            ADD_FAILURE() << "the test has run";
            return TestResult::PASS();
        });
    }
};

TEST_F(Doctor, SaysThatAllIsWell) {
    registerTest("B", TestResult::PASS());
    EXPECT_EQ(start({"doctor"}), 0);
    EXPECT_EQ(output(), "ok: The service answers.\n"
                        "ok: Card 1 can be tested by A, B.\n"
                        "Nothing stands in the way of the tests; exit value 0\n");
    EXPECT_EQ(errors(), "");
}

TEST_F(Doctor, ExaminesNoDeviceOfThisPcOrOfAFileWhenTheServiceFails) {
    examineSaying({});
    stopService();
    EXPECT_EQ(startBare({"doctor"}), CANNOTRUN);
    EXPECT_EQ(output(), "problem: The service does not run (error 1062).\n"
                        "Problems found: 1; exit value 3\n");
    forgetOutput();
    EXPECT_EQ(start({"doctor"}), CANNOTRUN);
    EXPECT_THAT(output(), testing::StartsWith("problem: The service does not run"));
    EXPECT_THAT(examined, IsEmpty());
}

TEST_F(Doctor, SaysThatThereIsNoAdapter) {
    setDevices(0);
    EXPECT_EQ(start({"doctor"}), CANNOTRUN);
    EXPECT_EQ(output(), "ok: The service answers.\n"
                        "problem: There is no device for A.\n"
                        "Problems found: 1; exit value 3\n");
}

TEST_F(Doctor, ReportsADeviceOfAnotherKindAsGood) {
    setDevices(R"([{"name": "Ethernet", "capabilities": ["NetworkCard"]},
                   {"name": "Card", "capabilities": ["Wireless"]}])");
    EXPECT_EQ(start({"doctor"}), 0);
    EXPECT_THAT(output(), HasSubstr("ok: Ethernet is left out by A: lacks the capability "
                                    "\"Wireless\".\nok: Card can be tested by A.\n"));
    forgetOutput();
    EXPECT_EQ(start({"doctor", "--device", "none"}), CANNOTRUN);
    EXPECT_THAT(output(), HasSubstr("ok: Ethernet is left out by A: "));
    forgetOutput();
    setDevices(R"([{"name": "Ethernet", "capabilities": ["NetworkCard"]}])");
    EXPECT_EQ(start({"doctor"}), CANNOTRUN);
    EXPECT_THAT(output(),
                HasSubstr("problem: There is no device for A.\nok: Ethernet is left out by A: "));
}

TEST_F(Doctor, PutsDevicesOfAnotherKindIntoOneLine) {
    setDevicesOfTwoKinds();
    EXPECT_EQ(start({"doctor"}), 0);
    EXPECT_THAT(output(),
                HasSubstr("ok: Left out by A: Ethernet, Bluetooth, Modem (lacks the capability "
                          "\"Wireless\").\nok: Card can be tested by A.\n"));
}

TEST_F(Doctor, PutsDevicesOfAnotherKindIntoOneLineForEachReason) {
    setDevices(R"([{"name": "Ethernet 1", "capabilities": []},
                   {"name": "Modem", "capabilities": []},
                   {"name": "Ethernet 2", "capabilities": []}])");
    EXPECT_EQ(start({"doctor", "--device", "ethernet"}), CANNOTRUN);
    EXPECT_THAT(output(), HasSubstr("ok: Left out by A: Ethernet 1, Ethernet 2 (lacks the "
                                    "capability \"Wireless\").\nok: Modem is left out by A: "));
}

TEST_F(Doctor, SaysForEachTestWhyItLeavesAnAdapterOut) {
    registerTest("B", TestResult::PASS())->addDevicePropertyExclusion("WiMAX", "");
    registerTest("C", TestResult::PASS())->addDevicePropertyExclusion("WiMAX", "");
    setDevices(R"([{"name": "Card", "capabilities": ["Wireless"], "properties": {"WiMAX": "1"}}])");
    EXPECT_EQ(start({"doctor"}), CANNOTRUN);
    EXPECT_EQ(output(), "ok: The service answers.\n"
                        "ok: Card can be tested by A.\n"
                        "problem: Card is left out by B, C: has the property \"WiMAX\".\n"
                        "Problems found: 1; exit value 3\n");
}

TEST_F(Doctor, ReportsAnAdapterThatTheFilterLeavesOutAsGoodWhenAnotherIsTested) {
    setDevices(2);
    EXPECT_EQ(start({"doctor", "--device", "card 2"}), 0);
    EXPECT_THAT(output(), HasSubstr("ok: Card 1 is left out by A: has no \"card 2\" in its name"));
    forgetOutput();
    EXPECT_EQ(start({"doctor", "--device", "card 3"}), CANNOTRUN);
    EXPECT_THAT(output(),
                HasSubstr("problem: Card 1 is left out by A: has no \"card 3\" in its name"));
}

TEST_F(Doctor, TellsTestsApartOfWhichOneHasAnotherAdapterThatIsTested) {
    registerTest("B", TestResult::PASS())->addDevicePropertyExclusion("WiMAX", "");
    setDevices(R"([{"name": "Card 1", "capabilities": ["Wireless"]},
                   {"name": "Card 2", "capabilities": ["Wireless"], "properties": {"WiMAX": "1"}}])");
    EXPECT_EQ(start({"doctor", "--device", "card 2"}), CANNOTRUN);
    EXPECT_THAT(output(), HasSubstr("ok: Card 1 is left out by A: has no \"card 2\" in its name"));
    EXPECT_THAT(output(),
                HasSubstr("problem: Card 1 is left out by B: has no \"card 2\" in its name"));
}

TEST_F(Doctor, LetsTheModuleExamineEachDeviceThatSuitsATest) {
    setDevices(R"([{"name": "Ethernet", "capabilities": []},
                   {"name": "Card", "capabilities": ["Wireless"]}])");
    examineSaying({{"WEAK", false, {{"Name", "a\x1b[2J"}, {"Strength", mrl::Uint32(7)}}},
                   {"PLAIN", true, {}}});
    EXPECT_EQ(start({"doctor"}), CANNOTRUN);
    EXPECT_THAT(examined, ElementsAre("Card thoroughly"));
    EXPECT_THAT(output(), HasSubstr("ok: Card can be tested by A.\n"
                                    "problem: The signal of a\\x1B[2J is 7%.\n"
                                    "ok: Something happened.\n"
                                    "Problems found: 1; exit value 3\n"));
}

TEST_F(Doctor, TakesParametersAndNeedsNone) {
    auto* name = DiagModule::createParameter("Name", DataType::STRING(), "", false, false);
    registerTest("B", TestResult::PASS())->setInteractive(true)->addParameter(name);
    EXPECT_EQ(start({"doctor"}), 0);
    EXPECT_EQ(start({"doctor", "--set", "Name=Lab"}), 0);
    EXPECT_EQ(name->value().valueString(), "Lab");
    EXPECT_EQ(start({"doctor", "--set", "Nam=Lab"}), 64);
    EXPECT_EQ(start({"doctor", "--json", file("report.json")}), 64);
    EXPECT_THAT(filesThere(), ElementsAre("devices.json"));
    EXPECT_EQ(start({"doctor", "A"}), 64);
    EXPECT_THAT(errors(), HasSubstr("the command doctor takes no \"A\""));
}

TEST_F(Doctor, SaysWhatTheMachineCheckFindsBehindTheServiceAndOfAFailedServiceTheProblemsOnly) {
    g_module.machine = {{"PLAIN", true, {}}, {"WEAK", false, {{"Name", "X"}, {"Strength", "7"}}}};
    EXPECT_EQ(start({"doctor"}), CANNOTRUN);
    EXPECT_EQ(output(), "ok: The service answers.\n"
                        "ok: Something happened.\n"
                        "problem: The signal of X is 7%.\n"
                        "ok: Card 1 can be tested by A.\n"
                        "Problems found: 1; exit value 3\n");
    forgetOutput();
    g_module.devices = {{}, tesk5::Finding{"SERVICE_STOPPED", false, {{"Error", "126"}}}};
    EXPECT_EQ(startBare({"doctor"}), CANNOTRUN);
    EXPECT_EQ(output(), "problem: The service does not run (error 126).\n"
                        "problem: The signal of X is 7%.\n"
                        "Problems found: 2; exit value 3\n");
}

TEST_F(Doctor, LeavesOutATestThatThisSystemCannotRun) {
    registerTest("B", TestResult::PASS())->setObstacle("PLAIN");
    EXPECT_EQ(start({"doctor"}), 0);
    EXPECT_THAT(output(), HasSubstr("ok: Card 1 can be tested by A.\n"));
    setDevices(0);
    forgetOutput();
    EXPECT_EQ(start({"doctor"}), CANNOTRUN);
    EXPECT_THAT(output(), HasSubstr("problem: There is no device for A.\n"));
}

using Advice = Examinations;

TEST_F(Advice, IsTheObstacleOfATestThatThisSystemCannotRunWhateverTheDevices) {
    registerTest("A", TestResult::PASS())->setObstacle("PLAIN");
    EXPECT_EQ(start({"run"}), CANNOTRUN);
    EXPECT_EQ(errors(), "example: no device for A\n"
                        "  Card 1: does not run on this system\n"
                        "  possible cause: Something happened.\n");
    forgetOutput();
    g_module.devices = {{}, tesk5::Finding{"SERVICE_STOPPED", false, {{"Error", "126"}}}};
    EXPECT_EQ(startBare({"run"}), CANNOTRUN);
    EXPECT_THAT(errors(), testing::EndsWith("  possible cause: Something happened.\n"));
}

TEST_F(Advice, HasTheProblemsOfTheMachineForARunWithoutAViewAndATestWithoutADevice) {
    registerTest("A", TestResult::CANNOTRUN());
    g_module.machine = {{"WEAK", false, {{"Name", "X"}, {"Strength", "7"}}}, {"PLAIN", true, {}}};
    examineSaying({{"WEAK", false, {{"Name", "Y"}, {"Strength", "8"}}}});
    EXPECT_EQ(start({"run"}), CANNOTRUN);
    EXPECT_EQ(output(), "A on Card 1\n"
                        "  possible cause: The signal of X is 7%.\n"
                        "  possible cause: The signal of Y is 8%.\n"
                        "  CANNOTRUN after 0.0\u00A0s\n"
                        "Runs: 1 (1 CANNOTRUN); exit value 3\n");
    setDevices(0);
    EXPECT_EQ(start({"run"}), CANNOTRUN);
    EXPECT_THAT(errors(), testing::EndsWith("  possible cause: There is no device for A.\n"
                                            "  possible cause: The signal of X is 7%.\n"));
}

TEST_F(Advice, StandsUnderARunThatCouldNotRun) {
    registerTest("A", TestResult::CANNOTRUN());
    examineSaying({{"PLAIN", false, {}}, {"WEAK", true, {}}});
    EXPECT_EQ(start({"run", "--json", file("report.json")}), CANNOTRUN);
    EXPECT_EQ(output(), "A on Card 1\n"
                        "  possible cause: Something happened.\n"
                        "  CANNOTRUN after 0.0\u00A0s\n"
                        "Runs: 1 (1 CANNOTRUN); exit value 3\n");
    EXPECT_THAT(examined, ElementsAre("Card 1 quickly"));
}

TEST_F(Advice, IsGivenForAFailureWithoutAMeasurementAndForAnEndByAPersonWhenTheTestRequestsIt) {
    const struct {
        TestResult result;
        bool measures;
        bool requests;
        bool advice;
    } rows[] = {
        {.result = TestResult::FAIL(), .measures = false, .requests = false, .advice = true},
        {.result = TestResult::FAIL(), .measures = true, .requests = false, .advice = false},
        {.result = TestResult::COMPLETED(), .measures = false, .requests = true, .advice = true},
        {.result = TestResult::COMPLETED(), .measures = false, .requests = false, .advice = false},
        {.result = TestResult::USERABORTED(), .measures = false, .requests = true, .advice = true},
        {.result = TestResult::USERABORTED(),
         .measures = false,
         .requests = false,
         .advice = false},
        {.result = TestResult::PASS(), .measures = false, .requests = true, .advice = false},
        {.result = TestResult::WARN(), .measures = false, .requests = false, .advice = false},
        {.result = TestResult::WARN(), .measures = false, .requests = true, .advice = true},
        {.result = TestResult::BADPARAMS(), .measures = false, .requests = false, .advice = false},
    };
    examineSaying({{"PLAIN", false, {}}});
    auto row = rows[0];
    registerTest("A", [&row](const DiagDevice&) {
        if (row.measures) {
            DiagModule::measured(Measurement{"Strength", 7, "%", 0, 100, {}});
        }
        if (row.requests) {
            DiagModule::requestAdvice();
        }
        return row.result;
    });
    for (const auto& next : rows) {
        row = next;
        SCOPED_TRACE(row.result.name());
        forgetOutput();
        examined.clear();
        EXPECT_EQ(start({"run"}), row.result.good() ? 0 : row.result.value());
        EXPECT_EQ(examined.size(), row.advice ? 1U : 0U);
        EXPECT_EQ(output().find("  possible cause: Something happened.\n  ") != std::string::npos,
                  row.advice)
            << "ahead of the verdict that it explains";
    }
}

TEST_F(Advice, FollowsTheVerdictOfAMeasurementThatReachedALimit) {
    examineSaying({{"PLAIN", false, {}}});
    registerTest("A", [](const DiagDevice&) {
        DiagModule::measured({"Strength", 7, "%", 0, 100, {{"Failing", 20, Severity::error}}});
        return TestResult::FAIL();
    });
    EXPECT_EQ(start({"run", "--json", file("report.json")}), TestResult::FAIL().value());
    EXPECT_THAT(output(),
                HasSubstr("  FAIL after 0.0\u00A0s\n  possible cause: Card 1 is weak.\n"));
    EXPECT_THAT(bytesOfFile(file("report.json")), HasSubstr("\"key\": \"LIMIT_REACHED\""));
    EXPECT_THAT(examined, IsEmpty());
}

TEST_F(Advice, MakesAGoodResultOneToLookAt) {
    examineSaying({{"PLAIN", false, {}}});
    registerTest("A", [](const DiagDevice&) {
        DiagModule::requestAdvice();
        return TestResult::COMPLETED();
    });
    EXPECT_EQ(start({"run", "--quiet", "--color=always", "--html", file("r.html"), "--junit",
                     file("r.xml")}),
              0);
    EXPECT_THAT(output(), HasSubstr("\x1b[33mCOMPLETED")) << "yellow, and not hidden by --quiet";
    EXPECT_THAT(bytesOfFile(file("r.html")), HasSubstr("<p class=\"verdict warning\">"));
    EXPECT_THAT(bytesOfFile(file("r.xml")), HasSubstr("Something happened."));
}

TEST_F(Advice, NamesTheServiceUnderARunDuringWhichItStopped) {
    examineSaying({{"PLAIN", false, {}}});
    registerTest("A", TestResult::CANNOTRUN());
    stopService();
    EXPECT_EQ(start({"run"}), CANNOTRUN);
    EXPECT_THAT(output(), HasSubstr("  possible cause: The service does not run (error 1062).\n"));
    EXPECT_THAT(examined, IsEmpty());
}

TEST_F(Advice, IsGivenForATestWithoutADevice) {
    registerTest("A", TestResult::PASS());
    setDevices(R"([{"name": "Ethernet", "capabilities": []}])");
    EXPECT_EQ(start({"run"}), CANNOTRUN);
    EXPECT_EQ(errors(), "example: no device for A\n"
                        "  Ethernet: lacks the capability \"Wireless\"\n"
                        "  possible cause: There is no device for A.\n");
    forgetOutput();
    EXPECT_EQ(start({"run", "--device", "none"}), CANNOTRUN);
    EXPECT_THAT(errors(), testing::EndsWith("  possible cause: There is no device for A.\n"));
    forgetOutput();
    g_module.devices = {{}, tesk5::Finding{"SERVICE_STOPPED", false, {{"Error", "126"}}}};
    EXPECT_EQ(startBare({"run"}), CANNOTRUN);
    EXPECT_THAT(errors(), HasSubstr("  possible cause: The service does not run (error 126).\n"));
}

TEST_F(Doctor, LooksAtParametersThatAreGivenAndACheckAtWhatARunNeeds) {
    registry()
        .findTest("A")
        ->addParameter(optionalParameter("SSID"))
        ->setParameterCheck(
            [](bool complete) {
                return complete ? tesk5::Findings{{"PLAIN", false, {}}}
                                : tesk5::Findings{{"SERVICE_STOPPED", true, {{"Error", "0"}}}};
            },
            tesk5::WrongParameters::LEFT_TO_TEST);
    start({"doctor"});
    EXPECT_THAT(output(), Not(HasSubstr("error 0")));
    start({"doctor", "--set", "SSID=Lab"});
    EXPECT_THAT(output(), HasSubstr("ok: The service does not run (error 0).\n"));
    forgetOutput();
    EXPECT_EQ(start({"run", "--check", "--json", file("r.json")}), CANNOTRUN);
    EXPECT_EQ(output(), "problem: Something happened.\nProblems found: 1; exit value 3\n");
    EXPECT_THAT(filesThere(), ElementsAre("devices.json")) << "nothing was run";
    EXPECT_EQ(start({"run", "--check", "--set", "Nope=1"}), 64);
    registerTest("WithoutParameters", TestResult::PASS());
    EXPECT_EQ(start({"run", "WithoutParameters", "--check"}), 0);
}

TEST_F(Doctor, LeavesOutWhatTwoTestsFindAlike) {
    const tesk5::ParameterCheck check = [](bool) { return tesk5::Findings{{"PLAIN", false, {}}}; };
    for (tesk5::Test* const test :
         {registry().findTest("A"), registerTest("B", TestResult::PASS())}) {
        test->setParameterCheck(check, tesk5::WrongParameters::LEFT_TO_TEST);
    }
    EXPECT_EQ(start({"run", "--check"}), CANNOTRUN);
    EXPECT_EQ(output(), "problem: Something happened.\nProblems found: 1; exit value 3\n");
    EXPECT_EQ(start({"run", "B"}), 0) << "left to the test";
}

TEST_F(Doctor, OfParametersRefusesARunOfTheTestsThatSaySo) {
    registry().findTest("A")->setParameterCheck(
        [](bool complete) {
            return tesk5::Findings{{"SERVICE_ANSWERS", true, {}}, {"PLAIN", !complete, {}}};
        },
        tesk5::WrongParameters::REFUSED);
    EXPECT_EQ(start({"run", "A", "--json", file("r.json"), "--log", file("r.log")}), 64);
    EXPECT_EQ(errors(), "example: Something happened.\n");
    EXPECT_THAT(output(), IsEmpty());
    EXPECT_THAT(filesThere(), ElementsAre("devices.json")) << "nothing was run";
    registerTest("B", TestResult::PASS());
    EXPECT_EQ(start({"run", "B"}), 0) << "that of another test";
}

} // namespace

} // namespace test
