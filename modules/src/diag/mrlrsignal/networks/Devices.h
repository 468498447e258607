// Which networks of a list one device sends: an access point with several radios, or several names.
#pragma once

#include <networks/Network.h>

#include <vector>

namespace networks {

/// Sets `device` and `deviceIsSure`. Two networks are of one device for sure when they announce the
/// same WPS number or the same address of all links, when one names the other as a radio of its own
/// device, or when one says that it sends several names and the other has one of these addresses on
/// its frequency. They probably are when their addresses differ in the last byte by 7 at most and
/// in the first one, where at least one address is given locally. Devices have numbers in the order
/// of the list. Any thread.
void numberDevices(std::vector<Network>& networks);

} // namespace networks
