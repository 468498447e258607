// The process's command line as a list of texts. Windows only: elsewhere main() gets it as a list.
#pragma once

#include <mrl/Types.h>

#include <vector>

namespace mrl {

/// The program's name and then its arguments, each as it was typed, without its quotes. Any thread.
/// Failure: throws std::bad_alloc when memory runs out.
/// Platform: CommandLineToArgvW
std::vector<CharString> processArguments();

} // namespace mrl
