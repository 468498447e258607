// The findings of the command doctor in the terminal.
#pragma once

#include <tesk5/Finding.h>

namespace tesk5 {

/// Shows a line a finding, and how many are bad, on standard output.
/// \return the process's exit value: 0, or that of CANNOTRUN when a finding is bad
int showDiagnosis(const Findings& findings);

} // namespace tesk5
