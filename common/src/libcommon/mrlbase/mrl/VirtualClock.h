// A clock that moves only when a thread sleeps or when it is moved, so that half a minute of
// polling takes no time. For replays and tests.
#pragma once

#include <mrl/Clock.h>

#include <mutex>
#include <vector>

namespace mrl {

class VirtualClock : public Clock {
public:
    /// \param start the date and time of day when now() is 0
    explicit VirtualClock(UtcTime start) : m_start(start) {}

    Duration now() override;
    UtcTime utcNow() override;
    /// Moves the clock and wakes every thread in waitUntil(); does not block.
    void sleep(Duration duration) override;
    void waitUntil(std::unique_lock<std::mutex>& lock, std::condition_variable& condition,
                   Duration deadline) override;
    /// Moves the clock to `moment` and wakes the threads, unless that has passed already.
    void moveTo(Duration moment);

private:
    struct Waiter {
        std::mutex* mutex;
        std::condition_variable* condition;
    };
    static void wake(const std::vector<Waiter>& waiters);

    const UtcTime m_start;
    std::mutex m_mutex;
    Duration m_now{0};
    std::vector<Waiter> m_waiters;
};

} // namespace mrl
