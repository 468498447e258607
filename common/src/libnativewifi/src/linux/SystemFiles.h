// The small files in which the kernel shows a network interface and its radio.
#pragma once

#include <filesystem>
#include <string>

namespace nativewifi::linux_radio {

/// The folder of a network interface below `root`, which has sys; one that does not exist for a
/// name that would lead elsewhere.
std::filesystem::path interfaceFolder(const std::filesystem::path& root,
                                      const std::string& interface);

/// That of its radio.
std::filesystem::path radioFolder(const std::filesystem::path& root, const std::string& interface);

} // namespace nativewifi::linux_radio
