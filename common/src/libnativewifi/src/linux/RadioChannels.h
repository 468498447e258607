// The same from an nl80211 of any kind.
#pragma once

#include "Transport.h"

#include <nativewifi/RadioChannels.h>

namespace nativewifi::linux_radio {

/// Failure: throws CallError when the radios cannot be listed; a radio whose rules cannot be read
/// has no country
std::vector<RadioChannels> radioChannels(Transport& transport);

} // namespace nativewifi::linux_radio
