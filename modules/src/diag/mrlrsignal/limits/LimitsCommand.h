// The command that proposes limits from the levels of good units.
#pragma once

#include <tesk5/ModuleCommand.h>

namespace limits {

/// `limits --from good.csv --out limits.toml`.
tesk5::ModuleCommand limitsCommand();

} // namespace limits
