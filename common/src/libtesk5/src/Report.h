// The report of a run in JSON; docs/report.md is its description for people.
#pragma once

#include "Runner.h"

#include <string>

namespace tesk5 {

/// `time` as reports write it: 2026-11-20T19:55:01.123Z, cut to milliseconds.
std::string reportTime(mrl::Clock::UtcTime time);

/// The report's text, in UTF-8.
std::string reportOf(const RunRecord& run);

} // namespace tesk5
