// The PC, as the first line of the result file names it.
#pragma once

#include <mrl/Json.h>

namespace contract {

/// The system's version and build, and of each wireless interface its name, state and driver. What
/// the system does not say is left out. Any thread.
/// Platform: RtlGetVersion, WlanEnumInterfaces, RegGetValueW
mrl::Json machine();

} // namespace contract
