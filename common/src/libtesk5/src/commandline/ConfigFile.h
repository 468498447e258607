// A station's defaults: a TOML file in place of options on every command line.
#pragma once

#include "commandline/CommandLine.h"

#include <tesk5/Registry.h>

namespace tesk5 {

/// `line` completed from the configuration file that it names; unchanged when it names none. The
/// command line takes precedence: for each parameter and each setting by itself, for the tests as a
/// whole. Parameters of tests that do not run are left out; for a command of the module, those that
/// it does not take, and the tests. Texts are in the file's language from
/// here on, unless the command line names one.
/// Failure: throws BadInput with file, line and column
CommandLine withConfiguration(const CommandLine& line, const Registry& registry);

} // namespace tesk5
