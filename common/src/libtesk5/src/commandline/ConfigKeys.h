// The keys of a configuration file, for its reader and its template alike.
#pragma once

#include "commandline/CommandLine.h"

#include <tesk5/Registry.h>
#include <tesk5/TomlFile.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tesk5 {

/// A key that a configuration file may have.
struct ConfigKey {
    enum class Kind {
        text,
        file,    ///< a text; a relative path counts from the configuration file's folder
        number,  ///< a whole number from 0 to `highest`
        decimal, ///< a number of either sign; `apply` refuses what is out of its range
        toggle   ///< true or false
    };

    std::string table; ///< empty for the file's own level
    std::string name;
    std::string option; ///< the option that it stands for; empty for the names of tests
    Kind kind;
    std::string comment; ///< for people, in the language in force
    std::string example; ///< a value in TOML's notation
    /// Puts one value into the command line.
    /// \return why it cannot be used; nothing when it can
    std::function<std::optional<std::string>(CommandLine&, const std::string&)> apply;
    bool several = false;    ///< whether a list of values is understood as well as one
    mrl::Uint32 highest = 0; ///< of numbers
};

/// Every key, in the order of the template: those of the framework, and the parameters of
/// `registry`.
std::vector<ConfigKey> configKeys(const Registry& registry);

/// `name` as a key in TOML's notation: bare where it may be.
std::string tomlKey(const std::string& name);

} // namespace tesk5
