// The names of networks: bytes on the air, text in the program.
#pragma once

#include <nativewifi/WlanTypes.h>

#include <mrl/String.h>

#include <string_view>

namespace nativewifi {

/// The bytes of the name: as many as its length says, 32 at most.
std::string_view ssidBytes(const DOT11_SSID& ssid);

/// The name as text, one character a byte (mrl::System::byteToChar): a name in UTF-8 is not
/// decoded. A byte of 0 ends the text.
/// Platform: mbtowc
mrl::String ssidText(const DOT11_SSID& ssid);

} // namespace nativewifi
