// The Mustache templates of reports, compiled in from res/.
#pragma once

#include <string_view>

namespace tesk5 {

/// The report for people: report.html. Its tags in capitals are keys of texts.
std::string_view reportTemplate();

/// Other pages in its form: page.html.
std::string_view pageTemplate();

/// What both begin with, with report.css in it: report_head.html.
std::string_view headTemplate();

/// report_chart.html, the drawing of values.
std::string_view chartTemplate();

/// history_page.html, the main part of the page of a history.
std::string_view historyTemplate();

/// report_mark.html, the mark of a verdict or an event, which the page has in several places.
std::string_view markTemplate();

/// report.junit.xml.
std::string_view junitTemplate();

} // namespace tesk5
