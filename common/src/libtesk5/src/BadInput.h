// An input that cannot be used: the one line that the person at the console gets for it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tesk5 {

/// Thrown before anything has run or been written; start() prints the line and returns VALUE.
struct BadInput {
    /// Names the input, says what is wrong with it, and what to do instead.
    std::string line;

    static constexpr int VALUE = 64;
};

/// `text` in double quotes.
std::string inQuotes(std::string_view text);

/// The texts, each in quotes, with ", " between them; `none` when there are none.
std::string listInQuotes(const std::vector<std::string>& texts, std::string_view none);

/// The one of `names` that is most like `text`; empty when none is like it: none contains it, and
/// each differs in more than half of its letters. Letter case counts least, and a name that
/// contains the text comes before one that merely resembles it.
std::string nearestName(std::string_view text, const std::vector<std::string>& names);

/// `, the nearest is "NAME"`, or nothing when no name is like `text`.
std::string nearestHint(std::string_view text, const std::vector<std::string>& names);

} // namespace tesk5
