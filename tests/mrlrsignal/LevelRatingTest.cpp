// What a level says about limits, and when sampling may end early.
#include <statistics/LevelRating.h>

#include <gtest/gtest.h>

namespace {

using statistics::decided;
using statistics::LevelLimits;
using statistics::rate;
using statistics::Rating;

struct RatedLevel {
    double level;
    Rating rating;
};

class GuardedLimits : public testing::TestWithParam<RatedLevel> {};

TEST_P(GuardedLimits, HaveARatingForEachSideAndForTheMiddle) {
    const LevelLimits limits{.warning = -60, .failing = -70, .guardBand = 2};
    EXPECT_EQ(rate(GetParam().level, limits), GetParam().rating) << GetParam().level;
}

INSTANTIATE_TEST_SUITE_P(
    Levels, GuardedLimits,
    testing::Values(RatedLevel{-72.1, Rating::FAIL}, RatedLevel{-72, Rating::TOO_CLOSE},
                    RatedLevel{-68.1, Rating::TOO_CLOSE}, RatedLevel{-68, Rating::BELOW_WARNING},
                    RatedLevel{-62.1, Rating::BELOW_WARNING}, RatedLevel{-62, Rating::TOO_CLOSE},
                    RatedLevel{-58.1, Rating::TOO_CLOSE}, RatedLevel{-58, Rating::PASS}));

TEST(Limits, WithoutAGuardBandLeaveNothingUndecided) {
    const LevelLimits limits{.warning = -60, .failing = -70};
    EXPECT_EQ(rate(-70.5, limits), Rating::FAIL);
    EXPECT_EQ(rate(-70, limits), Rating::BELOW_WARNING);
    EXPECT_EQ(rate(-60, limits), Rating::PASS);
}

TEST(Limits, ThatAreNotSetRateNothing) {
    EXPECT_EQ(rate(-109, {}), Rating::PASS);
    EXPECT_EQ(rate(-71, {.warning = -70, .failing = {}}), Rating::BELOW_WARNING);
    EXPECT_EQ(rate(-69, {.warning = {}, .failing = -70}), Rating::PASS);
}

TEST(Limits, WhoseGuardBandsOverlapLeaveOneUndecidedBand) {
    const LevelLimits limits{.warning = -68, .failing = -70, .guardBand = 3};
    EXPECT_EQ(rate(-73.5, limits), Rating::FAIL);
    EXPECT_EQ(rate(-69, limits), Rating::TOO_CLOSE);
    EXPECT_EQ(rate(-65, limits), Rating::PASS);
}

TEST(Intervals, AreClearOutsideEveryGuardBand) {
    const LevelLimits limits{.warning = -60, .failing = -70, .guardBand = 1};
    EXPECT_TRUE(isClear({.low = -80, .high = -71.1}, limits));
    EXPECT_FALSE(isClear({.low = -80, .high = -71}, limits));
    EXPECT_TRUE(isClear({.low = -69, .high = -61.5}, limits));
    EXPECT_FALSE(isClear({.low = -69.5, .high = -61.5}, limits));
    EXPECT_FALSE(isClear({.low = -60.5, .high = -59.5}, limits));
    EXPECT_TRUE(isClear({.low = -59, .high = -40}, limits));
}

TEST(Sampling, DoesNotEndOnReadingsThatAreAlikeButFew) {
    const std::vector<double> ten(10, -40);
    const std::vector<double> eleven(11, -40);
    EXPECT_FALSE(decided(ten, 0, {.warning = -60, .failing = -70}));
    EXPECT_TRUE(decided(eleven, 0, {.warning = -60, .failing = -70}));
}

TEST(Sampling, LooksAtTheLevelWithItsOffset) {
    const std::vector<double> readings(15, -58);
    const LevelLimits limits{.warning = -60, .failing = -70, .guardBand = 1};
    EXPECT_TRUE(decided(readings, 0, limits));
    EXPECT_FALSE(decided(readings, -1.5, limits));
}

} // namespace
