// The system name of a network device, which carries the GUID of its interface.
#pragma once

#include <nativewifi/WlanTypes.h>

#include <mrl/String.h>

namespace nativewifi {

/// The system name of the device with the interface `guid`: "\DEVICE\{8C2F6B1E-...}", upper case.
mrl::String deviceSystemName(const GUID& guid);

/// The text of the GUID in a system name: what stands between the first "{" and the last
/// character, whatever that character is. Empty for a name without a brace and for a brace behind
/// position 65535.
mrl::String guidTextOf(const mrl::String& deviceSystemName);

} // namespace nativewifi
