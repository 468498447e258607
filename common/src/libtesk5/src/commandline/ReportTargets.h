// The report files of a run: checked before it, written after it.
#pragma once

#include "commandline/CommandLine.h"
#include "reports/Journal.h"
#include "run/Runner.h"

#include <tesk5/ReportFile.h>

#include <string>
#include <vector>

namespace tesk5 {

class ReportTargets {
public:
    /// Checks that each report can be written. A name with braces is filled in, with a result that
    /// stands for that of the run.
    /// \param kept as in ReportFile
    /// \param journalFile gets a line of the run besides
    /// Failure: throws BadInput
    ReportTargets(const std::vector<RequestedReport>& requested,
                  const std::optional<std::string>& journalFile, const RunIdentity& identity,
                  std::vector<std::string> kept);

    /// Writes every report and the line of the journal, also those after one that fails. A report
    /// whose name has braces does not replace another file. Failure: throws TeskException, which
    /// names all that failed
    void write(const RunRecord& record) const;

private:
    struct Target {
        RequestedReport requested;
        bool isNamedAnew; ///< whether its name has braces
        ReportFile file;  ///< the one with a stand-in for the result when it has
    };
    void write(const Target& target, const RunRecord& record) const;

    std::vector<Target> m_targets;
    std::optional<Journal> m_journal;
    std::vector<std::string> m_kept;
};

} // namespace tesk5
