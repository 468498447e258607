// Which PC this is, as far as it says so.
#pragma once

#include <tesk5/RunIdentity.h>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tesk5 {

/// The identity of this PC; nothing when it says nothing of itself. What comes from the firmware is
/// cut to 200 bytes.
/// Platform: GetComputerNameExW, GetSystemFirmwareTable, RegGetValueW; elsewhere gethostname,
/// uname, and files below /sys/class/dmi/id and /etc
std::optional<PcIdentity> pcIdentity();

/// `text` as the identity has it: without blanks and NUL around it, and cut after 200 bytes,
/// between characters. Bytes that are no UTF-8 are read as the characters of the same values.
std::string identityText(std::string_view text);

} // namespace tesk5
