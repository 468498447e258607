#include <gauge/Assumptions.h>

#include <gauge/RangeConstants.h>
#include <statistics/Moments.h>
#include <statistics/Steps.h>
#include <statistics/Trend.h>

#include <boost/math/distributions/chi_squared.hpp>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <set>

namespace gauge {

namespace {

// Equal but for the rounding of sums.
constexpr double SAME = 1e-9;

void checkDrift(const CrossedReadings& readings, Assumptions& found) {
    const Design& design = readings.design();
    std::vector<double> changes;
    double score = 0;
    double variance = 0;
    for (std::size_t part = 0; part < design.parts; ++part) {
        for (std::size_t op = 0; op < design.operators; ++op) {
            const auto cell = readings.cell(part, op);
            score += statistics::kendallScore(cell);
            variance += statistics::kendallScoreVariance(cell);
            for (std::size_t trial = 1; trial < cell.size(); ++trial) {
                changes.push_back(cell[trial] - cell[trial - 1]);
            }
        }
    }
    found.driftPerTrial = statistics::median(changes);
    if (variance > 0) {
        const double normal = std::max(std::abs(score) - 1, 0.0) / std::sqrt(variance);
        found.driftPValue = std::erfc(normal / std::numbers::sqrt2);
    }
}

void checkRanges(const CrossedReadings& readings, Assumptions& found) {
    const Design& design = readings.design();
    std::vector<double> ranges;
    for (std::size_t part = 0; part < design.parts; ++part) {
        for (std::size_t op = 0; op < design.operators; ++op) {
            ranges.push_back(statistics::range(readings.cell(part, op)));
        }
    }
    found.rangeLimit = upperRangeFactor(design.trials) * statistics::mean(ranges);
    for (const double range : ranges) {
        found.rangesAboveLimit += range > found.rangeLimit + SAME ? 1 : 0;
        found.zeroRanges += range <= SAME ? 1 / static_cast<double>(ranges.size()) : 0;
    }
    found.possibleRanges =
        found.step > 0
            ? 1 + static_cast<std::size_t>(std::floor(found.rangeLimit / found.step + SAME))
            : 1;
}

// The standard deviation of each cell, rounded: what is equal must stay equal.
double scatter(std::span<const double> cell) {
    return std::round(statistics::standardDeviation(cell) / SAME) * SAME;
}

void checkScatter(const CrossedReadings& readings, Assumptions& found) {
    const Design& design = readings.design();
    std::vector<std::vector<double>> byOperator(design.operators);
    std::vector<std::vector<double>> byPart(design.parts);
    for (std::size_t part = 0; part < design.parts; ++part) {
        for (std::size_t op = 0; op < design.operators; ++op) {
            const double deviation = scatter(readings.cell(part, op));
            byOperator[op].push_back(deviation);
            byPart[part].push_back(deviation);
        }
    }
    found.operatorScatterPValue = kruskalWallis(byOperator);
    found.partScatterPValue = kruskalWallis(byPart);
}

} // namespace

bool Assumptions::hasTooFewValues() const {
    constexpr std::size_t FEW = 3;
    constexpr double MANY_ZEROS = 0.25;
    return possibleRanges <= FEW || (possibleRanges == FEW + 1 && zeroRanges > MANY_ZEROS);
}

Assumptions checkAssumptions(const CrossedReadings& readings) {
    Assumptions found;
    const auto all = readings.all();
    found.step = statistics::stepsOf(all).usual();
    found.differentReadings = std::set<double>(all.begin(), all.end()).size();
    checkRanges(readings, found);
    checkDrift(readings, found);
    checkScatter(readings, found);
    return found;
}

double kruskalWallis(const std::vector<std::vector<double>>& groups) {
    std::vector<double> all;
    for (const std::vector<double>& group : groups) {
        all.insert(all.end(), group.begin(), group.end());
    }
    if (groups.size() < 2) {
        return 1;
    }
    const std::vector<double> ranks = statistics::ranks(all);
    const double variance = statistics::sumOfSquares(ranks) / static_cast<double>(all.size() - 1);
    if (variance <= 0) {
        return 1; // all are the same
    }
    const double middle = statistics::mean(ranks);
    double statistic = 0;
    auto next = ranks.begin();
    for (const std::vector<double>& group : groups) {
        const auto end = next + static_cast<std::ptrdiff_t>(group.size());
        const double distance = statistics::mean({next, end}) - middle;
        statistic += static_cast<double>(group.size()) * distance * distance / variance;
        next = end;
    }
    const boost::math::chi_squared_distribution<double> byChance(
        static_cast<double>(groups.size() - 1));
    return boost::math::cdf(boost::math::complement(byChance, statistic));
}

} // namespace gauge
