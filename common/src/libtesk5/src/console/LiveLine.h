// The line on a terminal that shows what a test is doing, and how long it takes at most.
#pragma once

#include <mrl/Clock.h>
#include <mrl/OutputStream.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace tesk5 {

using Seconds = std::chrono::duration<double>;

/// Redraws itself in place as time passes, and is erased while permanent lines are written.
/// Threads: any; operations do not interleave.
class LiveLine {
public:
    /// \param columns width of the terminal, 0 when it is unknown
    LiveLine(mrl::OutputStream& stream, std::size_t columns);
    LiveLine(const LiveLine&) = delete;
    LiveLine& operator=(const LiveLine&) = delete;
    ~LiveLine() { end(); }

    /// What erases a line on a terminal of `columns` columns, whatever it shows; ends it when the
    /// width is unknown.
    static std::string erasure(std::size_t columns);

    /// Shows the line; its time counts from now.
    void begin();
    /// Sets the activity, and the longest time in seconds that it and the rest of the test can
    /// take.
    void tell(std::string activity, std::optional<double> longestSeconds);
    /// Draws the line with the present time; does nothing outside begin() and end().
    void draw();
    /// Erases the line, calls `write`, and draws the line again if it was there.
    void yieldTo(const std::function<void()>& write);
    /// Erases the line.
    void end();
    /// Once it is set, nothing is written any more. Unlike end(), setting it is possible in a
    /// signal handler, and while a terminal blocks who writes.
    std::shared_ptr<std::atomic<bool>> silence() const { return m_silenced; }

private:
    std::string text() const;
    void drawLocked();
    void eraseLocked();
    void writeLocked(const std::string& text);

    mrl::OutputStream& m_stream;
    std::size_t m_columns;
    std::shared_ptr<std::atomic<bool>> m_silenced = std::make_shared<std::atomic<bool>>(false);
    std::mutex m_mutex;
    bool m_there = false;
    std::size_t m_drawn = 0; ///< width of what was drawn last
    std::string m_activity;
    std::optional<double> m_longestSeconds;
    mrl::Clock::Duration m_begun{};
    mrl::Clock::Duration m_told{};
};

/// Calls a function at intervals, on a thread of its own, until it is destroyed.
class Ticker {
public:
    Ticker(std::chrono::milliseconds interval, std::function<void()> tick);
    Ticker(const Ticker&) = delete;
    Ticker& operator=(const Ticker&) = delete;
    ~Ticker();

private:
    std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_ending = false;
    std::thread m_thread;
};

} // namespace tesk5
