// What a parameter takes, in words: for lists, the configuration file and refusals.
#pragma once

#include <tesk5/Parameter.h>

#include <string>

namespace tesk5 {

/// The numbers that a ranged parameter takes: "-110 to -10 dBm".
std::string rangeText(const NumberRange& range);

/// What limits the values of a parameter: its range, or its choices as `"2.4" or "5"`; empty for
/// the other types.
std::string domainText(const Parameter& parameter);

/// A default as people read it: "-80 dBm"; of other types than numbers as it is given, in
/// quotation marks. Not for the empty text.
std::string defaultText(const Parameter& parameter, const TeskString& text);

/// Why `text` cannot be a value of `parameter`, and what to give; empty when it can be one.
std::string refusalText(const Parameter& parameter, const TeskString& text);

} // namespace tesk5
