// The interface's scale of signal quality: 0 is -100 dBm or less, 100 is -50 dBm or more, linear in
// between, as documented for WLAN_ASSOCIATION_ATTRIBUTES.
#pragma once

#include <nativewifi/WlanTypes.h>

#include <algorithm>

namespace nativewifi {

/// The quality of a level in dBm: 2 * (dBm + 100), cut to 0..100.
constexpr ULONG linkQuality(LONG dbm) {
    return static_cast<ULONG>(2 * (std::clamp<LONG>(dbm, -100, -50) + 100));
}

/// The level in dBm, -100 to -50, of a quality; above 100 counts as 100.
constexpr LONG levelOfQuality(ULONG quality) {
    return static_cast<LONG>(std::min<ULONG>(quality, 100) / 2) - 100;
}

} // namespace nativewifi
