// The offset of a station from placements of a unit whose level is known.
#pragma once

#include <statistics/MedianInterval.h>

namespace calibration {

/// The fewest placements that an offset is computed from: two say how far they scatter.
inline constexpr std::size_t FEWEST_PLACEMENTS = 2;

/// What is known before a station is calibrated.
struct Reference {
    double level = 0; ///< dBm, of the golden unit
    /// dB, 0 or more: the standard uncertainty of that level.
    double uncertainty = 0;
};

/// All in dB.
struct Offset {
    /// What is added to a reading: the reference less the mean of the placements.
    double value = 0;
    std::size_t placements = 0;
    /// Standard deviation from one placement to the next: what a single measurement of a unit
    /// scatters by.
    double placementDeviation = 0;
    double step = 0; ///< of the readings that the placements' levels come from
    /// Standard uncertainty of `value`: placements, step and reference together.
    double uncertainty = 0;
    double degrees = 0;  ///< effective degrees of freedom of `uncertainty`; may be infinite
    double expanded = 0; ///< half the width of the interval that covers the true offset
    double confidence = 0;
};

/// The offset from the median levels of at least FEWEST_PLACEMENTS placements, in dBm.
///
/// The readings of one placement say nothing about the next one, so only the placements count:
/// their mean has the standard uncertainty s/√n. A step h adds h/√12, once: all placements can be
/// rounded the same way.
/// \param step dB, 0 or more: the step of the readings, as statistics::step() finds it
/// Source: JCGM 100:2008, "Guide to the expression of uncertainty in measurement", 4.3.7 and annex
/// G
Offset offset(statistics::Readings placements, const Reference& reference, double step,
              double confidence);

enum class Drift {
    HOLDS,       ///< the change lies within what is allowed
    DRIFTED,     ///< the change lies beyond it
    CANNOT_TELL, ///< its interval reaches across: more placements are needed
};

struct DriftCheck {
    double change = 0; ///< dB, the offset now less the one before
    statistics::Interval interval;
    double allowed = 0; ///< dB
    Drift drift = Drift::CANNOT_TELL;
};

/// Whether a station's offset still holds, from a second one with the same unit: the uncertainty of
/// the reference is in both and cancels.
/// \param allowed dB, above 0: a change of at most this is none
/// Source: Welch, Biometrika 34 (1947); for "holds", Schuirmann, Journal of Pharmacokinetics and
/// Biopharmaceutics 15 (1987)
DriftCheck checkDrift(const Offset& before, const Offset& now, double allowed, double confidence);

} // namespace calibration
