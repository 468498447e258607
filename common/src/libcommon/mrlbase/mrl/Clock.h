// Time as the program sees it: one clock behind every wait, stopwatch and time stamp, so that a
// test can put a clock in its place that moves when somebody sleeps.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace mrl {

/// A source of time and of waiting. All operations may be called from any thread.
class Clock {
public:
    using Duration = std::chrono::nanoseconds;
    using UtcTime = std::chrono::system_clock::time_point;

    Clock() = default;
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;
    virtual ~Clock();

    /// Time since some fixed moment; never goes back.
    virtual Duration now() = 0;
    /// The date and time of day.
    virtual UtcTime utcNow() = 0;
    /// Blocks the calling thread for `duration`.
    virtual void sleep(Duration duration) = 0;
    /// Blocks until `condition` is notified or now() reaches `deadline`; may also return for no
    /// reason, so call it in a loop that looks at the facts. `lock` is held before and after.
    virtual void waitUntil(std::unique_lock<std::mutex>& lock, std::condition_variable& condition,
                           Duration deadline) = 0;

    /// The clock in force: the system's, unless a ScopedClock has replaced it.
    static Clock& current();
};

/// Puts another clock in force for its own lifetime. To be nested properly; install it before the
/// threads that use it start.
class ScopedClock {
public:
    explicit ScopedClock(Clock& clock);
    ScopedClock(const ScopedClock&) = delete;
    ScopedClock& operator=(const ScopedClock&) = delete;
    ~ScopedClock();

private:
    Clock* m_previous;
};

} // namespace mrl
