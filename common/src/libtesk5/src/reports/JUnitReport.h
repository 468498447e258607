// The report for continuous-integration servers, in JUnit's XML. docs/report.md says how results
// map onto it.
#pragma once

#include "run/Runner.h"

#include <string>

namespace tesk5 {

/// The report's text, in UTF-8. Names, types and properties are the same in every language;
/// messages and output are in the language in force.
std::string junitReportOf(const RunRecord& run);

} // namespace tesk5
