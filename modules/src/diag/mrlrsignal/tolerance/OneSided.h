// One-sided tolerance limits: the level above which a given share of all units lies, with a given
// confidence, from the units at hand.
#pragma once

#include <cstddef>

namespace tolerance {

/// What a limit promises: at least `share` of all units lie above it, with probability
/// `confidence`. Both above 0 and below 1.
struct Promise {
    double share = 0.95;
    double confidence = 0.95;
};

/// How many standard deviations below the mean of `units` (at least 2) normal levels the limit
/// lies.
///
/// The quantile of the noncentral t distribution with n - 1 degrees of freedom and noncentrality
/// z(share) times the square root of n, by that root.
/// Source: Owen, "Factors for One-Sided Tolerance Limits and for Variables Sampling Plans", Sandia
/// Corporation Monograph SCR-607 (1963)
double normalFactor(std::size_t units, const Promise& promise);

/// How many of the lowest of `units` levels may lie below the limit when no distribution is
/// assumed: the limit is the level of this rank, 1 being the lowest; 0 where even the lowest
/// promises too little.
/// Source: Wilks, Annals of Mathematical Statistics 12 (1941); David and Nagaraja, "Order
/// Statistics", 3rd edition (2003), section 7.2
std::size_t rankOfLimit(std::size_t units, const Promise& promise);

/// The fewest units with which the level of `rank` (from 1) is such a limit: 59 for the lowest at
/// 95 % and 95 %.
std::size_t unitsNeeded(std::size_t rank, const Promise& promise);

} // namespace tolerance
