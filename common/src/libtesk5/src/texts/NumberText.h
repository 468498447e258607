// Numbers, units and times as the language in force writes them, from the texts NUMBER_... and
// TIME_...; digits are Latin in every language.
#pragma once

#include <tesk5/Number.h>
#include <tesk5/TeskString.h>

#include <mrl/Clock.h>

#include <string>

namespace tesk5 {

/// `number` with `digits` behind the decimal point, the same in every language: for programs.
std::string fixedPoint(double number, int digits);

/// A count, grouped in thousands from five digits on: "40,000".
std::string countText(std::size_t count);

/// A number with its sign and its decimals: "-57.5".
std::string numberText(const Number& number);

/// A value with its unit: "72%"; without one for an empty unit.
std::string withUnit(const Number& value, const TeskString& unit);

/// A duration with its unit, in tenths of a second: "7.0 s".
std::string secondsText(double seconds);

/// The same with the decimals of `seconds`: "7.25 s".
std::string secondsText(const Number& seconds);

/// The same in whole seconds, cut: "7 s". A negative duration is shown as 0.
std::string wholeSecondsText(double seconds);

/// `time` by this PC's time zone, with its offset: "2026-11-20 20:55:01 UTC+01:00".
std::string localTimeText(mrl::Clock::UtcTime time);

} // namespace tesk5
