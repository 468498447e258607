// One BSS as the command networks shows it.
#pragma once

#include <readings/Target.h>

#include <nativewifi/DeviceTraces.h>

#include <mrl/Clock.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace networks {

struct Network {
    std::string name; ///< bytes; empty when it is not sent
    readings::Bssid bssid{};
    std::optional<LONG> dbm; ///< nothing when the driver's number is no level
    ULONG percent = 0;
    std::optional<mrl::Clock::Duration> age; ///< since it was heard
    std::uint32_t mhz = 0;                   ///< centre frequency of the first 20 MHz; 0: not known
    std::uint32_t width = 0;                 ///< MHz; 0: not known
    std::string security;                    ///< securityWords()
    nativewifi::DeviceTraces traces;
    /// The number of the device that sends it and others of the list, from 1; 0: it sends this one
    /// alone, as far as is known.
    std::size_t device = 0;
    bool deviceIsSure = false; ///< the networks say so themselves; else their addresses suggest it
};

} // namespace networks
