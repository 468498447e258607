// A clock that moves only when a thread sleeps, so that half a minute of polling takes no time.
#pragma once

#include <mrl/Clock.h>

#include <mutex>
#include <vector>

namespace test {

/// Starts at 0 s, on 2026-11-20T19:55:01.123Z. It is the clock in use while it lives.
class VirtualClock final : public mrl::Clock {
public:
    VirtualClock();

    Duration now() override;
    UtcTime utcNow() override;
    /// That of setUtcOffset(), 0 at first.
    std::chrono::minutes utcOffset(UtcTime /*time*/) override { return m_utcOffset; }
    void setUtcOffset(std::chrono::minutes offset) { m_utcOffset = offset; }
    /// Moves the clock and wakes every thread in waitUntil(); does not block.
    void sleep(Duration duration) override;
    void waitUntil(std::unique_lock<std::mutex>& lock, std::condition_variable& condition,
                   Duration deadline) override;

    /// Every sleep so far, in order, in milliseconds.
    std::vector<long long> sleeps();
    /// Discards the list of sleeps.
    void forgetSleeps();
    /// Seconds since the start.
    double elapsedSeconds();

private:
    std::chrono::minutes m_utcOffset{0};
    struct Waiter {
        std::mutex* mutex;
        std::condition_variable* condition;
    };

    std::mutex m_mutex;
    Duration m_now{0};
    std::vector<long long> m_sleeps;
    std::vector<Waiter> m_waiters;
    mrl::ScopedClock m_installed;
};

} // namespace test
