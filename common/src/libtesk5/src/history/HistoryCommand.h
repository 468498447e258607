// The command history, which both programs have.
#pragma once

#include <tesk5/ModuleCommand.h>

namespace tesk5 {

/// The command as those of modules are made: it reads journals and shows what they say.
ModuleCommand historyCommand();

} // namespace tesk5
