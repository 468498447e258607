// The identity of a PC by its files, for tests: they have files of their own.
#pragma once

#include "run/PcIdentity.h"

namespace tesk5 {

/// Sets maker, model, serial and system from the files below the folder that stands for "/".
void setFromFiles(const std::filesystem::path& root, PcIdentity& pc);

} // namespace tesk5
