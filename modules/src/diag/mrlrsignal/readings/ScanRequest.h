// How a system is made to scan for one target, and how often it bears it.
#pragma once

#include <readings/Target.h>

#include <nativewifi/WlanTypes.h>

#include <mrl/Clock.h>

namespace readings {

/// The shortest time between two requests. \param mhz the only channel wanted; 0 for all
mrl::Clock::Duration scanInterval(std::uint32_t mhz);

/// The longest time that a scan of all channels takes, as far as drivers announce its end.
mrl::Clock::Duration longestScan();

/// Starts a scan and returns at once. \param mhz the only channel wanted, where the system can
/// scan one alone; 0 for all
/// \return what the system answers
/// Platform: WlanScan; on Linux WlanSetInterface for one channel
DWORD requestScan(HANDLE client, const GUID& interfaceGuid, std::uint32_t mhz);

} // namespace readings
