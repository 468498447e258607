// What stands in the way of the tests on this PC, in words for a technician.
#pragma once

#include "devices/DeviceList.h"
#include "run/Runner.h"

namespace tesk5 {

/// Everything that there is to say, good and bad: the wireless service, which device suits which of
/// `tests` when --device says `filter`, and the module's examination of those that suit one. Once
/// the service fails, nothing is said about the devices that it would have listed.
/// Blocks for as long as the module's patient examination takes.
Findings diagnosis(const std::deque<Test>& tests, const DeviceList& devices,
                   const std::optional<std::string>& filter);

/// What may be behind it that no device was found for `test`; the devices themselves are no part
/// of it. Nothing is asked.
Findings adviceFor(const Test& test, const DeviceList& devices);

/// What may be behind a run without a verdict: one that ended with CANNOTRUN, or with a FAIL that
/// measured nothing. Nothing for any other run. Does not wait.
/// Platform: WlanOpenHandle, WlanEnumInterfaces, and what the module's examination calls
Findings adviceFor(const Outcome& outcome);

/// Shows a line a finding, and how many are bad, on standard output.
/// \return the process's exit value: 0, or that of CANNOTRUN when a finding is bad
int showDiagnosis(const Findings& findings);

} // namespace tesk5
