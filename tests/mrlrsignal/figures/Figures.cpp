// Prints the simulation tables of docs/limits.md, or with "studies" random studies and their
// results for compare.R.
#include "../SimulatedStudies.h"

#include <calibration/Offset.h>
#include <gauge/AverageRange.h>
#include <gauge/Study.h>
#include <gauge/TypeOne.h>
#include <statistics/Moments.h>
#include <tolerance/Proposal.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>

namespace {

using namespace gauge;
using test::Noise;

constexpr double CONFIDENCE = 0.95;
constexpr Design DESIGN{.parts = 10, .operators = 3, .trials = 3};

struct NamedNoise {
    Noise noise;
    const char* name;
};
constexpr NamedNoise NOISES[] = {{Noise::NORMAL, "normal"},
                                 {Noise::WHOLE, "whole numbers"},
                                 {Noise::SKEWED, "skewed"},
                                 {Noise::CORRELATED, "correlated"}};

// Evaluates studies of one design, with draws that are made once.
class Evaluation {
public:
    Study operator()(const CrossedReadings& readings) {
        const Anova anova = analyse(readings);
        std::unique_ptr<Draws>& draws = anova.isPooled ? m_pooled : m_full;
        if (!draws) {
            draws = std::make_unique<Draws>(anova.used);
        }
        return evaluate(anova, *draws, {});
    }

private:
    std::unique_ptr<Draws> m_pooled;
    std::unique_ptr<Draws> m_full;
};

struct Tally {
    double sum = 0;
    int covered = 0;

    void add(double estimate, const Estimate& interval, double truth) {
        sum += estimate;
        covered += interval.low <= truth * (1 + 1e-9) && truth <= interval.high * (1 + 1e-9);
    }
};

void printStudies(Evaluation& evaluation, const Components& asked, const NamedNoise& noise,
                  int studies, std::mt19937& random) {
    Components truth = asked;
    if (noise.noise == Noise::WHOLE) {
        truth.repeatability += 1.0 / 12;
    }
    Tally repeatability;
    Tally reproducibility;
    Tally gauge;
    Tally parts;
    Tally percent;
    const double trueShare = 100 * std::sqrt(truth.gauge() / truth.total());
    for (int i = 0; i < studies; ++i) {
        const Study study = evaluation(test::simulatedStudy(random, DESIGN, asked, noise.noise));
        // Unbiased estimates are those of the whole table, before any pooling.
        const Components estimated = components(DESIGN, study.anova.full);
        repeatability.add(estimated.repeatability, study[Source::REPEATABILITY].deviation,
                          std::sqrt(truth.repeatability));
        reproducibility.add(estimated.reproducibility(), study[Source::REPRODUCIBILITY].deviation,
                            std::sqrt(truth.reproducibility()));
        gauge.add(estimated.gauge(), study[Source::GAUGE].deviation, std::sqrt(truth.gauge()));
        parts.add(estimated.parts, study[Source::PARTS].deviation, std::sqrt(truth.parts));
        percent.add(study[Source::GAUGE].ofStudy.value, study[Source::GAUGE].ofStudy, trueShare);
    }
    const auto ratio = [studies](const Tally& tally, double variance) {
        return tally.sum / studies / variance;
    };
    const auto share = [studies](const Tally& tally) { return 100.0 * tally.covered / studies; };
    std::printf(
        "| %s | %.2f | %.2f | %.3f | %.3f | %.3f | %.3f | %.1f | %.1f | %.1f | %.1f | %.1f |\n",
        noise.name, std::sqrt(asked.repeatability), std::sqrt(asked.interaction),
        ratio(repeatability, truth.repeatability), ratio(reproducibility, truth.reproducibility()),
        ratio(gauge, truth.gauge()), ratio(parts, truth.parts), share(repeatability),
        share(reproducibility), share(gauge), share(parts), share(percent));
}

void printStudies() {
    constexpr int STUDIES = 4000;
    std::printf(
        "| noise | repeatability | interaction | E | O | GRR | P | E %% | O %% | GRR %% | P %% "
        "| %%GRR %% |\n|---|---|---|---|---|---|---|---|---|---|---|---|\n");
    Evaluation evaluation;
    std::mt19937 random(1); // NOLINT(cert-msc32-c,cert-msc51-cpp): the figures can be repeated
    for (const NamedNoise& noise : NOISES) {
        for (const double repeatability : {1.0, 0.16}) {
            for (const double interaction : {0.0, 0.25}) {
                printStudies(evaluation,
                             {.repeatability = repeatability,
                              .operators = 0.5,
                              .interaction = interaction,
                              .parts = 9},
                             noise, STUDIES, random);
            }
        }
    }
}

// The share of units whose level is above the warning limit, for each kind of levels: mean -55,
// standard deviation 2.
double shareAbove(double limit, Noise noise) {
    const double x = (limit + 55) / 2;
    if (noise == Noise::SKEWED) {
        return std::exp(-std::exp(x * 1.28254983016186409 - 0.577215664901532861));
    }
    if (noise == Noise::WHOLE) {
        // A whole number below the limit was at most half above it.
        const double highestBelow = (std::ceil(limit) - 1 + 0.5 + 55) / 2;
        return 1 - std::erfc(-highestBelow / std::sqrt(2.0)) / 2;
    }
    return std::erfc(x / std::sqrt(2.0)) / 2;
}

void printLimits() {
    constexpr int RUNS = 2000;
    std::printf("\n| levels | units | limit | of these holds | by the normal distribution |\n"
                "|---|---|---|---|---|\n");
    std::mt19937 random(2); // NOLINT(cert-msc32-c,cert-msc51-cpp): the figures can be repeated
    for (const NamedNoise& noise : {NOISES[0], NOISES[1], NOISES[2]}) {
        for (const std::size_t units : {10U, 20U, 40U, 80U}) {
            test::NoiseSource source(random, noise.noise);
            int limits = 0;
            int holds = 0;
            int normal = 0;
            for (int run = 0; run < RUNS; ++run) {
                std::vector<double> levels(units);
                for (double& level : levels) {
                    level = -55 + 2 * source.next(true);
                    level = noise.noise == Noise::WHOLE ? std::round(level) : level;
                }
                const tolerance::Proposal proposal = tolerance::propose(levels, {}, {});
                if (!proposal.warning) {
                    continue;
                }
                ++limits;
                normal += proposal.isNormal;
                holds += shareAbove(proposal.warning->tolerance.level, noise.noise) >= 0.95 - 1e-9;
            }
            std::printf("| %s | %zu | %.1f %% | %.1f %% | %.1f %% |\n", noise.name, units,
                        100.0 * limits / RUNS, 100.0 * holds / std::max(limits, 1),
                        100.0 * normal / std::max(limits, 1));
        }
    }
}

void printOffsets() {
    constexpr int RUNS = 20000;
    std::printf("\n| placements | number | deviation | covered |\n|---|---|---|---|\n");
    std::mt19937 random(3); // NOLINT(cert-msc32-c,cert-msc51-cpp): the figures can be repeated
    std::uniform_real_distribution<double> anywhere(-60, -50);
    for (const NamedNoise& noise : {NOISES[0], NOISES[1], NOISES[2]}) {
        for (const std::size_t placements : {3U, 5U, 10U}) {
            for (const double deviation : {0.3, 1.0, 2.0}) {
                test::NoiseSource source(random, noise.noise);
                int covered = 0;
                for (int run = 0; run < RUNS; ++run) {
                    const double level = anywhere(random);
                    std::vector<double> levels(placements);
                    for (double& value : levels) {
                        value = level + deviation * source.next(true);
                        value = noise.noise == Noise::WHOLE ? std::round(value) : value;
                    }
                    const calibration::Offset found =
                        calibration::offset(levels, {.level = level + 3, .uncertainty = 0},
                                            noise.noise == Noise::WHOLE ? 1 : 0, CONFIDENCE);
                    covered += std::abs(found.value - 3) <= found.expanded;
                }
                std::printf("| %s | %zu | %.1f | %.1f %% |\n", noise.name, placements, deviation,
                            100.0 * covered / RUNS);
            }
        }
    }
}

// One line a study: its design, its readings, then what was computed.
void printStudiesToCompare() {
    constexpr int STUDIES = 200;
    std::mt19937 random(4); // NOLINT(cert-msc32-c,cert-msc51-cpp): the figures can be repeated
    for (int i = 0; i < STUDIES; ++i) {
        const Design design{
            .parts = 2 + random() % 11, .operators = 2 + random() % 4, .trials = 2 + random() % 4};
        const auto variance = [&random] {
            return std::pow(static_cast<double>(random() % 1000) / 500, 2);
        };
        const Components asked{.repeatability = variance() + 0.01,
                               .operators = variance(),
                               .interaction = i % 2 == 0 ? 0 : variance(),
                               .parts = variance()};
        const CrossedReadings readings =
            test::simulatedStudy(random, design, asked, NOISES[i % 4].noise);
        const Anova anova = analyse(readings);
        const AnovaTable& full = anova.full;
        const Components found = components(design, anova.used);
        const std::vector<double> first = readings.byOperator(0);
        const TypeOne typeOne =
            gauge::typeOne(first, {.reference = -60, .tolerance = {}, .confidence = CONFIDENCE});
        const tolerance::Promise promise{.share = 0.9 + 0.09 * (i % 11) / 10.0, .confidence = 0.95};
        const auto cells = readings.all();
        std::printf("%zu %zu %zu %.17g %.17g %.17g %.17g %.17g %.17g %.17g %.17g %.17g %.17g %d "
                    "%.17g %.17g %.17g %.17g %.17g %.17g %.17g %.17g %.17g",
                    design.parts, design.operators, design.trials, full.parts.sumOfSquares,
                    full.operators.sumOfSquares, full.interaction.sumOfSquares,
                    full.repeatability.sumOfSquares, full.parts.f.value_or(-1),
                    full.parts.pValue.value_or(-1), full.operators.f.value_or(-1),
                    full.operators.pValue.value_or(-1), full.interaction.f.value_or(-1),
                    full.interaction.pValue.value_or(-1), anova.isPooled, found.repeatability,
                    found.operators, found.interaction, found.parts, typeOne.biasInterval.low,
                    typeOne.biasInterval.high, typeOne.biasPValue.value_or(-1), promise.share,
                    tolerance::normalFactor(first.size(), promise));
        for (const double value : cells) {
            std::printf(" %.17g", value);
        }
        std::printf("\n");
    }
}

} // namespace

int main(int count, char** arguments) {
    if (count > 1 && std::strcmp(arguments[1], "studies") == 0) {
        printStudiesToCompare();
        return 0;
    }
    printStudies();
    printLimits();
    printOffsets();
    return 0;
}
