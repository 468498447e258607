// Where readings lie and how far they scatter, by order statistics alone: RSSI is whole numbers,
// skewed, and now and then far off, so means and standard deviations say little.
#pragma once

#include <span>
#include <vector>

namespace statistics {

/// Readings in the order in which they were taken; none is NaN.
using Readings = std::span<const double>;

/// The values in rising order.
std::vector<double> sorted(Readings readings);

/// The rank of each value, from 1; equal values share the mean of theirs.
std::vector<double> ranks(Readings readings);

/// The quantile `share` (0 to 1) of readings in rising order, at least one, interpolated between
/// the two that are nearest: at rank 1 + (n - 1) * share. Half is the median.
/// Source: Hyndman and Fan, "Sample quantiles in statistical packages", The American Statistician
/// 50 (1996), definition 7
double quantile(Readings inRisingOrder, double share);

/// The median of at least one reading.
double median(Readings readings);

struct Spread {
    double interquartileRange = 0; ///< between the quantiles 1/4 and 3/4
    /// The median of the distances from the median; not scaled to a normal distribution.
    double medianAbsoluteDeviation = 0;
};

/// The scatter of at least one reading.
Spread spread(Readings readings);

} // namespace statistics
