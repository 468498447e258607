// The width of the channel on which a network sends, by its information elements.
#pragma once

#include <nativewifi/Elements.h>

#include <cstdint>

namespace nativewifi {

/// In MHz: 20, 40, 80, 160 or 320; 160 also for two separate halves of 80 MHz. 0 when the elements
/// do not say it, nor that the network is older than 40 MHz. Of several elements the newest that
/// says a width counts. Any thread.
std::uint32_t widthOf(const Elements& elements);

} // namespace nativewifi
