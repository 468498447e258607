// The command line as a plain value.
#pragma once

#include "run/Plan.h"

#include <mrl/OutputStream.h>

#include <optional>
#include <string>
#include <vector>

namespace tesk5 {

struct ReportKind;
struct CommandDescription;
struct ModuleCommand;

enum class Command { list, run, doctor, configTemplate, help, version, ofModule };

/// A report to be written.
struct RequestedReport {
    const ReportKind* kind;
    std::string file;
};

/// What the command line asks for. Texts of files are paths in UTF-8.
struct CommandLine {
    Command command = Command::list;
    std::vector<TeskString> tests; ///< as named; none for every non-interactive one
    std::vector<Setting> settings;
    std::optional<std::string> device;
    std::optional<std::string> devicesFile;
    std::vector<RequestedReport> reports;
    bool events = false; ///< standard output is the stream of events
    std::optional<std::string> logFile;
    std::optional<int> logLevel;
    std::optional<std::string> language;
    std::optional<std::string> configFile;
    const CommandDescription* helpOn = nullptr; ///< the command to help with; null for all of them
    const ModuleCommand* moduleCommand = nullptr; ///< for Command::ofModule
    std::vector<std::string> moduleArguments;     ///< what follows it besides options
    bool quiet = false;
    std::optional<mrl::OutputStream::Colours> colours;
};

/// What --color means by "auto", "always" or "never"; nothing for any other word.
std::optional<mrl::OutputStream::Colours> coloursNamed(const std::string& word);

/// The value of --language, wherever it stands, for messages about the other arguments; nothing
/// when it is not there or has no value.
std::optional<std::string> languageAskedFor(const std::vector<std::string>& arguments);

/// The value of `arguments`, which do not hold the program's name.
/// Failure: throws BadInput
CommandLine parseCommandLine(const std::vector<std::string>& arguments);

/// A command, for parser and help page alike.
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

/// An option of the command line, for parser and help page alike.
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

/// The help page of a program of that name: an overview, or all about one command.
std::string helpPage(const std::string& program, const CommandDescription* command);

} // namespace tesk5
