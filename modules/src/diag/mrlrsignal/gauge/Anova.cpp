#include <gauge/Anova.h>

#include <statistics/Moments.h>

#include <boost/math/distributions/fisher_f.hpp>

#include <algorithm>

namespace gauge {

namespace {

// Readings have nine decimals at most. A smaller deviation is what the rounding of means leaves,
// and would make a test of nothing.
constexpr double LEAST_MEAN_SQUARE = 1e-18;

AnovaRow row(double degrees, double sumOfSquares) {
    const double sum = sumOfSquares > LEAST_MEAN_SQUARE * std::max(degrees, 1.0) ? sumOfSquares : 0;
    return {.degrees = degrees,
            .sumOfSquares = sum,
            .meanSquare = degrees > 0 ? sum / degrees : 0,
            .f = {},
            .pValue = {}};
}

void compare(AnovaRow& tested, const AnovaRow& with) {
    if (tested.degrees < 1 || with.degrees < 1 || with.meanSquare <= 0) {
        return;
    }
    tested.f = tested.meanSquare / with.meanSquare;
    const boost::math::fisher_f_distribution<double> byChance(tested.degrees, with.degrees);
    tested.pValue = boost::math::cdf(boost::math::complement(byChance, *tested.f));
}

// The sum of squares between the means of groups, each of `size` readings.
double between(const std::vector<double>& means, std::size_t size) {
    return statistics::sumOfSquares(means) * static_cast<double>(size);
}

// Without a within-cell scatter there is nothing to compare with: an interaction of zero is pooled,
// any other is not.
bool isPoolable(const AnovaRow& interaction) {
    return interaction.pValue ? *interaction.pValue > POOLING_LEVEL : interaction.meanSquare <= 0;
}

} // namespace

Anova analyse(const CrossedReadings& readings) {
    const Design& design = readings.design();
    const auto parts = static_cast<double>(design.parts);
    const auto operators = static_cast<double>(design.operators);
    const auto trials = static_cast<double>(design.trials);
    std::vector<double> partMeans;
    std::vector<double> operatorMeans;
    std::vector<double> cellMeans;
    double within = 0;
    for (std::size_t part = 0; part < design.parts; ++part) {
        partMeans.push_back(statistics::mean(readings.part(part)));
        for (std::size_t op = 0; op < design.operators; ++op) {
            cellMeans.push_back(statistics::mean(readings.cell(part, op)));
            within += statistics::sumOfSquares(readings.cell(part, op));
        }
    }
    for (std::size_t op = 0; op < design.operators; ++op) {
        operatorMeans.push_back(statistics::mean(readings.byOperator(op)));
    }
    const double betweenParts = between(partMeans, design.operators * design.trials);
    const double betweenOperators = between(operatorMeans, design.parts * design.trials);
    // What the means of part and operator leave of each cell. As a difference of the other sums it
    // would be their rounding error where nothing is left.
    const double middle = statistics::mean(partMeans);
    double left = 0;
    auto cellMean = cellMeans.begin();
    for (const double partMean : partMeans) {
        for (const double operatorMean : operatorMeans) {
            const double rest = *cellMean++ - partMean - operatorMean + middle;
            left += rest * rest;
        }
    }
    const double crossed = left * trials;

    Anova found;
    found.design = design;
    found.full.parts = row(parts - 1, betweenParts);
    found.full.operators = row(operators - 1, betweenOperators);
    found.full.interaction = row((parts - 1) * (operators - 1), crossed);
    found.full.repeatability = row(parts * operators * (trials - 1), within);
    found.total =
        row(parts * operators * trials - 1, betweenParts + betweenOperators + crossed + within);
    found.used = found.full;
    compare(found.full.parts, found.full.interaction);
    compare(found.full.operators, found.full.interaction);
    compare(found.full.interaction, found.full.repeatability);

    found.isPooled = isPoolable(found.full.interaction);
    if (!found.isPooled) {
        found.used = found.full;
        return found;
    }
    found.used.interaction = {};
    found.used.repeatability =
        row(found.full.interaction.degrees + found.full.repeatability.degrees,
            found.full.interaction.sumOfSquares + found.full.repeatability.sumOfSquares);
    compare(found.used.parts, found.used.repeatability);
    compare(found.used.operators, found.used.repeatability);
    return found;
}

Components components(const Design& design, const AnovaTable& table) {
    const auto parts = static_cast<double>(design.parts);
    const auto operators = static_cast<double>(design.operators);
    const auto trials = static_cast<double>(design.trials);
    const bool hasInteraction = table.interaction.degrees > 0;
    const double error = table.repeatability.meanSquare;
    const double crossed = hasInteraction ? table.interaction.meanSquare : error;
    Components found;
    found.repeatability = error;
    found.interaction = (crossed - error) / trials;
    found.parts = (table.parts.meanSquare - crossed) / (operators * trials);
    if (table.operators.degrees > 0) {
        found.operators = (table.operators.meanSquare - crossed) / (parts * trials);
    }
    return found;
}

Components withoutNegatives(Components components) {
    components.operators = std::max(components.operators, 0.0);
    components.interaction = std::max(components.interaction, 0.0);
    components.parts = std::max(components.parts, 0.0);
    return components;
}

} // namespace gauge
