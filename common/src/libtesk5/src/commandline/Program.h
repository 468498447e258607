// The program: reads the command line and carries it out.
#pragma once

#include <tesk5/RunContext.h>

namespace tesk5 {

/// The exit value when a part of standard output could not be written and no report was written
/// either: the result is lost. It is EX_IOERR of sysexits.h.
constexpr int OUTPUT_LOST = 74;

/// The exit value when a replay was asked for what its capture does not have. It is EX_DATAERR of
/// sysexits.h.
constexpr int REPLAY_DIFFERS = 65;

/// Carries out the command in the arguments of `context`.
/// \return the process's exit value, as DiagModule::start() describes it
/// Failure: throws TeskException for a failure of the framework; exceptions that leave a test
/// function pass through
int runProgram(RunContext& context);

} // namespace tesk5
