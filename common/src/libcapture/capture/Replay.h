// Answers the Native Wifi interface from a capture, while it lives.
#pragma once

#include <capture/CaptureFile.h>

#include <memory>
#include <optional>

namespace capture {

/// The first difference between what a replay is asked and what was captured.
struct Difference {
    std::size_t line;     ///< of the capture; that behind the last one at its end
    std::string expected; ///< what the capture has there
    std::string asked;
};

/// Leaves a call that the capture does not have. The calls by which a client gives something back
/// do not throw: destructors make them.
class ReplayDiffers : public std::runtime_error {
public:
    explicit ReplayDiffers(const Difference& difference);
};

/// Calls are answered in the order of the file; a notification is delivered when the steps before
/// it are over, on a thread of its own, and the asking thread goes on when its callback has ended.
/// The clock in use starts at 0 and stands at the end of the last step, or where a sleep moved it.
/// One at a time.
class Replay {
public:
    explicit Replay(Capture capture);
    Replay(const Replay&) = delete;
    Replay& operator=(const Replay&) = delete;
    ~Replay();

    /// The list of adapters that the captured run got.
    /// Failure: throws ReplayDiffers
    Adapters adapters();
    /// The first difference so far. After it every call fails.
    std::optional<Difference> difference() const;

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace capture
