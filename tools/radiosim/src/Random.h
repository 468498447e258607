// Values over time: what the signals' shapes are computed with.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>

namespace radiosim {

/// One round of a well-mixed 64-bit hash; the standard library's distributions differ by platform.
inline std::uint64_t mix(std::uint64_t value) {
    value += 0x9E3779B97F4A7C15U;
    value = (value ^ (value >> 30U)) * 0xBF58476D1CE4E5B9U;
    value = (value ^ (value >> 27U)) * 0x94D049BB133111EBU;
    return value ^ (value >> 31U);
}

/// How many whole `length` have passed; none before the start.
inline std::int64_t countOf(std::chrono::milliseconds elapsed, std::chrono::milliseconds length) {
    return std::max<std::int64_t>(elapsed.count(), 0) / std::max<std::int64_t>(length.count(), 1);
}

} // namespace radiosim
