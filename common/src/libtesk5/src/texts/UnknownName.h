// Lines about names that are not known.
#pragma once

#include <tesk5/Event.h>

#include <string>
#include <string_view>
#include <vector>

namespace tesk5 {

/// The texts for an unknown name.
struct UnknownName {
    const char* key;            ///< text with {Name} and, if it lists them, {Known}
    const char* keyWithNearest; ///< the same with {Nearest}, for a name that resembles a known one
};
/// The line about `name`, which is none of `known`.
/// \param variables the other variables of the text
std::string aboutUnknown(const UnknownName& unknown, const std::string& name,
                         const std::vector<std::string>& known, Event::Variables variables = {});

/// The one of `names` that is most like `text`, in any letter case: one that contains it, else the
/// one with the fewest different letters. Empty when each differs in more than half of its letters.
std::string nearestName(std::string_view text, const std::vector<std::string>& names);

} // namespace tesk5
