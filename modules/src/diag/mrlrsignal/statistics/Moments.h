// Mean and standard deviation, for procedures that are built on the normal distribution. The rating
// of a level uses none of them.
#pragma once

#include <statistics/Robust.h>

namespace statistics {

/// The mean of at least one reading.
double mean(Readings readings);

/// The sum of the squared distances from the mean, of at least one reading.
double sumOfSquares(Readings readings);

/// The standard deviation, with n - 1; at least two readings.
double standardDeviation(Readings readings);

/// The difference between the largest and the smallest of at least one reading.
double range(Readings readings);

/// The smallest difference between two readings that are not equal: the step of whatever rounded
/// them. 0 when all are equal. Differences below 1e-9 are rounding errors of the computation.
double step(Readings readings);

} // namespace statistics
