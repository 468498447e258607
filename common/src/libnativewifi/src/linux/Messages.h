// Reads nl80211's attributes into records. The bytes are the kernel's, and in part those of any
// sender on the air: every length is checked, what is too short or unknown is skipped, and nothing
// throws but std::bad_alloc.
#pragma once

#include "Records.h"

#include <span>

namespace nativewifi::linux_radio {

/// The attributes of one message, without netlink's and generic netlink's headers.
using Attributes = std::span<const std::uint8_t>;

/// One message of a dump of NL80211_CMD_GET_WIPHY that is split over many; merge() joins them.
/// Nothing without an index.
std::optional<Wiphy> readWiphy(Attributes attributes);
/// Adds what `part` tells to the wiphy with its index, or as a new one.
void merge(std::vector<Wiphy>& wiphys, Wiphy part);

/// Nothing without an index, a wiphy or a type: a device without a network interface has no index.
std::optional<Interface> readInterface(Attributes attributes);

/// Nothing without an address or a frequency.
std::optional<Bss> readBss(Attributes attributes);

/// Nothing without an address.
std::optional<Station> readStation(Attributes attributes);

/// The country of a regulatory domain: two characters; empty when the message has none.
std::string readCountry(Attributes attributes);

/// `command`: NL80211_CMD_...
Event readEvent(std::uint8_t command, Attributes attributes);

/// A level that a driver reports: nothing for what stands for "none" (0 and above, -95 by some,
/// -110 and below).
std::optional<std::int32_t> chainLevel(std::int8_t reported);

} // namespace nativewifi::linux_radio
