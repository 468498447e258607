// Devices to test, and where they come from.
#pragma once

#include <tesk5/DiagDevice.h>
#include <tesk5/Finding.h>

#include <nativewifi/NetworkAdapters.h>

#include <optional>
#include <string>
#include <vector>

namespace tesk5 {

struct DeviceList {
    std::vector<DiagDevice> devices;
    /// Why there may be fewer than there should be; nothing when all answered.
    std::optional<Finding> failure;
};

/// The property that holds `\DEVICE\{GUID}`, the GUID in upper case.
extern const char* const DEVICE_SYSTEM_NAME;

/// The devices of this PC: first the interfaces that the Native Wifi interface lists, then those
/// of `adapters` that are none of them.
/// Failure: none is thrown; a call that fails is told in `failure`.
/// Platform: WlanOpenHandle, WlanEnumInterfaces, WlanFreeMemory, WlanCloseHandle
DeviceList machineDevices(const std::vector<nativewifi::NetworkAdapter>& adapters);

/// What keeps the Native Wifi interface from answering at this moment; nothing when it answers.
/// Platform: WlanOpenHandle, WlanEnumInterfaces, WlanFreeMemory, WlanCloseHandle
std::optional<Finding> wirelessFailure();

/// The devices that a JSON file (UTF-8 path) describes.
/// Failure: throws BadInput with place and reason
DeviceList devicesFromFile(const std::string& path);

} // namespace tesk5
