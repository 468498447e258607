// The command line as a plain value.
#pragma once

#include "commandline/Commands.h"
#include "run/Plan.h"
#include "run/Tags.h"

#include <mrl/OutputStream.h>

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace tesk5 {

struct ReportKind;

inline constexpr mrl::Uint32 HIGHEST_LOG_LEVEL = 5;

/// A report to be written.
struct RequestedReport {
    const ReportKind* kind;
    std::string file;
};

/// The command line, read. Paths are in UTF-8.
struct CommandLine {
    Command command = Command::list;
    std::set<std::string> given;   ///< names of the options in it
    std::vector<TeskString> tests; ///< as named; none for every non-interactive one
    std::vector<Setting> settings;
    std::optional<std::string> device;
    std::optional<std::string> devicesFile;
    std::vector<RequestedReport> reports;
    std::optional<std::string> ocpFile;
    std::optional<std::string> journalFile;
    TagRequest tags;
    bool noIdentity = false; ///< whether reports leave the PC out
    bool events = false;     ///< standard output is the stream of events
    std::optional<std::string> logFile;
    std::optional<int> logLevel;
    std::optional<std::string> language;
    std::optional<std::string> configFile;
    const CommandDescription* helpOn = nullptr; ///< the command to help with; null for all of them
    const ModuleCommand* moduleCommand = nullptr; ///< for Command::ofModule
    std::vector<std::string> moduleArguments;     ///< what follows it besides options
    /// The module's own options, by name.
    std::map<std::string, std::string, std::less<>> moduleOptions;
    std::optional<std::string> captureFile; ///< of --capture
    bool hideNames = false;                 ///< in the capture
    std::vector<std::string> replayed;      ///< what follows the command replay
    bool quiet = false;
    bool check = false;   ///< look at the input and run nothing
    bool fullLog = false; ///< whether a report shows every line of the log
    std::optional<mrl::OutputStream::Colours> colours;
};

/// The value of --language, wherever it stands, for messages about the other arguments; nothing
/// when it is not there or has no value.
std::optional<std::string> languageAskedFor(const std::vector<std::string>& arguments);

/// The value of `arguments`, which do not hold the program's name.
/// Failure: throws BadInput
CommandLine parseCommandLine(const std::vector<std::string>& arguments);

} // namespace tesk5
