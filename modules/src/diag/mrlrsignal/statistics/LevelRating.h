// What a level says about limits, and when enough readings were taken to say it.
#pragma once

#include <statistics/MedianInterval.h>

#include <optional>

namespace statistics {

/// Limits in dBm. The failing limit, where both are set, is not above the warning limit.
struct LevelLimits {
    std::optional<double> warning = {};
    std::optional<double> failing = {};
    /// dB, 0 or more: how far a level must be from a limit before it is on one side of it.
    double guardBand = 0;
};

enum class Rating {
    PASS,          ///< at or above every limit plus the guard band
    BELOW_WARNING, ///< below the warning limit by the guard band, and not near the failing one
    TOO_CLOSE,     ///< within the guard band of a limit
    FAIL,          ///< below the failing limit less the guard band
};

/// The rating of a level; PASS without any limit. A level exactly on the upper edge of a guard band
/// is above it, one exactly on the lower edge is inside.
Rating rate(double level, const LevelLimits& limits);

/// Whether `interval` lies wholly below or wholly above each limit and its guard band.
bool isClear(const Interval& interval, const LevelLimits& limits);

/// The probability with which the interval that ends the sampling early covers the median. It is
/// looked at after each reading, so it is much higher than that of a single look would be;
/// docs/measuring.md has the operating curves.
inline constexpr double EARLY_CONFIDENCE = 0.999;

/// Whether more readings would hardly change the rating: the interval for the median, moved by
/// `offset` dB, is clear of every limit.
bool decided(Readings readings, double offset, const LevelLimits& limits);

} // namespace statistics
