// A module's own look at what its tests need, for the command doctor and for runs without a
// verdict.
#pragma once

#include <tesk5/DiagDevice.h>
#include <tesk5/Finding.h>

namespace tesk5 {

/// How long an examination may take.
enum class Patience {
    NONE,    ///< no waiting: a person waits for the end of a run
    SECONDS, ///< some seconds, as for a scan of its own
};

/// Adds what there is to say about `device`, one that suits a test, to `findings`; parameters have
/// the values that the person gave. Is asked by the command doctor, and, without patience, after
/// each run that ended with CANNOTRUN or with a FAIL that measured nothing: there only what is not
/// good is shown. Runs on the thread of the tests, outside of any test; events that it raises are
/// dropped.
/// Failure: whatever keeps it from looking is a finding; an exception ends the program
using Examination = void (*)(const DiagDevice& device, Patience patience, Findings& findings);

} // namespace tesk5
