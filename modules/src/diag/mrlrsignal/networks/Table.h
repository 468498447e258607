// Networks as a table for people.
#pragma once

#include <networks/Network.h>

#include <string>
#include <vector>

namespace networks {

/// The lines of the table, its head first, in the language in force. In a terminal that is too
/// narrow, long words and names are cut, and columns go: the age first, then the percentages, the
/// device, the width, the band, the security and the address. What could move the cursor is
/// escaped.
/// \param columns of the terminal; 0: as wide as needed
std::vector<std::string> tableOf(const std::vector<Network>& networks, std::size_t columns);

} // namespace networks
