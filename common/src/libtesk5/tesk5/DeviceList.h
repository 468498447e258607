// Devices to test, and why the list may be incomplete.
#pragma once

#include <tesk5/DiagDevice.h>
#include <tesk5/Finding.h>

#include <optional>
#include <vector>

namespace tesk5 {

struct DeviceList {
    std::vector<DiagDevice> devices;
    /// Why there may be fewer than there should be; nothing when every source answered.
    std::optional<Finding> failure;
};

/// The property with the name under which the system knows the device; --device compares with it.
inline constexpr const char* DEVICE_SYSTEM_NAME = "DeviceSystemName";

} // namespace tesk5
