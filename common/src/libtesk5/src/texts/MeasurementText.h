// A measurement in words and as a bar, the same on the console and in reports.
#pragma once

#include <tesk5/Measurement.h>

#include <string>

namespace tesk5 {

/// "Signal strength: 72 %"
std::string measuredText(const Measurement& measurement);

/// How the value compares with its limits: "at or below the failing limit of 20 %"; empty when it
/// has none.
std::string comparisonText(const Measurement& measurement);

/// The value on its scale in `cells` characters: "[######|##.......]", each limit a "|" at its
/// place.
std::string measurementBar(const Measurement& measurement, std::size_t cells);

} // namespace tesk5
