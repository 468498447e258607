// Reading the fixed character arrays of the interface's structures.
#pragma once

#include <mrl/Types.h>

#include <algorithm>
#include <cstddef>

namespace nativewifi {

/// The text in a fixed array: up to its terminator, or the whole array when a driver left none.
template <std::size_t SIZE>
mrl::CharView fixedText(const mrl::Char (&array)[SIZE]) {
    const auto length = std::find(array, array + SIZE, mrl::Char(0)) - array;
    return mrl::CharView(array, static_cast<std::size_t>(length));
}

} // namespace nativewifi
