// Measurements in words and as bars, the same on the console and in reports.
#pragma once

#include <tesk5/Measurement.h>
#include <tesk5/Texts.h>

#include <string>

namespace tesk5 {

/// "Signal strength: 72%"
std::string measuredText(const Measurement& measurement);

/// Fills the text of a key, as message() does or in markup.
using Fill = std::string (*)(const TeskString& key, const Event::Variables& variables);

/// How the value compares with its limits: "at or below the failing limit of 20%"; empty when it
/// has none.
std::string comparisonText(const Measurement& measurement, Fill fill = &message);

/// "Spread: 1.5 dB"
std::string figureText(const Figure& figure);

/// What the limit means: "Failing at 20% or below".
std::string limitText(const Limit& limit, const TeskString& unit, Fill fill = &message);

/// The value on its scale in `cells` characters: "[######|##.......]", each limit a "|" at its
/// place.
std::string measurementBar(const Measurement& measurement, std::size_t cells);

/// The value, its bar in 25 cells and its comparison in one line.
std::string measurementLine(const Measurement& measurement);

} // namespace tesk5
