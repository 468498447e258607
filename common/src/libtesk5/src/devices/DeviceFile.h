// Devices that a file describes, in place of those of this PC.
#pragma once

#include <tesk5/DeviceList.h>

#include <string>

namespace tesk5 {

/// The devices that a JSON file describes.
/// \param path in UTF-8
/// Failure: throws BadInput with the place in the file and the reason
DeviceList devicesFromFile(const std::string& path);

} // namespace tesk5
