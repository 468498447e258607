// A file that a run fills line by line while it goes on.
#pragma once

#include <mrl/Files.h>
#include <mrl/OutputStream.h>

#include <optional>
#include <string>

namespace tesk5 {

/// Makes the file with its first line and writes each line at once, so that another program can
/// follow it. When a line cannot be written, that one and all further ones are lost: the file then
/// ends within the run, at a place that its reader sees.
/// Threads: one at a time.
class LineFile final : public mrl::OutputStream::Receiver {
public:
    /// Checks that the file can be written; a file that is there stays as it is until then.
    /// \param isNamedAnew whether it takes a name that no other file has, as takenName() does
    /// Failure: throws BadInput when `path` (UTF-8) is a directory or cannot be written
    LineFile(std::string path, bool isNamedAnew);

    /// Failure: none is reported before close().
    void write(std::string_view line) override;

    /// Closes the file. Nothing more can be written.
    /// \return that a line was lost and why, for people; nothing when the file is whole
    std::optional<std::string> close();

private:
    std::string m_path;
    bool m_isNamedAnew;
    std::optional<mrl::FileToWrite> m_file;
    std::optional<std::string> m_failure; ///< why lines were lost, for people
};

} // namespace tesk5
