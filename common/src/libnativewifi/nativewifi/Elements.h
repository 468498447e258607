// Reads the information elements of a beacon or a probe response: what the network announces. An
// entry of a BSS list has them at ulIeOffset.
//
// The bytes come from any sender on the air. An element whose length does not fit ends
// the list; fragments and unknown elements are skipped; of an element that occurs twice the first
// counts. Nothing throws. Any thread.
#pragma once

#include <nativewifi/WlanTypes.h>

#include <cstdint>
#include <span>
#include <vector>

namespace nativewifi {

using ByteSpan = std::span<const std::uint8_t>;

/// The bodies of the elements that matter here; they lie in the bytes that were read. Without the
/// element data() is null.
struct Elements {
    ByteSpan ssid;
    ByteSpan rates;
    ByteSpan extendedRates;
    ByteSpan rsn;
    ByteSpan wpa; ///< behind the vendor's number and type
    ByteSpan wps; ///< likewise
    ByteSpan htOperation;
    ByteSpan vhtOperation;
    ByteSpan heOperation;  ///< behind the number of the extension
    ByteSpan ehtOperation; ///< likewise
    ByteSpan multiLink;    ///< likewise
    ByteSpan multipleBssid;
    ByteSpan neighbours; ///< the reduced neighbour report
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

/// Every way to join that the network offers, each once, from the weakest to the strongest: what an
/// RSN element says, and a WPA element beside it. WEP counts as
/// DOT11_AUTH_ALGO_80211_SHARED_KEY, and unknown suites as DOT11_AUTH_ALGO_IHV_START, the first.
std::vector<DOT11_AUTH_ALGORITHM> authenticationsOf(const Elements& elements,
                                                    std::uint16_t capability);

/// The newest PHY that the network announces.
DOT11_PHY_TYPE phyTypeOf(const Elements& elements, std::uint32_t frequencyMhz);

/// Basic and extended rates, in the units of WLAN_RATE_SET, 126 at most. Without the numbers in
/// these elements that stand for a feature that a station must have.
WLAN_RATE_SET ratesOf(const Elements& elements);

} // namespace nativewifi
