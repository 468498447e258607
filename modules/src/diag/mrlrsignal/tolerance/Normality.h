// Whether levels could come from a normal distribution, for levels that were rounded too.
#pragma once

#include <statistics/Robust.h>

namespace tolerance {

/// Below this p value levels are not taken for normal.
inline constexpr double REFUSAL_LEVEL = 0.05;

/// The statistic of Anderson and Darling, with mean and standard deviation from the levels: at
/// least two, not all the same.
double andersonDarling(statistics::Readings levels);

/// The probability of at least such a statistic for normal levels that were not rounded; at
/// least 8. Source: D'Agostino and Stephens (editors), "Goodness-of-Fit Techniques" (1986),
/// table 4.9
double normalPValue(std::size_t count, double statistic);

struct NormalFit {
    double statistic = 0; ///< of Anderson and Darling
    double pValue = 1;
    /// Whether the p value allows for the steps of the levels.
    bool allowsForSteps = false;

    bool isRefused() const { return pValue < REFUSAL_LEVEL; }
};

/// The fit of at least 8 levels, in dBm, that are not all the same.
///
/// Rounded levels come in steps, which the published p values take for a misfit. Where levels are
/// equal, the statistic is therefore compared with those of 999 normal samples of the same mean and
/// standard deviation, rounded to the same steps: 0.2 s for 1,000 levels. The samples are the same
/// each time. Where a few levels lie between the steps of the others, as medians of even numbers of
/// readings do, the same share of each sample is rounded to half the step.
/// Source: the comparison (parametric bootstrap), Stute, Manteiga and Quindimil, Metrika 40 (1993);
/// the standard deviation before rounding, Sheppard, Proceedings of the London Mathematical Society
/// 29 (1898)
NormalFit fitNormal(statistics::Readings levels);

} // namespace tolerance
