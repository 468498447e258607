// A level in dBm as a function of time, and of nothing else: two runs see the same values.
#pragma once

#include <chrono>
#include <cstdint>
#include <vector>

namespace radiosim {

/// A received level over the time since the engine started: a line that rises or falls, steps in
/// it, and noise around it that a driver's averaging carries on. Immutable; any thread.
class Level {
public:
    using Milliseconds = std::chrono::milliseconds;

    /// From `at` on the level is `by` dB higher.
    struct Step {
        Milliseconds at{0};
        double by = 0;
    };

    struct Shape {
        double start = -60;        ///< dBm
        double driftPerSecond = 0; ///< dB
        double deviation = 0;      ///< of the noise, dB: its standard deviation
        double carried = 0;        ///< the share of the last noise in the next: 0 to 0.95
        Milliseconds every{100};   ///< how long a value stays
        std::uint32_t seed = 1;    ///< of the noise
        std::vector<Step> steps = {};
    };

    /// The same value at all times.
    Level(std::int32_t constant) : Level(Shape{.start = static_cast<double>(constant)}) {}
    Level(Shape shape);

    /// The value at `elapsed`, a whole number; times before the start count as the start.
    std::int32_t at(Milliseconds elapsed) const;

private:
    Shape m_shape;
};

} // namespace radiosim
