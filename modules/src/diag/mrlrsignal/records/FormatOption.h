// The option --format of the commands that write records.
#pragma once

#include <records/Records.h>

#include <tesk5/ModuleCommand.h>

#include <optional>

namespace records {

/// \param example a whole command line behind the program's name; lives as long as the program
tesk5::CommandOption formatOption(const char* example);

/// What the option was given as; nothing without it. Any thread.
std::optional<Format> formatOf(const tesk5::CommandCall& call);

} // namespace records
