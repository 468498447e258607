// Crossed studies whose components are known, with the noise that drivers have.
#pragma once

#include <gauge/Anova.h>

#include <cmath>
#include <random>

namespace test {

enum class Noise {
    NORMAL,
    WHOLE,      ///< normal, rounded to whole numbers
    SKEWED,     ///< as a fading signal in dB: the logarithm of an exponential number
    CORRELATED, ///< each trial takes over 60 % of the noise of the one before
};

/// Noise with mean 0 and standard deviation 1, except that it is not rounded.
class NoiseSource {
public:
    NoiseSource(std::mt19937& random, Noise noise) : m_random(random), m_noise(noise) {}

    /// \param isFirst whether nothing was measured just before
    double next(bool isFirst) {
        constexpr double EULER = 0.577215664901532861;
        constexpr double GUMBEL_DEVIATION = 1.28254983016186409;
        constexpr double KEPT = 0.6;
        if (m_noise == Noise::SKEWED) {
            return (std::log(m_exponential(m_random)) + EULER) / GUMBEL_DEVIATION;
        }
        const double fresh = m_normal(m_random);
        if (m_noise != Noise::CORRELATED || isFirst) {
            return m_last = fresh;
        }
        return m_last = KEPT * m_last + std::sqrt(1 - KEPT * KEPT) * fresh;
    }

private:
    std::mt19937& m_random;
    Noise m_noise;
    double m_last = 0;
    std::normal_distribution<double> m_normal;
    std::exponential_distribution<double> m_exponential;
};

/// Parts, operators and interaction are normal; the noise is that of repetition.
inline gauge::CrossedReadings simulatedStudy(std::mt19937& random, const gauge::Design& design,
                                             const gauge::Components& variances, Noise noise) {
    std::normal_distribution<double> normal;
    const auto effect = [&](double variance) { return std::sqrt(variance) * normal(random); };
    std::vector<double> operators(design.operators);
    for (double& value : operators) {
        value = effect(variances.operators);
    }
    NoiseSource source(random, noise);
    gauge::CrossedReadings readings(design);
    for (std::size_t part = 0; part < design.parts; ++part) {
        const double partEffect = effect(variances.parts);
        for (std::size_t op = 0; op < design.operators; ++op) {
            const double level = -60 + partEffect + operators[op] + effect(variances.interaction);
            for (std::size_t trial = 0; trial < design.trials; ++trial) {
                const double value =
                    level + std::sqrt(variances.repeatability) * source.next(trial == 0);
                readings.at(part, op, trial) = noise == Noise::WHOLE ? std::round(value) : value;
            }
        }
    }
    return readings;
}

} // namespace test
