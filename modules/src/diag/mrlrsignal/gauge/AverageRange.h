// The average-and-range method: the study by hand, beside the analysis of variance. It knows no
// interaction and no confidence intervals.
#pragma once

#include <gauge/CrossedReadings.h>

namespace gauge {

/// Standard deviations in the readings' unit.
struct AverageRange {
    double meanRange = 0;       ///< of the cells
    double operatorRange = 0;   ///< between the operators' means
    double partRange = 0;       ///< between the parts' means
    double repeatability = 0;   ///< equipment variation
    double reproducibility = 0; ///< appraiser variation; 0 where repeatability explains it
    double gauge = 0;
    double parts = 0;
    double total = 0;
};

/// The constants are the reciprocals of d2*, above 15 ranges those of d2.
/// Source: Automotive Industry Action Group, "Measurement Systems Analysis", 4th edition (2010),
/// chapter III section B
AverageRange averageAndRange(const CrossedReadings& readings);

} // namespace gauge
