// The report that continuous-integration servers read: JUnit's XML. docs/report.md tells how the
// results map onto it.
#pragma once

#include "run/Runner.h"

#include <string>

namespace tesk5 {

/// The report's text, in UTF-8. Names, types and properties are the same in every language;
/// messages and output are in the language in force.
std::string junitReportOf(const RunRecord& run);

} // namespace tesk5
