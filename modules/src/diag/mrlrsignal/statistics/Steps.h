// The steps that readings come in.
#pragma once

#include <statistics/Robust.h>

#include <cstddef>

namespace statistics {

/// Readings come in steps of at most this many dB: drivers give whole numbers. A greater difference
/// between neighbouring readings is a gap.
inline constexpr double COARSEST_STEP = 1;

/// How readings were rounded: each to `fine`, or but for a share of them to twice that. The median
/// of an even number of whole readings may be a half.
struct Steps {
    double fine = 0;        ///< 0 where all readings are equal
    double shareOfFine = 1; ///< 1: all are rounded to `fine`
    double origin = 0;      ///< a reading that lies on both grids

    /// The step of most readings.
    double usual() const { return shareOfFine > 1.0 / 2 ? fine : 2 * fine; }

    /// What rounding adds to the variance. Source: Sheppard, Proceedings of the London Mathematical
    /// Society 29 (1898)
    double variance() const;

    /// A level as random reading number `index` of `count` would be.
    double rounded(double level, std::size_t index, std::size_t count) const;
};

/// The steps of at least one reading.
Steps stepsOf(Readings readings);

} // namespace statistics
