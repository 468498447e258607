// What ranges of normal readings are, in standard deviations: the constants of control charts and
// of the average-and-range method.
#pragma once

#include <cstddef>

namespace gauge {

/// The mean of the range of `size` (at least 2) independent standard normal readings: d2.
/// Takes about a millisecond: integrated, not looked up.
/// Source: Tippett, Biometrika 17 (1925)
double meanRange(std::size_t size);

/// Its standard deviation: d3.
double rangeDeviation(std::size_t size);

/// What the mean of `groups` ranges is divided by for a standard deviation whose square is
/// unbiased: d2*.
/// Source: Patnaik, Biometrika 37 (1950); Duncan, "Quality Control and Industrial Statistics",
/// 5th edition (1986), table D3
double meanRangeOfGroups(std::size_t size, std::size_t groups);

/// The upper control limit of ranges as a multiple of their mean: D4.
/// Source: ISO 7870-2:2013, table 2
double upperRangeFactor(std::size_t size);

} // namespace gauge
