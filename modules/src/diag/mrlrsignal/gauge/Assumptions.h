// Where a study's readings are not what its figures assume.
#pragma once

#include <gauge/CrossedReadings.h>

namespace gauge {

/// A test says something when its p value is below this; a study has several.
inline constexpr double WARNING_LEVEL = 0.01;

struct Assumptions {
    /// The smallest difference between two readings, 0 when all are the same.
    double step = 0;
    std::size_t differentReadings = 0;
    /// The upper control limit of the ranges of the cells, and how many cells are above it.
    double rangeLimit = 0;
    std::size_t rangesAboveLimit = 0;
    /// How many different ranges there can be up to the limit: 0, one step, two steps and so on.
    std::size_t possibleRanges = 0;
    double zeroRanges = 0; ///< share of the cells whose readings are all the same, 0 to 1
    /// The median change from one trial to the next, and the probability of at least such a drift
    /// without any.
    double driftPerTrial = 0;
    double driftPValue = 1;
    /// The probability of cells that scatter at least as differently from one operator to the next,
    /// and from one part to the next, when all scatter alike; 1 where there is only one.
    double operatorScatterPValue = 1;
    double partScatterPValue = 1;

    /// At most 3 possible ranges, or 4 with more than a quarter of them zero: the step of the
    /// readings is too coarse for their scatter, and repeatability means little.
    bool hasTooFewValues() const;
    bool drifts() const { return driftPValue < WARNING_LEVEL; }
    bool operatorsScatterDifferently() const { return operatorScatterPValue < WARNING_LEVEL; }
    bool partsScatterDifferently() const { return partScatterPValue < WARNING_LEVEL; }
};

/// The checks; none of them assumes a normal distribution, except for the limit of the ranges.
/// Source: too few values, Automotive Industry Action Group, "Measurement Systems Analysis", 4th
/// edition (2010), chapter I section E; drift, Kendall's test summed over the cells, Hirsch, Slack
/// and Smith, Water Resources Research 18 (1982); scatter, Kruskal and Wallis, Journal of the
/// American Statistical Association 47 (1952), on the standard deviations of the cells
Assumptions checkAssumptions(const CrossedReadings& readings);

/// The p value of groups of values, at least one each, that come from one distribution.
double kruskalWallis(const std::vector<std::vector<double>>& groups);

} // namespace gauge
