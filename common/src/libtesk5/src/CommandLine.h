// The command line as a plain value.
#pragma once

#include <tesk5/TeskString.h>

#include <optional>
#include <string>
#include <vector>

namespace tesk5 {

enum class Command { list, run, help, version };

/// One --set.
struct Setting {
    TeskString name;
    TeskString value;
};

/// What the command line asks for. Texts of files are paths in UTF-8.
struct CommandLine {
    Command command = Command::list;
    std::vector<TeskString> tests; ///< as named; none for every non-interactive one
    std::vector<Setting> settings;
    std::optional<std::string> device;
    std::optional<std::string> devicesFile;
    std::optional<std::string> reportFile;
    std::optional<std::string> logFile;
    std::optional<int> logLevel;
};

/// The value of `arguments`, which do not hold the program's name.
/// Failure: throws BadInput
CommandLine parseCommandLine(const std::vector<std::string>& arguments);

/// An option of the command line, for parser and help page alike.
struct OptionDescription {
    const char* name;
    const char* argument; ///< what follows it; null for a switch
    const char* help;
    const char* example;
};

/// Every option, in the order of the help page.
const std::vector<OptionDescription>& optionDescriptions();

/// The help page of a program of that name.
std::string helpPage(const std::string& program);

} // namespace tesk5
