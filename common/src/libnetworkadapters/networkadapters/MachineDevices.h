// The network adapters of this PC as devices to test, and the state of the service behind them.
#pragma once

#include <networkadapters/NetworkAdapters.h>

#include <tesk5/DeviceList.h>
#include <tesk5/RunIdentity.h>

namespace networkadapters {

/// The devices of this PC: first the interfaces that the Native Wifi interface lists, then those
/// of `adapters` that are none of them. Each has the property "DeviceSystemName"; a wireless
/// interface has "wlanAPISupported", a mobile broadband adapter "WirelessWAN".
/// Failure: none is thrown; a call that fails is the list's `failure`
/// Threads: any
/// Platform: WlanOpenHandle, WlanEnumInterfaces, WlanFreeMemory, WlanCloseHandle
tesk5::DeviceList devicesAmong(const std::vector<NetworkAdapter>& adapters);

/// devicesAmong() all adapters of this PC, for ModuleInfo::devices.
/// Platform: those of devicesAmong(), and systemNetworkAdapters()
tesk5::DeviceList machineDevices();

/// The wireless ones among networkAdapters(), for ModuleInfo::adapters.
/// Platform: that of systemNetworkAdapters()
std::vector<tesk5::AdapterIdentity> adapterIdentities();

/// Whether the wireless service answers at this moment, for ModuleInfo::checkService: a good
/// finding, or the reason with its remedy.
/// Threads: any
/// Platform: WlanOpenHandle, WlanEnumInterfaces, WlanFreeMemory, WlanCloseHandle
tesk5::Finding checkWirelessService();

} // namespace networkadapters
