// The commands and options of the program as tables, for the parser and the help page alike.
#pragma once

#include <vector>

namespace tesk5 {

struct ModuleCommand;

enum class Command { list, run, doctor, configTemplate, help, version, ofModule };

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

/// An option.
struct OptionDescription {
    const char* name;
    const char* argument; ///< what follows it; null for a switch
    const char* help;     ///< key of a text
    const char* example;
    std::vector<Command> commands = {}; ///< those that take it; none for all
};

/// Every option, in the order of the help page.
const std::vector<OptionDescription>& optionDescriptions();

/// Whether `command` takes `option`.
bool goesWith(const OptionDescription& option, Command command);

} // namespace tesk5
