// A text that nests deeper than any reader wants to.
#pragma once

#include <cstddef>
#include <string>

namespace test {

// Wine's checks of the heap take the square of the number of blocks.
#ifdef _WIN32
constexpr std::size_t DEPTH_OF_BRACKETS = 20'000;
#else
constexpr std::size_t DEPTH_OF_BRACKETS = 100'000;
#endif

/// Brackets that open and do not close.
inline std::string deepBrackets() {
    return std::string(DEPTH_OF_BRACKETS, '[');
}

} // namespace test
