// Texts in the structures of the interface: the names of networks, which are bytes on the air and
// text in the program, and fixed arrays of characters.
#pragma once

#include <nativewifi/WlanTypes.h>

#include <mrl/String.h>

#include <algorithm>
#include <string_view>

namespace nativewifi {

/// The bytes of the name: as many as its length says, 32 at most.
std::string_view ssidBytes(const DOT11_SSID& ssid);

/// The name of these bytes; what is behind the 32nd is left out.
DOT11_SSID toSsid(std::string_view bytes);

/// The name as text, one character a byte (mrl::System::byteToChar): a name in UTF-8 is not
/// decoded. A byte of 0 ends the text.
/// Platform: mbtowc
mrl::String ssidText(const DOT11_SSID& ssid);

/// The text in a fixed array: up to its terminator, or the whole array when a driver left none.
template <std::size_t SIZE>
mrl::CharView fixedText(const mrl::Char (&array)[SIZE]) {
    const auto length = std::find(array, array + SIZE, mrl::Char(0)) - array;
    return mrl::CharView(array, static_cast<std::size_t>(length));
}

} // namespace nativewifi
