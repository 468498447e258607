// A command that the module adds to those of the framework. The framework reads its command line,
// refuses what is wrong in it, and explains it on the help pages.
#pragma once

#include <tesk5/BadInput.h>
#include <tesk5/DiagDevice.h>
#include <tesk5/Parameter.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tesk5 {

class RunContext;

/// An option of the module's commands. Without choices and without a range, every text is a value.
/// Those of one name are one option when they have the same help, and then have the same contents;
/// in any case all of them are switches or none is.
struct CommandOption {
    const char* name;     ///< with its dashes; not that of an option of every command
    const char* argument; ///< what follows it, as the help page shows it: "N"; null for a switch
    const char* help;     ///< key of the text that says what it does
    const char* example;  ///< "watch --seconds 10"
    /// The texts that it takes, in any letter case; the command gets the letter case of this list.
    std::vector<TeskString> choices = {};
    /// The whole numbers that it takes.
    std::optional<NumberRange> range = {};
};

/// What a command of the module was called with. Parameters have the values that were given.
struct CommandCall {
    std::vector<std::string> arguments; ///< what follows the command besides options, in UTF-8
    /// The options of the module that were given, by name; "true" for a switch.
    std::map<std::string, std::string, std::less<>> options;
    std::vector<DiagDevice> devices; ///< that suit ModuleCommand::test and --device; none without
    bool colours = false; ///< whether the output is to have colours: --color, else as it can
};

/// A command. Every command takes --log, --log-level, --color and --language.
struct ModuleCommand {
    const char* name;      ///< as typed; not that of a command of the framework
    const char* arguments; ///< what may follow it, as the help page shows it: "[FILE]"; may be ""
    const char* help;      ///< key of the text that says what it does
    std::vector<const char*>
        examples; ///< whole command lines behind the program's name; at least one
    /// Does the command, after the module's initialisation callback. Its output goes to the
    /// context's streams; whether they are terminals, and how wide, they say themselves. While it
    /// runs, Ctrl+C raises the context's stop request; a second one ends the process.
    /// \return the process's exit value; start() returns 74 in its place when a part of the output
    /// is lost
    /// Failure: throws BadInput for what only the command can judge, before it writes anything;
    /// other exceptions pass as those of tests do
    int (*run)(const CommandCall& call, RunContext& context);
    std::vector<CommandOption> options = {};
    /// Names of the registered parameters that it takes: with --set, and with --config, which
    /// leaves other parameters out.
    std::vector<const char*> parameters = {};
    /// Name of the registered test on whose devices it works; it then takes --device and --devices,
    /// and what the test's check finds wrong with values that were given is refused.
    /// Without a device that suits, the framework says why in the place of run() and returns the
    /// value of CANNOTRUN. Null: devices are not looked for.
    const char* test = nullptr;
    /// Whether a call needs the devices of `test`; without it, every call does. One that does not
    /// gets none, and is not refused when there are none.
    bool (*needsDevices)(const CommandCall& call) = nullptr;

    /// Its own option of that name; null when it has none.
    const CommandOption* option(std::string_view named) const;
};

} // namespace tesk5
