#include "run/InterruptWatchWin32.h"

#include "run/InterruptWatch.h"

#include <tesk5/TestResult.h>

#include <windows.h>

#include <atomic>
#include <cstdlib>
#include <mutex>

namespace tesk5 {

namespace {

// The state of the handler while a watch lives.
struct Watched {
    StopRequest& stopRequest;
    std::function<void()> onFirst;
};

// Held while the handler runs, so that the watch outlives the call.
std::mutex& watchMutex() {
    static std::mutex mutex;
    return mutex;
}
Watched* g_watched = nullptr;
constinit std::atomic<bool> g_interrupted{false};

bool leavesNoTime(DWORD event) {
    return event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT;
}

} // namespace

int __stdcall onConsoleEvent(unsigned long event) {
    // Before the lock: the handler of the first interrupt holds it, and may block on the terminal.
    if (leavesNoTime(event) || g_interrupted.exchange(true)) {
        // No destructors, no report. The value is the same on every system.
        std::_Exit(TestResult::USERABORTED().value());
    }
    const std::lock_guard lock(watchMutex());
    if (g_watched == nullptr) {
        return FALSE;
    }
    g_watched->stopRequest.raise();
    if (g_watched->onFirst) {
        g_watched->onFirst();
    }
    return TRUE;
}

class InterruptWatch::Platform {
public:
    Platform(StopRequest& stopRequest, std::function<void()> onFirst)
        : m_watched{stopRequest, std::move(onFirst)} {
        const std::lock_guard lock(watchMutex());
        if (g_watched != nullptr) {
            return;
        }
        g_watched = &m_watched;
        g_interrupted = false;
        // ERROR_NOT_ENOUGH_MEMORY: the run goes on, and Ctrl+C ends it as Windows does
        SetConsoleCtrlHandler(&onConsoleEvent, TRUE);
    }
    Platform(const Platform&) = delete;
    Platform& operator=(const Platform&) = delete;
    ~Platform() {
        if (g_watched != &m_watched) { // another watch is the first
            return;
        }
        // Not under our lock: the system locks its list of handlers, too.
        SetConsoleCtrlHandler(&onConsoleEvent, FALSE); // ERROR_INVALID_PARAMETER: was not installed
        const std::lock_guard lock(watchMutex());
        g_watched = nullptr;
    }

private:
    Watched m_watched;
};

InterruptWatch::InterruptWatch(StopRequest& stopRequest, std::function<void()> onFirst)
    : m_platform(std::make_unique<Platform>(stopRequest, std::move(onFirst))) {}

InterruptWatch::~InterruptWatch() = default;

} // namespace tesk5
