// The command that computes a gauge study.
#pragma once

#include <tesk5/ModuleCommand.h>

namespace study {

/// `study --from data.csv`.
tesk5::ModuleCommand studyCommand();

} // namespace study
