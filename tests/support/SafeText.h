// Checks that a text is safe to show: it has no character that moves a cursor, breaks a line, or
// reverses the reading direction. Written without the product's conversions, which are under test.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace test {

/// The first thing in `utf8` that could deceive a terminal, a browser or a reader: ill-formed
/// UTF-8, a control character, a bidirectional or invisible control, or a noncharacter of the BMP.
/// \return what it is and where, for a person; empty when the text is safe
std::string findUnsafe(std::string_view utf8);

/// The same for each line of `utf8`, which must end with a line end unless it is empty.
std::string findUnsafeInLines(std::string_view utf8);

/// The lines of `text` without their ends; the last one needs no end.
std::vector<std::string> linesOf(std::string_view text);

/// The skeleton of an XML or HTML document: its tags without the values of their attributes, and
/// its scripts and style sheets in full. Two reports that differ in names alone have the same
/// skeleton, unless a name has become markup.
std::string skeletonOf(std::string_view markup);

/// The same for an XML or HTML document, in which a "&" that begins no reference is unsafe too.
std::string findUnsafeInMarkup(std::string_view markup);

} // namespace test
