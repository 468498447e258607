// How far the median of correlated readings can be from the level that they scatter about.
#pragma once

#include <statistics/Robust.h>

namespace statistics {

/// How many independent readings would tell as much about the median as these do: 1 to n.
///
/// Drivers average, so neighbouring readings are alike. What counts for a median is how often
/// neighbours lie on the same side of it: the autocorrelations of the signs, summed up to the first
/// that is not positive. docs/measuring.md derives it.
/// Source: the effective number, Bayley and Hammersley, Supplement to the Journal of the Royal
/// Statistical Society 8 (1946); ending the sum where correlations are noise, Geyer, Statistical
/// Science 7 (1992), section 3.3
double effectiveReadings(Readings readings);

struct Interval {
    double low = 0;
    double high = 0;
    /// The probability with which such an interval covers the median of the distribution that the
    /// readings come from, whatever that is: at least the one asked for, except where the readings
    /// are too few for it; 0 for fewer than two effective readings.
    double confidence = 0;
};

/// The interval for the median between two of the readings, at least one.
///
/// The ranks are those of the binomial distribution for as many independent readings as
/// effectiveReadings() counts, stretched to the readings at hand. With too few (fewer than 6 for
/// 0.95) it reaches from the lowest to the highest, and `confidence` tells what that is worth.
/// \param confidence above 0, below 1
/// Source: David and Nagaraja, "Order Statistics", 3rd edition (2003), section 7.1
Interval medianInterval(Readings readings, double confidence);

/// The same for independent readings: the published intervals.
Interval medianIntervalOfIndependent(Readings readings, double confidence);

} // namespace statistics
