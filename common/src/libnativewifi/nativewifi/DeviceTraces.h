// What a network announces about the device that sends it, and about the other radios of that
// device.
#pragma once

#include <nativewifi/Elements.h>

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace nativewifi {

using MacAddress = std::array<std::uint8_t, 6>;

struct DeviceTraces {
    /// The number that WPS gives the device; all of its radios have the same.
    std::optional<std::array<std::uint8_t, 16>> uuid;
    /// The address of the device whose radios are links of one connection (Wi-Fi 7).
    std::optional<MacAddress> multiLink;
    /// Radios that the network says are of its own device.
    std::vector<MacAddress> colocated;
    /// How many of the lowest bits of the address differ among the names that this radio sends with
    /// one beacon, 1 to 8; 0 when it sends one name.
    unsigned nameBits = 0;
};

/// Numbers and addresses of zeros alone are none. Any thread.
DeviceTraces deviceTracesOf(const Elements& elements);

} // namespace nativewifi
