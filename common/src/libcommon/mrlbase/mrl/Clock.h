// The clock behind every wait, stopwatch and time stamp. Tests replace it by one that moves only
// when a thread sleeps.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

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

    /// Time since a fixed moment; never decreases.
    virtual Duration now() = 0;
    /// The date and time of day. The system's clock reads the wall clock once, when it is first
    /// used, and then follows now(): times of one process are in order, and their distances are
    /// durations, also when the wall clock is set meanwhile.
    virtual UtcTime utcNow() = 0;
    /// How far local time is ahead of UTC at `time`; negative west of Greenwich.
    virtual std::chrono::minutes utcOffset(UtcTime time) = 0;
    /// Blocks the calling thread for `duration`.
    virtual void sleep(Duration duration) = 0;
    /// Blocks until `condition` is notified or now() reaches `deadline`; may also return earlier,
    /// so call it in a loop that checks what it waits for. `lock` is held before and after.
    virtual void waitUntil(std::unique_lock<std::mutex>& lock, std::condition_variable& condition,
                           Duration deadline) = 0;

    /// The clock in use: the system's, unless a ScopedClock has replaced it.
    static Clock& current();
};

/// Dates that follow a steady clock from one reading of the wall clock on.
class SteadyDate {
public:
    /// \param wall the wall clock when the steady one showed `now`
    SteadyDate(Clock::UtcTime wall, Clock::Duration now) : m_wall(wall), m_begin(now) {}

    /// The date when the steady clock shows `now`.
    Clock::UtcTime at(Clock::Duration now) const {
        return m_wall + std::chrono::duration_cast<Clock::UtcTime::duration>(now - m_begin);
    }

private:
    Clock::UtcTime m_wall;
    Clock::Duration m_begin;
};

/// `time` cut to milliseconds, as reports and logs have it: "2026-11-20T19:55:01.123Z".
std::string utcText(Clock::UtcTime time);

/// The time of a text as utcText() writes it, from 1970 to 2199; nothing for any other text.
std::optional<Clock::UtcTime> parseUtc(std::string_view text);

/// Replaces the clock in use while it lives. Nested ones must end in reverse order. Construct it
/// before the threads that use the clock start.
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
