#include <mrl/Clock.h>

#include <mrl/System.h>

#include <atomic>
#include <charconv>
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

std::optional<Clock::UtcTime> parseUtc(std::string_view text) {
    using namespace std::chrono;
    constexpr std::string_view FORM = "0000-00-00T00:00:00.000Z";
    constexpr int FIRST_YEAR = 1970;
    constexpr int LAST_YEAR = 2199; // nanoseconds in 64 bits last to 2262
    if (text.size() != FORM.size()) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < FORM.size(); ++i) {
        const bool fits = FORM[i] == '0' ? text[i] >= '0' && text[i] <= '9' : text[i] == FORM[i];
        if (!fits) {
            return std::nullopt;
        }
    }
    const auto number = [text](std::size_t begin, std::size_t digits) {
        int value = 0;
        std::from_chars(text.data() + begin, text.data() + begin + digits, value);
        return value;
    };
    constexpr std::size_t YEAR_DIGITS = 4;
    const year_month_day date{year(number(0, YEAR_DIGITS)),
                              month(static_cast<unsigned>(number(5, 2))),
                              day(static_cast<unsigned>(number(8, 2)))};
    const hours hour(number(11, 2));
    const minutes minute(number(14, 2));
    const seconds second(number(17, 2));
    const int inYear = static_cast<int>(date.year());
    if (!date.ok() || inYear < FIRST_YEAR || inYear > LAST_YEAR || hour >= days(1) ||
        minute >= hours(1) || second >= minutes(1)) {
        return std::nullopt;
    }
    return sys_days(date) + hour + minute + second + milliseconds(number(20, 3));
}

ScopedClock::ScopedClock(Clock& clock) : m_previous(g_replacement.exchange(&clock)) {}

ScopedClock::~ScopedClock() {
    g_replacement.store(m_previous);
}

} // namespace mrl
