// A process's command line as Windows hands it over: one text, which every program cuts itself.
#pragma once

#include <mrl/Types.h>

#include <vector>

namespace mrl {

/// The program's name and the arguments of a command line, cut as Windows' shell cuts it (the rules
/// of CommandLineToArgvW, whose DLL brings the whole user interface into the process).
///
/// Blanks and tabs separate, unless they stand in quotes. Before a quote, two backslashes are one,
/// and an odd one takes the quote's meaning away; elsewhere they are themselves. A third quote in a
/// row is a character and ends the quotes. The name ends at its second quote if it begins with one,
/// else at the first blank. Any thread.
/// \return the name first; nothing for an empty text
std::vector<CharString> splitCommandLine(CharView line);

} // namespace mrl
