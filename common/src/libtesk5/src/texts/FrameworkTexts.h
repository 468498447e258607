// The framework's own English texts, compiled in for when their file is missing.
#pragma once

#include <string_view>

namespace tesk5 {

/// A text file in JSON: keys and texts.
std::string_view frameworkTexts();

} // namespace tesk5
