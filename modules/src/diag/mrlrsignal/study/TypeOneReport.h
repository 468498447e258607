// What the command study says about one part whose level is known.
#pragma once

#include <statistics/Robust.h>

#include <optional>
#include <string>
#include <vector>

namespace study {

/// The lines about at least two readings in dBm, in the order in which they were taken.
/// \param tolerance width in dB, above 0
std::vector<std::string> typeOneReport(statistics::Readings readings, double reference,
                                       std::optional<double> tolerance);

} // namespace study
