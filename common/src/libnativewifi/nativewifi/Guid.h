// GUIDs as texts and values, without a platform call, and the system names of devices, which carry
// the GUIDs of their interfaces.
#pragma once

#include <nativewifi/WlanTypes.h>

#include <mrl/String.h>

#include <array>
#include <cstdint>
#include <optional>

namespace nativewifi {

/// The GUID of a text of exactly 36 characters, 8-4-4-4-12 hexadecimal digits of any letter case,
/// without braces; nothing when the text is anything else.
std::optional<GUID> parseGuid(mrl::CharView text);

/// The text of `guid`: 36 characters in lower case, without braces.
mrl::String guidText(const GUID& guid);

/// Whether all 16 bytes are equal.
bool sameGuid(const GUID& a, const GUID& b);

/// The GUID of the adapter with that permanent hardware address, where the system gives adapters
/// none: the same after each start of the PC, and in each port.
GUID guidOfAddress(const std::array<std::uint8_t, 6>& address);

/// The system name of the device with the interface `guid`: "\DEVICE\{8C2F6B1E-...}", upper case.
mrl::String deviceSystemName(const GUID& guid);

/// The text of the GUID in a system name: what stands between the first "{" and the last
/// character, whatever that character is. Empty for a name without a brace and for a brace behind
/// position 65535.
mrl::String guidTextOf(const mrl::String& deviceSystemName);

} // namespace nativewifi
