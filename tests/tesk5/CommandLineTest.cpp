#include "FrameworkTest.h"

#include <support/StreamToFile.h>

#include <commandline/CommandLine.h>
#include <commandline/Program.h>

#include <mrl/Logger.h>
#include <mrl/LoggerStream.h>

#include <array>
#ifndef _WIN32
#include <unistd.h>
#endif

namespace test {

namespace {

using tesk5::Command;
using tesk5::parseCommandLine;

TEST(CommandLines, WithoutACommandList) {
    EXPECT_EQ(parseCommandLine({}).command, Command::list);
    EXPECT_EQ(parseCommandLine({"list"}).command, Command::list);
    EXPECT_EQ(parseCommandLine({"--device", "x"}).command, Command::list);
}

TEST(CommandLines, TakeOptionsBeforeAndAfterTheCommand) {
    for (const auto& line : {
             parseCommandLine({"--json", "r", "--set", "a=1", "run", "T", "U", "--log", "l"}),
             parseCommandLine({"run", "T", "--json", "r", "U", "--set=a=1", "--log=l"}),
         }) {
        EXPECT_EQ(line.command, Command::run);
        EXPECT_THAT(line.tests, ElementsAre("T", "U"));
        ASSERT_EQ(line.reports.size(), 1U);
        EXPECT_EQ(line.reports[0].file, "r");
        EXPECT_EQ(line.logFile, "l");
        ASSERT_EQ(line.settings.size(), 1U);
        EXPECT_EQ(line.settings[0].name, "a");
        EXPECT_EQ(line.settings[0].value, "1");
    }
}

TEST(CommandLines, SplitASettingAtItsFirstEqualsSignAndKeepItsValueAsItIs) {
    const auto line = parseCommandLine({"run", "--set", "SSID=a=b", "--set", "x=", "--set", "y=-1",
                                        "--set", "z=['q' \"r\",s]", "--device", "%1"});
    ASSERT_EQ(line.settings.size(), 4U);
    EXPECT_EQ(line.settings[0].value, "a=b");
    EXPECT_EQ(line.settings[1].value, "");
    EXPECT_EQ(line.settings[2].value, "-1");
    EXPECT_EQ(line.settings[3].value, "['q' \"r\",s]");
    EXPECT_EQ(line.device, "%1");
}

TEST(CommandLines, KnowHelpAndVersionEverywhere) {
    for (const auto& arguments : std::vector<std::vector<std::string>>{
             {"--help"}, {"-h"}, {"run", "--help"}, {"--help", "list"}, {"run", "X", "--help"}}) {
        EXPECT_EQ(parseCommandLine(arguments).command, Command::help);
    }
    EXPECT_EQ(parseCommandLine({"--version"}).command, Command::version);
    EXPECT_EQ(parseCommandLine({"run", "--version"}).command, Command::version);
}

class Start : public FrameworkTest {};

TEST(CommandLines, KnowTheirCommandInAnyLetterCaseAndHelpByItsOtherNames) {
    EXPECT_EQ(parseCommandLine({"--device", "RUN", "LIST"}).command, Command::list);
    EXPECT_EQ(parseCommandLine({"Run", "list"}).tests, std::vector<tesk5::TeskString>{"list"})
        << "what follows the command is spelt as it is";
    for (const char* word : {"help", "HELP", "/?", "-?", "/h", "/help"}) {
        EXPECT_EQ(parseCommandLine({word}).command, Command::help) << word;
    }
}

TEST_F(Start, KnowsTestsAndParametersInAnyLetterCase) {
    registerTest("Other", TestResult::FAIL());
    registerTest("Signal", [](const DiagDevice&) {
        return registry().findParameter("SSID")->value().valueString() == "Lab"
                   ? TestResult::PASS()
                   : TestResult::FAIL();
    })->addParameter(optionalParameter("SSID"));
    EXPECT_EQ(start({"run", "signal", "--set", "ssid=Lab"}), 0);
    registerTest("SIGNAL", TestResult::WARN());
    EXPECT_EQ(start({"run", "signal"}), 64) << "there are two";
    EXPECT_EQ(start({"run", "SIGNAL"}), 1);
}

TEST_F(Start, PrintsTheVersion) {
    EXPECT_EQ(start({"--version"}), 0);
    EXPECT_EQ(output(), "example 6.5 (build 000000001)\n");
}

TEST_F(Start, HelpNamesEveryCommandOptionAndExitValue) {
    EXPECT_EQ(start({"--help"}), 0);
    EXPECT_EQ(errors(), "");
    for (const char* word :
         {"example.k5x [list] [OPTIONS]", "example.k5x run [TEST...] [OPTIONS]", "--set NAME=VALUE",
          "  0 ", "  1   WARN", "  2   FAIL", "  3   CANNOTRUN", "  4   BADPARAMS",
          "  5   INTERNALERROR", "  6   USERABORTED", "  8   EXITEDABNORMALLY", "  64 ", "  74 ",
          "example.k5x run --set SSID=Lab --set FailingSignalStrength=20\n"}) {
        EXPECT_THAT(output(), HasSubstr(word));
    }
    std::istringstream lines(output());
    for (std::string line; std::getline(lines, line);) {
        EXPECT_LE(line.size(), 80U) << line;
    }
    for (const tesk5::OptionDescription& option : tesk5::optionDescriptions()) {
        EXPECT_THAT(output(), HasSubstr(std::string("\n  ") + option.name + " "));
        EXPECT_THAT(option.example, HasSubstr(option.name));
    }
}

TEST_F(Start, ByADoubleClickShowsTheHelpAndHowToGoOn) {
    tesk5::RunContext& context = tesk5::RunContext::current();
    context.program = "example.k5x";
    context.windowCloses = true;
    EXPECT_EQ(tesk5::runProgram(context), 0);
    const std::string shown = output();
    EXPECT_THAT(shown, testing::EndsWith("for example:\n  example.k5x doctor\n\n"
                                         "Press Enter to close this window.\n"));
    forgetOutput();
    EXPECT_EQ(start({"--help"}), 0);
    EXPECT_THAT(shown, testing::StartsWith(output()));
}

TEST_F(Start, HelpHasNoExampleOfATestThatThisSystemCannotRun) {
    const char* const example = "  example.k5x run DiversityTest --device intel\n";
    tesk5::Test* const test = registerTest("DiversityTest", TestResult::PASS());
    EXPECT_EQ(start({"run", "--help"}), 0);
    EXPECT_THAT(output(), HasSubstr(example));
    forgetOutput();
    test->setObstacle("PLAIN");
    EXPECT_EQ(start({"run", "--help"}), 0);
    EXPECT_THAT(output(), Not(HasSubstr(example)));
    EXPECT_THAT(output(), HasSubstr("  example.k5x run --config station.toml"));
}

TEST_F(Start, HelpOnACommandShowsItsOptionsWithExamples) {
    for (const auto& arguments : std::vector<std::vector<std::string>>{
             {"run", "--help"}, {"--help", "run"}, {"run", "Signal", "-h"}}) {
        forgetOutput();
        EXPECT_EQ(start(arguments), 0);
        EXPECT_THAT(output(), testing::StartsWith("  example.k5x run [TEST...] [OPTIONS]\n"));
        for (const tesk5::OptionDescription& option : tesk5::optionDescriptions()) {
            EXPECT_EQ(output().find(std::string("\n  ") + option.name + " ") != std::string::npos,
                      goesWith(option, descriptionOf(Command::run)))
                << option.name;
        }
        EXPECT_THAT(output(), HasSubstr("example: --json report.json"));
        EXPECT_THAT(output(), Not(HasSubstr("INTERNALERROR")));
    }
    forgetOutput();
    EXPECT_EQ(start({"list", "--help"}), 0);
    EXPECT_THAT(output(), testing::StartsWith("  example.k5x [list] [OPTIONS]\n"));
    EXPECT_THAT(output(), HasSubstr("\n  --device TEXT "));
    EXPECT_THAT(output(), Not(HasSubstr("\n  --json")));
}

#ifndef _WIN32 // Windows has no device that is always full, and no files that are pipes.

TEST_F(Start, HasAnExitValueForLostOutputUnlessAReportHasTheVerdict) {
    registerTest("A", TestResult::WARN());
    const auto exitValue = [this](const std::vector<std::string>& arguments,
                                  const std::string& output, int readingEnd = -1) {
        const StreamToFile redirected(stdout, output);
        close(readingEnd);
        mrl::OutputStream stream(mrl::OutputStream::Target::standardOutput);
        tesk5::RunContext context(registry(), tesk5::Language::current(), stream);
        context.arguments = {"--devices", file("devices.json")};
        context.arguments.insert(context.arguments.end(), arguments.begin(), arguments.end());
        const tesk5::RunContext::Scope scope(context);
        return DiagModule::start();
    };
    const std::string full = "/dev/full";
    EXPECT_EQ(exitValue({"run"}, full), 74);
    EXPECT_EQ(exitValue({"run", "--events"}, full), 74);
    EXPECT_EQ(exitValue({"run", "--json", file("report.json")}, full), 1);
    EXPECT_EQ(exitValue({"list"}, full), 74);
    EXPECT_EQ(exitValue({"doctor"}, full), 74);
    for (const char* command : {"run", "--help"}) {
        std::array<int, 2> ends = {};
        ASSERT_EQ(pipe(ends.data()), 0);
        EXPECT_EQ(exitValue({command}, "/dev/fd/" + std::to_string(ends[1]), ends[0]), 74)
            << "a pipe without a reader";
        close(ends[1]);
    }
    EXPECT_EQ(exitValue({"run"}, "/dev/null"), 1);
    EXPECT_EQ(exitValue({"list"}, "/dev/null"), 0);
}

#endif

TEST_F(Start, ListsWithoutEvenAProgramName) {
    DiagModule::setCmdLineArgs(0, nullptr);
    EXPECT_EQ(DiagModule::start(), 0);
    EXPECT_THAT(output(), testing::StartsWith("Tests\n"));
}

class Logs : public FrameworkTest {
protected:
    Logs() {
        registerTest("A", [](const DiagDevice&) {
            mrl::Logger& logger = mrl::LogFactory::createLogger("test");
            for (const int priority : {0, 1, 4}) {
                mrl::LoggerStream(logger.admitting(priority), priority) << "line " << priority;
            }
            return TestResult::PASS();
        });
    }

    /// The lines of the test in the log of a run with these arguments.
    std::vector<std::string> linesOf(const std::vector<std::string>& arguments) {
        mrl::LogFactory::setSink(nullptr); // closes the log of the run before
        std::filesystem::remove(mrl::System::path(file("run.log")));
        EXPECT_EQ(start(arguments), 0);
        std::vector<std::string> lines;
        std::istringstream log(bytesOfFile(file("run.log")) + errors());
        for (std::string line; std::getline(log, line);) {
            if (line.find(" test: ") != std::string::npos) {
                lines.push_back(line);
            }
        }
        return lines;
    }
};

TEST_F(Logs, AreNotWrittenUnlessRequested) {
    mrl::LogFactory::setPriority(0); // as before the first setPriority() of a process
    EXPECT_THAT(linesOf({"run"}), IsEmpty());
    EXPECT_EQ(mrl::LogFactory::getPriority(), mrl::LogFactory::OFF);
    EXPECT_THAT(filesThere(), ElementsAre("devices.json"));
}

TEST_F(Logs, HoldLinesFromTheGivenLevelOrPriorityOneOnAndGoToStandardErrorWithALevelAlone) {
    const std::string time = "2026-11-20T19:55:01.123Z ";
    const std::string log = file("run.log");
    EXPECT_THAT(linesOf({"run", "--log", log}),
                ElementsAre(time + "1 test: line 1", time + "4 test: line 4"));
    EXPECT_THAT(linesOf({"run", "--log", log, "--log-level", "0"}), testing::SizeIs(3));
    EXPECT_THAT(linesOf({"run", "--log", log, "--log-level", "5"}), IsEmpty());
    EXPECT_EQ(errors(), "");
    EXPECT_THAT(linesOf({"run", "--log-level", "4"}), ElementsAre(time + "4 test: line 4"));
}

} // namespace

} // namespace test
