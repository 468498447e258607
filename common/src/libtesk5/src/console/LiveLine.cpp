#include "console/LiveLine.h"

#include <tesk5/Texts.h>

#include "texts/NumberText.h"

#include <mrl/DisplayWidth.h>
#include <mrl/Unicode.h>

#include <algorithm>
#include <cmath>

namespace tesk5 {

LiveLine::LiveLine(mrl::OutputStream& stream, std::size_t columns)
    : m_stream(stream), m_columns(columns) {}

std::string LiveLine::erasure(std::size_t columns) {
    return columns == 0 ? "\n" : "\r" + std::string(columns - 1, ' ') + "\r";
}

void LiveLine::begin() {
    const std::lock_guard lock(m_mutex);
    m_there = true;
    m_begun = m_told = mrl::Clock::current().now();
    m_activity = message("CONSOLE_RUNNING");
    m_longestSeconds.reset();
    drawLocked();
}

void LiveLine::tell(std::string activity, std::optional<double> longestSeconds) {
    const std::lock_guard lock(m_mutex);
    m_activity = std::move(activity);
    m_longestSeconds = longestSeconds;
    m_told = mrl::Clock::current().now();
    drawLocked();
}

void LiveLine::draw() {
    const std::lock_guard lock(m_mutex);
    drawLocked();
}

void LiveLine::yieldTo(const std::function<void()>& write) {
    const std::lock_guard lock(m_mutex);
    eraseLocked();
    write();
    drawLocked();
}

void LiveLine::end() {
    const std::lock_guard lock(m_mutex);
    eraseLocked();
    m_there = false;
}

std::string LiveLine::text() const {
    const mrl::Clock::Duration now = mrl::Clock::current().now();
    const Event::Variables elapsed = {
        {"Activity", m_activity}, {"Elapsed", wholeSecondsText(Seconds(now - m_begun).count())}};
    if (!m_longestSeconds) {
        return message("CONSOLE_LIVE", elapsed);
    }
    Event::Variables all = elapsed;
    all.emplace_back(
        "Left", wholeSecondsText(std::ceil(*m_longestSeconds - Seconds(now - m_told).count())));
    return message("CONSOLE_LIVE_LIMITED", all);
}

void LiveLine::drawLocked() {
    if (!m_there) {
        return;
    }
    // A line that fills the terminal's last column would wrap, and could not be erased. Terminals
    // other than Windows' show "^C" behind it.
    constexpr std::size_t FREE = 3;
    const std::size_t room =
        m_columns == 0 ? std::string::npos : m_columns - std::min(m_columns, FREE);
    const std::string shown = mrl::fittedToColumns("  " + mrl::escapeControls(text()), room);
    const std::size_t width = mrl::columnsOf(shown);
    const std::size_t rest = m_drawn > width ? m_drawn - width : 0;
    writeLocked("\r" + shown + std::string(rest, ' ') + std::string(rest, '\b'));
    m_drawn = width;
}

void LiveLine::eraseLocked() {
    if (m_there && m_drawn > 0) {
        writeLocked(erasure(m_columns == 0 ? m_drawn + 1 : m_columns));
        m_drawn = 0;
    }
}

void LiveLine::writeLocked(const std::string& text) {
    if (!*m_silenced) { // as late as possible: it is set without our lock
        m_stream << std::string_view(text);
        m_stream.flush();
    }
}

Ticker::Ticker(std::chrono::milliseconds interval, std::function<void()> tick)
    : m_thread([this, interval, tick = std::move(tick)] {
          std::unique_lock lock(m_mutex);
          while (!m_wake.wait_for(lock, interval, [this] { return m_ending; })) {
              tick();
          }
      }) {}

Ticker::~Ticker() {
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
    }
    m_wake.notify_one();
    m_thread.join();
}

} // namespace tesk5
