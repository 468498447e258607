// The key of a letter.
#pragma once

#include <watch/KeyReader.h>

namespace watch {

inline KeyPress letter(char character) {
    return {Key::CHARACTER, character};
}

} // namespace watch
