// What the pages for people have in common.
#pragma once

#include <tesk5/Event.h>
#include <tesk5/RunContext.h>
#include <tesk5/TestResult.h>

#include "reports/Chart.h"
#include "texts/MeasurementText.h"

#include <mrl/Clock.h>
#include <mrl/Json.h>

#include <string>
#include <string_view>

namespace tesk5 {

/// The values of the head of a page: its language and direction, its title and the program.
mrl::Json pageHead(const std::string& title, const ModuleVersion& version);

/// Gives each tag of the template `text` that is the key of a text that text.
void setTexts(mrl::Json& page, std::string_view text);

/// A time for programs and for people.
mrl::Json timeJson(mrl::Clock::UtcTime time);

/// The kinds of results and values, which decide colour and mark.
namespace kinds {
inline constexpr const char* GOOD = "good";
inline constexpr const char* WARNING = "warning";
inline constexpr const char* BAD = "bad";
inline constexpr const char* NONE = "none";
} // namespace kinds

const char* kindOf(const TestResult& result);
const char* kindOf(Severity severity);

/// Sets `kind` for the style sheet, and `is.good` and so on for the sections of the mark.
void setKind(mrl::Json& json, const char* kind);

/// The sentence of a key in markup, with each variable's value isolated: a name in the other
/// reading direction does not reorder the rest of the sentence.
std::string sentenceMarkup(const TeskString& key, const Event::Variables& variables);

/// What fills sentences about values of a unit. A percentage needs no isolation: it has no letters.
Fill fillFor(const TeskString& unit);

/// The limits for the legend of a drawing, their texts in markup.
mrl::Json limitsJson(const std::vector<Limit>& limits, const TeskString& unit);

/// The values of the template of drawings, but for `words`, which say what is drawn.
/// \param timeText the text of a tick on the axis from left to right
mrl::Json chartJson(const Chart& chart, bool mirrored, std::string (*timeText)(const Number& tick));

} // namespace tesk5
