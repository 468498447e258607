// Texts and keys in TOML's notation.
#pragma once

#include <string>

namespace tesk5 {

/// `text` in TOML's notation.
std::string tomlText(const std::string& text);

/// `name` as a key in TOML's notation: bare where it may be.
std::string tomlKey(const std::string& name);

} // namespace tesk5
