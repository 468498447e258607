// A signal quality as a function of time, and of nothing else: two runs see the same values.
#pragma once

#include <chrono>
#include <cstdint>
#include <variant>
#include <vector>

namespace radiosim {

/// Signal quality in percent over the time since the engine started. Immutable; any thread.
class Signal {
public:
    using Milliseconds = std::chrono::milliseconds;

    /// Values one after the other, each for `step`; afterwards the last stays, or, with `repeat`,
    /// the values begin again.
    struct Series {
        std::vector<std::uint32_t> values = {};
        Milliseconds step{1000};
        bool repeat = false;
    };

    /// A walk between `min` and `max`, both included, that begins at `start` and takes one step of
    /// at most `step` up or down every `interval`. The same seed gives the same walk.
    struct Walk {
        std::uint32_t start = 50;
        std::uint32_t min = 0;
        std::uint32_t max = 100;
        std::uint32_t step = 2;
        Milliseconds interval{1000};
        std::uint32_t seed = 1;
    };

    /// The same value at all times. Values above 100 are possible and reported as they are: a
    /// client must live with a card that does this.
    Signal(std::uint32_t constant = 50) // .signal = 50
        : m_shape(constant) {}
    Signal(Series series);
    Signal(Walk walk) : m_shape(walk) {}

    /// The value at `elapsed`; times before the start count as the start.
    std::uint32_t at(Milliseconds elapsed) const;

private:
    std::variant<std::uint32_t, Series, Walk> m_shape;
};

} // namespace radiosim
