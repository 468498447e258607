// Command lines, one argument a line of the input: understood, or refused with one line.
#include "ExampleModule.h"
#include "Refusal.h"

#include <support/InputFile.h>

#include <commandline/CommandLine.h>
#include <run/Plan.h>
#include <texts/Languages.h>

namespace {

void follow(const tesk5::CommandLine& line) {
    fuzz::promise(!line.logLevel || (*line.logLevel >= 0 && *line.logLevel <= 5),
                  "a log level is one");
    if (line.command == tesk5::Command::help) {
        fuzz::promiseNone(test::offenceInLines(tesk5::helpPage("example", line.helpOn)), "help");
    }
    if (line.language) {
        fuzz::promise(tesk5::canonicalTag(tesk5::canonicalTag(*line.language)) ==
                          tesk5::canonicalTag(*line.language),
                      "a canonical tag stays as it is");
        tesk5::fallbacksOf(*line.language);
    }
    const std::vector<const tesk5::Test*> tests = tesk5::chooseTests(fuzz::registry(), line.tests);
    fuzz::promise(line.tests.empty() || tests.size() == line.tests.size(),
                  "every test that is named is chosen");
    tesk5::applySettings(fuzz::registry(), line.settings, tests);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Arguments are texts with an end: a zero byte ends one too.
    std::vector<std::string> arguments;
    for (const std::string& line : test::linesOf(fuzz::viewOf(data, size))) {
        arguments.emplace_back(line.c_str());
    }
    fuzz::registry();
    try {
        tesk5::languageAskedFor(arguments);
        follow(tesk5::parseCommandLine(arguments));
    } catch (const tesk5::BadInput& refused) {
        fuzz::promiseRefusal(refused);
    }
    return 0;
}
