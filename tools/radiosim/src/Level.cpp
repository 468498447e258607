#include <radiosim/Level.h>

#include "Random.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace radiosim {

namespace {

// What is carried on longer than this has faded: 0.95 to the power of 128 is 0.1 %.
constexpr std::int64_t MEMORY = 128;

// About normal, with a deviation of 1: the sum of twelve numbers between 0 and 1, less its mean.
double noise(std::uint32_t seed, std::int64_t index) {
    constexpr std::uint64_t NUMBERS = 12;
    double sum = 0;
    for (std::uint64_t i = 0; i < NUMBERS; ++i) {
        const std::uint64_t bits =
            mix((std::uint64_t{seed} << 32U) + static_cast<std::uint64_t>(index) * NUMBERS + i);
        sum += static_cast<double>(bits >> 11U) * 0x1p-53;
    }
    return sum - static_cast<double>(NUMBERS) / 2;
}

} // namespace

Level::Level(Shape shape) : m_shape(std::move(shape)) {}

std::int32_t Level::at(Milliseconds elapsed) const {
    const std::int64_t index = countOf(elapsed, m_shape.every);
    const Milliseconds begin = index * m_shape.every;
    double value =
        m_shape.start + m_shape.driftPerSecond * std::chrono::duration<double>(begin).count();
    for (const Step& step : m_shape.steps) {
        value += begin >= step.at ? step.by : 0;
    }
    if (m_shape.deviation > 0) {
        double carried = 0;
        double weight = 1;
        for (std::int64_t age = 0; age <= MEMORY; ++age) {
            // The noise before the start too: the first value has the same spread as any other.
            carried += weight * noise(m_shape.seed, index - age + MEMORY);
            weight *= m_shape.carried;
        }
        value += m_shape.deviation * std::sqrt(1 - m_shape.carried * m_shape.carried) * carried;
    }
    return static_cast<std::int32_t>(std::lround(value));
}

} // namespace radiosim
