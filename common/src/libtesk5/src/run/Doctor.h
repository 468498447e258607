// What keeps the tests from working on this PC, as findings.
#pragma once

#include "run/Runner.h"
#include <tesk5/DeviceList.h>

namespace tesk5 {

/// What the checks of `tests` find of their parameters, each finding once.
/// \param complete as in ParameterCheck
Findings parameterFindings(const std::vector<const Test*>& tests, bool complete);

/// Every finding, good and bad: the parameters when `settings` says that some were given, the
/// service and the machine that the module checks, which device suits which of `tests` with
/// --device `filter`, and the module's examination of the devices that suit a test. When the
/// service fails, only its failure and problems of the machine are found. Tests with an obstacle
/// are left out. Blocks for as long as the module's thorough examination takes.
Findings diagnosis(const std::deque<Test>& tests, const DeviceList& devices,
                   const std::optional<std::string>& filter, bool settings);

/// Possible reasons why no device was found for `test`: its obstacle, or those of the devices. Does
/// not examine devices. Platform: what the module's check of the machine calls
/// \param filter as --device gives it
Findings adviceFor(const Test& test, const DeviceList& devices,
                   const std::optional<std::string>& filter);

/// Why a run may have ended without a clear view: with CANNOTRUN, with a FAIL that measured
/// nothing, or not with PASS after its test had requested advice. After a measurement that reached
/// a limit, what to do about it. Empty for any other run. Does not wait. Platform: what the
/// module's checks of service and machine and its examination call
Findings adviceFor(const Outcome& outcome);

} // namespace tesk5
