// Statistics against numbers that were published elsewhere, and against readings whose answer is
// known beforehand.
#include "FixedRandom.h"

#include <statistics/MedianInterval.h>
#include <statistics/Robust.h>
#include <statistics/Trend.h>

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>
#include <random>

namespace {

using namespace statistics;
using Values = std::vector<double>;

// 1, 2, ... count: a value is its rank.
Values ranks(std::size_t count) {
    Values values(count);
    std::iota(values.begin(), values.end(), 1.0);
    return values;
}

TEST(Quantiles, AreInterpolatedBetweenTheNearestReadings) {
    const Values values{10, 20, 30, 40};
    EXPECT_DOUBLE_EQ(quantile(values, 0), 10);
    EXPECT_DOUBLE_EQ(quantile(values, 0.25), 17.5);
    EXPECT_DOUBLE_EQ(quantile(values, 0.5), 25);
    EXPECT_DOUBLE_EQ(quantile(values, 0.75), 32.5);
    EXPECT_DOUBLE_EQ(quantile(values, 1), 40);
}

TEST(Medians, OfOneReadingIsThatReading) {
    EXPECT_DOUBLE_EQ(median(Values{-57}), -57);
}

TEST(Medians, DoNotFollowOneWildReading) {
    EXPECT_DOUBLE_EQ(median(Values{-60, -61, -60, -59, -10}), -60);
}

TEST(Spreads, AreThoseOfTheMiddleHalfAndOfTheDistancesFromTheMedian) {
    const Spread found = spread(Values{-70, -60, -61, -59, -60, -58, -62});
    EXPECT_DOUBLE_EQ(found.interquartileRange, 2);
    EXPECT_DOUBLE_EQ(found.medianAbsoluteDeviation, 1);
}

TEST(Spreads, OfEqualReadingsAreZero) {
    const Spread found = spread(Values(15, -60));
    EXPECT_DOUBLE_EQ(found.interquartileRange, 0);
    EXPECT_DOUBLE_EQ(found.medianAbsoluteDeviation, 0);
}

// Confidence intervals for the population median, ranks and levels in percent to one digit, as
// tables in textbooks have them (for instance Gibbons and Chakraborti, "Nonparametric Statistical
// Inference", confidence limits for a median).
struct PublishedInterval {
    std::size_t count;
    double confidence; ///< asked for
    double low;
    double high;
    double percent; ///< published
};
constexpr PublishedInterval publishedIntervals[] = {
    {6, 0.95, 1, 6, 96.9},   {9, 0.95, 2, 8, 96.1},   {10, 0.95, 2, 9, 97.9},
    {10, 0.85, 3, 8, 89.1},  {12, 0.95, 3, 10, 96.1}, {13, 0.90, 4, 10, 90.8},
    {14, 0.94, 4, 11, 94.3}, {15, 0.95, 4, 12, 96.5}, {17, 0.95, 5, 13, 95.1},
    {18, 0.95, 5, 14, 96.9}, {19, 0.95, 5, 15, 98.1}, {20, 0.95, 6, 15, 95.9},
};

class PublishedIntervals : public testing::TestWithParam<PublishedInterval> {};

TEST_P(PublishedIntervals, AreThoseBetweenTheSameRanks) {
    const PublishedInterval& row = GetParam();
    const Interval found = medianIntervalOfIndependent(ranks(row.count), row.confidence);
    EXPECT_DOUBLE_EQ(found.low, row.low);
    EXPECT_DOUBLE_EQ(found.high, row.high);
    EXPECT_NEAR(found.confidence * 100, row.percent, 0.05 + 1e-9);
}

INSTANTIATE_TEST_SUITE_P(Medians, PublishedIntervals, testing::ValuesIn(publishedIntervals));

// The example of Bonett's statpsych manual, ci.median: 19 values, limits 10.8 and 30.9.
TEST(MedianIntervals, OfAPublishedExampleAreItsLimits) {
    const Values values{30.2, 20.4, 15.1, 10.2, 10.5, 60.8, 20.8, 25.0, 20.7, 30.9,
                        10.8, 5.1,  50.9, 40.0, 20.9, 10.8, 0,    20.5, 50.8};
    EXPECT_DOUBLE_EQ(median(values), 20.7);
    const Interval found = medianIntervalOfIndependent(values, 0.95);
    EXPECT_DOUBLE_EQ(found.low, 10.8);
    EXPECT_DOUBLE_EQ(found.high, 30.9);
}

TEST(MedianIntervals, OfTooFewReadingsSayWhatTheyAreWorth) {
    const Interval five = medianIntervalOfIndependent(ranks(5), 0.95);
    EXPECT_DOUBLE_EQ(five.low, 1);
    EXPECT_DOUBLE_EQ(five.high, 5);
    EXPECT_NEAR(five.confidence, 0.9375, 1e-12);
    EXPECT_DOUBLE_EQ(medianInterval(Values{-60}, 0.95).confidence, 0);
}

TEST(MedianIntervals, OfReadingsThatComeTwiceEachAreThoseOfHalfAsMany) {
    Values twice;
    Values once;
    std::mt19937 random = test::fixedRandom(7);
    std::uniform_real_distribution<double> anywhere(-70, -50);
    for (int i = 0; i < 100; ++i) {
        once.push_back(anywhere(random));
        twice.insert(twice.end(), 2, once.back());
    }
    EXPECT_NEAR(effectiveReadings(twice), effectiveReadings(once), 35);
    EXPECT_LT(effectiveReadings(twice), 0.6 * 200);
    const Interval narrow = medianIntervalOfIndependent(twice, 0.95);
    const Interval wide = medianInterval(twice, 0.95);
    EXPECT_LT(wide.low, narrow.low);
    EXPECT_GT(wide.high, narrow.high);
}

TEST(EffectiveReadings, OfReadingsThatAlternateAreAllOfThem) {
    EXPECT_DOUBLE_EQ(effectiveReadings(Values{1, 3, 1, 3, 1, 3, 1, 3}), 8);
}

TEST(EffectiveReadings, OfEqualReadingsAreAllOfThem) {
    EXPECT_DOUBLE_EQ(effectiveReadings(Values(15, -60)), 15);
}

TEST(EffectiveReadings, OfOneStepAreFew) {
    EXPECT_LT(effectiveReadings(Values{1, 1, 1, 1, 1, 9, 9, 9, 9, 9}), 3);
}

// Correlated readings of a driver that averages: each takes over `carried` of the one before.
Values averagedReadings(std::mt19937& random, std::size_t count, double carried) {
    std::normal_distribution<double> noise(0, std::sqrt(1 - carried * carried));
    Values values;
    double level = std::normal_distribution<double>(0, 1)(random);
    for (std::size_t i = 0; i < count; ++i) {
        values.push_back(level);
        level = carried * level + noise(random);
    }
    return values;
}

double shareThatCovers(double carried) {
    std::mt19937 random = test::fixedRandom(11);
    int covered = 0;
    constexpr int RUNS = 2000;
    for (int i = 0; i < RUNS; ++i) {
        const Interval found = medianInterval(averagedReadings(random, 60, carried), 0.95);
        covered += found.low <= 0 && 0 <= found.high ? 1 : 0;
    }
    return static_cast<double>(covered) / RUNS;
}

TEST(MedianIntervals, CoverTheTrueMedianOfIndependentReadings) {
    EXPECT_GT(shareThatCovers(0), 0.95);
}

TEST(MedianIntervals, CoverTheTrueMedianOfCorrelatedReadingsNearlyAsOften) {
    EXPECT_GT(shareThatCovers(0.6), 0.90);
}

std::vector<TimedReading> everySecond(Readings values) {
    std::vector<TimedReading> readings;
    for (const double value : values) {
        readings.push_back({.seconds = static_cast<double>(readings.size()), .value = value});
    }
    return readings;
}

// Worked by hand by J. Little, College of the Holy Cross, "A Mann-Kendall Example": S is 54, Z
// 2.9058.
const Values littlesExample{12.9, 14.8, 13.2, 15.7, 13.8, 15.6, 12.9,
                            11.0, 17.3, 15.9, 19.0, 18.3, 20.1, 21.7};

TEST(Trends, OfAPublishedExampleHaveItsScore) {
    EXPECT_DOUBLE_EQ(kendallScore(littlesExample), 54);
    EXPECT_NEAR(kendallNormalScore(littlesExample), 2.9058, 0.00005);
}

TEST(Trends, OfFallingReadingsHaveTheScoreOfRisingOnesTurned) {
    const Values turned(littlesExample.rbegin(), littlesExample.rend());
    EXPECT_DOUBLE_EQ(kendallScore(turned), -54);
    EXPECT_NEAR(kendallNormalScore(turned), -2.9058, 0.00005);
}

TEST(Trends, HaveTheSizeOfTheMedianSlope) {
    Values values;
    for (int i = 0; i < 20; ++i) {
        values.push_back(-60 - 0.5 * i);
    }
    values[7] = -20; // one wild reading
    const Trend found = trend(everySecond(values));
    EXPECT_NEAR(found.perSecond, -0.5, 1e-9);
    EXPECT_NEAR(found.change, -9.5, 1e-9);
    EXPECT_LT(found.pValue, 0.001);
}

TEST(Trends, OfEqualReadingsAreNone) {
    const Trend found = trend(everySecond(Values(15, -60)));
    EXPECT_DOUBLE_EQ(found.change, 0);
    EXPECT_DOUBLE_EQ(found.pValue, 1);
}

TEST(Trends, OfFewReadingsProveNothing) {
    EXPECT_DOUBLE_EQ(trend(everySecond(ranks(9))).pValue, 1);
    EXPECT_LT(trend(everySecond(ranks(10))).pValue, 0.05);
}

TEST(Trends, OfReadingsAtTheSameTimeHaveNoSlope) {
    const std::vector<TimedReading> readings(12, TimedReading{.seconds = 3, .value = -60});
    EXPECT_DOUBLE_EQ(trend(readings).perSecond, 0);
}

double shareWithATrend(double carried) {
    std::mt19937 random = test::fixedRandom(13);
    int found = 0;
    constexpr int RUNS = 1000;
    for (int i = 0; i < RUNS; ++i) {
        found += trend(everySecond(averagedReadings(random, 60, carried))).pValue < 0.05 ? 1 : 0;
    }
    return static_cast<double>(found) / RUNS;
}

TEST(Trends, AreSeldomFoundWhereThereIsNone) {
    EXPECT_LT(shareWithATrend(0), 0.07);
}

TEST(Trends, AreNotFoundInWhatADriverCarriesOn) {
    EXPECT_LT(shareWithATrend(0.6), 0.15);
}

} // namespace
