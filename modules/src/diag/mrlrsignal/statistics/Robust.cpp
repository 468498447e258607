#include <statistics/Robust.h>

#include <algorithm>
#include <cmath>

namespace statistics {

std::vector<double> sorted(Readings readings) {
    std::vector<double> values(readings.begin(), readings.end());
    std::sort(values.begin(), values.end());
    return values;
}

std::vector<double> ranks(Readings readings) {
    const std::vector<double> inOrder = sorted(readings);
    std::vector<double> found;
    found.reserve(readings.size());
    for (const double value : readings) {
        const auto [first, last] = std::equal_range(inOrder.begin(), inOrder.end(), value);
        found.push_back(
            static_cast<double>((first - inOrder.begin()) + (last - inOrder.begin()) + 1) / 2);
    }
    return found;
}

double quantile(Readings inRisingOrder, double share) {
    const double rank = share * static_cast<double>(inRisingOrder.size() - 1);
    const auto below = static_cast<std::size_t>(std::floor(rank));
    const std::size_t above = std::min(below + 1, inRisingOrder.size() - 1);
    return std::lerp(inRisingOrder[below], inRisingOrder[above], rank - std::floor(rank));
}

double median(Readings readings) {
    return quantile(sorted(readings), 0.5);
}

Spread spread(Readings readings) {
    const std::vector<double> inOrder = sorted(readings);
    const double middle = quantile(inOrder, 0.5);
    std::vector<double> distances;
    distances.reserve(inOrder.size());
    for (const double value : inOrder) {
        distances.push_back(std::abs(value - middle));
    }
    return {.interquartileRange = quantile(inOrder, 0.75) - quantile(inOrder, 0.25),
            .medianAbsoluteDeviation = median(distances)};
}

} // namespace statistics
