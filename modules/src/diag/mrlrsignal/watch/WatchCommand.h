// The command watch: a live view of one radio or of all, or records of their readings.
#pragma once

#include <tesk5/ModuleCommand.h>

/// For ModuleInfo::commands.
tesk5::ModuleCommand watchCommand();
