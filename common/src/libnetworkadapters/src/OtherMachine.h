// The machine that a ScopedMachine puts in the place of this one.
#pragma once

#include <nativewifi/RadioChannels.h>

#include <filesystem>
#include <optional>
#include <vector>

namespace networkadapters {

struct OtherMachine {
    std::filesystem::path root; ///< stands for "/"; with an empty path there are no files
    std::vector<nativewifi::RadioChannels> radios;
};

/// Nothing for this machine. Threads: that of the run
const std::optional<OtherMachine>& otherMachine();

} // namespace networkadapters
