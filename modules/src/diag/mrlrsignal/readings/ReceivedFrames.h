// Whether a connection still hears its access point.
#pragma once

#include <nativewifi/WlanTypes.h>

#include <optional>

namespace readings {

/// How many frames the connection has received, beacons among them. While the number stands still,
/// the level that the system tells is that of the last frame, however long ago that was.
/// \return nothing where the system does not count beacons
/// Platform: WlanQueryInterface on Linux
std::optional<ULONGLONG> receivedFrames(HANDLE client, const GUID& interfaceGuid);

} // namespace readings
