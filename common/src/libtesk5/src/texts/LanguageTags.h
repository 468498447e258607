// Languages by their tags (BCP 47: "de", "zh-Hans"), as files of texts are named.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tesk5 {

/// `tag` as files write it: parts joined by "-", the language in lower case, a script with a
/// capital, a region in upper case. Also understands "de_AT.UTF-8". Empty when `tag` is not a
/// language tag.
std::string canonicalTag(std::string_view tag);

/// The tags to try for `tag`, itself first, each less specific than the one before; none for what
/// is no tag. A Chinese region without a script gets the script that is written there.
std::vector<std::string> fallbacksOf(std::string_view tag);

} // namespace tesk5
