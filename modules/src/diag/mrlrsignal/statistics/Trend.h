// Whether readings rise or fall while they are taken, without assuming a distribution.
#pragma once

#include <statistics/Robust.h>

namespace statistics {

/// One reading and when it was taken.
struct TimedReading {
    double seconds = 0;
    double value = 0;
};

struct Trend {
    double perSecond = 0; ///< the median of the slopes between all pairs of readings
    double change = 0;    ///< `perSecond` times the time from the first reading to the last
    /// The probability of a trend at least as clear among readings without one, on both sides;
    /// 1 for fewer than ten readings, which prove none.
    double pValue = 1;
};

/// The trend of readings in the order of their times.
///
/// The test is Mann's and Kendall's with the normal approximation, corrected for equal values and
/// for continuity; the variance grows by what neighbouring readings have in common. The size is
/// Theil's and Sen's. Takes a time that grows with the square of the number of readings: 10 ms for
/// 1,000.
/// Source: Mann, Econometrica 13 (1945); Kendall, "Rank Correlation Methods" (1975), chapter 4;
/// Hamed and Rao, Journal of Hydrology 204 (1998); Sen, Journal of the American Statistical
/// Association 63 (1968)
Trend trend(std::span<const TimedReading> readings);

/// Kendall's S of values in the order in which they were taken: pairs that rise less pairs that
/// fall.
double kendallScore(Readings readings);

/// The variance of S for independent readings without a trend, corrected for equal values.
double kendallScoreVariance(Readings readings);

/// The standard normal score of S for independent readings, with both corrections.
double kendallNormalScore(Readings readings);

} // namespace statistics
