// A module for the framework's fuzzers.
#pragma once

#include <tesk5/Registry.h>

namespace fuzz {

/// Two tests, "Signal" and the interactive "Dialog", and a parameter of each kind: "SSID", "Limit"
/// (a number) and "Also" (several values).
tesk5::Registry& registry();

} // namespace fuzz
