// The command networks: what is on the air, once.
#pragma once

#include <tesk5/ModuleCommand.h>

namespace networks {

/// Scans with each of the devices and shows what the parameters SSID, BSSID and Band mean, as a
/// table or as --format says. Why something is missing goes to the error stream.
///
/// Blocks as long as listNetworks() with each device.
/// \return 0 when a network is shown, the value of CANNOTRUN when none is, that of USERABORTED
/// after an interrupt
/// Platform: that of listNetworks()
int run(const tesk5::CommandCall& call, tesk5::RunContext& context);

} // namespace networks
