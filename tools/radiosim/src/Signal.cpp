#include <radiosim/Signal.h>

#include "Random.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace radiosim {

namespace {

// A walk is computed from its beginning each time. It turns back after this many steps, which
// limits the cost of a late value.
constexpr std::int64_t TURN = 4096;

struct ValueAt {
    Signal::Milliseconds elapsed;

    std::uint32_t operator()(std::uint32_t constant) const { return constant; }

    std::uint32_t operator()(const Signal::Series& series) const {
        const auto count = static_cast<std::int64_t>(series.values.size());
        if (count == 0) {
            return 0;
        }
        const std::int64_t step = countOf(elapsed, series.step);
        const std::int64_t index = series.repeat ? step % count : std::min(step, count - 1);
        return series.values[static_cast<std::size_t>(index)];
    }

    std::uint32_t operator()(const Signal::Walk& walk) const {
        const std::int64_t min = walk.min;
        const std::int64_t max = std::max<std::int64_t>(walk.max, min);
        const std::int64_t reach = 2 * static_cast<std::int64_t>(walk.step) + 1;
        std::int64_t last = countOf(elapsed, walk.interval) % (2 * TURN);
        if (last > TURN) {
            last = 2 * TURN - last;
        }
        std::int64_t value = std::clamp<std::int64_t>(walk.start, min, max);
        for (std::int64_t step = 0; step < last; ++step) {
            const std::uint64_t random = mix((static_cast<std::uint64_t>(walk.seed) << 32U) +
                                             static_cast<std::uint64_t>(step));
            const auto change =
                static_cast<std::int64_t>(random % static_cast<std::uint64_t>(reach)) - walk.step;
            value = std::clamp(value + change, min, max);
        }
        return static_cast<std::uint32_t>(value);
    }
};

} // namespace

Signal::Signal(Series series) : m_shape(std::move(series)) {}

std::uint32_t Signal::at(Milliseconds elapsed) const {
    return std::visit(ValueAt{elapsed}, m_shape);
}

} // namespace radiosim
