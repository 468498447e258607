// The journal of a station or a line: a file with one line of JSON for each run, which any number
// of processes extend. docs/history.md describes it.
#pragma once

#include "run/Runner.h"

#include <string>

namespace tesk5 {

/// The version that a line of the journal names.
inline constexpr int JOURNAL_VERSION = 1;

/// The line of a run, without its end, in ASCII: parts of the report of that run.
std::string journalLineOf(const RunRecord& run);

/// The file of --journal.
class Journal {
public:
    /// Checks that the file can be extended; it stays as it is.
    /// Failure: throws BadInput when `path` (UTF-8) is a directory, cannot be written or made, or
    /// stays locked for two seconds
    explicit Journal(std::string path);

    /// Adds the line of a run in one piece. Missing folders above the file are made.
    /// Failure: throws TeskException, also when the file stays locked for ten seconds
    void append(const RunRecord& run) const;

private:
    std::string m_path;
};

} // namespace tesk5
