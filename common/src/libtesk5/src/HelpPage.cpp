#include "CommandLine.h"

#include <tesk5/TestResult.h>

#include "BadInput.h"

namespace tesk5 {

namespace {

struct ExitMeaning {
    int value;
    const char* word;
    const char* meaning;
};

// From good to bad, as start() ranks them.
const ExitMeaning exitMeanings[] = {
    {0, "", "every result is PASS or COMPLETED"},
    {TestResult::WARN().value(), "WARN", "a test warns"},
    {TestResult::USERABORTED().value(), "USERABORTED", "the person at the PC ended the run"},
    {TestResult::CANNOTRUN().value(), "CANNOTRUN",
     "no device for a test, or no verdict (radio off)"},
    {TestResult::BADPARAMS().value(), "BADPARAMS", "a parameter is missing or makes no sense"},
    {TestResult::FAIL().value(), "FAIL", "a test fails"},
    {TestResult::INTERNALERROR().value(), "INTERNALERROR", "a test broke down"},
    {TestResult::EXITEDABNORMALLY().value(), "EXITEDABNORMALLY",
     "the program broke down, or lost its report"},
    {BadInput::VALUE, "", "wrong usage or unusable input: nothing was run"},
};

std::string padded(std::string text, std::size_t width) {
    text.resize(std::max(text.size() + 1, width), ' ');
    return text;
}

} // namespace

const std::vector<OptionDescription>& optionDescriptions() {
    static const std::vector<OptionDescription> options = {
        {"--set", "NAME=VALUE", "give a parameter its value; repeat for each parameter",
         "--set SSID=Lab --set WarningSignalStrength=40"},
        {"--device", "TEXT",
         "only devices with TEXT in their name, system name\nor GUID, in any letter case",
         "--device intel"},
        {"--devices", "FILE", "take the devices from a JSON file, not from this PC",
         "--devices cards.json"},
        {"--json", "FILE", "write a report; replaces FILE when the run is over",
         "--json report.json"},
        {"--junit", "FILE", "the same as JUnit's XML, for continuous integration",
         "--junit report.xml"},
        {"--events", nullptr,
         "follow the run: standard output is JSON Lines, one\nfor each thing that happens",
         "run --events --set SSID=Lab"},
        {"--log", "FILE", "append what the program does to FILE", "--log antenna.log"},
        {"--log-level", "N",
         "least priority in the log, 0 to 5, else 1; 0 shows\nevery step. Without --log the log "
         "goes to standard\nerror",
         "--log-level 0"},
        {"--language", "TAG",
         "language of all texts, as de, fr or zh-Hans; else\nthat of Windows' user interface",
         "--language de"},
        {"--version", nullptr, "tell the version and end", "--version"},
        {"--help", nullptr, "show this page and end", "run --help"},
    };
    return options;
}

std::string helpPage(const std::string& program) {
    std::string page =
        "Tests devices of this PC.\n\n  " + program +
        " [list] [OPTIONS]\n"
        "      Shows tests, parameters and devices, and which test would run where.\n"
        "      example: " +
        program + " list\n  " + program +
        " run [TEST...] [OPTIONS]\n"
        "      Runs the named tests, else every one that is not interactive, on each\n"
        "      device that suits it.\n"
        "      example: " +
        program + " run --set SSID=Lab\n\nOptions, before or after the command:\n";
    constexpr std::size_t INDENT = 25;
    for (const OptionDescription& option : optionDescriptions()) {
        std::string head = std::string("  ") + option.name;
        if (option.argument != nullptr) {
            head += std::string(" ") + option.argument;
        }
        std::string help = option.help;
        for (std::size_t end = help.find('\n'); end != std::string::npos;
             end = help.find('\n', end + 1)) {
            help.insert(end + 1, INDENT, ' ');
        }
        page += padded(head, INDENT) + help + "\n" + std::string(INDENT, ' ') +
                "example: " + option.example + "\n";
    }
    page += "\nExit values, the worst result of a run deciding (from good to bad):\n";
    for (const ExitMeaning& exit : exitMeanings) {
        page += padded("  " + padded(std::to_string(exit.value), 4) + exit.word, INDENT) +
                exit.meaning + "\n";
    }
    return page;
}

} // namespace tesk5
