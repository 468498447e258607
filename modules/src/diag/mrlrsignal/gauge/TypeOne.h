// The short study of a gauge: one part whose value is known, measured many times.
#pragma once

#include <statistics/MedianInterval.h>

#include <optional>

namespace gauge {

/// How many readings such a study needs to be called one; it is computed from 2 on.
inline constexpr std::size_t TYPE_ONE_READINGS = 25;

/// From this on Cg and Cgk are good.
inline constexpr double GOOD_CAPABILITY = 1.33;

struct TypeOneOptions {
    double reference = 0; ///< the known value, in the readings' unit
    /// Width of the tolerance in the readings' unit, above 0.
    std::optional<double> tolerance;
    double confidence = 0.95; ///< of the intervals, above 0 and below 1
};

struct Capability {
    double value = 0;
    /// The true value is above this with the confidence of the options.
    double atLeast = 0;
};

struct TypeOne {
    double mean = 0;
    double deviation = 0; ///< standard deviation, in the readings' unit
    double bias = 0;      ///< the mean less the reference
    statistics::Interval biasInterval;
    /// The probability of at least such a bias, on either side, for a gauge without one; none where
    /// all readings are the same.
    std::optional<double> biasPValue;
    /// A fifth of the tolerance by six standard deviations; none without a tolerance, or where all
    /// readings are the same.
    std::optional<Capability> cg;
    /// The same for a gauge that is off by the bias; negative when the bias is more than a tenth of
    /// the tolerance.
    std::optional<Capability> cgk;
};

/// The study of at least two readings; assumes that they are normal and independent.
/// Source: Dietrich and Schulze, "Measurement Process Qualification" (2011), chapter 5; the bound
/// of Cgk as that of the index Cpk, Bissell, Applied Statistics 39 (1990)
TypeOne typeOne(statistics::Readings readings, const TypeOneOptions& options);

} // namespace gauge
