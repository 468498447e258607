// Properties of a network as short texts.
#pragma once

#include <networks/Network.h>

#include <string>

namespace networks {

/// "2.4", "5" or "6", as the parameter Band has it; empty when the band is not known.
std::string bandText(const Network& network);

/// The name for a terminal: as UTF-8 where it is such, with everything escaped that could move the
/// cursor; other bytes in the hexadecimal form that --set SSID= takes; a text in the language in
/// force for a hidden one.
std::string shownName(const Network& network);

} // namespace networks
