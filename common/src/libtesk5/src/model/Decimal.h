// Unsigned 32-bit numbers as people and scripts write them.
#pragma once

#include <mrl/Types.h>

#include <charconv>
#include <optional>

namespace tesk5 {

/// The number that `text` spells in decimal digits alone; nothing for any other text, the empty
/// one included, and for a number above 4294967295.
inline std::optional<mrl::Uint32> parseUint32(std::string_view text) {
    mrl::Uint32 number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, failure] = std::from_chars(text.data(), end, number);
    if (text.empty() || failure != std::errc() || stop != end) {
        return std::nullopt;
    }
    return number;
}

} // namespace tesk5
