// What the tests tell reports besides their result: the networks and the strength that they saw.
#pragma once

#include "WirelessDevice.h"

#include <tesk5/Measurement.h>

#include <optional>
#include <vector>

/// Records the networks of the last refresh. Makes no call to the platform.
/// \param measured index of the one whose strength is recorded too; nothing for none
void recordNetworks(const WirelessDevice& device, std::optional<mrl::Uint32> measured);

/// Records a detected strength, in percent, with the limits that it was held against.
void recordStrength(mrl::Uint32 percent, std::vector<tesk5::Limit> limits);
