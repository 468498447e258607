// How often a measurement gives each rating, by a small simulation of tools/curves.
#include <OperatingPoint.h>

#include <gtest/gtest.h>

namespace curves {
namespace {

using statistics::Rating;

// docs/measuring.md has those of 20,000.
constexpr std::size_t RUNS = 150;
constexpr std::uint32_t SEED = 17;
constexpr Noise WHITE{.deviation = 1.5, .carried = 0};
constexpr Noise CORRELATED{.deviation = 1.5, .carried = 0.6};

readings::SamplingPlan plan(std::size_t samples = 15) {
    return {.samples = samples, .limits = {.warning = -60, .failing = -70, .guardBand = 2}};
}

// Limits at -60 and -70 dBm, guard band 2 dB.
OperatingPoint at(double level, const Noise& noise) {
    return operatingPoint(plan(), noise, level, RUNS, SEED);
}

TEST(OperatingCurves, HaveNoWrongRatingMoreThanAGuardBandFromALimit) {
    for (const double level : {-72.5, -67.5}) {
        for (const Noise& noise : {WHITE, CORRELATED}) {
            EXPECT_EQ(at(level, noise).wrong, 0) << level << " " << noise.carried;
        }
    }
}

TEST(OperatingCurves, RateLevelsFarFromEachGuardBandByTheirName) {
    EXPECT_GT(at(-75, CORRELATED).share(Rating::FAIL), 0.95);
    EXPECT_GT(at(-65, CORRELATED).share(Rating::BELOW_WARNING), 0.95);
    EXPECT_GT(at(-55, CORRELATED).share(Rating::PASS), 0.95);
}

TEST(OperatingCurves, AreUndecidedOnALimit) {
    EXPECT_GT(at(-70, WHITE).share(Rating::TOO_CLOSE), 0.95);
    EXPECT_GT(at(-60, CORRELATED).share(Rating::TOO_CLOSE), 0.9);
}

TEST(OperatingCurves, SpareReadingsFarFromALimitOnly) {
    constexpr std::size_t FEW = 10;
    readings::SamplingPlan many = plan(60);
    EXPECT_LT(operatingPoint(many, WHITE, -45, FEW, SEED).meanSamples, 15);
    EXPECT_GT(operatingPoint(many, WHITE, -60, FEW, SEED).meanSamples, 59);
    many.mayEndEarly = false;
    EXPECT_EQ(operatingPoint(many, WHITE, -45, FEW, SEED).meanSamples, 60);
}

TEST(OperatingCurves, AreTheSameForTheSameSeed) {
    const auto shares = [](std::uint32_t seed) {
        return operatingPoint(plan(), WHITE, -72.5, 20, seed).shares;
    };
    EXPECT_EQ(shares(SEED), shares(SEED));
    EXPECT_NE(shares(SEED), shares(SEED + 1));
}

} // namespace
} // namespace curves
