// How much of the variation of a crossed study comes from the parts, the operators, their
// interaction and the repetition: analysis of variance with random effects.
#pragma once

#include <gauge/CrossedReadings.h>

#include <optional>

namespace gauge {

/// One line of the table of the analysis of variance.
struct AnovaRow {
    double degrees = 0; ///< degrees of freedom
    double sumOfSquares = 0;
    /// Sum of squares by degrees of freedom; 0 without any.
    double meanSquare = 0;
    /// The mean square by the one that it is compared with, and the probability of at least that
    /// when there is no such effect. None where there is nothing to compare.
    std::optional<double> f;
    std::optional<double> pValue;
};

struct AnovaTable {
    AnovaRow parts;
    AnovaRow operators;
    AnovaRow interaction; ///< without degrees of freedom where it is pooled
    AnovaRow repeatability;
};

struct Anova {
    Design design;
    /// Parts and operators are compared with the interaction, the interaction with repeatability.
    AnovaTable full;
    /// The table that the components come from: where the interaction is pooled, it is part of
    /// repeatability, and parts and operators are compared with that; else as `full`.
    AnovaTable used;
    AnovaRow total; ///< degrees and sum of squares
    bool isPooled = false;
};

/// The interaction is pooled with repeatability above this p value.
inline constexpr double POOLING_LEVEL = 0.25;

/// The analysis of a study. One operator has neither reproducibility nor an interaction.
/// Source: Montgomery and Runger, Quality Engineering 6 (1993); Burdick, Borror and Montgomery,
/// "Design and Analysis of Gauge R&R Studies" (2005), chapter 3; for the level of pooling,
/// Automotive Industry Action Group, "Measurement Systems Analysis", 4th edition (2010), appendix A
Anova analyse(const CrossedReadings& readings);

/// Variances, in the square of the readings' unit.
struct Components {
    double repeatability = 0;
    double operators = 0;
    double interaction = 0;
    double parts = 0;

    double reproducibility() const { return operators + interaction; }
    double gauge() const { return repeatability + reproducibility(); }
    double total() const { return gauge() + parts; }
};

/// The unbiased estimates from mean squares; a component that hardly exists can be negative.
Components components(const Design& design, const AnovaTable& table);

/// The same with 0 for each negative component, as studies report them.
Components withoutNegatives(Components components);

} // namespace gauge
