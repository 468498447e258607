#include "run/InterruptWatchWin32.h"

#include "run/InterruptWatch.h"

#include <tesk5/TestResult.h>

#include <mrl/OutputStream.h>

#include <windows.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <future>
#include <mutex>
#include <thread>

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
constinit std::atomic<int> g_interrupts{0};

// Of the present watch, with a lock of their own: the handler of the first interrupt holds the
// other one, and may block on the terminal.
struct SharedWords {
    std::mutex mutex;
    LastWords words;
};
SharedWords& sharedWords() {
    static auto* const words = new SharedWords; // NOLINT(cppcoreguidelines-owning-memory)
    return *words;
}

void setLastWords(LastWords words) {
    const std::lock_guard lock(sharedWords().mutex);
    sharedWords().words = std::move(words);
}

// Gives up after a moment: a full pipe and a console with selected text block the one who writes.
void writeLastWords() {
    constexpr std::chrono::milliseconds LONGEST(500);
    std::promise<void> written;
    std::future<void> end = written.get_future();
    std::thread([written = std::move(written)]() mutable {
        LastWords words;
        {
            const std::lock_guard lock(sharedWords().mutex);
            words = sharedWords().words;
        }
        if (words.begun) {
            *words.begun = true;
        }
        if (!words.output.empty()) {
            mrl::cout << words.output;
        }
        if (!words.errors.empty()) {
            mrl::cerr << words.errors;
        }
        written.set_value();
    }).detach();
    end.wait_for(LONGEST);
}

bool leavesNoTime(DWORD event) {
    return event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT;
}

} // namespace

int __stdcall onConsoleEvent(unsigned long event) {
    // Before the lock: the handler of the first interrupt holds it, and may block on the terminal.
    const bool atOnce = leavesNoTime(event);
    const int earlier = atOnce ? 0 : g_interrupts.fetch_add(1);
    if (atOnce || earlier > 0) {
        if (earlier == 1) {
            writeLastWords();
        }
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
    Platform(StopRequest& stopRequest, std::function<void()> onFirst, LastWords lastWords)
        : m_watched{stopRequest, std::move(onFirst)} {
        const std::lock_guard lock(watchMutex());
        if (g_watched != nullptr) {
            return;
        }
        g_watched = &m_watched;
        setLastWords(std::move(lastWords));
        g_interrupts = 0;
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

InterruptWatch::InterruptWatch(StopRequest& stopRequest, std::function<void()> onFirst,
                               LastWords lastWords)
    : m_platform(
          std::make_unique<Platform>(stopRequest, std::move(onFirst), std::move(lastWords))) {}

InterruptWatch::~InterruptWatch() = default;

} // namespace tesk5
