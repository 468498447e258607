// Devices to test, and where they come from.
#pragma once

#include <tesk5/DiagDevice.h>

#include <nativewifi/NetworkAdapters.h>

#include <string>
#include <vector>

namespace tesk5 {

struct DeviceList {
    std::vector<DiagDevice> devices;
    /// Why there may be fewer than there should be, for people; empty when nothing failed.
    std::string reason;
};

/// The property that holds `\DEVICE\{GUID}`, the GUID in upper case.
extern const char* const DEVICE_SYSTEM_NAME;

/// The devices of this PC: first the interfaces that the Native Wifi interface lists, then those
/// of `adapters` that are none of them.
/// Failure: none is thrown; a call that fails is told in the reason.
/// Platform: WlanOpenHandle, WlanEnumInterfaces, WlanFreeMemory, WlanCloseHandle
DeviceList machineDevices(const std::vector<nativewifi::NetworkAdapter>& adapters);

/// The devices that a JSON file (UTF-8 path) describes.
/// Failure: throws BadInput with place and reason
DeviceList devicesFromFile(const std::string& path);

} // namespace tesk5
