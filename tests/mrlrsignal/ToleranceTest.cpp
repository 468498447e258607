// Tolerance limits against published tables, and the limits that levels of good units suggest.
#include "FixedRandom.h"

#include <statistics/Moments.h>
#include <tolerance/Proposal.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace {

using namespace tolerance;

std::vector<double> normalLevels(std::size_t count, std::uint32_t seed, double deviation = 2) {
    std::mt19937 random = test::fixedRandom(seed);
    std::normal_distribution<double> normal(-55, deviation);
    std::vector<double> levels(count);
    for (double& level : levels) {
        level = normal(random);
    }
    return levels;
}

// One-sided factors as in Odeh and Owen, "Tables for Normal Tolerance Limits, Sampling Plans, and
// Screening" (1980), table 1; the last as in NIST/SEMATECH e-Handbook of Statistical Methods,
// 7.2.6.3.
struct PublishedFactor {
    std::size_t units;
    double share;
    double confidence;
    double factor;
};
constexpr PublishedFactor publishedFactors[] = {
    {10, 0.90, 0.95, 2.355}, {20, 0.90, 0.95, 1.926}, {30, 0.90, 0.95, 1.777},
    {5, 0.95, 0.95, 4.203},  {10, 0.95, 0.95, 2.911}, {20, 0.95, 0.95, 2.396},
    {30, 0.95, 0.95, 2.220}, {50, 0.95, 0.95, 2.065}, {100, 0.95, 0.95, 1.927},
    {10, 0.99, 0.95, 3.981}, {20, 0.99, 0.95, 3.295}, {30, 0.99, 0.95, 3.064},
    {10, 0.99, 0.99, 5.074}, {43, 0.90, 0.99, 1.874},
};

class NormalFactors : public testing::TestWithParam<PublishedFactor> {};

TEST_P(NormalFactors, AreThePublishedOnes) {
    const PublishedFactor& row = GetParam();
    EXPECT_NEAR(normalFactor(row.units, {.share = row.share, .confidence = row.confidence}),
                row.factor, 0.0006);
}

INSTANTIATE_TEST_SUITE_P(Published, NormalFactors, testing::ValuesIn(publishedFactors));

// Sizes as in Conover, "Practical Nonparametric Statistics", 3rd edition (1999), table A5, and the
// series 59, 93, 124, 153 of Wilks.
struct PublishedSize {
    std::size_t rank;
    double share;
    double confidence;
    std::size_t units;
};
constexpr PublishedSize publishedSizes[] = {
    {1, 0.95, 0.95, 59}, {2, 0.95, 0.95, 93},  {3, 0.95, 0.95, 124}, {4, 0.95, 0.95, 153},
    {1, 0.90, 0.95, 29}, {1, 0.99, 0.95, 299}, {1, 0.95, 0.99, 90},  {1, 0.90, 0.90, 22},
    {1, 0.90, 0.99, 44}, {1, 0.99, 0.99, 459}, {2, 0.99, 0.95, 473},
};

class OrderStatisticSizes : public testing::TestWithParam<PublishedSize> {};

TEST_P(OrderStatisticSizes, AreThePublishedOnes) {
    const PublishedSize& row = GetParam();
    const Promise promise{.share = row.share, .confidence = row.confidence};
    EXPECT_EQ(unitsNeeded(row.rank, promise), row.units);
    EXPECT_EQ(rankOfLimit(row.units, promise), row.rank);
    EXPECT_EQ(rankOfLimit(row.units - 1, promise), row.rank - 1);
}

INSTANTIATE_TEST_SUITE_P(Published, OrderStatisticSizes, testing::ValuesIn(publishedSizes));

// Clopper and Pearson's limits at 95 %, to four digits as tables have them.
struct PublishedShare {
    std::size_t stopped;
    std::size_t units;
    double low;
    double high;
};
constexpr PublishedShare publishedShares[] = {
    {0, 10, 0, 0.3085},  {1, 10, 0.0025, 0.4450},   {5, 10, 0.1871, 0.8129},
    {10, 10, 0.6915, 1}, {10, 100, 0.0490, 0.1762}, {0, 59, 0, 0.0606},
};

class StoppedShares : public testing::TestWithParam<PublishedShare> {};

TEST_P(StoppedShares, HaveThePublishedLimits) {
    const PublishedShare& row = GetParam();
    const Share found = stoppedShare(row.stopped, row.units, 0.95);
    EXPECT_NEAR(found.low, row.low, 0.00006);
    EXPECT_NEAR(found.high, row.high, 0.00006);
}

INSTANTIATE_TEST_SUITE_P(Published, StoppedShares, testing::ValuesIn(publishedShares));

// The bound of the share below a tolerance limit is the share that the limit promises.
TEST(NormalShares, AreTheOtherSideOfTheToleranceLimit) {
    const std::vector<double> levels = normalLevels(20, 1);
    const double limit = statistics::mean(levels) -
                         normalFactor(levels.size(), {.share = 0.95, .confidence = 0.975}) *
                             statistics::standardDeviation(levels);
    const Share found = normalShareBelow(limit, levels, 0.95);
    EXPECT_NEAR(found.high, 0.05, 1e-6);
    EXPECT_LT(found.low, found.value);
    EXPECT_LT(found.value, found.high);
}

TEST(NormalShares, FarBelowAllLevelsAreNearlyNone) {
    const std::vector<double> levels = normalLevels(20, 1);
    const Share found = normalShareBelow(-110, levels, 0.95);
    EXPECT_LT(found.high, 1e-6);
    EXPECT_GE(found.low, 0);
}

// The weights of 11 men in Snedecor's "Statistical Methods", for which Shapiro and Wilk's paper and
// D'Agostino and Stephens have statistics.
const std::vector<double> MENS_WEIGHTS{148, 154, 158, 160, 161, 162, 166, 170, 182, 195, 236};

TEST(NormalFits, HaveThePublishedStatistic) {
    EXPECT_NEAR(andersonDarling(MENS_WEIGHTS), 0.947, 0.001);
}

// Critical values: D'Agostino and Stephens, table 4.7, case 3.
TEST(NormalFits, HaveThePublishedCriticalValues) {
    constexpr std::size_t MANY = 1000000;
    EXPECT_NEAR(normalPValue(MANY, 0.631), 0.10, 0.002);
    EXPECT_NEAR(normalPValue(MANY, 0.752), 0.05, 0.001);
    EXPECT_NEAR(normalPValue(MANY, 0.873), 0.025, 0.001);
    EXPECT_NEAR(normalPValue(MANY, 1.035), 0.01, 0.001);
    EXPECT_GT(normalPValue(MANY, 0.15), 0.9);
    EXPECT_EQ(normalPValue(MANY, 400), 0);
}

TEST(NormalFits, RefuseWhatIsNot) {
    EXPECT_TRUE(fitNormal(MENS_WEIGHTS).isRefused());
    EXPECT_FALSE(fitNormal(MENS_WEIGHTS).allowsForSteps);
}

// 60 whole numbers with a deviation of 0.8: the published p values refuse nearly all such samples.
TEST(NormalFits, DoNotTakeStepsForAMisfit) {
    int refused = 0;
    int refusedByTable = 0;
    constexpr int RUNS = 40;
    for (std::uint32_t seed = 0; seed < RUNS; ++seed) {
        std::vector<double> levels = normalLevels(60, seed, 0.8);
        for (double& level : levels) {
            level = std::round(level);
        }
        const NormalFit fit = fitNormal(levels);
        EXPECT_TRUE(fit.allowsForSteps);
        refused += fit.isRefused();
        refusedByTable += normalPValue(levels.size(), fit.statistic) < REFUSAL_LEVEL;
    }
    EXPECT_LE(refused, 6);
    EXPECT_GE(refusedByTable, 30);
}

// A median of an even number of whole readings may be a half.
TEST(NormalFits, TakeWholeNumbersWithAFewHalvesForWholeNumbers) {
    int refused = 0;
    constexpr int RUNS = 40;
    for (std::uint32_t seed = 0; seed < RUNS; ++seed) {
        std::vector<double> levels = normalLevels(60, seed, 1);
        for (std::size_t i = 0; i < levels.size(); ++i) {
            levels[i] = i % 8 == 0 ? std::round(2 * levels[i]) / 2 : std::round(levels[i]);
        }
        refused += fitNormal(levels).isRefused();
    }
    EXPECT_LE(refused, 6);
}

TEST(NormalFits, TakeALargeGapForAGap) {
    std::vector<double> levels(25, -50);
    levels.insert(levels.end(), 5, -60);
    EXPECT_TRUE(fitNormal(levels).isRefused());
}

TEST(NormalFits, RefuseSkewedWholeNumbers) {
    std::mt19937 random = test::fixedRandom(3);
    std::exponential_distribution<double> fading(0.25);
    std::vector<double> levels;
    levels.reserve(80);
    for (int i = 0; i < 80; ++i) {
        levels.push_back(std::round(-50 - fading(random)));
    }
    EXPECT_TRUE(fitNormal(levels).isRefused());
}

TEST(Proposals, FromNormalLevelsAreToleranceLimitsAndTheirGuardBands) {
    const std::vector<double> good = normalLevels(30, 2);
    ProposalOptions options;
    options.guardBand = 1;
    const Proposal found = propose(good, {}, options);
    ASSERT_TRUE(found.isNormal);
    ASSERT_TRUE(found.warning && found.failing);
    EXPECT_EQ(found.warning->tolerance.method, Method::NORMAL);
    EXPECT_NEAR(found.warning->tolerance.factor, 2.220, 0.001);
    EXPECT_NEAR(found.warning->stopsBelow, found.mean - 2.220 * found.deviation, 0.11);
    EXPECT_LE(found.warning->stopsBelow, found.mean - 2.219 * found.deviation);
    EXPECT_NEAR(found.warning->level, found.warning->stopsBelow - 1, 1e-9);
    EXPECT_NEAR(found.failing->stopsBelow, found.failing->level - 1, 1e-9);
    // The guard bands do not overlap.
    EXPECT_LE(found.failing->level + 2, found.warning->level + 1e-9);
    EXPECT_LE(found.failing->stopsBelow, found.mean - 3.063 * found.deviation);
    EXPECT_LE(found.warning->ofNormalGood->high, 0.08);
    EXPECT_EQ(found.missingForWarning, 0U);
    EXPECT_FALSE(found.warning->ofBad);
}

TEST(Proposals, AreTenthsOfADecibel) {
    const Proposal found = propose(normalLevels(12, 4), {}, {});
    EXPECT_NEAR(found.warning->level * 10, std::round(found.warning->level * 10), 1e-6);
    EXPECT_NEAR(found.failing->level * 10, std::round(found.failing->level * 10), 1e-6);
}

std::vector<double> skewedLevels(std::size_t count) {
    std::vector<double> levels;
    levels.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        levels.push_back(-50 +
                         3 * std::log((static_cast<double>(i) + 0.5) / static_cast<double>(count)));
    }
    return levels;
}

TEST(Proposals, FromLevelsThatAreNotNormalSayHowManyUnitsAreMissing) {
    const Proposal few = propose(skewedLevels(40), {}, {});
    EXPECT_FALSE(few.isNormal);
    EXPECT_FALSE(few.warning);
    EXPECT_FALSE(few.failing);
    EXPECT_EQ(few.missingForWarning, 19U);
    EXPECT_EQ(few.missingForFailing, 259U);
}

TEST(Proposals, FromEnoughLevelsThatAreNotNormalTakeTheLowest) {
    const std::vector<double> good = skewedLevels(60);
    const Proposal found = propose(good, {}, {});
    ASSERT_TRUE(found.warning);
    EXPECT_EQ(found.warning->tolerance.method, Method::ORDER_STATISTICS);
    EXPECT_EQ(found.warning->tolerance.rank, 1U);
    EXPECT_EQ(found.warning->tolerance.level, *std::min_element(good.begin(), good.end()));
    EXPECT_EQ(found.warning->goodStopped, 0U);
    EXPECT_FALSE(found.warning->ofNormalGood);
    EXPECT_FALSE(found.failing);
    EXPECT_EQ(found.missingForFailing, 239U);
}

TEST(Proposals, FromEqualLevelsAreNotNormal) {
    const Proposal found = propose(std::vector<double>(12, -55), {}, {});
    EXPECT_FALSE(found.isNormal);
    EXPECT_EQ(found.missingForWarning, 47U);
    EXPECT_EQ(propose(std::vector<double>(60, -50.1), {}, {}).deviation, 0);
}

TEST(Proposals, TellWhatBadUnitsTheyCatch) {
    const std::vector<double> good = normalLevels(30, 2);
    const Proposal found = propose(good, std::vector<double>{-80, -75, -56, -90}, {});
    EXPECT_EQ(found.warning->ofBad->value, 0.75);
    EXPECT_EQ(found.failing->ofBad->value, 0.75);
}

} // namespace
