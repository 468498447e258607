// Sentences for the reasons why a network cannot be joined.
#pragma once

#include <nativewifi/WlanTypes.h>

#include <string_view>

namespace radiosim {

/// The sentence of a WLAN_REASON_CODE, in English; a general one for codes that are not known.
std::string_view reasonText(DWORD code);

} // namespace radiosim
