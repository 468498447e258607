#pragma once

#include <tesk5/ModuleCommand.h>

namespace calibrate {

/// The command calibrate: leads through placements of a unit whose level is known, and writes the
/// station's offset; with --check, says whether it still holds.
tesk5::ModuleCommand calibrateCommand();

} // namespace calibrate
