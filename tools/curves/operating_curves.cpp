// Prints the operating curves as CSV: `operating_curves RUNS`.
#include "OperatingPoint.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

using curves::Noise;
using curves::OperatingPoint;
using statistics::Rating;

constexpr statistics::LevelLimits LIMITS{.warning = -60, .failing = -70, .guardBand = 2};
// In half dB.
constexpr int LOWEST = -150;
constexpr int HIGHEST = -110;
constexpr std::size_t SAMPLES = 15;
// A plan in which ending early spares more; with a tenth of the measurements.
constexpr std::size_t MANY_SAMPLES = 60;
constexpr std::uint32_t SEED = 16;
constexpr Noise noises[] = {{.deviation = 1.5, .carried = 0},
                            {.deviation = 1.5, .carried = 0.6},
                            {.deviation = 1.5, .carried = 0.9}};

readings::SamplingPlan plan(std::size_t samples, bool mayEndEarly) {
    return {.samples = samples, .limits = LIMITS, .mayEndEarly = mayEndEarly};
}

} // namespace

int main(int argc, char** argv) {
    const unsigned long runs = argc == 2 ? std::strtoul(argv[1], nullptr, 10) : 0;
    if (runs == 0) {
        std::fputs("operating_curves: give the number of measurements for each level\n", stderr);
        return 64;
    }
    std::puts(
        "carried,level,pass,belowWarning,tooClose,fail,wrong,wrongFixed,meanSamples,meanOf60");
    for (const Noise& noise : noises) {
        for (int halves = LOWEST; halves <= HIGHEST; ++halves) {
            const double level = halves / 2.0;
            const OperatingPoint early =
                operatingPoint(plan(SAMPLES, true), noise, level, runs, SEED);
            const OperatingPoint fixed =
                operatingPoint(plan(SAMPLES, false), noise, level, runs, SEED);
            const OperatingPoint many =
                operatingPoint(plan(MANY_SAMPLES, true), noise, level, (runs + 9) / 10, SEED);
            std::printf("%.1f,%.1f,%.5f,%.5f,%.5f,%.5f,%.5f,%.5f,%.2f,%.1f\n", noise.carried, level,
                        early.share(Rating::PASS), early.share(Rating::BELOW_WARNING),
                        early.share(Rating::TOO_CLOSE), early.share(Rating::FAIL), early.wrong,
                        fixed.wrong, early.meanSamples, many.meanSamples);
            std::fflush(stdout);
        }
    }
    return 0;
}
