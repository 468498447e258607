#include "TextFit.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <utility>

namespace libUikit {

namespace {

// The smallest letters, as a part of the font's height.
constexpr int SMALLEST_NUMERATOR = 3;
constexpr int SMALLEST_DENOMINATOR = 5;

std::wstring classOf(HWND control) {
    wchar_t name[32]{};
    GetClassNameW(control, name, static_cast<int>(std::size(name)));
    return name;
}

bool isTextButton(HWND control) {
    if (_wcsicmp(classOf(control).c_str(), L"Button") != 0) {
        return false;
    }
    const auto style = GetWindowLongPtrW(control, GWL_STYLE);
    return (style & BS_TYPEMASK) != BS_OWNERDRAW && (style & (BS_ICON | BS_BITMAP)) == 0;
}

// The client area without a button's frame, check box or margin.
SIZE roomFor(HWND control, bool isStatic) {
    RECT client{};
    GetClientRect(control, &client);
    if (isStatic) {
        return {client.right, client.bottom};
    }
    const UINT dpi = GetDpiForWindow(control);
    const LONG unit = MulDiv(1, static_cast<int>(dpi != 0 ? dpi : 96), 96);
    switch (GetWindowLongPtrW(control, GWL_STYLE) & BS_TYPEMASK) {
    case BS_PUSHBUTTON:
    case BS_DEFPUSHBUTTON:
        return {client.right - 8 * unit, client.bottom - 4 * unit};
    default: // check boxes, radio buttons, group boxes
        return {client.right - 20 * unit, client.bottom};
    }
}

class Measure {
public:
    Measure(HWND control, const std::wstring& text, UINT format)
        : m_control(control), m_dc(GetDC(control)), m_text(text), m_format(format) {}
    Measure(const Measure&) = delete;
    Measure& operator=(const Measure&) = delete;
    ~Measure() { ReleaseDC(m_control, m_dc); }

    bool fits(const Font& font, SIZE room, bool wraps) const {
        const HGDIOBJ before = SelectObject(m_dc, font.handle());
        RECT used{0, 0, room.cx, 0};
        DrawTextW(m_dc, m_text.c_str(), static_cast<int>(m_text.size()), &used,
                  DT_CALCRECT | m_format | (wraps ? DT_WORDBREAK : DT_SINGLELINE));
        SelectObject(m_dc, before);
        return used.right - used.left <= room.cx && used.bottom - used.top <= room.cy;
    }

private:
    HWND m_control;
    HDC m_dc;
    const std::wstring& m_text;
    UINT m_format;
};

} // namespace

std::wstring textOf(HWND control) {
    std::wstring text(128, L'\0');
    for (;;) {
        const auto length = static_cast<std::size_t>(
            InternalGetWindowText(control, text.data(), static_cast<int>(text.size())));
        if (length + 1 < text.size()) {
            text.resize(length);
            return text;
        }
        text.resize(text.size() * 2);
    }
}

bool FittedText::isTextStatic(HWND control) {
    if (_wcsicmp(classOf(control).c_str(), L"Static") != 0) {
        return false;
    }
    const auto type = GetWindowLongPtrW(control, GWL_STYLE) & SS_TYPEMASK;
    return type == SS_LEFT || type == SS_CENTER || type == SS_RIGHT || type == SS_SIMPLE ||
           type == SS_LEFTNOWORDWRAP;
}

bool FittedText::canFit(HWND control) {
    return isTextStatic(control) || isTextButton(control);
}

FittedText::FittedText(HWND control, const LOGFONTW& font)
    : m_control(control), m_isStatic(isTextStatic(control)),
      m_style(static_cast<DWORD>(GetWindowLongPtrW(control, GWL_STYLE))), m_font(font) {}

void FittedText::setFont(const LOGFONTW& font) {
    m_font = font;
    m_room = {-1, -1};
}

void FittedText::fit() {
    std::wstring text = textOf(m_control);
    const SIZE room = roomFor(m_control, m_isStatic);
    if (room.cx == m_room.cx && room.cy == m_room.cy && text == m_fitted) {
        return;
    }
    measure(text, room);
    m_fitted = std::move(text);
    m_room = room;
}

void FittedText::measure(const std::wstring& text, SIZE room) {
    const bool oneLine = !m_isStatic || isOneLine(m_style);
    const bool mayWrap = m_isStatic && (m_style & SS_TYPEMASK) <= SS_RIGHT;
    const DWORD wrapping = m_style & ~static_cast<DWORD>(SS_CENTERIMAGE | SS_ELLIPSISMASK);
    const UINT format =
        DT_EXPANDTABS | (m_isStatic && (m_style & SS_NOPREFIX) != 0 ? DT_NOPREFIX : 0U);
    const Measure measured(m_control, text, format);

    LOGFONTW properties = m_font;
    const LONG full = std::abs(m_font.lfHeight);
    const LONG smallest = full * SMALLEST_NUMERATOR / SMALLEST_DENOMINATOR;
    std::shared_ptr<const Font> font;
    for (LONG height = full; height >= std::max(smallest, 1L); --height) {
        properties.lfHeight = -height;
        font = GdiResourceManager::font(properties);
        if (font == nullptr) {
            return; // no memory: the text stays as it is
        }
        if (oneLine && measured.fits(*font, room, false)) {
            apply(font, m_style);
            return;
        }
        if (mayWrap && measured.fits(*font, room, true)) {
            apply(font, oneLine ? wrapping : m_style);
            return;
        }
    }
    if (font != nullptr) {
        // Too long for any font: cut, with "..." at the end.
        apply(font, m_isStatic ? m_style | SS_ENDELLIPSIS : m_style);
    }
}

void FittedText::apply(const std::shared_ptr<const Font>& font, DWORD style) {
    // Only the bits that this class changes; visible and enabled may have changed since.
    constexpr DWORD OURS = SS_CENTERIMAGE | SS_ELLIPSISMASK;
    const auto now = static_cast<DWORD>(GetWindowLongPtrW(m_control, GWL_STYLE));
    const DWORD wanted = m_isStatic ? (now & ~OURS) | (style & OURS) : now;
    if (wanted != now) {
        SetWindowLongPtrW(m_control, GWL_STYLE, static_cast<LONG_PTR>(wanted));
    }
    const bool otherFont = font != m_applied;
    if (otherFont) {
        SendMessageW(m_control, WM_SETFONT, reinterpret_cast<WPARAM>(font->handle()), FALSE);
        m_applied = font;
    }
    // Otherwise the control has drawn the text as it is to be when it got it.
    if (otherFont || wanted != now) {
        InvalidateRect(m_control, nullptr, TRUE);
    }
}

} // namespace libUikit
