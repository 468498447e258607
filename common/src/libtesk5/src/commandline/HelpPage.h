// What --help shows.
#pragma once

#include "commandline/Commands.h"

#include <string>

namespace tesk5 {

/// The help page of `program`: that of `command`, or the overview when it is null.
std::string helpPage(const std::string& program, const CommandDescription* command);

} // namespace tesk5
