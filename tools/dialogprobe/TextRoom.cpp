#include "TextRoom.h"

#include <algorithm>
#include <commctrl.h>
#include <iterator>
#include <stdexcept>
#include <string>

namespace dialogprobe {

namespace {

constexpr WORD FONT_POINTS = 8;
constexpr wchar_t FONT_FACE[] = L"MS Shell Dlg";

// A template without controls, as it lies in memory: the fixed part, no menu, the standard class,
// no caption, the font.
#pragma pack(push, 2)
struct EmptyTemplate {
    DLGTEMPLATE head{DS_SETFONT | WS_POPUP, 0, 0, 0, 0, 10, 10};
    WORD menu = 0;
    WORD windowClass = 0;
    wchar_t caption = 0;
    WORD points = FONT_POINTS;
    wchar_t face[std::size(FONT_FACE)]{};
};
#pragma pack(pop)

// The frame of a push button and a gap to it, in units of 1/96 inch.
constexpr int BUTTON_MARGIN = 3;
// The arrow of a combo box has the width of a scroll bar.
constexpr int COMBO_MARGIN = 4;

bool wraps(const Control& control) {
    const DWORD style = control.style();
    const DWORD type = style & SS_TYPEMASK;
    return (style & (SS_CENTERIMAGE | SS_ELLIPSISMASK)) == 0 && type <= SS_RIGHT;
}

} // namespace

DialogFont::DialogFont() {
    alignas(DWORD) EmptyTemplate form;
    std::copy(std::begin(FONT_FACE), std::end(FONT_FACE), form.face);
    const auto silent = [](HWND, UINT, WPARAM, LPARAM) -> INT_PTR { return FALSE; };
    m_dialog =
        CreateDialogIndirectParamW(GetModuleHandleW(nullptr), &form.head, nullptr, silent, 0);
    if (m_dialog == nullptr) {
        throw std::runtime_error("no dialog to measure in (error " +
                                 std::to_string(GetLastError()) + ")");
    }
}

DialogFont::~DialogFont() {
    DestroyWindow(m_dialog);
}

std::optional<TextRoom> DialogFont::roomOf(const Control& control) const {
    const bool isStatic =
        control.isClass(WC_STATICW) && (control.style() & SS_TYPEMASK) <= SS_RIGHT;
    const bool isButton = control.isClass(WC_BUTTONW);
    const bool isCombo = control.isClass(WC_COMBOBOXW);
    const std::wstring text = control.text();
    if (!(isStatic || isButton || isCombo) || text.empty() || !IsWindowVisible(control.handle())) {
        return std::nullopt;
    }
    RECT client{};
    GetClientRect(control.handle(), &client);
    SIZE has{client.right, client.bottom};
    const auto dpi = static_cast<int>(GetDpiForWindow(m_dialog));
    if (isButton) {
        has.cx -= 2 * MulDiv(BUTTON_MARGIN, dpi, USER_DEFAULT_SCREEN_DPI);
        has.cy -= 2 * MulDiv(BUTTON_MARGIN, dpi, USER_DEFAULT_SCREEN_DPI);
    } else if (isCombo) {
        has.cx -= GetSystemMetricsForDpi(SM_CXVSCROLL, static_cast<UINT>(dpi)) +
                  2 * MulDiv(COMBO_MARGIN, dpi, USER_DEFAULT_SCREEN_DPI);
    }

    const bool takesPrefix = isButton || (isStatic && (control.style() & SS_NOPREFIX) == 0);
    const UINT format = DT_CALCRECT | DT_EXPANDTABS | (takesPrefix ? 0U : DT_NOPREFIX) |
                        (isStatic && wraps(control) ? DT_WORDBREAK : DT_SINGLELINE);
    const HDC dc = GetDC(m_dialog);
    const HGDIOBJ before =
        SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(m_dialog, WM_GETFONT, 0, 0)));
    RECT used{0, 0, has.cx, 0};
    DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &used, format);
    SelectObject(dc, before);
    ReleaseDC(m_dialog, dc);
    return TextRoom{has, {used.right - used.left, used.bottom - used.top}};
}

} // namespace dialogprobe
