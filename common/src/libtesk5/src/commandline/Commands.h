// The commands and options of the program as tables, for the parser, the help page and the
// configuration file alike.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tesk5 {

struct CommandLine;
struct CommandOption;
struct ModuleCommand;

enum class Command { list, run, doctor, replay, configTemplate, help, version, ofModule };

/// A command.
struct CommandDescription {
    Command command;
    const char* name;
    const char* arguments; ///< what may follow it besides options
    const char* help;      ///< key of a text
    std::vector<const char*> examples;
    const ModuleCommand* ofModule = nullptr; ///< null for a command of the framework
};

/// Every command, in the order of the help page: those of the framework, then the module's.
const std::vector<CommandDescription>& commandDescriptions();

/// The command of the framework of that kind.
const CommandDescription& descriptionOf(Command command);

/// An option.
struct OptionDescription {
    const char* name;
    const char* argument; ///< what follows it; null for a switch
    const char* help;     ///< key of a text
    const char* example;
    /// Puts a value into the command line, "true" or "false" for a switch. Null for an option that
    /// ends the parsing.
    /// \return whether the option takes the value
    bool (*apply)(CommandLine& line, std::string_view name, const std::string& value) = nullptr;
    std::vector<Command> commands = {}; ///< those that take it; none for all
    const char* refusal = nullptr;      ///< key of the text about a value that it does not take
    /// Whether a command of the module takes it; null: none does, or all do.
    bool (*goesWithModule)(const ModuleCommand& command, std::string_view name) = nullptr;
    const CommandOption* ofModule = nullptr; ///< null for an option of the framework
};

/// Every option, in the order of the help page.
const std::vector<OptionDescription>& optionDescriptions();

/// The option of that name; null for any other text.
const OptionDescription* optionNamed(std::string_view name);

/// The text of `refusal` about an option's `value`.
std::string refusalOf(const char* refusal, const std::string& value);

/// Whether `command` takes `option`.
bool goesWith(const OptionDescription& option, const CommandDescription& command);

/// The commands that take `option`, in the order of the help page.
std::vector<const CommandDescription*> takersOf(const OptionDescription& option);

} // namespace tesk5
