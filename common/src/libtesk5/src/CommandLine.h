// The command line as a plain value.
#pragma once

#include <tesk5/TeskString.h>

#include <optional>
#include <string>
#include <vector>

namespace tesk5 {

struct ReportKind;

enum class Command { list, run, help, version };

/// One --set.
struct Setting {
    TeskString name;
    TeskString value;
};

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
};

/// The value of --language, wherever it stands, for texts that are needed before the rest is read;
/// nothing when it is not there or has no value.
std::optional<std::string> languageAskedFor(const std::vector<std::string>& arguments);

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
