// Networks as records for programs.
#pragma once

#include <networks/Network.h>

#include <mrl/Json.h>

#include <string>

namespace networks {

/// The members are those of docs/networks.md, in its order; null stands for what is not known.
/// \param adapter name of the device that heard it, UTF-8
mrl::Json recordOf(const Network& network, const std::string& adapter);

} // namespace networks
