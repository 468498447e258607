// The program: reads the command line and carries it out.
#pragma once

#include <tesk5/RunContext.h>

namespace tesk5 {

/// Carries out the command in the arguments of `context`.
/// \return the process's exit value, as DiagModule::start() describes it
/// Failure: throws TeskException for a failure of the framework; exceptions that leave a test
/// function pass through
int runProgram(RunContext& context);

} // namespace tesk5
