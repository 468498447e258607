// The capture of a command, and its replay: what --capture and the command replay add to the
// commands.
#pragma once

#include <tesk5/Captures.h>
#include <tesk5/RunContext.h>

#include "commandline/CommandLine.h"

#include <functional>

namespace tesk5 {

/// Thrown when a replay was asked for what its capture does not have; start() prints the line.
struct ReplayEnded {
    std::string line;
};

/// A capture that was read for its replay.
struct ReplayOfFile {
    std::string file;
    std::unique_ptr<CaptureReplay> replay;
};

/// Reads the capture that the command replay names.
/// Failure: throws BadInput
ReplayOfFile replayOf(const CommandLine& line);

/// The capture that a command writes or is replayed from, if any. What it begins ends with it.
class CommandCapture {
public:
    /// Checks that the file of --capture can be written; nothing is written yet.
    /// Failure: throws BadInput
    explicit CommandCapture(const CommandLine& line);
    explicit CommandCapture(ReplayOfFile&& replay);

    /// `line`, a replay's, with the command that was captured. Settings that `line` has win over
    /// those captured.
    /// Failure: throws BadInput for a command that cannot be replayed, or an option that it does
    /// not take
    CommandLine replayedLine(const CommandLine& line, const RunContext& context) const;
    /// The devices of the device file with which a replayed command was captured.
    std::optional<std::vector<DiagDevice>> devices() const;
    /// The identity of the run that was captured: its replay is the same run. Nothing for a capture
    /// without one, and without a replay.
    std::optional<RunIdentity> identity() const;
    /// From now on the platform's answers are captured, or come from the capture.
    /// \param devices those of a device file
    /// Failure: throws BadInput when the file cannot be written
    void begin(const CommandLine& line, const std::optional<std::vector<DiagDevice>>& devices,
               const RunContext& context);
    /// The command has asked the platform for the last time.
    /// Failure: throws ReplayEnded
    void end(int exitValue, const RunContext& context);
    /// Does `command`; what it throws after the first difference of the replay becomes ReplayEnded.
    int unlessDifferent(const std::function<int()>& command) const;

private:
    void refuseDifference() const;

    std::string m_file; ///< as given
    bool m_records = false;
    bool m_hideNames = false;
    std::unique_ptr<CaptureRecording> m_recording;
    std::unique_ptr<CaptureReplay> m_replay;
};

} // namespace tesk5
