// Where the kernel's files are, below a folder that stands for "/".
#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

namespace networkadapters {

/// `path` ("sys/class/net") below the folder that stands for "/"; empty when none does.
std::filesystem::path systemPath(std::string_view path);

/// The entries of a folder, in the order of their names; none when it cannot be read.
std::vector<std::filesystem::path> entriesOf(const std::filesystem::path& folder);

/// Whether there is such a file, folder or link.
bool isThere(const std::filesystem::path& path);

} // namespace networkadapters
