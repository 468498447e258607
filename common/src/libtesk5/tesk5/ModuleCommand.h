// A command that the module adds to those of the framework.
#pragma once

#include <string>
#include <vector>

namespace tesk5 {

class RunContext;

struct ModuleCommand {
    const char* name;      ///< as typed; not that of a command of the framework
    const char* arguments; ///< what may follow it, as the help page shows it: "[FILE]"; may be ""
    const char* help;      ///< key of the text that says what it does
    const char* example;   ///< a whole command line behind the program's name: "watch 10"
    /// Does the command, after the module's initialisation callback.
    /// \param arguments what follows the command besides options, in UTF-8
    /// \return the process's exit value
    /// Failure: exceptions pass as those of tests do; BadInput is not for modules
    int (*run)(const std::vector<std::string>& arguments, RunContext& context);
};

} // namespace tesk5
