// The help page, made from the tables of commands, options and exit values.
#include "commandline/HelpPage.h"

#include <tesk5/BadInput.h>
#include <tesk5/RunContext.h>
#include <tesk5/TestResult.h>
#include <tesk5/TextLayout.h>
#include <tesk5/Texts.h>

#include "commandline/Program.h"
#include "texts/Lists.h"

#include <mrl/DisplayWidth.h>

#include <algorithm>
#include <functional>

namespace tesk5 {

namespace {

struct ExitMeaning {
    int value;
    const char* word;
    const char* meaning; ///< key of a text
};

// From good to bad, as start() ranks them.
const ExitMeaning exitMeanings[] = {
    {0, "", "HELP_EXIT_GOOD"},
    {TestResult::WARN().value(), "WARN", "HELP_EXIT_WARN"},
    {TestResult::USERABORTED().value(), "USERABORTED", "HELP_EXIT_USERABORTED"},
    {TestResult::CANNOTRUN().value(), "CANNOTRUN", "HELP_EXIT_CANNOTRUN"},
    {TestResult::BADPARAMS().value(), "BADPARAMS", "HELP_EXIT_BADPARAMS"},
    {TestResult::FAIL().value(), "FAIL", "HELP_EXIT_FAIL"},
    {TestResult::INTERNALERROR().value(), "INTERNALERROR", "HELP_EXIT_INTERNALERROR"},
    {TestResult::EXITEDABNORMALLY().value(), "EXITEDABNORMALLY", "HELP_EXIT_EXITEDABNORMALLY"},
    {BadInput::VALUE, "", "HELP_EXIT_UNUSABLE"},
    {REPLAY_DIFFERS, "", "HELP_EXIT_REPLAY_DIFFERS"},
    {OUTPUT_LOST, "", "HELP_EXIT_OUTPUT_LOST"},
};

// One column less than the usual terminal: some terminals wrap after the last column.
constexpr std::size_t COLUMNS = 79;

// `text` in lines behind `indent` columns; the first line has `head` in them.
std::string paragraph(const std::string& text, std::size_t indent, const std::string& head = {}) {
    std::string lines;
    for (const std::string& line : wrapped(text, COLUMNS - indent)) {
        const std::string margin = lines.empty() ? head : std::string();
        lines += (indent == 0 ? margin : padded(margin, indent)) + line + "\n";
    }
    return lines;
}

std::string headOf(const OptionDescription& option) {
    return std::string("  ") + option.name +
           (option.argument == nullptr ? std::string() : std::string(" ") + option.argument);
}

std::string headOf(const ExitMeaning& exit) {
    constexpr std::size_t VALUE_COLUMNS = 4;
    return "  " + padded(std::to_string(exit.value), VALUE_COLUMNS) + exit.word;
}

// The column in which the texts after all heads begin.
template <typename Table>
std::size_t indentBehind(const Table& table) {
    constexpr std::size_t GAP = 2;
    std::size_t widest = 0;
    for (const auto& row : table) {
        widest = std::max(widest, mrl::columnsOf(headOf(row)));
    }
    return widest + GAP;
}

using Takers = std::vector<const CommandDescription*>;

bool isForAll(const Takers& takers) {
    return takers.size() == commandDescriptions().size();
}

std::string headingOf(const Takers& takers) {
    return isForAll(takers)
               ? message("HELP_OPTIONS_OF_ALL")
               : message("HELP_OPTIONS_OF",
                         {{"Commands", listedWithAnd(textsOf(takers, &CommandDescription::name))}});
}

// The options that `wanted` accepts, grouped by their commands; those of every command come last.
template <typename Wanted>
std::string optionGroups(Wanted wanted, bool withExamples) {
    std::vector<Takers> groups;
    for (const OptionDescription& option : optionDescriptions()) {
        const Takers takers = takersOf(option);
        if (wanted(option) && std::find(groups.begin(), groups.end(), takers) == groups.end()) {
            groups.push_back(takers);
        }
    }
    std::stable_partition(groups.begin(), groups.end(), std::not_fn(isForAll));
    const std::size_t indent = indentBehind(optionDescriptions());
    std::string page;
    for (const Takers& group : groups) {
        page += "\n" + paragraph(headingOf(group), 0);
        for (const OptionDescription& option : optionDescriptions()) {
            if (takersOf(option) != group) {
                continue;
            }
            page += paragraph(message(option.help), indent, headOf(option));
            if (withExamples) {
                page += paragraph(message("HELP_EXAMPLE", {{"Example", option.example}}), indent);
            }
        }
    }
    return page;
}

std::string usage(const std::string& program, const CommandDescription& command) {
    const bool optional = command.command == Command::list;
    const std::string name = optional ? "[" + std::string(command.name) + "]" : command.name;
    const std::string arguments =
        *command.arguments != 0 ? " " + std::string(command.arguments) : "";
    return program + " " + name + arguments + " [OPTIONS]";
}

std::string overview(const std::string& program) {
    // Leaves room for the longest example: a command copied from two lines would not work.
    constexpr std::size_t INDENT = 4;
    std::string page = paragraph(message("HELP_PURPOSE"), 0);
    for (const CommandDescription& command : commandDescriptions()) {
        page += "\n  " + usage(program, command) + "\n" + paragraph(message(command.help), INDENT) +
                paragraph(message("HELP_EXAMPLE",
                                  {{"Example", program + " " + command.examples.front()}}),
                          INDENT);
    }
    page += optionGroups([](const OptionDescription&) { return true; }, false);
    page += "\n" + paragraph(message("HELP_EXIT_VALUES"), 0);
    const std::size_t indent = indentBehind(exitMeanings);
    for (const ExitMeaning& exit : exitMeanings) {
        page += paragraph(message(exit.meaning), indent, headOf(exit));
    }
    return page + "\n" + paragraph(message("HELP_MORE", {{"Program", program}}), 0);
}

// Whether an example names a test that this system cannot run.
bool failsHere(std::string_view example) {
    const std::deque<Test>& tests = RunContext::current().registry.tests;
    return std::any_of(tests.begin(), tests.end(), [example](const Test& test) {
        return test.obstacle() != nullptr &&
               example.find(test.name().utf8()) != std::string_view::npos;
    });
}

std::string pageOn(const CommandDescription& command, const std::string& program) {
    std::string page =
        "  " + usage(program, command) + "\n\n" + paragraph(message(command.help), 0);
    page += "\n" + paragraph(message("HELP_EXAMPLES"), 0);
    for (const char* example : command.examples) {
        if (failsHere(example)) {
            continue;
        }
        page += "  " + program + " " + example + "\n";
    }
    page += optionGroups(
        [&command](const OptionDescription& option) { return goesWith(option, command); }, true);
    return page + "\n" + paragraph(message("HELP_OVERVIEW", {{"Program", program}}), 0);
}

} // namespace

std::string helpPage(const std::string& program, const CommandDescription* command) {
    return command == nullptr ? overview(program) : pageOn(*command, program);
}

} // namespace tesk5
