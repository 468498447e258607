// What mean squares could have been: the drawn chi-squared numbers behind a study's confidence
// intervals.
#pragma once

#include <gauge/Anova.h>

#include <vector>

namespace gauge {

/// Chi-squared numbers for each line of a table. They depend on degrees of freedom only, so studies
/// of one design share them. Takes 0.2 s to make.
///
/// The points are those of Halton's sequence, not random: the same study has the same intervals on
/// each machine.
/// Source: Halton, Numerische Mathematik 2 (1960)
class Draws {
public:
    /// \param table a table of the design: one with the interaction, or one where it is pooled
    explicit Draws(const AnovaTable& table);

    std::size_t size() const { return m_rows.front().size(); }

    /// The components that a study with the mean squares of `table` could come from, negative ones
    /// as 0.
    /// \param draw 0 to size() - 1
    Components components(const Design& design, const AnovaTable& table, std::size_t draw) const;

private:
    double expected(const AnovaRow& row, std::size_t index, std::size_t draw) const;

    std::vector<std::vector<double>> m_rows; // parts, operators, interaction, repeatability
};

} // namespace gauge
