// What the program does: the command line read and followed.
#pragma once

#include <tesk5/RunContext.h>

namespace tesk5 {

/// Does what the arguments of `context` ask for.
/// \return the process's exit value, as DiagModule::start() describes it
/// Failure: throws TeskException for a failure of the framework; exceptions that leave a test
/// function pass through
int runProgram(RunContext& context);

} // namespace tesk5
