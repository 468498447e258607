// The language of the user interface, one for the process.
#pragma once

#include <windows.h>

namespace libUikit {

/// The language in force: what setUiLanguage() was given, or else the user's display language.
/// Any thread.
/// Platform: GetUserDefaultUILanguage
LANGID uiLanguage();

/// Sets the language for dialogs that open from now on; 0 for the user's own again. Any thread.
void setUiLanguage(LANGID language);

/// The language with the BCP 47 tag `tag` ("de", "zh-Hans", "pt-BR"). Any thread.
/// \return LANG_INVARIANT, whose dialogs are as their templates say, for a language that the system
/// does not know
/// Platform: LocaleNameToLCID
LANGID languageOf(const wchar_t* tag);

/// Whether `language` is written from right to left, so that layouts are mirrored.
/// Platform: LCIDToLocaleName
bool isRightToLeft(LANGID language);

} // namespace libUikit
