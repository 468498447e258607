// The command that computes a gauge study.
#pragma once

#include <tesk5/ModuleCommand.h>

/// `study --from data.csv`.
tesk5::ModuleCommand studyCommand();
