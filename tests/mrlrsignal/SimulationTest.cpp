// Studies and limits of data whose truth is known: estimates are right on average, and intervals
// cover as often as they say. docs/limits.md has the figures of longer runs, and where they do not.
#include "FixedRandom.h"
#include "SimulatedStudies.h"

#include <calibration/Offset.h>
#include <gauge/Study.h>
#include <tolerance/Proposal.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace gauge;

constexpr Design DESIGN{.parts = 6, .operators = 3, .trials = 2};
constexpr Components TRUTH{.repeatability = 1, .operators = 0.5, .interaction = 0.4, .parts = 9};

TEST(SimulatedStudies, HaveTheirComponentsOnAverage) {
    std::mt19937 random = test::fixedRandom(11);
    constexpr int STUDIES = 4000;
    Components sum;
    for (int i = 0; i < STUDIES; ++i) {
        const Anova anova =
            analyse(test::simulatedStudy(random, DESIGN, TRUTH, test::Noise::NORMAL));
        const Components found = components(DESIGN, anova.full);
        sum.repeatability += found.repeatability / STUDIES;
        sum.operators += found.operators / STUDIES;
        sum.interaction += found.interaction / STUDIES;
        sum.parts += found.parts / STUDIES;
    }
    // Four standard errors of the mean.
    EXPECT_NEAR(sum.repeatability, TRUTH.repeatability, 0.03);
    EXPECT_NEAR(sum.operators, TRUTH.operators, 0.06);
    EXPECT_NEAR(sum.interaction, TRUTH.interaction, 0.04);
    EXPECT_NEAR(sum.parts, TRUTH.parts, 0.4);
}

TEST(SimulatedStudies, AreCoveredByTheirIntervals) {
    std::mt19937 random = test::fixedRandom(12);
    constexpr int STUDIES = 200;
    int gauge = 0;
    int parts = 0;
    const auto covers = [](const Estimate& estimate, double truth) {
        return estimate.low <= truth && truth <= estimate.high;
    };
    std::optional<Draws> pooled;
    std::optional<Draws> full;
    for (int i = 0; i < STUDIES; ++i) {
        const Anova anova =
            analyse(test::simulatedStudy(random, DESIGN, TRUTH, test::Noise::WHOLE));
        std::optional<Draws>& draws = anova.isPooled ? pooled : full;
        if (!draws) {
            draws.emplace(anova.used);
        }
        const Study found = evaluate(anova, *draws, {});
        gauge += covers(found[Source::GAUGE].deviation, std::sqrt(TRUTH.gauge() + 1.0 / 12));
        parts += covers(found[Source::PARTS].deviation, std::sqrt(TRUTH.parts));
    }
    // 95 % less three standard errors.
    EXPECT_GE(gauge, 181);
    EXPECT_GE(parts, 181);
}

TEST(SimulatedLimits, HoldAsOftenAsTheyPromise) {
    std::mt19937 random = test::fixedRandom(13);
    std::normal_distribution<double> normal(-55, 2);
    constexpr int RUNS = 500;
    int holds = 0;
    for (int i = 0; i < RUNS; ++i) {
        std::vector<double> levels(15);
        for (double& level : levels) {
            level = normal(random);
        }
        // 5 % of all units lie below -55 - 1.645 * 2 dBm.
        holds += tolerance::lowerLimit(levels, {}, true).level <= -55 - 1.6449 * 2;
    }
    EXPECT_NEAR(holds, 0.95 * RUNS, 15) << "three standard errors";
}

TEST(SimulatedOffsets, AreCoveredByTheirUncertainty) {
    std::mt19937 random = test::fixedRandom(14);
    std::normal_distribution<double> normal(-55, 1);
    constexpr int RUNS = 500;
    int covered = 0;
    for (int i = 0; i < RUNS; ++i) {
        std::vector<double> levels(5);
        for (double& level : levels) {
            level = normal(random);
        }
        const calibration::Offset found =
            calibration::offset(levels, {.level = -50, .uncertainty = 0}, 0, 0.95);
        covered += std::abs(found.value - 5) <= found.expanded;
    }
    EXPECT_NEAR(covered, 0.95 * RUNS, 15) << "three standard errors";
}

} // namespace
