// Whether a text that people are shown can do nothing but be read: looked at byte by byte and
// without the product's own conversions, which are what is under test.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace test {

/// What `utf8` holds that a terminal, a browser or a reader could be deceived with: ill-formed
/// UTF-8, a control character, a bidirectional or invisible control, a noncharacter of the BMP.
/// Empty when there is nothing of the kind.
std::string offenceIn(std::string_view utf8);

/// The same for each line of `utf8`, which must end with a line end unless it is empty.
std::string offenceInLines(std::string_view utf8);

/// `text` cut at its line ends; what follows the last one counts when it is not empty.
std::vector<std::string> linesOf(std::string_view text);

/// The bones of an XML or HTML document: its tags without the values of their attributes, and the
/// whole of scripts and style sheets. Two reports of which only the names differ have the same
/// bones, unless a name has become markup.
std::string bonesOf(std::string_view markup);

/// What a document holds that it must not: a "&" that begins no reference, or what offenceIn()
/// finds. Empty when there is nothing of the kind.
std::string offenceInMarkup(std::string_view markup);

} // namespace test
