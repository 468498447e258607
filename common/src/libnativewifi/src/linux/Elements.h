// Reads the information elements of a beacon or a probe response: what the network announces.
//
// The bytes come from any sender on the air. An element whose length does not fit ends
// the list; fragments and unknown elements are skipped; of an element that occurs twice the first
// counts. Nothing throws.
#pragma once

#include <nativewifi/WlanTypes.h>

#include <cstdint>
#include <span>

namespace nativewifi::linux_radio {

using ByteSpan = std::span<const std::uint8_t>;

/// The bodies of the elements that matter here; they lie in the bytes that were read. Without the
/// element data() is null.
struct Elements {
    ByteSpan ssid;
    ByteSpan rates;
    ByteSpan extendedRates;
    ByteSpan rsn;
    ByteSpan wpa; ///< behind the vendor's number and type
    bool erp = false;
    bool ht = false;  ///< 802.11n
    bool vht = false; ///< 802.11ac
    bool he = false;  ///< 802.11ax
    bool eht = false; ///< 802.11be
};

/// One walk over `bytes`.
Elements readElements(ByteSpan bytes);

/// What a network asks of who joins it.
struct Security {
    bool enabled = false;
    DOT11_AUTH_ALGORITHM authentication = DOT11_AUTH_ALGO_80211_OPEN;
    DOT11_CIPHER_ALGORITHM cipher = DOT11_CIPHER_ALGO_NONE; ///< for frames to one station
    bool oneX = false;                                      ///< an authentication server decides

    bool operator==(const Security&) const = default;
};

/// Of several ways to join, the strongest. A network without RSN and WPA element whose capability
/// has the privacy bit uses WEP. Fields that an element leaves out have the standard's defaults:
/// CCMP (of WPA: TKIP) and 802.1X; a list of suites that is cut counts as far as it goes. Where all
/// suites are unknown the value is the first of the range for proprietary ones.
Security securityOf(const Elements& elements, std::uint16_t capability);

/// The newest PHY that the network announces.
DOT11_PHY_TYPE phyTypeOf(const Elements& elements, std::uint32_t frequencyMhz);

/// Basic and extended rates, in the units of WLAN_RATE_SET, 126 at most. Without the numbers in
/// these elements that stand for a feature that a station must have.
WLAN_RATE_SET ratesOf(const Elements& elements);

} // namespace nativewifi::linux_radio
