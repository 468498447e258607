// The fingerprint by which a report says which file it was made with.
#pragma once

#include <string>
#include <string_view>

namespace mrl {

/// The SHA-256 of `bytes` in 64 lower-case hexadecimal digits, as sha256sum and PowerShell's
/// Get-FileHash show it of a file with these bytes.
/// Source: FIPS 180-4, "Secure Hash Standard"
std::string sha256Of(std::string_view bytes);

} // namespace mrl
