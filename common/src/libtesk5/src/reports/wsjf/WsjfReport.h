// The report of a run in the format WSJF; docs/formats.md says what becomes what.
#pragma once

#include "run/Runner.h"

#include <string>

namespace tesk5 {

/// Checks that the run has the tags that the format needs.
/// Failure: throws BadInput that names those that are missing, too long, or no number
void refuseWithoutWsjfTags(const RunIdentity& identity);

/// The report of a whole run, in UTF-8. Texts that are too long for the format are cut.
std::string wsjfReportOf(const RunRecord& run);

} // namespace tesk5
