// The client functions over nl80211.
#pragma once

#include <nativewifi/Api.h>

namespace nativewifi::linux_radio {

/// They use Service::current().
WlanFunctions table();

} // namespace nativewifi::linux_radio
