// The small files in which the kernel shows a network interface and its radio.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace nativewifi::linux_radio {

/// The folder of a network interface below `root`, which has sys; one that does not exist for a
/// name that would lead elsewhere.
std::filesystem::path interfaceFolder(const std::filesystem::path& root,
                                      const std::string& interface);

/// That of its radio.
std::filesystem::path radioFolder(const std::filesystem::path& root, const std::string& interface);

/// The first line of a file; empty when it cannot be read.
std::string lineOf(const std::filesystem::path& path);

} // namespace nativewifi::linux_radio
