// An input that cannot be used: the one line that the person at the console gets for it.
#pragma once

#include <tesk5/Event.h>

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

/// What to say of a name that nobody knows.
struct UnknownName {
    const char* key;            ///< of a text with {Name} and, if it lists them, {Known}
    const char* keyWithNearest; ///< the same with {Nearest}, for when a known name is like it
};
std::string aboutUnknown(const UnknownName& unknown, const std::string& name,
                         const std::vector<std::string>& known, Event::Variables variables = {});

/// The one of `names` that is most like `text`; empty when none is like it: none contains it, and
/// each differs in more than half of its letters. Letter case counts least, and a name that
/// contains the text comes before one that merely resembles it.
std::string nearestName(std::string_view text, const std::vector<std::string>& names);

} // namespace tesk5
