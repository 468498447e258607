#include <gauge/RangeConstants.h>

#include <cmath>
#include <numbers>

namespace gauge {

namespace {

// Beyond this a standard normal density does not count in a double's sums.
constexpr double FAR = 8.5;

struct RangeMoments {
    double mean = 0;
    double deviation = 0;
};

// The trapezoidal rule: for functions that vanish smoothly at both ends it is exact to the last
// digits.
template <typename Function>
double integral(double low, double high, Function function) {
    constexpr int STEPS = 100;
    const double width = (high - low) / STEPS;
    double sum = (function(low) + function(high)) / 2;
    for (int i = 1; i < STEPS; ++i) {
        sum += function(low + i * width);
    }
    return sum * width;
}

double normalDensity(double x) {
    return std::exp(-x * x / 2) / std::sqrt(2 * std::numbers::pi);
}

double normalShare(double x) {
    return std::erfc(-x / std::numbers::sqrt2) / 2;
}

// The density of the range at `width`: the smallest reading is at x, the largest at x + width, and
// the others lie between them.
double rangeDensity(double count, double width) {
    return integral(-FAR - width / 2, FAR - width / 2, [count, width](double x) {
        return count * (count - 1) * normalDensity(x) * normalDensity(x + width) *
               std::pow(normalShare(x + width) - normalShare(x), count - 2);
    });
}

RangeMoments rangeMoments(std::size_t size) {
    const auto count = static_cast<double>(size);
    RangeMoments moments;
    double square = 0;
    // One pass for both moments: the density is what takes the time. Simpson's rule, since the
    // density of two readings does not vanish at 0.
    constexpr int STEPS = 400;
    constexpr double WIDTH = 2 * FAR / STEPS;
    for (int i = 1; i <= STEPS; ++i) {
        const double range = i * WIDTH;
        const double weight = (i % 2 == 1 ? 4 : i == STEPS ? 1 : 2) * WIDTH / 3;
        const double density = rangeDensity(count, range);
        moments.mean += weight * range * density;
        square += weight * range * range * density;
    }
    moments.deviation = std::sqrt(square - moments.mean * moments.mean);
    return moments;
}

} // namespace

double meanRange(std::size_t size) {
    return rangeMoments(size).mean;
}

double rangeDeviation(std::size_t size) {
    return rangeMoments(size).deviation;
}

double meanRangeOfGroups(std::size_t size, std::size_t groups) {
    const RangeMoments moments = rangeMoments(size);
    return std::sqrt(moments.mean * moments.mean +
                     moments.deviation * moments.deviation / static_cast<double>(groups));
}

double upperRangeFactor(std::size_t size) {
    const RangeMoments moments = rangeMoments(size);
    return 1 + 3 * moments.deviation / moments.mean;
}

} // namespace gauge
