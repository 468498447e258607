// Texts in columns of a terminal, in every language.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tesk5 {

/// `text` with spaces behind it up to `columns`, but at least one.
std::string padded(std::string text, std::size_t columns);

/// `text` in lines of at most `columns` columns. A line ends at a space, or between East Asian
/// characters where their rules allow it; a word that is longer than a line is not broken.
std::vector<std::string> wrapped(std::string_view text, std::size_t columns);

} // namespace tesk5
