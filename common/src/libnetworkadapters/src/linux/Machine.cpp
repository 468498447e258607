#include "Machine.h"

#include "../OtherMachine.h"

#include <algorithm>

namespace networkadapters {

std::filesystem::path systemPath(std::string_view path) {
    const std::filesystem::path root = otherMachine() ? otherMachine()->root : "/";
    return root.empty() ? std::filesystem::path() : root / path;
}

std::vector<nativewifi::RadioChannels> machineRadios() {
    return otherMachine() ? otherMachine()->radios : nativewifi::radioChannels();
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
