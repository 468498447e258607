// The program's life, whatever the system hands its command line over in.
#pragma once

#include <string>
#include <vector>

/// Carries out the command line. \param arguments the program's name and what follows it, in UTF-8
/// \return the process's exit value, as DiagModule::start() says it; that of EXITEDABNORMALLY after
/// an exception, which is written to the error stream
int runSignalProgram(const std::vector<std::string>& arguments);
