// The line on a terminal that shows a waiting person what is going on and for how long at most.
#pragma once

#include <mrl/Clock.h>
#include <mrl/OutputStream.h>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace tesk5 {

/// Draws itself over its own last state and disappears when something lasting is to be written.
/// Threads: any; each operation is one piece.
class LiveLine {
public:
    /// \param columns width of the terminal, 0 when nobody knows
    LiveLine(mrl::OutputStream& stream, std::size_t columns);
    LiveLine(const LiveLine&) = delete;
    LiveLine& operator=(const LiveLine&) = delete;
    ~LiveLine() { end(); }

    /// From now on the line is there, with the time that passes from now on.
    void begin();
    /// What is going on from now on, and the longest (seconds) that it and the rest can take.
    void tell(std::string activity, std::optional<double> longestSeconds);
    /// Draws what is so now; nothing outside begin() and end().
    void draw();
    /// Takes the line away, does `write`, and draws the line again if it was there.
    void yieldTo(const std::function<void()>& write);
    /// The line is gone.
    void end();

private:
    std::string text() const;
    void drawLocked();
    void eraseLocked();

    mrl::OutputStream& m_stream;
    std::size_t m_columns;
    std::mutex m_mutex;
    bool m_there = false;
    std::size_t m_drawn = 0; ///< columns that the last state takes
    std::string m_activity;
    std::optional<double> m_longestSeconds;
    mrl::Clock::Duration m_begun{};
    mrl::Clock::Duration m_told{};
};

/// Calls a function again and again, on a thread of its own, until it is destroyed.
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
