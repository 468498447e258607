// The crossed study against the textbook's, its constants against published tables, and the short
// study.
#include "TextbookStudy.h"

#include <gauge/AverageRange.h>
#include <gauge/RangeConstants.h>
#include <gauge/Study.h>
#include <gauge/TypeOne.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace gauge;

constexpr double SIX_DIGITS = 0.5e-6;
constexpr double FIVE_DIGITS = 0.5e-5;
constexpr double FOUR_DIGITS = 0.5e-4;
constexpr double THREE_DIGITS = 0.5e-3;
constexpr double TWO_DIGITS = 0.5e-2;

// `scatter` alternates with the trial, so that each cell has it around its value.
CrossedReadings study(const Design& design, double partStep, double operatorStep, double scatter) {
    CrossedReadings readings(design);
    for (std::size_t part = 0; part < design.parts; ++part) {
        for (std::size_t op = 0; op < design.operators; ++op) {
            for (std::size_t trial = 0; trial < design.trials; ++trial) {
                readings.at(part, op, trial) = -60 + partStep * static_cast<double>(part) +
                                               operatorStep * static_cast<double>(op) +
                                               (trial % 2 == 0 ? scatter : -scatter);
            }
        }
    }
    return readings;
}

TEST(GaugeStudies, HaveTheTextbooksTableWithTheInteractionPooled) {
    const Anova found = analyse(test::textbookStudy());
    EXPECT_TRUE(found.isPooled);
    EXPECT_EQ(found.full.parts.degrees, 9);
    EXPECT_EQ(found.full.operators.degrees, 2);
    EXPECT_EQ(found.full.interaction.degrees, 18);
    EXPECT_EQ(found.full.repeatability.degrees, 60);
    EXPECT_EQ(found.total.degrees, 89);
    EXPECT_NEAR(found.full.parts.sumOfSquares, 88.3619, FOUR_DIGITS);
    EXPECT_NEAR(found.full.operators.sumOfSquares, 3.1673, FOUR_DIGITS);
    EXPECT_NEAR(found.full.interaction.sumOfSquares, 0.3590, FOUR_DIGITS);
    EXPECT_NEAR(found.full.repeatability.sumOfSquares, 2.7589, FOUR_DIGITS);
    EXPECT_NEAR(found.total.sumOfSquares, 94.6471, FOUR_DIGITS);
    EXPECT_NEAR(*found.full.parts.f, 492.291, THREE_DIGITS);
    EXPECT_NEAR(*found.full.operators.f, 79.406, THREE_DIGITS);
    EXPECT_NEAR(*found.full.interaction.f, 0.434, THREE_DIGITS);
    EXPECT_NEAR(*found.full.interaction.pValue, 0.974, THREE_DIGITS);
    EXPECT_EQ(found.used.repeatability.degrees, 78);
    EXPECT_NEAR(*found.used.parts.f, 245.614, THREE_DIGITS);
    EXPECT_NEAR(*found.used.operators.f, 39.617, THREE_DIGITS);
    EXPECT_LT(*found.used.operators.pValue, 0.0005);
}

TEST(GaugeStudies, HaveTheTextbooksComponents) {
    const Study found = evaluate(test::textbookStudy(), {});
    EXPECT_NEAR(found[Source::REPEATABILITY].deviation.value, 0.199933, SIX_DIGITS);
    EXPECT_NEAR(found[Source::REPRODUCIBILITY].deviation.value, 0.226838, SIX_DIGITS);
    EXPECT_EQ(found[Source::INTERACTION].deviation.value, 0);
    // The root of the squares of the two above is 0.302372; the book rounded on its way.
    EXPECT_NEAR(found[Source::GAUGE].deviation.value, 0.302373, 2e-6);
    EXPECT_NEAR(found[Source::PARTS].deviation.value, 1.042327, SIX_DIGITS);
    EXPECT_NEAR(found[Source::TOTAL].deviation.value, 1.085300, SIX_DIGITS);
    EXPECT_NEAR(found[Source::GAUGE].ofStudy.value, 27.86, TWO_DIGITS);
    EXPECT_NEAR(found[Source::GAUGE].contribution, 7.76, TWO_DIGITS);
    EXPECT_NEAR(found[Source::PARTS].contribution, 92.24, TWO_DIGITS);
    EXPECT_EQ(found.categories.count, 4);
    EXPECT_FALSE(found[Source::GAUGE].ofTolerance);
    EXPECT_EQ(ratingInStudy(found), Rating::UNUSABLE) << "fewer than five categories";
    EXPECT_FALSE(ratingInTolerance(found));
}

// The interval of repeatability has a closed form: the sum of squares by quantiles of the
// chi-squared distribution, here with 78 degrees of freedom from published tables: 55.466 at 2.5 %
// and 104.316 at 97.5 %.
TEST(GaugeStudies, HaveTheIntervalOfRepeatabilityThatTablesGive) {
    const Estimate found = evaluate(test::textbookStudy(), {})[Source::REPEATABILITY].deviation;
    EXPECT_NEAR(found.low, std::sqrt(3.1179 / 104.316), 0.0005);
    EXPECT_NEAR(found.high, std::sqrt(3.1179 / 55.466), 0.0005);
}

TEST(GaugeStudies, HaveIntervalsAroundTheirEstimates) {
    const Study found = evaluate(test::textbookStudy(), {.tolerance = 4, .confidence = 0.9});
    for (const Variation& variation : found.variations) {
        EXPECT_LE(variation.deviation.low, variation.deviation.value);
        EXPECT_GE(variation.deviation.high, variation.deviation.value);
        EXPECT_LE(variation.ofStudy.low, variation.ofStudy.value);
        EXPECT_GE(variation.ofStudy.high, variation.ofStudy.value);
    }
    const Study wider = evaluate(test::textbookStudy(), {.tolerance = 4, .confidence = 0.99});
    EXPECT_LT(wider[Source::GAUGE].deviation.low, found[Source::GAUGE].deviation.low);
    EXPECT_GT(wider[Source::GAUGE].deviation.high, found[Source::GAUGE].deviation.high);
    EXPECT_LT(found.categories.ratio->low, found.categories.ratio->value);
    EXPECT_GT(found.categories.ratio->high, found.categories.ratio->value);
}

TEST(GaugeStudies, CompareTheGaugeWithTheTolerance) {
    const Study found = evaluate(test::textbookStudy(), {.tolerance = 20, .confidence = 0.95});
    EXPECT_NEAR(found[Source::GAUGE].ofTolerance->value, 600 * 0.302373 / 20, FIVE_DIGITS * 10);
    EXPECT_EQ(ratingInTolerance(found), Rating::GOOD);
    EXPECT_EQ(
        ratingInTolerance(evaluate(test::textbookStudy(), {.tolerance = 10, .confidence = 0.95})),
        Rating::CONDITIONAL);
    EXPECT_EQ(
        ratingInTolerance(evaluate(test::textbookStudy(), {.tolerance = 5, .confidence = 0.95})),
        Rating::UNUSABLE);
}

TEST(GaugeStudies, WithOneLimitTakeTwiceItsDistanceForTheTolerance) {
    EXPECT_EQ(toleranceWidth(-70, -40, -55), 30);
    EXPECT_EQ(toleranceWidth(-70, std::nullopt, -55), 30);
    EXPECT_EQ(toleranceWidth(std::nullopt, -50, -55), 10);
    EXPECT_FALSE(toleranceWidth(std::nullopt, std::nullopt, -55));
    EXPECT_FALSE(toleranceWidth(-55, std::nullopt, -55));
}

TEST(GaugeStudies, KeepAnInteractionThatIsThere) {
    CrossedReadings readings = study({.parts = 5, .operators = 2, .trials = 4}, 2, 0, 0.1);
    for (std::size_t trial = 0; trial < 4; ++trial) {
        readings.at(0, 0, trial) += 3;
        readings.at(1, 1, trial) += 3;
    }
    const Study found = evaluate(readings, {});
    EXPECT_FALSE(found.anova.isPooled);
    EXPECT_LT(*found.anova.full.interaction.pValue, 0.001);
    EXPECT_GT(found[Source::INTERACTION].deviation.value, 1);
    EXPECT_EQ(found.anova.used.interaction.degrees, 4);
}

TEST(GaugeStudies, ReportNegativeComponentsAsZeroAndKeepTheEstimate) {
    // The same for each part: the parts' mean square is zero.
    const Study found = evaluate(study({.parts = 4, .operators = 2, .trials = 2}, 0, 0, 1), {});
    EXPECT_LT(found.estimated.parts, 0);
    EXPECT_EQ(found[Source::PARTS].deviation.value, 0);
    EXPECT_NEAR(found[Source::GAUGE].ofStudy.value, 100, 1e-9);
    EXPECT_EQ(found.categories.count, 1);
    EXPECT_EQ(ratingInStudy(found), Rating::UNUSABLE);
}

TEST(GaugeStudies, OfOneOperatorHaveNoReproducibility) {
    const Study found = evaluate(study({.parts = 10, .operators = 1, .trials = 2}, 1, 0, 0.05), {});
    EXPECT_EQ(found.anova.full.operators.degrees, 0);
    EXPECT_FALSE(found.anova.full.operators.f);
    EXPECT_EQ(found[Source::REPRODUCIBILITY].deviation.high, 0);
    EXPECT_NEAR(found[Source::REPEATABILITY].deviation.value, 0.05 * std::sqrt(2), 1e-9);
    EXPECT_GT(*found.anova.used.parts.f, 100);
    EXPECT_EQ(ratingInStudy(found), Rating::GOOD);
}

TEST(GaugeStudies, WithoutAnyScatterHaveNoCategoriesAndNoTests) {
    const Study found = evaluate(study({.parts = 3, .operators = 2, .trials = 2}, 0, 0, 0), {});
    EXPECT_FALSE(found.anova.full.parts.f);
    EXPECT_EQ(found[Source::TOTAL].deviation.value, 0);
    EXPECT_EQ(found[Source::GAUGE].ofStudy.value, 0);
    EXPECT_FALSE(found.categories.ratio);
    EXPECT_EQ(found.categories.count, 0);
    EXPECT_EQ(ratingInStudy(found), Rating::UNUSABLE);
}

// Readings that no binary number has exactly: the part, and 0.3 dB more where `isMore` says so.
CrossedReadings exactlyRepeated(bool (*isMore)(std::size_t part, std::size_t op)) {
    const Design design{.parts = 5, .operators = 2, .trials = 3};
    CrossedReadings readings(design);
    for (std::size_t part = 0; part < design.parts; ++part) {
        for (std::size_t op = 0; op < design.operators; ++op) {
            for (std::size_t trial = 0; trial < design.trials; ++trial) {
                readings.at(part, op, trial) =
                    -50.1 - 0.7 * static_cast<double>(part) - (isMore(part, op) ? 0.3 : 0);
            }
        }
    }
    return readings;
}

TEST(GaugeStudies, DoNotTakeTheRoundingOfTenthsForScatter) {
    const Study same =
        evaluate(exactlyRepeated([](std::size_t, std::size_t) { return false; }), {});
    EXPECT_EQ(same[Source::GAUGE].deviation.value, 0);
    EXPECT_FALSE(same.anova.used.parts.f);
    EXPECT_FALSE(same.categories.ratio);
    EXPECT_EQ(ratingInStudy(same), Rating::UNUSABLE);

    const Study crossed = evaluate(
        exactlyRepeated([](std::size_t part, std::size_t op) { return part % 2 == op; }), {});
    EXPECT_EQ(crossed[Source::REPEATABILITY].deviation.value, 0);
    EXPECT_GT(crossed[Source::INTERACTION].deviation.value, 0.1);
    EXPECT_FALSE(crossed.anova.full.interaction.f);
}

TEST(GaugeStudies, GiveTheSameIntervalsEachTime) {
    const Study one = evaluate(test::textbookStudy(), {});
    const Study other = evaluate(test::textbookStudy(), {});
    EXPECT_EQ(one[Source::GAUGE].deviation.low, other[Source::GAUGE].deviation.low);
    EXPECT_EQ(one[Source::GAUGE].deviation.high, other[Source::GAUGE].deviation.high);
}

// The same book, the study by the average-and-range method; it computes with constants of four
// digits.
TEST(AverageAndRange, GivesTheTextbooksFigures) {
    const AverageRange found = averageAndRange(test::textbookStudy());
    EXPECT_NEAR(found.meanRange, 0.3417, FOUR_DIGITS);
    EXPECT_NEAR(found.operatorRange, 0.4447, FOUR_DIGITS);
    EXPECT_NEAR(found.partRange, 3.511, THREE_DIGITS);
    EXPECT_NEAR(found.repeatability, 0.20188, 2e-5);
    EXPECT_NEAR(found.reproducibility, 0.22963, 1e-4);
    EXPECT_NEAR(found.gauge, 0.30575, 1e-4);
    EXPECT_NEAR(found.parts, 1.10456, 2e-4);
    EXPECT_NEAR(found.total, 1.14610, 2e-4);
}

TEST(AverageAndRange, TakesAnOperatorWhoOnlyRepeatsForNoOperator) {
    const AverageRange found =
        averageAndRange(study({.parts = 2, .operators = 2, .trials = 2}, 1, 0.01, 5));
    EXPECT_EQ(found.reproducibility, 0);
    const AverageRange one =
        averageAndRange(study({.parts = 3, .operators = 1, .trials = 2}, 1, 0, 0.5));
    EXPECT_EQ(one.operatorRange, 0);
    EXPECT_EQ(one.reproducibility, 0);
}

// d2, d3 and D4 as in ISO 7870-2:2013, table 2.
struct ChartConstants {
    std::size_t size;
    double mean;
    double deviation;
    double upper;
};
constexpr ChartConstants chartConstants[] = {
    {2, 1.128, 0.853, 3.267},  {3, 1.693, 0.888, 2.575},  {4, 2.059, 0.880, 2.282},
    {5, 2.326, 0.864, 2.114},  {6, 2.534, 0.848, 2.004},  {10, 3.078, 0.797, 1.777},
    {15, 3.472, 0.756, 1.653}, {25, 3.931, 0.708, 1.540},
};

class RangeConstants : public testing::TestWithParam<ChartConstants> {};

TEST_P(RangeConstants, AreThePublishedOnes) {
    const ChartConstants& row = GetParam();
    EXPECT_NEAR(meanRange(row.size), row.mean, THREE_DIGITS);
    EXPECT_NEAR(rangeDeviation(row.size), row.deviation, THREE_DIGITS);
    EXPECT_NEAR(upperRangeFactor(row.size), row.upper, 0.001);
}

INSTANTIATE_TEST_SUITE_P(Published, RangeConstants, testing::ValuesIn(chartConstants));

// d2* as in Duncan, "Quality Control and Industrial Statistics", table D3.
struct GroupConstant {
    std::size_t size;
    std::size_t groups;
    double value;
};
constexpr GroupConstant groupConstants[] = {
    {2, 1, 1.41421}, {3, 1, 1.91155}, {4, 1, 2.23887}, {5, 1, 2.48124},  {10, 1, 3.17905},
    {2, 2, 1.27931}, {3, 2, 1.80538}, {2, 5, 1.19105}, {2, 15, 1.14965},
};

class RangeGroupConstants : public testing::TestWithParam<GroupConstant> {};

TEST_P(RangeGroupConstants, AreThePublishedOnes) {
    const GroupConstant& row = GetParam();
    EXPECT_NEAR(meanRangeOfGroups(row.size, row.groups), row.value, 1e-5);
}

INSTANTIATE_TEST_SUITE_P(Published, RangeGroupConstants, testing::ValuesIn(groupConstants));

// Readings whose mean is -59.9 and whose standard deviation is 0.2.
std::vector<double> typeOneReadings() {
    std::vector<double> readings;
    const double half = 0.2;
    readings.push_back(-59.9);
    for (int i = 0; i < 12; ++i) {
        readings.push_back(-59.9 + half);
        readings.push_back(-59.9 - half);
    }
    return readings;
}

TEST(TypeOneStudies, GiveBiasAndCapability) {
    const TypeOne found =
        typeOne(typeOneReadings(), {.reference = -60, .tolerance = 12, .confidence = 0.95});
    EXPECT_NEAR(found.deviation, 0.2, 1e-9);
    EXPECT_NEAR(found.bias, 0.1, 1e-9);
    // Student's quantile for 24 degrees of freedom is 2.064 in published tables.
    EXPECT_NEAR(found.biasInterval.low, 0.1 - 2.064 * 0.04, FOUR_DIGITS);
    EXPECT_NEAR(found.biasInterval.high, 0.1 + 2.064 * 0.04, FOUR_DIGITS);
    EXPECT_NEAR(found.cg->value, 0.2 * 12 / (6 * 0.2), 1e-9);
    EXPECT_NEAR(found.cgk->value, (1.2 - 0.1) / 0.6, 1e-9);
    // The 5 % quantile of the chi-squared distribution for 24 degrees of freedom is 13.848.
    EXPECT_NEAR(found.cg->atLeast, 2 * std::sqrt(13.848 / 24), FOUR_DIGITS);
    EXPECT_LT(found.cgk->atLeast, found.cgk->value);
    // Two and a half standard errors: Student's distribution has 1.97 % beyond them.
    EXPECT_NEAR(*found.biasPValue, 0.0197, FOUR_DIGITS);
}

TEST(TypeOneStudies, OfEqualReadingsHaveNoCapability) {
    const TypeOne found = typeOne(std::vector<double>(25, -61),
                                  {.reference = -60, .tolerance = 12, .confidence = 0.95});
    EXPECT_EQ(found.bias, -1);
    EXPECT_FALSE(found.biasPValue);
    EXPECT_FALSE(found.cg);
    EXPECT_FALSE(found.cgk);
    EXPECT_FALSE(typeOne(std::vector<double>(60, -50.1),
                         {.reference = -50, .tolerance = 3, .confidence = 0.95})
                     .cg);
}

TEST(TypeOneStudies, WithoutAToleranceGiveBiasAlone) {
    const TypeOne found =
        typeOne(typeOneReadings(), {.reference = -60, .tolerance = {}, .confidence = 0.95});
    EXPECT_TRUE(found.biasPValue);
    EXPECT_FALSE(found.cg);
}

TEST(TypeOneStudies, ThatAreOffByMoreThanATenthOfTheToleranceAreNegative) {
    const TypeOne found =
        typeOne(typeOneReadings(), {.reference = -62, .tolerance = 12, .confidence = 0.95});
    EXPECT_LT(found.cgk->value, 0);
    EXPECT_GT(found.cg->value, 0);
}

} // namespace
