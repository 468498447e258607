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

/// Whether `language` is written from right to left, so that layouts are mirrored.
/// Platform: GetLocaleInfoW with LOCALE_IREADINGLAYOUT
bool isRightToLeft(LANGID language);

} // namespace libUikit
