// Strangers' texts inside XML and HTML.
#pragma once

#include <string>
#include <string_view>

namespace tesk5 {

/// `utf8` for the content of an element and for a quoted attribute: markup characters become
/// references, and what mrl::escapeControls() knows becomes visible, so every character that is
/// left is one that XML 1.0 allows. Pure; any thread.
std::string inMarkup(std::string_view utf8);

} // namespace tesk5
