// Records what the Native Wifi interface answers, while it lives.
#pragma once

#include <capture/CaptureFile.h>

#include <filesystem>
#include <memory>

namespace capture {

/// What is behind the table of functions goes on to answer; each call is written to the file when
/// it has been answered, and each notification before its callback gets it. Calls are written in
/// the order in which they return. One at a time.
///
/// While it lives, the clock in use goes on, but for the thread that made it: for this one, the
/// time is that of its last call or sleep. So a replay, which knows no other times, measures the
/// same.
class Recording {
public:
    /// \param run what is captured, for the head of the file, in the form of docs/captures.md
    /// \param hideNames whether stand-ins take the place of the names of networks and adapters, and
    /// of their addresses
    /// Failure: throws mrl::FileFailure when the file cannot be written
    Recording(const std::filesystem::path& file, mrl::Json run, bool hideNames);
    Recording(const Recording&) = delete;
    Recording& operator=(const Recording&) = delete;
    ~Recording();

    /// Notes the list of adapters that the run gets.
    void adapters(const Adapters& list);
    /// Notes the end of the run.
    void end(int exitValue);
    /// Whether everything so far is in the file. After a line that could not be written, no other
    /// one is.
    bool complete() const;

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace capture
