// Command lines, each line of the input one argument: they are parsed, or refused with one line.
#include "ExampleModule.h"
#include "Refusal.h"

#include <support/InputFile.h>

#include <commandline/CommandLine.h>
#include <commandline/HelpPage.h>
#include <run/Plan.h>
#include <texts/LanguageTags.h>

namespace {

void follow(const tesk5::CommandLine& line) {
    fuzz::require(!line.logLevel || (*line.logLevel >= 0 && *line.logLevel <= 5),
                  "a log level is from 0 to 5");
    if (line.command == tesk5::Command::help) {
        fuzz::requireNone(test::findUnsafeInLines(tesk5::helpPage("example", line.helpOn)), "help");
    }
    if (line.language) {
        fuzz::require(tesk5::canonicalTag(tesk5::canonicalTag(*line.language)) ==
                          tesk5::canonicalTag(*line.language),
                      "a canonical tag stays as it is");
        tesk5::fallbacksOf(*line.language);
    }
    const std::vector<const tesk5::Test*> tests = tesk5::chooseTests(fuzz::registry(), line.tests);
    fuzz::require(line.tests.empty() || tests.size() == line.tests.size(),
                  "every test that is named is chosen");
    tesk5::applySettings(fuzz::registry(), line.settings, tests);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // A zero byte ends an argument, as it does on a real command line.
    std::vector<std::string> arguments;
    for (const std::string& line : test::linesOf(fuzz::viewOf(data, size))) {
        arguments.emplace_back(line.c_str());
    }
    fuzz::registry();
    try {
        tesk5::languageAskedFor(arguments);
        follow(tesk5::parseCommandLine(arguments));
    } catch (const tesk5::BadInput& refused) {
        fuzz::requireReadableRefusal(refused);
    }
    return 0;
}
