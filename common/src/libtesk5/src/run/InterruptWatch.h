// Ctrl+C and the other console events during a run.
#pragma once

#include <tesk5/RunContext.h>

#include <atomic>
#include <functional>
#include <memory>
#include <string>

namespace tesk5 {

/// What a process writes when a second interrupt ends it: each text in one piece, and nothing where
/// it is empty.
struct LastWords {
    /// Set before the first of them is written, so that nothing of this process is drawn behind
    /// them; or null.
    std::shared_ptr<std::atomic<bool>> begun;
    std::string output; ///< to standard output
    std::string errors; ///< to standard error
};

/// While it lives, the first Ctrl+C or Ctrl+Break raises the stop request, and a second one ends
/// the process at once with the value of USERABORTED, after its last words. A stream that accepts
/// no text does not delay that: the last words for it are lost. On Windows a closed console,
/// log-off and shutdown leave no time to end a run; they end the process at once the first time,
/// without last words. Reports are replaced in one step, so that none is left half-written. When
/// several exist in a process, the first receives the interrupts and the others do nothing: the
/// system calls one handler for the process, without an argument. Platform: SetConsoleCtrlHandler;
/// sigaction elsewhere
class InterruptWatch {
public:
    /// \param onFirst called once at the first interrupt, on a thread of its own and not in a
    /// signal handler, so that it may print; has ended when the destructor has
    explicit InterruptWatch(StopRequest& stopRequest, std::function<void()> onFirst = {},
                            LastWords lastWords = {});
    InterruptWatch(const InterruptWatch&) = delete;
    InterruptWatch& operator=(const InterruptWatch&) = delete;
    ~InterruptWatch();

private:
    class Platform;
    std::unique_ptr<Platform> m_platform;
};

} // namespace tesk5
