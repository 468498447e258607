#include <tesk5/StopRequest.h>
#include <tesk5/TestResult.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <semaphore.h>

namespace tesk5 {

namespace {

constinit std::atomic<bool> g_raised{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler sets it");

// Posting a semaphore is among the few things that a signal handler may do. Never destroyed: the
// handler may run, on a thread of its own, while a watch ends.
sem_t& interrupted() {
    static sem_t semaphore;
    static const int made = sem_init(&semaphore, 0, 0);
    static_cast<void>(made);
    return semaphore;
}

constexpr int interruptSignals[] = {
    SIGINT,
#ifdef SIGBREAK
    SIGBREAK,
#endif
};

void restoreDefaults() {
    for (const int number : interruptSignals) {
        std::signal(number, SIG_DFL);
    }
}

// Whether this watch has seen an interrupt already.
constinit std::atomic<bool> g_interrupted{false};

extern "C" void onInterrupt(int number) {
    if (g_interrupted.exchange(true)) {
        // At once means: no destructors, no report. The value is the same on every system, where
        // their own handling of a second interrupt would end with values of their own.
        std::_Exit(TestResult::USERABORTED().value());
    }
    std::signal(number, onInterrupt); // some systems forget the handler when they call it
    StopRequest::raise();
    sem_post(&interrupted());
}

} // namespace

void StopRequest::raise() {
    g_raised = true;
}
void StopRequest::clear() {
    g_raised = false;
}
bool StopRequest::raised() {
    return g_raised.load(std::memory_order_relaxed);
}

InterruptWatch::InterruptWatch(std::function<void()> onFirst) : m_onFirst(std::move(onFirst)) {
    while (sem_trywait(&interrupted()) == 0) { // what came too late for the watch before
    }
    m_teller = std::thread([this] {
        while (sem_wait(&interrupted()) != 0) {
        }
        if (!m_ending && m_onFirst) {
            m_onFirst();
        }
    });
    g_interrupted = false;
    for (const int number : interruptSignals) {
        std::signal(number, onInterrupt);
    }
}

InterruptWatch::~InterruptWatch() {
    restoreDefaults();
    m_ending = true;
    sem_post(&interrupted());
    m_teller.join();
}

} // namespace tesk5
