// Languages by their tags (BCP 47: "de", "zh-Hans").
#pragma once

#include <string_view>

namespace mrl {

/// Whether texts in the language are read from right to left: as its script is where the tag names
/// one, as in "az-Arab", else as the language's usual script is. False for any other text. Any
/// thread.
/// \param tag in the usual letter case: "ar-EG", "pa-Arab-PK"
bool isRightToLeft(std::string_view tag);

} // namespace mrl
