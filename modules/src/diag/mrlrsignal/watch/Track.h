// The readings of one radio in the last minute, as numbers to show.
#pragma once

#include <readings/LevelSource.h>

#include <chrono>
#include <cstddef>
#include <deque>
#include <optional>
#include <vector>

namespace watch {

/// On the clock in force.
using Moment = mrl::Clock::Duration;

/// How long readings are kept.
inline constexpr std::chrono::seconds HISTORY{60};
/// The readings that a median is taken of.
inline constexpr std::chrono::seconds RECENT{10};

/// What the last ten seconds say.
struct Recent {
    double median = 0;             ///< dBm
    double interquartileRange = 0; ///< dB
    std::size_t readings = 0;
};

/// Of one BSS. One thread.
class Track {
public:
    /// Takes a reading, which is not older than the last one, and drops what is older than HISTORY.
    void add(const readings::Reading& reading);
    /// Drops what is older than HISTORY at `now`; the last reading stays.
    void forgetOld(Moment now);

    /// Null before the first reading.
    const readings::Reading* last() const {
        return m_readings.empty() ? nullptr : &m_readings.back();
    }
    /// The highest level in dBm since the first reading or restartBest(); nothing before a reading.
    std::optional<LONG> best() const { return m_best; }
    void restartBest() { m_best.reset(); }
    /// Nothing without a reading in the RECENT time before `now`.
    std::optional<Recent> recent(Moment now) const;
    /// Readings per second: those of the RECENT time.
    double rate(Moment now) const;
    /// The median level of each of `slots` spans of equal length, the oldest first, which end with
    /// the one that `now` lies in and take HISTORY together. Spans begin at fixed moments, so that
    /// a level keeps its span from one call to the next.
    std::vector<std::optional<double>> history(Moment now, std::size_t slots) const;

private:
    std::vector<double> since(Moment begin) const;

    std::deque<readings::Reading> m_readings;
    std::optional<LONG> m_best;
};

} // namespace watch
