#include <statistics/Trend.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>
#include <numeric>

namespace statistics {

namespace {

constexpr std::size_t FEWEST = 10;

std::vector<double> valuesOf(std::span<const TimedReading> readings) {
    std::vector<double> values;
    values.reserve(readings.size());
    for (const TimedReading& reading : readings) {
        values.push_back(reading.value);
    }
    return values;
}

double medianSlope(std::span<const TimedReading> readings) {
    std::vector<double> slopes;
    slopes.reserve(readings.size() * (readings.size() - 1) / 2);
    for (std::size_t i = 0; i < readings.size(); ++i) {
        for (std::size_t j = i + 1; j < readings.size(); ++j) {
            const double seconds = readings[j].seconds - readings[i].seconds;
            if (seconds > 0) {
                slopes.push_back((readings[j].value - readings[i].value) / seconds);
            }
        }
    }
    return slopes.empty() ? 0 : median(slopes);
}

// By how much the variance of S is larger than for independent readings; at least 1. The
// correlations are those of the ranks, summed up to the first that is not positive.
double varianceFactor(Readings detrended) {
    std::vector<double> inRanks = ranks(detrended);
    const auto count = static_cast<double>(inRanks.size());
    const double mean = std::accumulate(inRanks.begin(), inRanks.end(), 0.0) / count;
    double variance = 0;
    for (double& rank : inRanks) {
        rank -= mean;
        variance += rank * rank;
    }
    if (variance == 0) {
        return 1;
    }
    double sum = 0;
    for (std::size_t lag = 1; lag + 2 < inRanks.size(); ++lag) {
        const double correlation =
            std::inner_product(inRanks.begin() + static_cast<std::ptrdiff_t>(lag), inRanks.end(),
                               inRanks.begin(), 0.0) /
            variance;
        if (correlation <= 0) {
            break;
        }
        const double left = count - static_cast<double>(lag);
        sum += left * (left - 1) * (left - 2) * correlation;
    }
    return 1 + 2 * sum / (count * (count - 1) * (count - 2));
}

} // namespace

double kendallScore(Readings readings) {
    double score = 0;
    for (std::size_t i = 0; i < readings.size(); ++i) {
        for (std::size_t j = i + 1; j < readings.size(); ++j) {
            score += readings[j] > readings[i] ? 1 : readings[j] < readings[i] ? -1 : 0;
        }
    }
    return score;
}

double kendallScoreVariance(Readings readings) {
    const auto term = [](double count) { return count * (count - 1) * (2 * count + 5); };
    double sum = term(static_cast<double>(readings.size()));
    std::map<double, double> counts;
    for (const double value : readings) {
        ++counts[value];
    }
    for (const auto& [value, count] : counts) {
        sum -= term(count);
    }
    return sum / 18;
}

double kendallNormalScore(Readings readings) {
    const double score = kendallScore(readings);
    // S moves in steps of two; without equal values every score is odd or every score even.
    const double corrected = std::max(std::abs(score) - 1, 0.0);
    const double variance = kendallScoreVariance(readings);
    return variance > 0 ? std::copysign(corrected / std::sqrt(variance), score) : 0;
}

Trend trend(std::span<const TimedReading> readings) {
    Trend found;
    if (readings.size() < 2) {
        return found;
    }
    found.perSecond = medianSlope(readings);
    found.change = found.perSecond * (readings.back().seconds - readings.front().seconds);
    if (readings.size() < FEWEST) {
        return found;
    }
    const std::vector<double> values = valuesOf(readings);
    std::vector<double> detrended = values;
    for (std::size_t i = 0; i < detrended.size(); ++i) {
        detrended[i] -= found.perSecond * readings[i].seconds;
    }
    const double score =
        std::abs(kendallNormalScore(values)) / std::sqrt(varianceFactor(detrended));
    found.pValue = std::erfc(score / std::numbers::sqrt2);
    return found;
}

} // namespace statistics
