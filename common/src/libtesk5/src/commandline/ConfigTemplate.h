// A configuration file to start from.
#pragma once

#include <tesk5/Registry.h>

#include <string>

namespace tesk5 {

/// A configuration file with every key commented out: it changes nothing until it is edited.
std::string configTemplate(const Registry& registry, const std::string& program);

} // namespace tesk5
