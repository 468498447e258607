// A configuration file to start from.
#pragma once

#include <tesk5/Registry.h>

#include <string>

namespace tesk5 {

/// A configuration file with every key in comments; as it stands it changes nothing.
std::string configTemplate(const Registry& registry, const std::string& program);

} // namespace tesk5
