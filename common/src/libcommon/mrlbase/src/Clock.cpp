#include <mrl/Clock.h>

#include <mrl/System.h>

#include <atomic>
#include <cstdio>
#include <thread>

namespace mrl {

namespace {

class SystemClock final : public Clock {
public:
    Duration now() override { return std::chrono::steady_clock::now().time_since_epoch(); }
    UtcTime utcNow() override { return m_date.at(now()); }
    std::chrono::minutes utcOffset(UtcTime time) override { return System::utcOffset(time); }
    void sleep(Duration duration) override { std::this_thread::sleep_for(duration); }
    void waitUntil(std::unique_lock<std::mutex>& lock, std::condition_variable& condition,
                   Duration deadline) override {
        condition.wait_until(lock, std::chrono::steady_clock::time_point(deadline));
    }

private:
    const SteadyDate m_date{std::chrono::system_clock::now(),
                            std::chrono::steady_clock::now().time_since_epoch()};
};

SystemClock& systemClock() {
    // Never destroyed: static objects log, with a time, from their destructors too.
    static auto* const clock = new SystemClock;
    return *clock;
}

std::atomic<Clock*> g_replacement{nullptr};

} // namespace

Clock::~Clock() = default;

Clock& Clock::current() {
    Clock* replacement = g_replacement.load(std::memory_order_acquire);
    return replacement != nullptr ? *replacement : systemClock();
}

std::string utcText(Clock::UtcTime time) {
    using namespace std::chrono;
    const auto milliseconds = floor<std::chrono::milliseconds>(time);
    const auto day = floor<days>(milliseconds);
    const year_month_day date(day);
    const hh_mm_ss clock(milliseconds - day);
    char buffer[64];
    std::snprintf(
        buffer, sizeof buffer, "%04d-%02u-%02uT%02d:%02d:%02d.%03dZ", static_cast<int>(date.year()),
        static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
        static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
        static_cast<int>(clock.seconds().count()), static_cast<int>(clock.subseconds().count()));
    return buffer;
}

ScopedClock::ScopedClock(Clock& clock) : m_previous(g_replacement.exchange(&clock)) {}

ScopedClock::~ScopedClock() {
    g_replacement.store(m_previous);
}

} // namespace mrl
