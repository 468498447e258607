#include <tolerance/Normality.h>

#include <statistics/Moments.h>
#include <statistics/Steps.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <random>

namespace tolerance {

namespace {

constexpr int SAMPLES = 999;

// The same on each system, unlike std::normal_distribution.
class NormalNumbers {
public:
    explicit NormalNumbers(std::uint64_t seed) : m_engine(seed) {}

    // Source: Box and Muller, Annals of Mathematical Statistics 29 (1958)
    double next() {
        const double radius = std::sqrt(-2 * std::log(uniform()));
        return radius * std::cos(2 * std::numbers::pi * uniform());
    }

private:
    // Above 0, below 1.
    double uniform() {
        constexpr double PARTS = 9007199254740992.0; // 2^53
        return (static_cast<double>(m_engine() >> 11) + 0.5) / PARTS;
    }

    std::mt19937_64 m_engine;
};

double logarithmOfShare(double normal) {
    return std::log(std::max(std::erfc(-normal / std::numbers::sqrt2) / 2, 1e-300));
}

} // namespace

double andersonDarling(statistics::Readings levels) {
    const std::vector<double> inOrder = statistics::sorted(levels);
    const double mean = statistics::mean(inOrder);
    const double deviation = statistics::standardDeviation(inOrder);
    const std::size_t count = inOrder.size();
    double sum = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const double low = (inOrder[i] - mean) / deviation;
        const double high = (inOrder[count - 1 - i] - mean) / deviation;
        sum += static_cast<double>(2 * i + 1) * (logarithmOfShare(low) + logarithmOfShare(-high));
    }
    return -static_cast<double>(count) - sum / static_cast<double>(count);
}

double normalPValue(std::size_t count, double statistic) {
    const auto n = static_cast<double>(count);
    const double a = statistic * (1 + 0.75 / n + 2.25 / (n * n));
    // Each polynomial is fitted to its range; the last one rises again far beyond it.
    constexpr double NONE = 10;
    if (a < 0.2) {
        return 1 - std::exp(-13.436 + 101.14 * a - 223.73 * a * a);
    }
    if (a < 0.34) {
        return 1 - std::exp(-8.318 + 42.796 * a - 59.938 * a * a);
    }
    if (a < 0.6) {
        return std::exp(0.9177 - 4.279 * a - 1.38 * a * a);
    }
    return a < NONE ? std::exp(1.2937 - 5.709 * a + 0.0186 * a * a) : 0;
}

NormalFit fitNormal(statistics::Readings levels) {
    NormalFit fit;
    fit.statistic = andersonDarling(levels);
    const std::vector<double> inOrder = statistics::sorted(levels);
    fit.allowsForSteps = std::adjacent_find(inOrder.begin(), inOrder.end()) != inOrder.end();
    if (!fit.allowsForSteps) {
        fit.pValue = normalPValue(levels.size(), fit.statistic);
        return fit;
    }
    statistics::Steps steps = statistics::stepsOf(inOrder);
    steps.fine = std::min(steps.fine, statistics::COARSEST_STEP);
    const double mean = statistics::mean(levels);
    const double deviation = statistics::standardDeviation(levels);
    const double unrounded =
        std::sqrt(std::max(deviation * deviation - steps.variance(), deviation * deviation / 4));
    NormalNumbers normal(1);
    std::vector<double> sample(levels.size());
    int atLeast = 0;
    for (int i = 0; i < SAMPLES; ++i) {
        for (std::size_t k = 0; k < sample.size(); ++k) {
            sample[k] = steps.rounded(mean + unrounded * normal.next(), k, sample.size());
        }
        // A sample without any scatter fits worse than any other.
        atLeast += statistics::range(sample) <= 0 || andersonDarling(sample) >= fit.statistic;
    }
    fit.pValue = (1.0 + atLeast) / (SAMPLES + 1);
    return fit;
}

} // namespace tolerance
