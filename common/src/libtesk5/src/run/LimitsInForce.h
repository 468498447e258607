// The limits and the calibration that a run is made with, by name and content.
#pragma once

#include "run/Plan.h"

#include <tesk5/RunIdentity.h>

namespace tesk5 {

/// For each of `tests` with a value for a limit: the name that the module's parameter for it has,
/// or that of the test; and the SHA-256 that is in that name, or that of the limits: a line
/// "PARAMETER=VALUE" for each in the order of the test's parameters, each with a line feed, without
/// those that have no value. They come from the command line when one of them does, else from the
/// configuration, else from defaults.
/// \param settings those that were applied
std::vector<InForce> limitsInForce(const std::vector<const Test*>& tests,
                                   const std::vector<Setting>& settings);

/// The calibration that the parameters of `tests` name; nothing without one.
/// Failure: throws BadInput for a file that cannot be used
std::optional<InForce> calibrationInForce(const std::vector<const Test*>& tests,
                                          const std::vector<Setting>& settings);

} // namespace tesk5
