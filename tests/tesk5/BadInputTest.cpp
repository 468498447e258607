// Unusable input: exit value 64, one line, nothing run, nothing written.
#include "FrameworkTest.h"

#include "texts/UnknownName.h"

#include <algorithm>

namespace test {

namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::StartsWith;

const char* const UNWRITABLE = "; name a file in a folder that you may write to";

struct Refusal {
    std::vector<std::string> arguments;
    std::string line; ///< after the name of the program
};

class BadInputs : public FrameworkTest {
protected:
    BadInputs() {
        registerTest("Signal",
                     [this](const DiagDevice&) {
                         m_ran = true;
                         return TestResult::PASS();
                     })
            ->addParameter(optionalParameter("SSID"))
            ->addParameter(optionalParameter("Limit", DataType::UINT32()));
        registerTest("Asks", TestResult::COMPLETED())->setInteractive(true);
    }

    /// \param last the end of the line; between it and `first` is a message of the system
    void refuses(const std::vector<std::string>& arguments, const std::string& first,
                 const std::string& last = {}) {
        SCOPED_TRACE(first);
        forgetOutput();
        const std::vector<std::string> before = filesThere();
        EXPECT_EQ(start(arguments), 64);
        EXPECT_THAT(errors(), AllOf(StartsWith("example: " + first), EndsWith(last + "\n")));
        if (last.empty()) {
            EXPECT_EQ(errors(), "example: " + first + "\n");
        }
        EXPECT_EQ(std::count(errors().begin(), errors().end(), '\n'), 1);
        EXPECT_EQ(output(), "");
        EXPECT_FALSE(m_ran);
        EXPECT_EQ(filesThere(), before);
    }

    bool m_ran = false;
};

TEST_F(BadInputs, AreRefusedWithWhatIsWrongAndWhatToDo) {
    const Refusal refusals[] = {
        {{"run", "Signl"},
         "there is no test \"Signl\", the nearest is \"Signal\"; the tests are \"Signal\", "
         "\"Asks\""},
        {{"run", "list"}, "there is no test \"list\"; the tests are \"Signal\", \"Asks\""},
        {{"run", ""}, "there is no test \"\"; the tests are \"Signal\", \"Asks\""},
        {{"run", "a\nb"}, "there is no test \"a\\nb\"; the tests are \"Signal\", \"Asks\""},
        {{"run", "Signal", "Signal"}, "the test \"Signal\" is named more than once; name it once"},
        {{"rn"},
         "there is no command \"rn\", the nearest is \"run\"; the commands are list, run, doctor, "
         "echo, bare, tell and history"},
        {{"zzz"},
         "there is no command \"zzz\"; the commands are list, run, doctor, echo, bare, tell and "
         "history; "
         "for a "
         "test "
         "of this name, write run zzz"},
        {{"/set", "SSID=Lab"},
         "there is no option \"/set\", the nearest is \"--set\"; --help shows what there is"},
        {{"run", "\xE2\x80\x93set", "SSID=Lab"},
         "there is no option \"\xE2\x80\x93set\", the nearest is \"--set\"; --help shows what "
         "there is"},
        {{"run", "SSID=Lab"},
         "\"SSID=Lab\" is no test; to give a parameter its value, write --set SSID=Lab"},
        {{"ssid=Lab"},
         "\"ssid=Lab\" is no test; to give a parameter its value, write --set ssid=Lab"},
        {{"doctor", "Lab"},
         "the command doctor takes no \"Lab\"; to have it look for a name, write doctor --set "
         "SSID=Lab"},
        {{"--jsno", "x", "run"},
         "there is no option \"--jsno\", the nearest is \"--json\"; --help shows what there is"},
        {{"list", "Signal"},
         "the command list takes no \"Signal\"; leave it out, or use the command run"},
        {{"run", "--json"}, "--json needs FILE, as in --json report.json"},
        {{"run", "--json", "--log", "x"}, "--json needs FILE, as in --json report.json"},
        {{"run", "--json="}, "--json needs FILE, as in --json report.json"},
        {{"run", "--device", ""}, "--device needs TEXT, as in --device intel"},
        {{"run", "--json", " "}, "--json needs FILE, as in --json report.json"},
        {{"run", "--log= \t"}, "--log needs FILE, as in --log antenna.log"},
        {{"run", "--json", "a\xFF"},
         "\"a\xEF\xBF\xBD\" has a character that is no valid Unicode; give it without that "
         "character"},
        {{"--", "run"}, "there is no option \"--\"; --help shows what there is"},
        {{"-h=1"}, "--help takes no value; leave \"=1\" out"},
        {{"--version", "garbage"},
         "there is no command \"garbage\"; the commands are list, run, doctor, echo, bare, "
         "tell and history; for "
         "a "
         "test of this name, write run garbage"},
        {{"--help", "garbage"},
         "there is no command \"garbage\"; the commands are list, run, doctor, echo, bare, "
         "tell and history; for "
         "a "
         "test of this name, write run garbage"},
        {{"--help", "--nonsense"}, "there is no option \"--nonsense\"; --help shows what there is"},
        {{"run", "--set"},
         "--set needs NAME=VALUE, as in --set SSID=Lab --set WarningSignalStrength=40"},
        {{"run", "--events=no"}, "--events takes no value; leave \"=no\" out"},
        {{"run", "--color", "green"}, "--color \"green\" is no choice; give auto, always or never"},
        {{"run", "--json", file("a"), "--json", file("b")},
         "--json is given 2 times; give it once"},
        {{"run", "--devices", file("none.json")}, "--devices is given 2 times; give it once"},
        {{"run", "--set", "SSID"},
         "--set \"SSID\" is not NAME=VALUE; write it as in --set SSID=Lab"},
        {{"run", "--set", "=Lab"},
         "--set \"=Lab\" is not NAME=VALUE; write it as in --set SSID=Lab"},
        {{"run", "--set", "{}"}, "--set \"{}\" is not NAME=VALUE; write it as in --set SSID=Lab"},
        {{"run", "--events", "--set", "Sid=Lab"},
         "--set Sid=Lab: no test that would run has the parameter \"Sid\", the nearest is "
         "\"SSID\"; the parameters are \"SSID\", \"Limit\""},
        {{"run", "--set", "Temperature=20"},
         "--set Temperature=20: no test that would run has the parameter \"Temperature\"; the "
         "parameters are \"SSID\", \"Limit\""},
        {{"run", "Asks", "--set", "SSID=Lab"},
         "--set SSID=Lab: the tests that would run have no parameters; leave it out"},
        {{"run", "--set", "SSID=Lab", "--set", "SSID=Office"},
         "--set SSID=Office: the parameter \"SSID\" has a value already; give it once"},
        {{"run", "--set", "Limit=ten"},
         "--set Limit=ten: \"ten\" is not a whole number from 0 to 4294967295 in decimal digits; "
         "give such a number"},
        {{"--json", file("report.json")},
         "--json goes with the command run, and nothing is to be run; add run"},
        {{"list", "--set", "SSID=Lab"},
         "--set goes with the command run, and nothing is to be run; add run"},
        {{"list", "--events"},
         "--events goes with the command run, and nothing is to be run; add run"},
        {{"run", "--log", file("x"), "--json", file("./x")},
         "--json and --log both name \"" + file("x") + "\"; give each a file of its own"},
        {{"run", "--json", file("devices.json")},
         "--devices and --json both name \"" + file("devices.json") +
             "\"; give each a file of its own"},
        {{"run", "--log", file("devices.json")},
         "--devices and --log both name \"" + file("devices.json") +
             "\"; give each a file of its own"},
    };
    for (const auto& [arguments, line] : refusals) {
        refuses(arguments, line);
    }
    for (const char* level : {"6", "-1", "high", "0x1"}) {
        refuses({"run", std::string("--log-level=") + level},
                std::string("--log-level \"") + level +
                    "\" is no level; give a number from 0 to 5");
    }
}

TEST_F(BadInputs, AreRefusedForNumbersAndChoicesWithRangeAndUnit) {
    registry()
        .findTest("Signal")
        ->addParameter(
            optionalParameter("Level", DataType::DECIMAL())->setRange({-110, -10, "dBm"}))
        ->addParameter(optionalParameter("Samples", DataType::INTEGER())->setRange({5, 1000, ""}))
        ->addParameter(
            optionalParameter("Band", DataType::CHOICE())->setChoices({"2.4", "5", "6"}));
    const Refusal refusals[] = {
        {{"Level=70"},
         "\"70\" lies outside -110 to -10\u00A0dBm, and -70 lies inside; did you mean -70?"},
        {{"Level=-120"}, "\"-120\" lies outside -110 to -10\u00A0dBm; give a number in this range"},
        {{"Level=-70,5"}, "\"-70,5\" has a decimal comma; write a decimal point: -70.5"},
        {{"Level=-70dBm"},
         "\"-70dBm\" is not a number in decimal digits, with a decimal point where needed and "
         "without unit; give one from -110 to -10\u00A0dBm"},
        {{"Level=-70.1234"},
         "\"-70.1234\" has more than 3 digits behind the decimal point; round it"},
        {{"Samples=15.5"}, "\"15.5\" is not a whole number; give one from 5 to 1000"},
        {{"Samples=4"}, "\"4\" lies outside 5 to 1000; give a number in this range"},
        {{"Band=2,4"},
         "\"2,4\" is no choice, the nearest is \"2.4\"; give one of \"2.4\", \"5\", \"6\""},
        {{"Band=60GHz"}, "\"60GHz\" is no choice; give one of \"2.4\", \"5\", \"6\""},
    };
    for (const auto& [setting, reason] : refusals) {
        refuses({"run", "--set", setting.front()}, "--set " + setting.front() + ": " + reason);
    }
    registry().findParameter("Level")->setReasonForOtherSign("LEVEL_NEGATIVE");
    refuses({"run", "--set", "Level=70"}, "--set Level=70: LEVEL_NEGATIVE");
}

TEST_F(BadInputs, NothingToRun) {
    registry().tests.clear();
    refuses({"run"}, "there is no test to run; use the command list");
    registerTest("Asks", TestResult::COMPLETED())->setInteractive(true);
    refuses({"run"}, "every test is interactive; name one, as in run Asks");
}

TEST_F(BadInputs, ARequiredParameterWithoutAValue) {
    registerTest("Needy", TestResult::PASS())
        ->addParameter(DiagModule::createParameter("Serial", DataType::STRING(), "", false, false));
    refuses({"run", "Needy"},
            "the parameter \"Serial\" has no value; give it with --set Serial=VALUE");
    EXPECT_EQ(start({"run", "Needy", "--set", "Serial=1"}), 0);
}

TEST_F(BadInputs, AMissingDeviceFile) {
    EXPECT_EQ(startBare({"run", "--devices", file("none.json")}), 64);
    EXPECT_THAT(errors(),
                AllOf(StartsWith("example: the device file \"" + file("none.json") +
                                 "\" cannot be used: No such file"),
                      EndsWith("; mend it, or leave out --devices to use this PC's devices\n")));
}

TEST_F(BadInputs, FilesThatCannotBeWritten) {
    const std::string folder = file("folder");
    std::filesystem::create_directory(mrl::System::path(folder));
    const std::string belowAFile = file("devices.json/report.json");
    refuses({"run", "--json", belowAFile},
            "the report \"" + belowAFile + "\" cannot be written: ", UNWRITABLE);
    for (const std::string& path : {folder, folder + "/"}) {
        refuses({"run", "--json", path},
                "the report \"" + path + "\" cannot be written: it is a directory" + UNWRITABLE);
    }
    for (const char* command : {"run", "list"}) {
        refuses({command, "--log", folder}, "the log \"" + folder + "\" cannot be written: ",
                "; name a file that you may write to");
    }
}

TEST_F(BadInputs, AReportThatIsReadOnlyUnlessItsReaderMayWriteEverywhere) {
    const std::string path = fileWith("report.json", "old");
    std::filesystem::permissions(mrl::System::path(path), std::filesystem::perms::owner_read);
    if (std::fstream(mrl::System::path(path), std::ios::in | std::ios::out)) {
        EXPECT_EQ(start({"run", "--json", path}), 0) << "read-only means nothing to this user";
        EXPECT_NE(bytesOfFile(path), "old");
    } else {
        refuses({"run", "--json", path},
                "the report \"" + path + "\" cannot be written: ", UNWRITABLE);
        EXPECT_EQ(bytesOfFile(path), "old");
    }
    std::filesystem::permissions(mrl::System::path(path), std::filesystem::perms::owner_all);
}

TEST_F(BadInputs, LeaveLogAndReportAlone) {
    const std::string log = fileWith("run.log", "log\n");
    const std::string report = fileWith("report.json", "old");
    refuses({"run", "Signl", "--log", log, "--json", report},
            "there is no test \"Signl\", the nearest is \"Signal\"; the tests are \"Signal\", "
            "\"Asks\"");
    setDevices("[1]");
    refuses({"run", "--log", log, "--json", report},
            "the device file \"" + file("devices.json") + "\" cannot be used: $[0] ", " devices");
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
