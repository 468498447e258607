// Standard uncertainties, and what they are together.
#pragma once

#include <limits>
#include <span>

namespace calibration {

/// One source of uncertainty.
struct Uncertainty {
    double standard = 0; ///< a standard deviation, 0 or more
    /// Degrees of freedom: of how many readings less one it comes; infinite for what is known
    /// beforehand.
    double degrees = std::numeric_limits<double>::infinity();

    /// Half the width of the interval that covers the true value with `confidence`, above 0 and
    /// below 1.
    double expanded(double confidence) const;
};

/// Independent sources together, with effective degrees of freedom by the formula of Welch and
/// Satterthwaite.
/// Source: JCGM 100:2008, "Guide to the expression of uncertainty in measurement", 5.1.2 and G.4.1
Uncertainty combine(std::span<const Uncertainty> sources);

/// What a step of readings adds: every true value within half a step is as likely.
/// Source: the same, 4.3.7
Uncertainty ofStep(double step);

} // namespace calibration
