// A file that is replaced in one step.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tesk5 {

/// The target of a report. Its text goes to a temporary file in a folder beside it, which then
/// takes its place in one step: a reader finds the old report or the new one, never a part. When
/// two processes write one report, the last one wins. Missing folders above it are made.
class ReportFile {
public:
    /// Checks that the file can be written; a file that is there stays as it is.
    /// \param kept files that replace() does not remove, though a killed process may have left them
    /// Failure: throws BadInput when `path` (UTF-8) is a directory or cannot be written
    explicit ReportFile(std::string path, std::vector<std::string> kept = {});

    /// Replaces the file, and removes what killed processes left beside it. Repeats the attempt for
    /// two seconds at most while another process has the file open.
    /// Failure: throws TeskException; the file is then as it was, and no temporary file is left
    void replace(const std::string& text) const;

private:
    std::string m_path;             ///< as it was given, for people
    std::filesystem::path m_target; ///< with links followed: the file behind a link is replaced
    std::vector<std::string> m_kept;
};

/// Why the file (UTF-8 path) can be neither made nor replaced, for people; nothing when it can. The
/// file stays as it is.
std::optional<std::string> whyNotWritable(const std::string& path);

/// Whether two paths (UTF-8) name one file, there or not.
bool nameSameFile(const std::string& a, const std::string& b);

/// Refuses two options that name one file.
/// Failure: throws BadInput
void refuseSharedFile(const std::string& option, const std::string& file, const std::string& other,
                      const std::string& otherFile);

} // namespace tesk5
