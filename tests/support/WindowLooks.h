// How windows look. Windows only.
#pragma once

#include <windows.h>

#include <cstdlib>
#include <string>

namespace test {

/// The text of a window, of any length.
inline std::wstring textOf(HWND window) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)), L'\0');
    GetWindowTextW(window, text.data(), static_cast<int>(text.size()) + 1);
    return text;
}

/// Height of the letters of a control's font, in pixels.
inline LONG letterHeight(HWND control) {
    LOGFONTW font{};
    GetObjectW(reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)), sizeof font,
               &font);
    return std::labs(font.lfHeight);
}

/// Where a control lies on the screen, in pixels to the right of its dialog's left edge.
inline LONG leftInside(HWND control, HWND dialog) {
    RECT frame{};
    RECT place{};
    GetWindowRect(dialog, &frame);
    GetWindowRect(control, &place);
    return place.left - frame.left;
}

} // namespace test
