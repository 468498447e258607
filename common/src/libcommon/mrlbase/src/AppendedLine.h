// What appendLine() does on every system.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace mrl {

/// The byte on which processes that extend one file exclude each other. It lies beyond the end of
/// every file: on Windows a lock also refuses reading and writing what it covers.
inline constexpr std::uint64_t APPEND_LOCK_BYTE = 0x7FFFFFFF00000000;

inline std::string appendedText(bool endsWithinLine, std::string_view line) {
    std::string text = endsWithinLine ? "\n" : "";
    text += line;
    return text + "\n";
}

} // namespace mrl
