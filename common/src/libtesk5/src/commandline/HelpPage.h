// What --help shows.
#pragma once

#include "commandline/Commands.h"

#include <string>

namespace tesk5 {

/// The help page of a program of that name: an overview, or all about one command.
std::string helpPage(const std::string& program, const CommandDescription* command);

} // namespace tesk5
