#include "run/InterruptWatch.h"

#include <tesk5/TestResult.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <poll.h>
#include <semaphore.h>
#include <thread>
#include <unistd.h>

namespace tesk5 {

namespace {

// The state of the handler. The handler may run until the process ends, so none is destroyed.
constinit std::atomic<StopRequest*> g_stopRequest{nullptr};
constinit std::atomic<const LastWords*> g_lastWords{nullptr};
constinit std::atomic<bool> g_interrupted{false};

// Posting a semaphore is among the few things that a signal handler may do.
sem_t& interrupted() {
    static sem_t semaphore;
    static const int made = sem_init(&semaphore, 0, 0);
    static_cast<void>(made);
    return semaphore;
}

// For the signal handler. A full pipe would block, and one without a reader would end the process
// with another exit value.
void writeIfPossible(int file, const std::string& text) {
    pollfd stream = {file, POLLOUT, 0};
    if (!text.empty() && poll(&stream, 1, 0) == 1 && stream.revents == POLLOUT) {
        static_cast<void>(!write(file, text.data(), text.size())); // ENOSPC, EIO: lost
    }
}

extern "C" void onInterrupt(int /*number*/) {
    if (g_interrupted.exchange(true)) {
        if (const LastWords* const words = g_lastWords) {
            if (words->begun) {
                *words->begun = true;
            }
            writeIfPossible(STDOUT_FILENO, words->output);
            writeIfPossible(STDERR_FILENO, words->errors);
        }
        // No destructors, no report. The exit value is set here because the default handling of an
        // interrupt ends with a different value on each system.
        std::_Exit(TestResult::USERABORTED().value());
    }
    if (StopRequest* const request = g_stopRequest) {
        request->raise();
    }
    sem_post(&interrupted());
}

void handleInterrupts(void (*handler)(int)) {
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART; // a write that an interrupt hits goes on
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, nullptr); // EINVAL for a signal that cannot be caught; EFAULT
}

} // namespace

class InterruptWatch::Platform {
public:
    Platform(StopRequest& stopRequest, std::function<void()> onFirst, LastWords lastWords)
        : m_onFirst(std::move(onFirst)), m_lastWords(std::move(lastWords)) {
        StopRequest* none = nullptr;
        if (!g_stopRequest.compare_exchange_strong(none, &stopRequest)) {
            return;
        }
        while (sem_trywait(&interrupted()) == 0) { // interrupts too late for the previous watch
        }
        m_caller = std::thread([this] {
            while (sem_wait(&interrupted()) != 0) {
            }
            if (!m_ending && m_onFirst) {
                m_onFirst();
            }
        });
        g_lastWords = &m_lastWords;
        g_interrupted = false;
        handleInterrupts(onInterrupt);
    }
    Platform(const Platform&) = delete;
    Platform& operator=(const Platform&) = delete;
    ~Platform() {
        if (!m_caller.joinable()) { // another watch is the first
            return;
        }
        handleInterrupts(SIG_DFL);
        m_ending = true;
        sem_post(&interrupted());
        m_caller.join();
        g_lastWords = nullptr;
        g_stopRequest = nullptr;
    }

private:
    std::function<void()> m_onFirst;
    LastWords m_lastWords;
    std::atomic<bool> m_ending = false;
    std::thread m_caller;
};

InterruptWatch::InterruptWatch(StopRequest& stopRequest, std::function<void()> onFirst,
                               LastWords lastWords)
    : m_platform(
          std::make_unique<Platform>(stopRequest, std::move(onFirst), std::move(lastWords))) {}

InterruptWatch::~InterruptWatch() = default;

} // namespace tesk5
