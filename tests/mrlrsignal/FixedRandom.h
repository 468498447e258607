// Random numbers that are the same in each run, so that a test that fails can be repeated.
#pragma once

#include <cstdint>
#include <random>

namespace test {

inline std::mt19937 fixedRandom(std::uint32_t seed) {
    return std::mt19937(seed);
}

} // namespace test
