// Texts and lines that both views have.
#pragma once

#include <watch/Model.h>
#include <watch/StyledLine.h>

#include <string>
#include <vector>

namespace watch {

using Lines = std::vector<StyledLine>;

inline constexpr const char* DBM = "dBm";
inline constexpr const char* DECIBEL = "dB";
inline constexpr const char* SECONDS = "s";

/// A number with its unit as the language in force writes it. \param decimals 0 or 1
std::string numberText(double value, const char* unit, int decimals = 1);
/// The share of the interface's scale that a level is: "84%".
std::string percentText(LONG dbm);
double secondsBetween(Moment from, Moment to);
/// How old the reading is.
std::string ageText(const readings::Reading& reading, Moment now);
/// "36 (5 GHz)"; empty when the system does not say.
std::string channelText(std::uint32_t mhz);
/// The name, or what stands for one that is hidden.
std::string nameText(const readings::Reading& reading);

/// What is shown, of which radio, by which adapter.
StyledLine titleLine(const Model& model);
/// How many readings come, and what is sent for them. \param rate readings per second
StyledLine paceLine(const Model& model, double rate);

/// Adds as many of the lines as a frame of `rows` has room for.
void append(Lines& frame, const Lines& lines, std::size_t rows);

} // namespace watch
