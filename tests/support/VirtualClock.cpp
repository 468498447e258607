#include <support/VirtualClock.h>

#include <support/Journal.h>

namespace test {

namespace {
using namespace std::chrono;
constexpr auto START =
    sys_days(year(2026) / November / 20) + hours(19) + minutes(55) + seconds(1) + milliseconds(123);
} // namespace

VirtualClock::VirtualClock() : mrl::VirtualClock(START), m_installed(*this) {}

void VirtualClock::sleep(Duration duration) {
    {
        const std::lock_guard lock(m_mutex);
        m_sleeps.push_back(duration_cast<milliseconds>(duration).count());
        Journal::note("pause " + std::to_string(m_sleeps.back()) + " ms");
    }
    mrl::VirtualClock::sleep(duration);
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
