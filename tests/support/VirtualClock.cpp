#include <support/VirtualClock.h>

#include <support/Journal.h>

#include <algorithm>

namespace test {

namespace {
using namespace std::chrono;
constexpr auto START =
    sys_days(year(2026) / November / 20) + hours(19) + minutes(55) + seconds(1) + milliseconds(123);
} // namespace

VirtualClock::VirtualClock() : m_installed(*this) {}

mrl::Clock::Duration VirtualClock::now() {
    const std::lock_guard lock(m_mutex);
    return m_now;
}

mrl::Clock::UtcTime VirtualClock::utcNow() {
    return START + duration_cast<system_clock::duration>(now());
}

void VirtualClock::sleep(Duration duration) {
    std::vector<Waiter> waiters;
    {
        const std::lock_guard lock(m_mutex);
        m_now += duration;
        m_sleeps.push_back(duration_cast<milliseconds>(duration).count());
        Journal::note("pause " + std::to_string(m_sleeps.back()) + " ms");
        waiters = m_waiters;
    }
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

std::vector<long long> VirtualClock::sleeps() {
    const std::lock_guard lock(m_mutex);
    return m_sleeps;
}

void VirtualClock::forgetSleeps() {
    const std::lock_guard lock(m_mutex);
    std::vector<long long>().swap(m_sleeps);
}

double VirtualClock::elapsedSeconds() {
    return duration<double>(now()).count();
}

} // namespace test
