// Texts in columns of a terminal, in every language.
#pragma once

#include <mrl/OutputStream.h>

#include <string>
#include <string_view>
#include <vector>

namespace tesk5 {

/// `text` with spaces behind it up to `columns`, but at least one.
std::string padded(std::string text, std::size_t columns);

/// `text` in lines of at most `columns` columns. A line ends at a space, or between East Asian
/// characters where their rules allow it; a word that is longer than a line is not broken.
std::vector<std::string> wrapped(std::string_view text, std::size_t columns);

/// One line of text as a terminal of `columns` columns shows it: wrapped with line feeds, each line
/// with the leading spaces of `text` and without the last column, after which some terminals wrap
/// themselves. `text` as it is when `columns` is 0.
std::string wrappedForTerminal(const std::string& text, std::size_t columns);

/// One line of text, which may come from outside, as `stream` shows it: a terminal with breaks
/// between words, and what could move the cursor or break the line escaped.
std::string linesFor(const mrl::OutputStream& stream, const std::string& text);

/// Writes linesFor() in one piece, at once.
void writeLine(mrl::OutputStream& stream, const std::string& text);

} // namespace tesk5
