// What the command list shows.
#pragma once

#include "run/Plan.h"

#include <tesk5/DeviceList.h>
#include <tesk5/Registry.h>

#include <mrl/OutputStream.h>

#include <optional>
#include <string>

namespace tesk5 {

/// Shows the tests, the devices, and which test would run on which device and why not on others.
/// \param filter as --device gives it
void showList(mrl::OutputStream& stream, const Registry& registry, const DeviceList& devices,
              const std::optional<std::string>& filter);

} // namespace tesk5
