// How often a measurement with SignalLevelTest's plan gives each rating, by simulation.
#pragma once

#include <readings/Sampling.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace curves {

/// What the driver's readings scatter like: whole numbers around the true level, normal, with a
/// standard deviation in dB; `carried` of each reading's deviation is in the next one (0 to below
/// 1).
struct Noise {
    double deviation = 1.5;
    double carried = 0;
};

struct OperatingPoint {
    static constexpr std::size_t RATINGS = 4;

    /// The share of the measurements with each statistics::Rating.
    std::array<double, RATINGS> shares{};
    /// The share with a rating of the wrong side: a failure although the true level is at or above
    /// the failing limit, or none although it is below, a limit being the warning one likewise.
    /// Too close to tell is never wrong.
    double wrong = 0;
    double meanSamples = 0;

    double share(statistics::Rating rating) const {
        return shares.at(static_cast<std::size_t>(rating));
    }
};

/// Measures `runs` times, each with readings::measure() on a clock of its own and on a connection
/// whose received strength is simulated, five readings a second.
/// \param level the true one, in dBm
/// \param seed of the noise: the same gives the same point
/// Threads: one at a time in a process; replaces clock and Native Wifi table meanwhile.
OperatingPoint operatingPoint(const readings::SamplingPlan& plan, const Noise& noise, double level,
                              std::size_t runs, std::uint32_t seed);

} // namespace curves
