// Unusable input: exit value 64, one line, nothing run, nothing written.
#include "FrameworkTest.h"

#include <texts/BadInput.h>

#include <tesk5/Registry.h>

#include <algorithm>

namespace test {

namespace {

using tesk5::DataType;
using tesk5::DiagDevice;
using tesk5::DiagModule;
using tesk5::TestResult;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

class BadInputs : public FrameworkTest {
protected:
    BadInputs() {
        registerTest("Signal",
                     [this](const DiagDevice&) {
                         m_ran = true;
                         return TestResult::PASS();
                     })
            ->addParameter(DiagModule::createParameter("SSID", DataType::STRING(), "", false, true))
            ->addParameter(
                DiagModule::createParameter("Limit", DataType::UINT32(), "", false, true));
        registerTest("Asks", TestResult::COMPLETED())->setInteractive(true);
    }

    void refuses(const std::vector<std::string>& arguments, const std::string& expected) {
        forgetOutput();
        const std::vector<std::string> before = filesThere();
        EXPECT_EQ(start(arguments), 64) << expected;
        EXPECT_EQ(errors(), "example: " + expected + "\n");
        EXPECT_EQ(output(), "");
        EXPECT_FALSE(m_ran);
        EXPECT_EQ(filesThere(), before);
    }
    /// Start and end of a line that contains a message of the system.
    void refuses(const std::vector<std::string>& arguments, const std::string& first,
                 const std::string& last) {
        forgetOutput();
        const std::vector<std::string> before = filesThere();
        EXPECT_EQ(start(arguments), 64) << first;
        EXPECT_THAT(errors(),
                    AllOf(StartsWith("example: " + first), testing::EndsWith(last + "\n")));
        EXPECT_EQ(std::count(errors().begin(), errors().end(), '\n'), 1);
        EXPECT_FALSE(m_ran);
        EXPECT_EQ(filesThere(), before);
    }

    bool m_ran = false;
};

TEST_F(BadInputs, AnUnknownTest) {
    refuses({"run", "Signl"}, "there is no test \"Signl\", the nearest is \"Signal\"; the tests "
                              "are \"Signal\", \"Asks\"");
    refuses({"run", "signal"}, "there is no test \"signal\", the nearest is \"Signal\"; the tests "
                               "are \"Signal\", \"Asks\"");
    refuses({"run", "list"}, "there is no test \"list\"; the tests are \"Signal\", \"Asks\"");
    refuses({"run", ""}, "there is no test \"\"; the tests are \"Signal\", \"Asks\"");
    refuses({"run", "a\nb"}, "there is no test \"a\\nb\"; the tests are \"Signal\", \"Asks\"");
}

TEST_F(BadInputs, ATestNamedTwice) {
    refuses({"run", "Signal", "Signal"},
            "the test \"Signal\" is named more than once; name it once");
}

TEST_F(BadInputs, NothingToRun) {
    registry().tests.clear();
    refuses({"run"}, "there is no test to run; use the command list");
    registerTest("Asks", TestResult::COMPLETED())->setInteractive(true);
    refuses({"run"}, "every test is interactive; name one, as in run Asks");
}

TEST_F(BadInputs, AnUnknownCommandOrOption) {
    refuses({"rn"},
            "there is no command \"rn\"; the commands are list, run, doctor, echo and bare");
    refuses({"--jsno", "x", "run"},
            "there is no option \"--jsno\", the nearest is \"--json\"; --help shows what there is");
    refuses({"/help"},
            "there is no command \"/help\"; the commands are list, run, doctor, echo and bare");
    refuses({"list", "Signal"},
            "the command list takes no \"Signal\"; leave it out, or use the command run");
}

TEST_F(BadInputs, AnOptionWithoutItsValue) {
    refuses({"run", "--json"}, "--json needs FILE, as in --json report.json");
    refuses({"run", "--json", "--log", "x"}, "--json needs FILE, as in --json report.json");
    refuses({"run", "--json="}, "--json needs FILE, as in --json report.json");
    refuses({"run", "--device", ""}, "--device needs TEXT, as in --device intel");
    refuses({"run", "--set"},
            "--set needs NAME=VALUE, as in --set SSID=Lab --set WarningSignalStrength=40");
}

TEST_F(BadInputs, AnOptionTwice) {
    refuses({"run", "--json", file("a"), "--json", file("b")},
            "--json is given 2 times; give it once");
}

TEST_F(BadInputs, AMalformedSetting) {
    refuses({"run", "--set", "SSID"},
            "--set \"SSID\" is not NAME=VALUE; write it as in --set SSID=Lab");
    refuses({"run", "--set", "=Lab"},
            "--set \"=Lab\" is not NAME=VALUE; write it as in --set SSID=Lab");
    refuses({"run", "--set", "{}"},
            "--set \"{}\" is not NAME=VALUE; write it as in --set SSID=Lab");
}

TEST_F(BadInputs, AnUnknownParameter) {
    refuses({"run", "--set", "Ssid=Lab"},
            "--set Ssid=Lab: no test that would run has the parameter \"Ssid\", the nearest is "
            "\"SSID\"; the parameters are \"SSID\", \"Limit\"");
}

TEST_F(BadInputs, AParameterOfATestThatWouldNotRun) {
    refuses({"run", "Asks", "--set", "SSID=Lab"},
            "--set SSID=Lab: the tests that would run have no parameters; leave it out");
}

TEST_F(BadInputs, AParameterTwice) {
    refuses({"run", "--set", "SSID=Lab", "--set", "SSID=Office"},
            "--set SSID=Office: the parameter \"SSID\" has a value already; give it once");
}

TEST_F(BadInputs, AnInvalidNumber) {
    for (const char* text : {"4294967296", "-1", " 1", "1e3", "0x10", "ten"}) {
        refuses({"run", "--set", std::string("Limit=") + text},
                std::string("--set Limit=") + text + ": \"" + text +
                    "\" is not a whole number from 0 to 4294967295 in decimal digits; give such a "
                    "number");
    }
}

TEST_F(BadInputs, ARequiredParameterWithoutAValue) {
    registerTest("Needy", TestResult::PASS())
        ->addParameter(DiagModule::createParameter("Serial", DataType::STRING(), "", false, false));
    refuses({"run", "Needy"},
            "the parameter \"Serial\" has no value; give it with --set Serial=VALUE");
    EXPECT_EQ(start({"run", "Needy", "--set", "Serial=1"}), 0);
}

TEST_F(BadInputs, OptionsOfARunWithoutTheCommandRun) {
    refuses({"--json", file("report.json")},
            "--json goes with the command run, and nothing is to be run; add run");
    refuses({"list", "--set", "SSID=Lab"},
            "--set goes with the command run, and nothing is to be run; add run");
}

TEST_F(BadInputs, AnInvalidLogLevel) {
    for (const char* text : {"6", "-1", "high", "0x1"}) {
        refuses({"run", std::string("--log-level=") + text},
                std::string("--log-level \"") + text + "\" is no level; give a number from 0 to 5");
    }
}

TEST_F(BadInputs, AMissingDeviceFile) {
    refuses({"run", "--devices", file("none.json")}, "--devices is given 2 times; give it once");
    forgetOutput();
    EXPECT_EQ(startBare({"run", "--devices", file("none.json")}), 64);
    EXPECT_THAT(errors(),
                AllOf(StartsWith("example: the device file \"" + file("none.json") +
                                 "\" cannot be used: No such file"),
                      testing::EndsWith("; mend it, or leave out --devices to use this PC's "
                                        "devices\n")));
}

TEST_F(BadInputs, AReportThatCannotBeWritten) {
    const std::string remedy = "; name a file in a folder that exists and that you may write to";
    refuses({"run", "--json", file("none/report.json")},
            "the report \"" + file("none/report.json") + "\" cannot be written: No such file",
            remedy);
    std::filesystem::create_directory(mrl::System::path(file("folder")));
    refuses({"run", "--json", file("folder")},
            "the report \"" + file("folder") + "\" cannot be written: it is a directory" + remedy);
    refuses({"run", "--json", file("folder") + "/"},
            "the report \"" + file("folder") + "/\" cannot be written: it is a directory" + remedy);
}

TEST_F(BadInputs, AReportThatIsReadOnlyUnlessItsReaderMayWriteEverywhere) {
    const std::string path = fileWith("report.json", "old");
    std::filesystem::permissions(mrl::System::path(path), std::filesystem::perms::owner_read);
    if (std::fstream(mrl::System::path(path), std::ios::in | std::ios::out)) {
        EXPECT_EQ(start({"run", "--json", path}), 0) << "read-only means nothing to this user";
        EXPECT_NE(bytesOfFile(path), "old");
    } else {
        refuses({"run", "--json", path}, "the report \"" + path + "\" cannot be written: ",
                "; name a file in a folder that exists and that you may write to");
        EXPECT_EQ(bytesOfFile(path), "old");
    }
    std::filesystem::permissions(mrl::System::path(path), std::filesystem::perms::owner_all);
}

TEST_F(BadInputs, ALogThatCannotBeWritten) {
    std::filesystem::create_directory(mrl::System::path(file("folder")));
    refuses({"run", "--log", file("folder")},
            "the log \"" + file("folder") + "\" cannot be written: ",
            "; name a file that you may write to");
    refuses({"list", "--log", file("folder")},
            "the log \"" + file("folder") + "\" cannot be written: ",
            "; name a file that you may write to");
}

TEST_F(BadInputs, OneFileForTwoPurposes) {
    refuses({"run", "--log", file("x"), "--json", file("./x")},
            "--json and --log both name \"" + file("x") + "\"; give each a file of its own");
    refuses({"run", "--json", file("devices.json")}, "--devices and --json both name \"" +
                                                         file("devices.json") +
                                                         "\"; give each a file of its own");
    refuses({"run", "--log", file("devices.json")}, "--devices and --log both name \"" +
                                                        file("devices.json") +
                                                        "\"; give each a file of its own");
}

TEST_F(BadInputs, LeaveLogAndReportAlone) {
    const std::string log = fileWith("run.log", "log\n");
    const std::string report = fileWith("report.json", "old");
    refuses({"run", "Signl", "--log", log, "--json", report},
            "there is no test \"Signl\", the nearest is \"Signal\"; the tests are \"Signal\", "
            "\"Asks\"");
    setDevices("[1]");
    refuses({"run", "--log", log, "--json", report},
            "the device file \"" + file("devices.json") + "\" cannot be used: $[0] ", "");
    EXPECT_EQ(bytesOfFile(log), "log\n");
    EXPECT_EQ(bytesOfFile(report), "old");
}

TEST(NearestNames, CountLetterCaseLeastAndPreferWhatContainsTheText) {
    const std::vector<std::string> names = {"DiversityTest", "SignalStrengthVerificationTest"};
    EXPECT_EQ(tesk5::nearestName("signal", names), names[1]);
    EXPECT_EQ(tesk5::nearestName("DIVERSITY", names), names[0]);
    EXPECT_EQ(tesk5::nearestName("Divresity", names), names[0]);
    EXPECT_EQ(tesk5::nearestName("x", {}), "");
    EXPECT_EQ(tesk5::nearestName("Foo", names), "") << "no name is like this";
    EXPECT_EQ(tesk5::nearestName("", names), "");
}

} // namespace

} // namespace test
