// The level of one access point in dBm, rated.
#pragma once

#include <tesk5/DiagDevice.h>
#include <tesk5/Finding.h>
#include <tesk5/TestResult.h>

namespace levels {

/// Key of the advice after a level that reached a limit, for ModuleInfo::limitReached.
inline constexpr const char* LOW_LEVEL_ADVICE = "ADVICE_LOW_LEVEL";

/// Measures the access point that the parameters name and rates its level. The framework runs it
/// with parameters in which checkLevelParameters() finds nothing wrong.
///
/// Blocks for MaxSeconds at most, and a fraction of a second more.
/// \return FAIL below the failing level less the guard band; WARN near a limit, below the warning
/// level, or with too much spread or drift; PASS otherwise; CANNOTRUN with an event where there is
/// no level; USERABORTED when the run is interrupted
/// Threads: that of the run
/// Platform: those of readings::LevelSource
tesk5::TestResult SignalLevelTest(const tesk5::DiagDevice& device);

/// What is wrong with the parameters' values together, as a ParameterCheck.
tesk5::Findings checkLevelParameters(bool complete);

} // namespace levels
