// The template of the report for people: res/report.html with res/report.css in it.
#pragma once

#include <string_view>

namespace tesk5 {

/// A Mustache template. Its tags in capitals are keys of texts.
std::string_view reportPage();

/// The mark of a verdict or an event, a part of the page in several places.
std::string_view reportMark();

} // namespace tesk5
