// Texts from outside inside XML and HTML.
#pragma once

#include <string>
#include <string_view>

namespace tesk5 {

/// `utf8` for the content of an element and for a quoted attribute: markup characters become
/// references, and control characters are escaped as mrl::escapeControls() does, so that only
/// characters are left that XML 1.0 allows. Pure; any thread.
std::string inMarkup(std::string_view utf8);

} // namespace tesk5
