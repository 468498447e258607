// The framework's half of the doctor: which device suits which test, and the advice after a run.
// The module's half, the check of its service and its examination, is set by the test.
#include "FrameworkTest.h"

namespace test {

namespace {

using tesk5::DiagDevice;
using tesk5::DiagModule;
using tesk5::ExaminationDepth;
using tesk5::Findings;
using tesk5::Measurement;
using tesk5::TestResult;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

const int CANNOTRUN = TestResult::CANNOTRUN().value();

struct Doctor : FrameworkTest {
    std::vector<std::string> examined;

    static void stopService() {
        setService({"SERVICE_STOPPED", false, {{"Error", mrl::Uint32(1062)}}});
    }
    // The module's half: records its calls and reports `findings`.
    void examineSaying(Findings findings) {
        setExamination([this, findings = std::move(findings)](
                           const DiagDevice& device, ExaminationDepth depth, Findings& all) {
            examined.push_back(device.name().utf8() +
                               (depth == ExaminationDepth::QUICK ? " quickly" : " thoroughly"));
            all.insert(all.end(), findings.begin(), findings.end());
        });
    }
    std::string firstLine() const { return output().substr(0, output().find('\n')); }
};

TEST_F(Doctor, SaysThatAllIsWell) {
    registerTest("A", TestResult::PASS());
    registerTest("B", TestResult::PASS());
    EXPECT_EQ(start({"doctor"}), 0);
    EXPECT_EQ(output(), "ok: The service answers.\n"
                        "ok: Card 1 can be tested by A, B.\n"
                        "Nothing stands in the way of the tests; exit value 0\n");
    EXPECT_EQ(errors(), "");
}

TEST_F(Doctor, RunsNoTest) {
    registerTest("A", [](const DiagDevice&) -> TestResult {
        ADD_FAILURE() << "the test has run";
        return TestResult::PASS();
    });
    EXPECT_EQ(start({"doctor"}), 0);
}

TEST_F(Doctor, SaysNothingOfDevicesWhenTheServiceFails) {
    registerTest("A", TestResult::PASS());
    stopService();
    EXPECT_EQ(startBare({"doctor"}), CANNOTRUN);
    EXPECT_EQ(output(), "problem: The service does not run (error 1062).\n"
                        "Problems found: 1; exit value 3\n");
}

TEST_F(Doctor, ChecksTheServiceForDevicesFromAFileToo) {
    registerTest("A", TestResult::PASS());
    examineSaying({});
    stopService();
    EXPECT_EQ(start({"doctor"}), CANNOTRUN);
    EXPECT_THAT(firstLine(), HasSubstr("The service does not run"));
    EXPECT_THAT(examined, IsEmpty());
}

TEST_F(Doctor, SaysThatThereIsNoAdapter) {
    registerTest("A", TestResult::PASS());
    setDevices(0);
    EXPECT_EQ(start({"doctor"}), CANNOTRUN);
    EXPECT_EQ(output(), "ok: The service answers.\n"
                        "problem: There is no device for A.\n"
                        "Problems found: 1; exit value 3\n");
}

TEST_F(Doctor, ReportsADeviceOfAnotherKindAsGood) {
    registerTest("A", TestResult::PASS());
    setDevices(R"([{"name": "Ethernet", "capabilities": ["NetworkCard"]},
                   {"name": "Card", "capabilities": ["Wireless"]}])");
    EXPECT_EQ(start({"doctor"}), 0);
    EXPECT_THAT(output(), HasSubstr("ok: Ethernet is left out by A: lacks the capability "
                                    "\"Wireless\".\nok: Card can be tested by A.\n"));
}

TEST_F(Doctor, SaysForEachTestWhyItLeavesAnAdapterOut) {
    registerTest("A", TestResult::PASS())->addDevicePropertyExclusion("WiMAX", "");
    registerTest("B", TestResult::PASS())->addDevicePropertyExclusion("WiMAX", "");
    registerTest("C", TestResult::PASS());
    setDevices(R"([{"name": "Card", "capabilities": ["Wireless"], "properties": {"WiMAX": "1"}}])");
    EXPECT_EQ(start({"doctor"}), CANNOTRUN);
    EXPECT_EQ(output(), "ok: The service answers.\n"
                        "problem: Card is left out by A, B: has the property \"WiMAX\".\n"
                        "ok: Card can be tested by C.\n"
                        "Problems found: 1; exit value 3\n");
}

TEST_F(Doctor, ReportsAnAdapterThatTheFilterLeavesOutAsGoodWhenAnotherIsTested) {
    registerTest("A", TestResult::PASS());
    setDevices(2);
    EXPECT_EQ(start({"doctor", "--device", "card 2"}), 0);
    EXPECT_THAT(output(), HasSubstr("ok: Card 1 is left out by A: has no \"card 2\" in its name"));
    forgetOutput();
    EXPECT_EQ(start({"doctor", "--device", "card 3"}), CANNOTRUN);
    EXPECT_THAT(output(),
                HasSubstr("problem: Card 1 is left out by A: has no \"card 3\" in its name"));
}

TEST_F(Doctor, LetsTheModuleExamineEachDeviceThatSuitsATest) {
    registerTest("A", TestResult::PASS());
    setDevices(R"([{"name": "Ethernet", "capabilities": []},
                   {"name": "Card", "capabilities": ["Wireless"]}])");
    examineSaying({{"WEAK", false, {{"Name", "a\x1b[2J"}, {"Strength", mrl::Uint32(7)}}},
                   {"PLAIN", true, {}}});
    EXPECT_EQ(start({"doctor"}), CANNOTRUN);
    EXPECT_THAT(examined, ElementsAre("Card thoroughly"));
    EXPECT_THAT(output(), HasSubstr("ok: Card can be tested by A.\n"
                                    "problem: The signal of a\\x1B[2J is 7 %.\n"
                                    "ok: Something happened.\n"
                                    "Problems found: 1; exit value 3\n"));
}

TEST_F(Doctor, TakesParametersAndNeedsNone) {
    auto* name = DiagModule::createParameter("Name", tesk5::DataType::STRING(), "", false, false);
    registerTest("A", TestResult::PASS())->setInteractive(true)->addParameter(name);
    EXPECT_EQ(start({"doctor"}), 0);
    EXPECT_EQ(start({"doctor", "--set", "Name=Lab"}), 0);
    EXPECT_EQ(name->value().valueString(), "Lab");
    EXPECT_EQ(start({"doctor", "--set", "Nam=Lab"}), 64);
    EXPECT_EQ(start({"doctor", "--json", file("report.json")}), 64);
    EXPECT_THAT(filesThere(), ElementsAre("devices.json"));
    EXPECT_EQ(start({"doctor", "A"}), 64);
    EXPECT_THAT(errors(), HasSubstr("the command doctor takes no \"A\""));
}

TEST_F(Doctor, GivesAdviceUnderARunThatCouldNotRun) {
    registerTest("A", TestResult::CANNOTRUN());
    examineSaying({{"PLAIN", false, {}}, {"WEAK", true, {}}});
    EXPECT_EQ(start({"run", "--json", file("report.json")}), CANNOTRUN);
    EXPECT_EQ(output(), "A on Card 1\n"
                        "  CANNOTRUN after 0.0 s\n"
                        "  possible cause: Something happened.\n"
                        "Runs: 1 (1 CANNOTRUN); exit value 3\n");
    EXPECT_THAT(examined, ElementsAre("Card 1 quickly"));
}

TEST_F(Doctor, GivesAdviceUnderAFailureThatMeasuredNothing) {
    examineSaying({{"PLAIN", false, {}}});
    registerTest("A", TestResult::FAIL());
    EXPECT_EQ(start({"run"}), TestResult::FAIL().value());
    EXPECT_THAT(output(), HasSubstr("  FAIL after 0.0 s\n  possible cause: Something happened.\n"));
}

TEST_F(Doctor, GivesNoAdviceUnderAVerdict) {
    examineSaying({{"PLAIN", false, {}}});
    registerTest("A", [](const DiagDevice&) {
        DiagModule::measured(Measurement{"Strength", 7, "%", 0, 100, {}});
        return TestResult::FAIL();
    });
    registerTest("B", TestResult::PASS());
    registerTest("C", TestResult::WARN());
    registerTest("D", TestResult::BADPARAMS());
    registerTest("E", TestResult::USERABORTED());
    EXPECT_EQ(start({"run"}), TestResult::FAIL().value());
    EXPECT_THAT(examined, IsEmpty());
    EXPECT_THAT(output(), Not(HasSubstr("possible cause")));
}

TEST_F(Doctor, GivesAdviceUnderARunThatAPersonEndedWhenItsTestRequestedIt) {
    examineSaying({{"PLAIN", false, {}}, {"WEAK", true, {}}});
    for (const TestResult& result : {TestResult::COMPLETED(), TestResult::USERABORTED()}) {
        registerTest(result.name(), [result](const DiagDevice&) {
            DiagModule::requestAdvice();
            return result;
        });
    }
    EXPECT_EQ(start({"run"}), TestResult::USERABORTED().value());
    EXPECT_THAT(output(),
                HasSubstr("  COMPLETED after 0.0 s\n  possible cause: Something happened.\n"));
    EXPECT_THAT(output(),
                HasSubstr("  USERABORTED after 0.0 s\n  possible cause: Something happened.\n"));
    EXPECT_THAT(examined, ElementsAre("Card 1 quickly", "Card 1 quickly"));
}

TEST_F(Doctor, GivesNoAdviceUnderAVerdictWhoseTestRequestedIt) {
    examineSaying({{"PLAIN", false, {}}});
    registerTest("A", [](const DiagDevice&) {
        DiagModule::requestAdvice();
        return TestResult::PASS();
    });
    registerTest("B", TestResult::COMPLETED());
    EXPECT_EQ(start({"run"}), 0);
    EXPECT_THAT(examined, IsEmpty());
}

TEST_F(Doctor, NamesTheServiceUnderARunDuringWhichItStopped) {
    examineSaying({{"PLAIN", false, {}}});
    registerTest("A", TestResult::CANNOTRUN());
    stopService();
    EXPECT_EQ(start({"run"}), CANNOTRUN);
    EXPECT_THAT(output(), HasSubstr("  possible cause: The service does not run (error 1062).\n"));
    EXPECT_THAT(examined, IsEmpty());
}

TEST_F(Doctor, GivesAdviceForATestWithoutADevice) {
    registerTest("A", TestResult::PASS());
    setDevices(R"([{"name": "Ethernet", "capabilities": []}])");
    EXPECT_EQ(start({"run"}), CANNOTRUN);
    EXPECT_EQ(errors(), "example: no device for A\n"
                        "  Ethernet: lacks the capability \"Wireless\"\n"
                        "  possible cause: There is no device for A.\n");
}

TEST_F(Doctor, ExaminesTheDevicesOfThisPcWithoutADeviceFile) {
    std::vector<std::string> seen;
    registerTest("A", [&seen](const DiagDevice& device) {
        seen.push_back(device.name().utf8());
        return TestResult::PASS();
    });
    const auto card = [](const char* name, const char* systemName) {
        return DiagDevice(name, tesk5::DeviceCapability::Wireless(),
                          {{"DeviceSystemName", systemName}});
    };
    setMachineDevices({{card("First", "{8C2F6B1E}"), card("Second", "{11111111}")}, {}});
    EXPECT_EQ(startBare({"run", "--device", "8c2f6b1e"}), 0);
    EXPECT_THAT(seen, ElementsAre("First"));
}

TEST_F(Doctor, ExplainsWhyThisPcMayHaveNoDevice) {
    registerTest("A", TestResult::PASS());
    setMachineDevices({{}, tesk5::Finding{"SERVICE_STOPPED", false, {{"Error", "126"}}}});
    EXPECT_EQ(startBare({"run"}), CANNOTRUN);
    EXPECT_THAT(errors(), HasSubstr("  possible cause: The service does not run (error 126).\n"));
}

} // namespace

} // namespace test
