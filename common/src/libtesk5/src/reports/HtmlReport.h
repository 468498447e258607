// The report for people: one self-contained page.
#pragma once

#include "run/Runner.h"

#include <string>

namespace tesk5 {

/// The page, in UTF-8 and in the language in force. It has no script and loads nothing; names from
/// outside are shown as text, isolated in their reading direction.
std::string htmlReportOf(const RunRecord& run);

} // namespace tesk5
