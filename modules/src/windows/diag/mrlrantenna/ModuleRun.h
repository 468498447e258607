// The part of the application object's life that needs no application classes.
#pragma once

#include <functional>

/// Hands the command line, version and initialisation callback to the framework and lets it carry
/// out the command line.
/// \param setCommandLine hands over the command line, with DiagModule::setCmdLineArgs()
/// \return the process's exit value: what DiagModule::start() returns; the value of
/// EXITEDABNORMALLY after an exception of Basekit or the framework, which is written to Basekit's
/// error stream; 0 after any other
int runModule(const std::function<void()>& setCommandLine);
