// The machine that is looked at: where the kernel's files are, and its radios.
#pragma once

#include <nativewifi/RadioChannels.h>

#include <filesystem>
#include <string_view>
#include <vector>

namespace networkadapters {

/// `path` ("sys/class/net") below the folder that stands for "/"; empty when none does.
std::filesystem::path systemPath(std::string_view path);

/// The channels of the machine's radios.
std::vector<nativewifi::RadioChannels> machineRadios();

/// The entries of a folder, in the order of their names; none when it cannot be read.
std::vector<std::filesystem::path> entriesOf(const std::filesystem::path& folder);

/// Whether there is such a file, folder or link.
bool isThere(const std::filesystem::path& path);

} // namespace networkadapters
