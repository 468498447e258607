// The direction in which texts of mirrored dialogs are read. Systems differ in how they draw the
// window styles for it, so the kit draws such texts itself, with the direction in the text.
#pragma once

#include <windows.h>

#include <string>

namespace libUikit {

/// Whether `window` is laid out from right to left.
bool isMirrored(HWND window);

/// Whether a static text of a mirrored dialog is to be read from right to left: all are, except
/// those with SS_NOPREFIX, which is for names from elsewhere. A name is read as its first letter
/// is.
bool isReadFromRight(const std::wstring& text, DWORD style);

/// Paints a static text of a mirrored dialog: its own colours, font and style, at the right edge
/// unless its style says otherwise.
/// \param dc where to paint; null for what WM_PAINT asks for
void paintMirroredText(HWND control, HDC dc);

} // namespace libUikit
