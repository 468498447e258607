// Files in TOML, as modules read the tables that are theirs.
#pragma once

#include <mrl/Json.h>

#include <string>

namespace tesk5 {

struct TomlFile {
    std::string bytes; ///< as they are in the file
    mrl::Json root;    ///< an object
};

/// The file at `path` (UTF-8), read as configuration files are.
/// Failure: throws BadInput with line and column for what is no TOML
TomlFile readTomlFile(const std::string& path);

/// `text` in TOML's notation.
std::string tomlText(const std::string& text);

} // namespace tesk5
