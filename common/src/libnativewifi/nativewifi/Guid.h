// GUIDs as texts and values, without a platform call.
#pragma once

#include <nativewifi/WlanTypes.h>

#include <mrl/String.h>

#include <optional>

namespace nativewifi {

/// The GUID of a text of exactly 36 characters, 8-4-4-4-12 hexadecimal digits of any letter case,
/// without braces; nothing when the text is anything else.
std::optional<GUID> parseGuid(mrl::CharView text);

/// The text of `guid`: 36 characters in lower case, without braces.
mrl::String guidText(const GUID& guid);

/// Whether all 16 bytes are equal.
bool sameGuid(const GUID& a, const GUID& b);

} // namespace nativewifi
