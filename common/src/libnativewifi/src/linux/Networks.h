// Makes the Native Wifi interface's lists from records of nl80211.
#pragma once

#include "Records.h"

#include <nativewifi/WlanTypes.h>

#include <span>

namespace nativewifi::linux_radio {

/// What the elements of a beacon or probe response say of a network's security.
struct Security {
    bool enabled = false;
    DOT11_AUTH_ALGORITHM authentication = DOT11_AUTH_ALGO_80211_OPEN;
    DOT11_CIPHER_ALGORITHM cipher = DOT11_CIPHER_ALGO_NONE;
    bool oneX = false; ///< an authentication server decides
};

/// The body of the first element `id` in `elements`; empty when there is none or it is cut short.
std::span<const std::uint8_t> element(const Bytes& elements, std::uint8_t id);
/// The name: at most 32 bytes; empty for a hidden one (no element, length 0 or zeros only).
Bytes ssidOf(const Bss& bss);
Security securityOf(const Bss& bss);
DOT11_PHY_TYPE phyTypeOf(const Bss& bss);
/// Basic and extended rates, in the units of WLAN_RATE_SET.
WLAN_RATE_SET ratesOf(const Bss& bss);
/// dBm; of a driver that reports percent only, percent / 2 - 100. Nothing when the driver is
/// silent.
std::optional<LONG> levelOf(const Bss& bss);
/// The documented rule: 2 * (dBm + 100), cut to 0..100.
ULONG linkQuality(LONG dbm);

/// The block of WlanGetAvailableNetworkList: one entry for each SSID, BSS type and security, the
/// strongest BSS counts; the connected one first, then by falling quality. Stable for equal input.
/// \param fresh the oldest age in ms that still counts; entries that are older are left out,
/// except the connected one
Bytes availableNetworkList(const std::vector<Bss>& heard, std::uint64_t bootTimeNs,
                           std::uint32_t freshMs);

/// The block of WlanGetNetworkBssList, elements behind the entries.
/// \param nowFileTime host time in 100 ns since 1601, from which ages are taken off
Bytes bssList(const std::vector<Bss>& heard, const DOT11_SSID* ssid, DOT11_BSS_TYPE type,
              bool secured, std::uint64_t bootTimeNs, std::uint64_t nowFileTime);

} // namespace nativewifi::linux_radio
