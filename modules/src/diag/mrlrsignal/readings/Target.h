// Which access point a measurement is about.
#pragma once

#include <nativewifi/Channels.h>
#include <nativewifi/WlanTypes.h>

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace readings {

/// The address of one radio of an access point.
using Bssid = std::array<UCHAR, 6>;

/// Six pairs of hexadecimal digits, of any letter case, with ":" or "-" between them, or nothing
/// between any of them; nothing for any other text.
std::optional<Bssid> parseBssid(std::string_view text);
/// "02:00:00:00:01:00", in lower case.
std::string bssidText(const Bssid& bssid);
Bssid bssidOf(const DOT11_MAC_ADDRESS& address);

/// What is not set holds for every access point.
struct Target {
    std::optional<std::string> ssid = {}; ///< the name's bytes
    std::optional<Bssid> bssid = {};
    std::optional<nativewifi::Band> band = {};

    /// Whether a BSS with these is meant. \param mhz centre frequency; 0 when it is not known,
    /// which no wanted band matches
    bool matches(std::string_view name, const Bssid& address, std::uint32_t mhz) const;
};

} // namespace readings
