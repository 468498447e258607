#include <mrl/VirtualClock.h>

#include <algorithm>

namespace mrl {

Clock::Duration VirtualClock::now() {
    const std::lock_guard lock(m_mutex);
    return m_now;
}

Clock::UtcTime VirtualClock::utcNow() {
    return m_start + std::chrono::duration_cast<std::chrono::system_clock::duration>(now());
}

void VirtualClock::sleep(Duration duration) {
    std::vector<Waiter> waiters;
    {
        const std::lock_guard lock(m_mutex);
        m_now += duration;
        waiters = m_waiters;
    }
    wake(waiters);
}

void VirtualClock::moveTo(Duration moment) {
    std::vector<Waiter> waiters;
    {
        const std::lock_guard lock(m_mutex);
        m_now = std::max(m_now, moment);
        waiters = m_waiters;
    }
    wake(waiters);
}

void VirtualClock::wake(const std::vector<Waiter>& waiters) {
    for (const Waiter& waiter : waiters) {
        // A waiter holds this mutex from its check of the clock until it waits, so that it cannot
        // miss the notification.
        { const std::lock_guard entered(*waiter.mutex); }
        waiter.condition->notify_all();
    }
}

void VirtualClock::waitUntil(std::unique_lock<std::mutex>& lock, std::condition_variable& condition,
                             Duration deadline) {
    {
        const std::lock_guard guard(m_mutex);
        if (m_now >= deadline) {
            return;
        }
        m_waiters.push_back({lock.mutex(), &condition});
    }
    condition.wait(lock);
    const std::lock_guard guard(m_mutex);
    const auto own =
        std::find_if(m_waiters.begin(), m_waiters.end(),
                     [&condition](const Waiter& waiter) { return waiter.condition == &condition; });
    if (own != m_waiters.end()) {
        m_waiters.erase(own);
    }
}

} // namespace mrl
