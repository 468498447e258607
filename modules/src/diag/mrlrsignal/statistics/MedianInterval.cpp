#include <statistics/MedianInterval.h>

#include <boost/math/distributions/binomial.hpp>

#include <algorithm>
#include <cmath>

namespace statistics {

namespace {

// The ranks of the interval, from 1, among `count` independent readings, and what they cover.
struct Ranks {
    std::size_t low = 1;
    double confidence = 0;
};

Ranks ranksAmong(std::size_t count, double confidence) {
    const boost::math::binomial_distribution<double> below(static_cast<double>(count), 0.5);
    // The interval between the readings of rank r and n + 1 - r misses the median when fewer than r
    // readings lie on one side of it.
    const auto covered = [&below](std::size_t rank) {
        return 1 - 2 * boost::math::cdf(below, static_cast<double>(rank - 1));
    };
    Ranks ranks{.low = 1, .confidence = covered(1)};
    while (2 * (ranks.low + 1) <= count && covered(ranks.low + 1) >= confidence) {
        ++ranks.low;
        ranks.confidence = covered(ranks.low);
    }
    return ranks;
}

Interval interval(Readings readings, double independent, double confidence) {
    const std::vector<double> inOrder = sorted(readings);
    const auto count = static_cast<double>(inOrder.size());
    // Rounded down: half a reading proves nothing.
    const auto whole = static_cast<std::size_t>(independent);
    if (whole < 2) {
        return {.low = inOrder.front(), .high = inOrder.back(), .confidence = 0};
    }
    const Ranks ranks = ranksAmong(whole, confidence);
    // The share of the readings outside the interval on either side stays; rounded to the outside.
    const double outside =
        std::floor(static_cast<double>(ranks.low - 1) * count / static_cast<double>(whole));
    const auto index = static_cast<std::size_t>(outside);
    return {.low = inOrder[index],
            .high = inOrder[inOrder.size() - 1 - index],
            .confidence = ranks.confidence};
}

} // namespace

double effectiveReadings(Readings readings) {
    const auto count = static_cast<double>(readings.size());
    const double middle = median(readings);
    std::vector<double> signs;
    signs.reserve(readings.size());
    for (const double value : readings) {
        signs.push_back(value > middle ? 1.0 : value < middle ? -1.0 : 0.0);
    }
    const auto product = [&signs](std::size_t lag) {
        double sum = 0;
        for (std::size_t i = lag; i < signs.size(); ++i) {
            sum += signs[i] * signs[i - lag];
        }
        return sum;
    };
    const double variance = product(0);
    if (variance == 0) {
        return count; // all alike: the median is what every reading is
    }
    double sum = 0;
    for (std::size_t lag = 1; lag < signs.size(); ++lag) {
        const double correlation = product(lag) / variance;
        if (correlation <= 0) {
            break;
        }
        sum += correlation;
    }
    return std::max(1.0, count / (1 + 2 * sum));
}

Interval medianInterval(Readings readings, double confidence) {
    return interval(readings, effectiveReadings(readings), confidence);
}

Interval medianIntervalOfIndependent(Readings readings, double confidence) {
    return interval(readings, static_cast<double>(readings.size()), confidence);
}

} // namespace statistics
