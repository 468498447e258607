// The information elements that a radio of the scenario announces.
#pragma once

#include <radiosim/Scenario.h>

#include <nativewifi/WlanTypes.h>

#include <cstdint>
#include <vector>

namespace radiosim {

/// The name as the lists show it, the rates, the security of `accessPoint`, and the width of the
/// channel of `bss`, or the elements that the scenario gives.
std::vector<std::uint8_t> elementsOf(const AccessPoint& accessPoint, const Bss& bss,
                                     const DOT11_SSID& shown);

} // namespace radiosim
