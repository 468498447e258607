#include "SystemFiles.h"

#include <networkadapters/MachineCheck.h>

#include <algorithm>

namespace networkadapters {

namespace {

std::filesystem::path& root() {
    static std::filesystem::path path = "/";
    return path;
}

} // namespace

ScopedSystemRoot::ScopedSystemRoot(std::filesystem::path path) {
    root() = std::move(path);
}

ScopedSystemRoot::~ScopedSystemRoot() {
    root() = "/";
}

std::filesystem::path systemPath(std::string_view path) {
    return root().empty() ? std::filesystem::path() : root() / path;
}

std::vector<std::filesystem::path> entriesOf(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> entries;
    std::error_code failure;
    for (std::filesystem::directory_iterator entry(folder, failure), end; !failure && entry != end;
         entry.increment(failure)) {
        entries.push_back(entry->path());
    }
    std::sort(entries.begin(), entries.end());
    return entries;
}

bool isThere(const std::filesystem::path& path) {
    std::error_code failure;
    return std::filesystem::exists(std::filesystem::symlink_status(path, failure));
}

} // namespace networkadapters
