// What Linux writes into its small files: lines, numbers, addresses, links to drivers.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace nativewifi {

/// The first line of a file; empty when it cannot be read.
std::string lineOf(const std::filesystem::path& path);

/// What follows `label` in the first line that begins with it; empty when there is none.
std::string valueIn(const std::filesystem::path& path, std::string_view label);

/// The last part of where a link leads, as "iwlwifi" of a device's link to its driver; empty
/// without one.
std::string linkedName(const std::filesystem::path& link);

/// A number in hexadecimal digits, with or without "0x"; nothing for any other text.
std::optional<std::uint64_t> hexNumber(std::string_view text);

/// An address such as "02:00:5e:00:53:01"; nothing for any other text.
std::optional<std::array<std::uint8_t, 6>> hardwareAddress(std::string_view text);

} // namespace nativewifi
