// Fonts that have a language's letters.
#pragma once

#include <windows.h>

namespace libUikit {

/// Whether the font has the letters that `language` is written with.
bool hasLetters(const LOGFONTW& font, LANGID language);

/// `font` when it has the letters of `language`; otherwise the same in another face that has them;
/// `font` again when no installed face does.
LOGFONTW fontForLanguage(const LOGFONTW& font, LANGID language);

} // namespace libUikit
