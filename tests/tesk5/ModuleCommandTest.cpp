// Commands that the module adds to those of the framework.
#include "FrameworkTest.h"

#include <run/Plan.h>

#include <tesk5/TeskException.h>

namespace test {

namespace {

using ModuleCommands = FrameworkTest;

// The command "tell" works on the devices of the test Fine and takes its parameter SSID.
class CommandsOnDevices : public FrameworkTest {
protected:
    CommandsOnDevices() {
        registerTest("Fine", TestResult::PASS())->addParameter(optionalParameter("SSID"));
        optionalParameter("Other");
    }
};

TEST_F(ModuleCommands, GetTheirArgumentsAndTheContextOfTheRun) {
    EXPECT_EQ(startBare({"echo", "one", "two"}), 2);
    EXPECT_EQ(output(), "one two 6.5\n");
    EXPECT_EQ(errors(), "");
}

TEST_F(ModuleCommands, TakeTheOptionsOfEveryCommandAndNoOthers) {
    EXPECT_EQ(startBare({"echo", "one", "--color", "never"}), 1);
    EXPECT_EQ(output(), "one 6.5\n");
    EXPECT_EQ(startBare({"echo", "--json", file("r.json")}), 64);
    EXPECT_THAT(errors(), HasSubstr("the command echo takes no \"--json\""));
}

TEST_F(ModuleCommands, WithoutArgumentsRefuseThem) {
    EXPECT_EQ(startBare({"bare"}), 0);
    EXPECT_EQ(startBare({"bare", "one"}), 64);
    EXPECT_THAT(errors(), HasSubstr("the command bare takes no \"one\""));
}

TEST(ParametersOfACommand, AreThoseThatTheModuleHas) {
    tesk5::ModuleCommand command{"tell", "", "PLAIN", {}, nullptr};
    command.parameters = {"Missing"};
    EXPECT_THROW(tesk5::parametersOf(command, tesk5::Registry()), tesk5::TeskException);
}

TEST_F(ModuleCommands, StandOnTheHelpPageBehindThoseOfTheFramework) {
    EXPECT_EQ(startBare({"--help"}), 0);
    EXPECT_THAT(output(), HasSubstr("  example.k5x echo [WORD...] [OPTIONS]\n"
                                    "    Something happened.\n"));
    EXPECT_LT(output().find(" doctor "), output().find(" echo "));
    forgetOutput();
    EXPECT_EQ(startBare({"echo", "--help"}), 0);
    EXPECT_THAT(output(), HasSubstr("  example.k5x echo one two\n"));
}

TEST_F(CommandsOnDevices, GetTheirOptionsTheSuitableDevicesAndTheParametersThatTheyTake) {
    setDevicesOfTwoKinds();
    EXPECT_EQ(
        start({"tell", "--format", "CSV", "--seconds=05", "--word", "a b", "--set", "ssid=Lab"}),
        0);
    EXPECT_EQ(output(), "--format=csv\n--seconds=5\n--word=a b\nSSID=Lab\nOther=\non Card\n");
    EXPECT_EQ(errors(), "");
}

TEST_F(CommandsOnDevices, TakeOnlyTheDevicesThatDeviceNames) {
    setDevices(2);
    EXPECT_EQ(start({"tell", "--device", "card 2"}), 0);
    EXPECT_THAT(output(), HasSubstr("on Card 2\n"));
    EXPECT_THAT(output(), Not(HasSubstr("on Card 1\n")));
}

TEST_F(CommandsOnDevices, WithoutADeviceSayWhyAndDoNotRun) {
    setDevices(1);
    EXPECT_EQ(start({"tell", "--device", "intel"}), TestResult::CANNOTRUN().value());
    EXPECT_EQ(output(), "");
    EXPECT_THAT(errors(), HasSubstr("example: no device for tell\n  Card 1: "));
    EXPECT_THAT(errors(), HasSubstr("\"intel\""));
}

TEST_F(CommandsOnDevices, RefuseValuesThatTheirOptionsDoNotTake) {
    const std::pair<std::vector<std::string>, const char*> refused[] = {
        {{"tell", "--format", "xml"},
         "example: --format xml: \"xml\" is no choice; give one of \"csv\", \"jsonl\"\n"},
        {{"tell", "--format", "json"},
         "example: --format json: \"json\" is no choice, the nearest is \"jsonl\"; give one of "
         "\"csv\", \"jsonl\"\n"},
        {{"tell", "--seconds", "0"},
         "example: --seconds 0: \"0\" lies outside 1 to 60\xC2\xA0"
         "s; give a number in this range\n"},
        {{"tell", "--seconds", "1.5"},
         "example: --seconds 1.5: \"1.5\" is not a whole number; give one from 1 to 60\xC2\xA0"
         "s\n"},
        {{"tell", "--seconds"}, "example: --seconds needs N, as in tell --seconds 5\n"},
        {{"tell", "--seconds", "1", "--seconds", "2"},
         "example: --seconds is given 2 times; give it once\n"},
        {{"tell", "--refuse=no"}, "example: --refuse takes no value; leave \"=no\" out\n"},
        {{"tell", "--secnds", "1"},
         "example: there is no option \"--secnds\", the nearest is \"--seconds\"; --help shows "
         "what there is\n"},
        {{"tell", "--set", "Other=1"},
         "example: --set Other=1: the command tell has no parameter \"Other\"; its parameters are "
         "\"SSID\"\n"},
        {{"tell", "--set", "SSD=Lab"},
         "example: --set SSD=Lab: the command tell has no parameter \"SSD\", the nearest is "
         "\"SSID\"; "
         "its parameters are \"SSID\"\n"},
    };
    for (const auto& [arguments, line] : refused) {
        forgetOutput();
        EXPECT_EQ(startBare(arguments), 64) << line;
        EXPECT_EQ(errors(), line);
        EXPECT_EQ(output(), "");
    }
}

TEST_F(CommandsOnDevices, KeepTheirOptionsToThemselves) {
    const std::pair<std::vector<std::string>, const char*> refused[] = {
        {{"run", "--seconds", "1"},
         "example: --seconds is an option of tell; use it there, or leave it out\n"},
        {{"--format", "csv"},
         "example: --format is an option of bare, tell and history; use it there, or leave it "
         "out\n"},
        {{"bare", "--seconds", "1"},
         "example: --seconds is an option of tell; use it there, or leave it out\n"},
        {{"bare", "--device", "x"},
         "example: the command bare takes no \"--device\"; leave it out, or use the command run\n"},
    };
    for (const auto& [arguments, line] : refused) {
        forgetOutput();
        EXPECT_EQ(startBare(arguments), 64) << line;
        EXPECT_EQ(errors(), line);
    }
    EXPECT_EQ(startBare({"bare", "--format", "csv"}), 0);
}

TEST_F(CommandsOnDevices, RefuseBadInputThemselves) {
    EXPECT_EQ(start({"tell", "--refuse"}), 64);
    EXPECT_EQ(errors(), "example: --refuse is refused; leave it out\n");
}

TEST_F(CommandsOnDevices, TakeFromTheConfigurationFileWhatIsTheirs) {
    setDevices(2);
    const std::string config = fileWith("station.toml", "tests = [\"Fine\"]\n"
                                                        "[parameters]\n"
                                                        "SSID = \"Lab\"\n"
                                                        "Other = \"x\"\n"
                                                        "[devices]\n"
                                                        "filter = \"Card 1\"\n"
                                                        "file = \"devices.json\"\n");
    EXPECT_EQ(startBare({"tell", "--config", config}), 0);
    EXPECT_EQ(output(), "SSID=Lab\nOther=\non Card 1\n");
    EXPECT_EQ(errors(), "");
}

TEST_F(CommandsOnDevices, ExplainTheirOptionsOnTheHelpPages) {
    EXPECT_EQ(startBare({"--help"}), 0);
    EXPECT_THAT(output(), HasSubstr("\nOptions of bare and tell:\n  --format csv|jsonl  "));
    EXPECT_THAT(output(), HasSubstr("\nOptions of tell:\n  --seconds N  "));
    EXPECT_THAT(output(), HasSubstr("\nOptions of run, doctor and tell:\n  --set NAME=VALUE  "));
    forgetOutput();
    EXPECT_EQ(startBare({"tell", "--help"}), 0);
    EXPECT_THAT(output(), HasSubstr("  example.k5x tell --seconds 5\n"));
    EXPECT_THAT(output(), HasSubstr("--seconds N"));
    EXPECT_THAT(output(), HasSubstr("--config FILE"));
    EXPECT_THAT(output(), Not(HasSubstr("--json")));
}

} // namespace

} // namespace test
