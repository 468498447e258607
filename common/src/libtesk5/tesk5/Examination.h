// A module's own check of what its tests need, for the command doctor and for runs without a
// verdict.
#pragma once

#include <tesk5/DiagDevice.h>
#include <tesk5/Finding.h>

namespace tesk5 {

/// How far an examination goes.
enum class ExaminationDepth {
    QUICK,    ///< without waiting
    THOROUGH, ///< may wait for some seconds, for a scan for instance
};

/// Adds to `findings` what keeps `device`, which suits a test, from being tested, and what is in
/// order; parameters have the values that were given. The framework calls it thoroughly for
/// the command doctor, and quickly after each run without a verdict (CANNOTRUN, a FAIL that
/// measured nothing, DiagModule::requestAdvice()): the findings that are not good are then shown.
/// Failure: a call that fails becomes a finding; an exception ends the program
/// Threads: the tests' thread, outside any test; events that it raises are dropped
using Examination = void (*)(const DiagDevice& device, ExaminationDepth depth, Findings& findings);

} // namespace tesk5
