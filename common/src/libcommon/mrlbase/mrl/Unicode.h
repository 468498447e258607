// Conversions between UTF-8 and UTF-16, and what is needed to show and compare texts of strangers.
// All functions are pure and may be called from any thread.
#pragma once

#include <mrl/Types.h>

namespace mrl {

/// UTF-16 to UTF-8. A surrogate without its partner becomes U+FFFD; the rest is kept.
std::string toUtf8(CharView text);

/// UTF-8 to UTF-16. Every maximal ill-formed sequence becomes one U+FFFD; the rest is kept.
CharString toUtf16(std::string_view text);

/// `unit` in lower case, by simple one-to-one mapping: ASCII, Latin-1, Latin Extended-A, Greek,
/// Cyrillic and full-width Latin letters. Independent of locale and platform, so that a name that
/// matches in the test matches on every PC.
Char foldCase(Char unit);

/// Whether `a` and `b` are equal when every unit is folded with foldCase().
bool equalNoCase(CharView a, CharView b);

/// Whether a character shows nothing itself but could move a cursor, break a line or turn the
/// reading direction: what escapeControls() makes visible.
bool deceivesReaders(char32_t codePoint);

/// `text` with everything that could move a cursor, break a line or turn the reading direction
/// made visible: C0 and C1 controls and DEL as \n, \r, \t or \xNN; line and paragraph separators,
/// zero-width and bidirectional controls, U+FFFE and U+FFFF as \uNNNN. Other characters, a
/// backslash included, stay. Ill-formed UTF-8 is mended first, as toUtf16() does. For every place
/// that shows a text.
std::string escapeControls(std::string_view utf8);

} // namespace mrl
