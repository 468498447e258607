// The report of a run as OpenHTF's JSON callback writes its records; docs/formats.md says what
// becomes what.
#pragma once

#include "run/Runner.h"

#include <string>

namespace tesk5 {

/// The record of a whole run, in UTF-8.
std::string openHtfReportOf(const RunRecord& run);

} // namespace tesk5
