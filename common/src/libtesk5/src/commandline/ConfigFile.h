// A station's defaults: a TOML file with what would otherwise stand on every command line.
#pragma once

#include "commandline/CommandLine.h"

#include <tesk5/Registry.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tesk5 {

/// A key that a configuration file may have, for the file's reader and its template alike.
struct ConfigKey {
    enum class Kind {
        text,
        file, ///< a text; a relative path counts from the configuration file's folder
        number,
        toggle ///< true or false
    };

    std::string table; ///< empty for the file's own level
    std::string name;
    Kind kind;
    bool several;        ///< whether a list of values is understood as well as one
    mrl::Uint32 highest; ///< of numbers
    std::string comment; ///< for people, in the language in force
    std::string example; ///< a value in TOML's notation
    /// Puts one value into the command line.
    /// \return why it cannot be used; nothing when it can
    std::function<std::optional<std::string>(CommandLine&, const std::string&)> take;
};

/// Every key, in the order of the template: those of the framework, and the parameters of
/// `registry`.
std::vector<ConfigKey> configKeys(const Registry& registry);

/// `line` with what its configuration file adds; as it is when it names none. What the command
/// line gives wins: each parameter and each setting by itself, the tests as a whole. Parameters of
/// tests that do not run are left out. Texts are in the file's language from here on, unless the
/// command line names one.
/// Failure: throws BadInput with file, line and column
CommandLine withConfiguration(CommandLine line, const Registry& registry);

/// A configuration file with every key in comments; as it stands it changes nothing.
std::string configTemplate(const Registry& registry, const std::string& program);

/// `text` in TOML's notation.
std::string tomlText(const std::string& text);

/// `name` as a key in TOML's notation: bare where it may be.
std::string tomlKey(const std::string& name);

} // namespace tesk5
