// Conversions between the forms of Unicode, and what is needed to show and compare texts that come
// from outside, such as network names.
// All functions are pure and may be called from any thread.
#pragma once

#include <mrl/Types.h>

namespace mrl {

/// UTF-16 to UTF-8. A surrogate without its partner becomes U+FFFD; the rest is kept.
std::string toUtf8(CharView text);

/// UTF-32 to UTF-8. `text` must be well-formed, as toUtf32() gives it.
std::string toUtf8(std::u32string_view text);

/// UTF-8 to UTF-16. Each ill-formed sequence becomes one U+FFFD; the rest is kept.
CharString toUtf16(std::string_view text);

/// UTF-8 to UTF-32, one unit for each character, with the same replacements.
std::u32string toUtf32(std::string_view text);

/// `unit` in lower case, by simple one-to-one mapping: ASCII, Latin-1, Latin Extended-A, Greek,
/// Cyrillic and full-width Latin letters. Independent of locale and platform, so that a name that
/// matches in the test matches on every PC.
Char foldCase(Char unit);

/// `text` with every unit folded with foldCase().
CharString foldedCase(CharView text);

/// Whether `a` and `b` are equal when every unit is folded with foldCase().
bool equalNoCase(CharView a, CharView b);

/// Whether escapeControls() escapes the character: it could move a cursor, break a line or reverse
/// the reading direction.
bool isUnsafeToShow(char32_t codePoint);

/// `text` with everything that could move a cursor, break a line or turn the reading direction
/// made visible: C0 and C1 controls and DEL as \n, \r, \t or \xNN; line and paragraph separators,
/// zero-width and bidirectional controls, U+FFFE and U+FFFF as \uNNNN. Other characters, a
/// backslash included, stay. Ill-formed UTF-8 is replaced first, as in toUtf16(). Used wherever a
/// text is shown.
std::string escapeControls(std::string_view utf8);

} // namespace mrl
