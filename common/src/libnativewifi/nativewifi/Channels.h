// Bands and channel numbers of centre frequencies.
#pragma once

#include <nativewifi/WlanTypes.h>

#include <cstdint>
#include <optional>

namespace nativewifi {

enum class Band : std::uint8_t { GHZ_2_4, GHZ_5, GHZ_6 };

/// The number of the channel with this centre frequency in MHz, by the numbering of its band; 0
/// for a frequency of none.
ULONG channelOf(std::uint32_t mhz);

/// The band of a centre frequency in MHz; nothing for a frequency of none.
std::optional<Band> bandOf(std::uint32_t mhz);

} // namespace nativewifi
