// The report of a run in JSON; docs/report.md describes it.
#pragma once

#include "run/Runner.h"

#include <string>

namespace tesk5 {

/// The report's text, in UTF-8.
std::string reportOf(const RunRecord& run);

} // namespace tesk5
