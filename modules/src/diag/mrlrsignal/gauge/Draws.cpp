#include <gauge/Draws.h>

#include <boost/math/distributions/chi_squared.hpp>

namespace gauge {

namespace {

constexpr std::size_t DRAWS = 4096;

// The bases of Halton's sequence, one a line of the table.
constexpr std::size_t BASES[] = {2, 3, 5, 7};

// Digits of `index` in `base`, mirrored at the point.
double halton(std::size_t index, std::size_t base) {
    double value = 0;
    double digit = 1;
    for (; index > 0; index /= base) {
        digit /= static_cast<double>(base);
        value += digit * static_cast<double>(index % base);
    }
    return value;
}

std::vector<double> chiSquared(double degrees, std::size_t base) {
    std::vector<double> drawn(DRAWS, degrees);
    if (degrees > 0) {
        const boost::math::chi_squared_distribution<double> distribution(degrees);
        for (std::size_t draw = 0; draw < DRAWS; ++draw) {
            drawn[draw] = boost::math::quantile(distribution, halton(draw + 1, base));
        }
    }
    return drawn;
}

} // namespace

Draws::Draws(const AnovaTable& table)
    : m_rows{chiSquared(table.parts.degrees, BASES[0]),
             chiSquared(table.operators.degrees, BASES[1]),
             chiSquared(table.interaction.degrees, BASES[2]),
             chiSquared(table.repeatability.degrees, BASES[3])} {}

double Draws::expected(const AnovaRow& row, std::size_t index, std::size_t draw) const {
    return row.degrees > 0 ? row.sumOfSquares / m_rows[index][draw] : 0;
}

Components Draws::components(const Design& design, const AnovaTable& table,
                             std::size_t draw) const {
    AnovaTable drawn = table;
    drawn.parts.meanSquare = expected(table.parts, 0, draw);
    drawn.operators.meanSquare = expected(table.operators, 1, draw);
    drawn.interaction.meanSquare = expected(table.interaction, 2, draw);
    drawn.repeatability.meanSquare = expected(table.repeatability, 3, draw);
    return withoutNegatives(gauge::components(design, drawn));
}

} // namespace gauge
