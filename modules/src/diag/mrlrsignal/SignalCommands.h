// The commands that the module adds to those of the framework.
#pragma once

#include <tesk5/ModuleCommand.h>

#include <span>

/// For ModuleInfo::commands. Any thread.
std::span<const tesk5::ModuleCommand> signalCommands();
