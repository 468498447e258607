// The Mustache templates of reports, compiled in from res/.
#pragma once

#include <string_view>

namespace tesk5 {

/// The page for people: report.html with report.css in it. Its tags in capitals are keys of texts.
std::string_view pageTemplate();

/// report_mark.html, the mark of a verdict or an event, which the page has in several places.
std::string_view markTemplate();

/// report.junit.xml.
std::string_view junitTemplate();

} // namespace tesk5
