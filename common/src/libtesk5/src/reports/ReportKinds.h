// The kinds of report that a run can write.
#pragma once

#include "run/Runner.h"

#include <string>
#include <vector>

namespace tesk5 {

struct ReportKind {
    const char* option = nullptr; ///< names the file on the command line
    /// The report's whole text.
    std::string (*text)(const RunRecord& run) = nullptr;
    bool showsLog = false; ///< whether it needs RunRecord::log
    /// Throws BadInput for a run that the report cannot name; null when it can name every run.
    /// A tag without a value is one that a person will be asked for.
    void (*refuse)(const RunIdentity& identity) = nullptr;
};

/// Every kind, in the order of the help page.
const std::vector<ReportKind>& reportKinds();

} // namespace tesk5
