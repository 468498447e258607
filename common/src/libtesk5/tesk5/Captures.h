// How a module captures what the platform answers during a command, and answers from a capture.
// The framework names the file and the command; what is in the file is the module's.
#pragma once

#include <tesk5/DiagDevice.h>
#include <tesk5/RunIdentity.h>

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tesk5 {

/// A parameter that the command was given, in UTF-8.
struct CapturedSetting {
    std::string name;
    std::string value;
    bool isText = false; ///< rather than a number
};

/// The command that a capture is made of, as far as it decides what the command does.
struct CapturedCommand {
    std::string module;
    std::string version;
    std::string build;
    std::string command;            ///< as typed: "run"
    std::vector<std::string> tests; ///< those chosen, in order
    std::vector<CapturedSetting> settings;
    std::optional<std::string> device;              ///< text of --device
    std::optional<std::vector<DiagDevice>> devices; ///< those of a device file
    RunIdentity identity = {}; ///< of a run; without an identifier in captures of other commands
};

/// Captures what the platform answers while it lives. Threads: the one of the command.
class CaptureRecording {
public:
    CaptureRecording() = default;
    CaptureRecording(const CaptureRecording&) = delete;
    CaptureRecording& operator=(const CaptureRecording&) = delete;
    virtual ~CaptureRecording();

    /// The command has ended.
    virtual void end(int exitValue) = 0;
    /// Whether everything so far is in the file.
    virtual bool complete() const = 0;
};

/// The first difference between a replay and its capture, in words.
struct CaptureDifference {
    std::size_t line; ///< of the capture
    std::string expected;
    std::string asked;
};

/// Answers from a capture, from begin() on, while it lives. A call that the capture does not have
/// throws, or fails; difference() then says so. Threads: the one of the command.
class CaptureReplay {
public:
    CaptureReplay() = default;
    CaptureReplay(const CaptureReplay&) = delete;
    CaptureReplay& operator=(const CaptureReplay&) = delete;
    virtual ~CaptureReplay();

    virtual const CapturedCommand& command() const = 0;
    virtual void begin() = 0;
    virtual std::optional<CaptureDifference> difference() const = 0;
};

/// Why a capture cannot be used. what() is the reason, in English.
class UnusableCapture : public std::runtime_error {
public:
    UnusableCapture(std::size_t inLine, const std::string& reason)
        : std::runtime_error(reason), line(inLine) {}

    std::size_t line; ///< from 1
};

/// The module's part in --capture and in the command replay.
struct CaptureSupport {
    /// Writes a capture from now on; the file is emptied.
    /// Failure: throws mrl::FileFailure
    std::unique_ptr<CaptureRecording> (*record)(const std::filesystem::path& file,
                                                const CapturedCommand& command, bool hideNames);
    /// The replay of the capture in `text`; it does not begin yet.
    /// Failure: throws UnusableCapture
    std::unique_ptr<CaptureReplay> (*replay)(std::string_view text);
    std::size_t largestFile; ///< in bytes
};

} // namespace tesk5
