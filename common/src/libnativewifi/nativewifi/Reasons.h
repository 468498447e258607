// Sentences for the reasons why a network cannot be joined, for tables without the system's own.
#pragma once

#include <nativewifi/WlanTypes.h>

#include <string_view>

namespace nativewifi {

/// The sentence of a WLAN_REASON_CODE, in English; a general one for codes that are not known.
std::string_view reasonText(DWORD code);

/// The answer of WlanReasonCodeToString: the sentence, cut to `bufferSize` characters with its
/// terminator. `bufferSize` is not 0.
void copyReason(DWORD code, DWORD bufferSize, WCHAR* buffer);

} // namespace nativewifi
