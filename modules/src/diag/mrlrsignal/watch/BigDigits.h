// A number in large digits, to be read from some metres away.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace watch {

inline constexpr std::size_t DIGIT_ROWS = 5;

/// The rows of `number`, which consists of digits and "-"; any other character is a gap. All rows
/// have the same width.
std::array<std::string, DIGIT_ROWS> bigDigits(std::string_view number);

} // namespace watch
