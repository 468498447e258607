// The security of a network in the words of the Wi-Fi Alliance.
#pragma once

#include <nativewifi/WlanTypes.h>

#include <string>
#include <vector>

namespace networks {

/// What a network without protection has.
inline constexpr const char* OPEN = "Open";

/// "WPA2", "WPA2/WPA3", "WPA2 Enterprise", "OWE", "WEP", OPEN; "Unknown" for a way that only its
/// vendor knows. \param offered every way to join, as nativewifi::authenticationsOf() gives them
std::string securityWords(const std::vector<DOT11_AUTH_ALGORITHM>& offered);

} // namespace networks
