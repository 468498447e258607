// Offsets of stations from placements, how uncertain they are, and when they no longer hold.
#include <calibration/Offset.h>
#include <calibration/Uncertainty.h>
#include <calibration/Validity.h>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

namespace {

using namespace calibration;
using namespace std::chrono_literals;

constexpr double CONFIDENCE = 0.95;

// JCGM 100:2008, G.4.1: 0.25 % of 10 readings, 0.57 % of 5, 0.82 % of 15; together 1.03 % with 19.0
// degrees of freedom.
TEST(Uncertainties, CombineAsInTheGuidesExample) {
    const Uncertainty found =
        combine(std::array<Uncertainty, 3>{{{.standard = 0.25, .degrees = 9},
                                            {.standard = 0.57, .degrees = 4},
                                            {.standard = 0.82, .degrees = 14}}});
    EXPECT_NEAR(found.standard, 1.03, 0.005);
    EXPECT_NEAR(found.degrees, 19.0, 0.05);
    // The guide: Student's factor for 19 degrees of freedom and 95 % is 2.09.
    EXPECT_NEAR(found.expanded(CONFIDENCE) / found.standard, 2.09, 0.005);
}

TEST(Uncertainties, ThatAreKnownBeforehandHaveTheNormalFactor) {
    const std::array<Uncertainty, 1> known{ofStep(1)};
    EXPECT_NEAR(known[0].standard, 0.2887, 0.0001);
    EXPECT_TRUE(std::isinf(combine(known).degrees));
    EXPECT_NEAR(combine(known).expanded(CONFIDENCE), 1.96 * 0.2887, 0.0001);
}

const std::vector<double> PLACEMENTS{-52, -50, -51, -49, -53};

TEST(Offsets, AreTheReferenceLessTheMeanOfThePlacements) {
    const Offset found = offset(PLACEMENTS, {.level = -48, .uncertainty = 0}, 0, CONFIDENCE);
    EXPECT_NEAR(found.value, 3, 1e-9);
    EXPECT_EQ(found.placements, 5U);
    EXPECT_NEAR(found.placementDeviation, std::sqrt(2.5), 1e-9);
    EXPECT_NEAR(found.uncertainty, std::sqrt(0.5), 1e-9);
    EXPECT_NEAR(found.degrees, 4, 1e-9);
    // Student's factor for 4 degrees of freedom is 2.776 in published tables.
    EXPECT_NEAR(found.expanded, 2.776 * std::sqrt(0.5), 0.001);
}

TEST(Offsets, AreLessCertainForAReferenceThatIs) {
    const Offset found = offset(PLACEMENTS, {.level = -48, .uncertainty = 1}, 1, CONFIDENCE);
    EXPECT_NEAR(found.uncertainty, std::sqrt(0.5 + 1 + 1.0 / 12), 1e-9);
    EXPECT_GT(found.degrees, 4);
}

TEST(Offsets, FromEqualPlacementsAreAsCertainAsTheStepOfTheReadings) {
    const Offset found =
        offset(std::vector<double>(5, -50), {.level = -50, .uncertainty = 0}, 1, CONFIDENCE);
    EXPECT_EQ(found.value, 0);
    EXPECT_NEAR(found.expanded, 1.96 * 0.2887, 0.0001);
}

Offset offsetOf(double value, double deviation, std::size_t placements = 5) {
    Offset made;
    made.value = value;
    made.placements = placements;
    made.placementDeviation = deviation;
    return made;
}

TEST(DriftChecks, SayWhetherTheOffsetHolds) {
    const Offset before = offsetOf(3, 0.5);
    EXPECT_EQ(checkDrift(before, offsetOf(3.2, 0.5), 1, CONFIDENCE).drift, Drift::HOLDS);
    EXPECT_EQ(checkDrift(before, offsetOf(6, 0.5), 1, CONFIDENCE).drift, Drift::DRIFTED);
    EXPECT_EQ(checkDrift(before, offsetOf(0, 0.5), 1, CONFIDENCE).drift, Drift::DRIFTED);
    EXPECT_EQ(checkDrift(before, offsetOf(4, 0.5), 1, CONFIDENCE).drift, Drift::CANNOT_TELL);
    EXPECT_EQ(checkDrift(before, offsetOf(3, 5), 1, CONFIDENCE).drift, Drift::CANNOT_TELL);
}

TEST(DriftChecks, HaveAnIntervalFromThePlacementsOfBoth) {
    const DriftCheck found = checkDrift(offsetOf(3, 0.5), offsetOf(3.2, 0.5), 1, CONFIDENCE);
    EXPECT_NEAR(found.change, 0.2, 1e-9);
    // Two equal samples of five: 8 degrees of freedom, Student's factor 2.306.
    EXPECT_NEAR(found.interval.high - found.change, 2.306 * std::sqrt(0.1), 0.0005);
    EXPECT_NEAR(found.change - found.interval.low, 2.306 * std::sqrt(0.1), 0.0005);
}

constexpr std::chrono::sys_days DATE = 2026y / 11 / 22;

TEST(Validities, LastForTheirDays) {
    EXPECT_EQ(validity(DATE, 30, DATE - std::chrono::days(1)), Validity::NOT_YET);
    EXPECT_EQ(validity(DATE, 30, DATE), Validity::VALID);
    EXPECT_EQ(validity(DATE, 30, DATE + std::chrono::days(29)), Validity::VALID);
    EXPECT_EQ(validity(DATE, 30, DATE + std::chrono::days(30)), Validity::EXPIRED);
}

TEST(Days, AreReadAsTheyAreWritten) {
    EXPECT_EQ(parseDay("2026-11-22"), DATE);
    EXPECT_EQ(parseDay("2028-02-29"), std::chrono::sys_days(2028y / 2 / 29));
    for (const char* wrong :
         {"", "2026-11-2", "2026-11-222", "2026-02-30", "2026-13-01", "2026-00-01", "22.11.2026",
          "2026/11/22", "abcd-11-22", "2026--1-22", "2026-1x-22", "-026-11-22"}) {
        EXPECT_FALSE(parseDay(wrong)) << wrong;
    }
}

} // namespace
