#include <statistics/Moments.h>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace statistics {

double mean(Readings readings) {
    // Counted from the first one: equal readings then have exactly that mean, and no scatter.
    const double first = readings.front();
    const double above =
        std::accumulate(readings.begin(), readings.end(), 0.0,
                        [first](double sum, double value) { return sum + (value - first); });
    return first + above / static_cast<double>(readings.size());
}

double sumOfSquares(Readings readings) {
    const double middle = mean(readings);
    double sum = 0;
    for (const double value : readings) {
        sum += (value - middle) * (value - middle);
    }
    return sum;
}

double standardDeviation(Readings readings) {
    return std::sqrt(sumOfSquares(readings) / static_cast<double>(readings.size() - 1));
}

double range(Readings readings) {
    const auto [low, high] = std::minmax_element(readings.begin(), readings.end());
    return *high - *low;
}

double step(Readings readings) {
    constexpr double SAME = 1e-9;
    const std::vector<double> inOrder = sorted(readings);
    double smallest = 0;
    for (std::size_t i = 1; i < inOrder.size(); ++i) {
        const double difference = inOrder[i] - inOrder[i - 1];
        if (difference > SAME && (smallest == 0 || difference < smallest)) {
            smallest = difference;
        }
    }
    return smallest;
}

} // namespace statistics
