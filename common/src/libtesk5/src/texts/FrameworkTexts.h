// The framework's English texts, compiled in as the fallback for a missing file.
#pragma once

#include <string_view>

namespace tesk5 {

/// A text file in JSON: keys and texts.
std::string_view frameworkTexts();

} // namespace tesk5
