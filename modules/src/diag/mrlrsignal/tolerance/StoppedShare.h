// What share of all units a limit stops, judged by the units at hand.
#pragma once

#include <statistics/Robust.h>

#include <cstddef>

namespace tolerance {

/// Shares are from 0 to 1.
struct Share {
    double value = 0;
    double low = 0; ///< the interval covers the true share with at least the confidence asked for
    double high = 1;
};

/// The share of all units when `stopped` of `units` (at least 1) were.
/// Source: Clopper and Pearson, Biometrika 26 (1934)
Share stoppedShare(std::size_t stopped, std::size_t units, double confidence);

/// The share of normal levels (at least 2 here, not all the same) that lie below `limit`: far from
/// all levels at hand this says more than counting them.
/// Source: Owen and Hua, Communications in Statistics B6 (1977)
Share normalShareBelow(double limit, statistics::Readings levels, double confidence);

} // namespace tolerance
