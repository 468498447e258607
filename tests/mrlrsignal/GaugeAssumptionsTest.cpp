// The checks of what a gauge study assumes find what is wrong, and nothing else.
#include "FixedRandom.h"
#include "TextbookStudy.h"

#include <gauge/Assumptions.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace gauge;

constexpr Design DESIGN{.parts = 10, .operators = 3, .trials = 3};

// Parts 2 dB apart; `reading` gets the part, the operator, the trial and a standard normal number.
template <typename Reading>
CrossedReadings simulated(Reading reading, std::uint32_t seed = 5) {
    std::mt19937 random = test::fixedRandom(seed);
    std::normal_distribution<double> normal;
    CrossedReadings readings(DESIGN);
    for (std::size_t part = 0; part < DESIGN.parts; ++part) {
        for (std::size_t op = 0; op < DESIGN.operators; ++op) {
            for (std::size_t trial = 0; trial < DESIGN.trials; ++trial) {
                readings.at(part, op, trial) =
                    -60 + 2 * static_cast<double>(part) + reading(part, op, trial, normal(random));
            }
        }
    }
    return readings;
}

TEST(GaugeAssumptions, HoldForTheTextbooksStudyButForItsSecondOperator) {
    const Assumptions found = checkAssumptions(test::textbookStudy());
    EXPECT_NEAR(found.step, 0.01, 1e-9);
    EXPECT_FALSE(found.hasTooFewValues());
    EXPECT_FALSE(found.drifts());
    EXPECT_FALSE(found.partsScatterDifferently());
    // The book says the same of its chart of ranges: appraiser B is out of control.
    EXPECT_TRUE(found.operatorsScatterDifferently());
    EXPECT_NEAR(found.rangeLimit, 0.880, 0.001);
    EXPECT_EQ(found.rangesAboveLimit, 1U);
}

TEST(GaugeAssumptions, MissWhenWholeNumbersAreCoarserThanTheScatter) {
    const auto scatterOf = [](double deviation) {
        return simulated([deviation](auto, auto, auto, double normal) {
            return std::round(deviation * normal);
        });
    };
    const Assumptions coarse = checkAssumptions(scatterOf(0.4));
    EXPECT_TRUE(coarse.hasTooFewValues());
    EXPECT_EQ(coarse.step, 1);
    EXPECT_GT(coarse.zeroRanges, 0.25);
    EXPECT_FALSE(checkAssumptions(scatterOf(2)).hasTooFewValues());
}

TEST(GaugeAssumptions, MissForWholeNumbersWithAFewHalves) {
    CrossedReadings readings =
        simulated([](auto, auto, auto, double normal) { return std::round(0.4 * normal); });
    readings.at(0, 0, 0) = -59.5;
    const Assumptions found = checkAssumptions(readings);
    EXPECT_EQ(found.step, 1);
    EXPECT_TRUE(found.hasTooFewValues());
}

TEST(GaugeAssumptions, MissForReadingsThatAreAllTheSame) {
    const Assumptions found = checkAssumptions(CrossedReadings(DESIGN));
    EXPECT_TRUE(found.hasTooFewValues());
    EXPECT_EQ(found.differentReadings, 1U);
    EXPECT_EQ(found.step, 0);
    EXPECT_EQ(found.driftPValue, 1);
    EXPECT_EQ(found.operatorScatterPValue, 1);
    EXPECT_EQ(found.partScatterPValue, 1);
}

TEST(GaugeAssumptions, MissForADriftFromTrialToTrial) {
    const Assumptions found =
        checkAssumptions(simulated([](auto, auto, std::size_t trial, double normal) {
            return normal - 1.0 * static_cast<double>(trial);
        }));
    EXPECT_TRUE(found.drifts());
    EXPECT_NEAR(found.driftPerTrial, -1, 0.5);
}

TEST(GaugeAssumptions, MissForAPartThatScattersMore) {
    const Assumptions found =
        checkAssumptions(simulated([](std::size_t part, auto, auto, double normal) {
            return part < 5 ? 0.2 * normal : 5 * normal;
        }));
    EXPECT_TRUE(found.partsScatterDifferently());
    EXPECT_FALSE(found.operatorsScatterDifferently());
}

// Each of three tests warns in one of a hundred healthy studies.
TEST(GaugeAssumptions, SeldomMissForHealthyStudies) {
    int warnings = 0;
    for (std::uint32_t seed = 0; seed < 200; ++seed) {
        const Assumptions found = checkAssumptions(
            simulated([](auto, auto, auto, double normal) { return normal; }, seed));
        warnings += found.drifts() + found.operatorsScatterDifferently() +
                    found.partsScatterDifferently() + found.hasTooFewValues();
    }
    EXPECT_LE(warnings, 12);
}

// Hollander and Wolfe, "Nonparametric Statistical Methods" (1973), page 116: mucociliary efficiency
// of three groups; the statistic is 0.771 with 2 degrees of freedom, the p value 0.68.
TEST(KruskalWallis, GivesThePublishedExample) {
    EXPECT_NEAR(
        kruskalWallis({{2.9, 3.0, 2.5, 2.6, 3.2}, {3.8, 2.7, 4.0, 2.4}, {2.8, 3.4, 3.7, 2.2, 2.0}}),
        0.68, 0.005);
}

} // namespace
