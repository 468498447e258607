#include "ReadingOrder.h"

#include "TextFit.h"

#include <algorithm>
#include <sstream>
#include <vector>

namespace libUikit {

namespace {

// Directional characters put before a line when it is drawn, not in the control's text. They apply
// to the end of the line.
constexpr wchar_t FROM_LEFT = L'\u202a';
constexpr wchar_t FROM_RIGHT = L'\u202b';

// The format of DrawTextW for a line in the style of a static text. In a mirrored device context
// the left is the side that reading begins at.
UINT formatOf(HWND control, DWORD style) {
    UINT format = DT_EXPANDTABS | DT_SINGLELINE;
    format |= (style & SS_TYPEMASK) == SS_CENTER  ? DT_CENTER
              : (style & SS_TYPEMASK) == SS_RIGHT ? DT_RIGHT
                                                  : DT_LEFT;
    format |= (style & SS_CENTERIMAGE) != 0 ? DT_VCENTER : DT_TOP;
    format |= (style & SS_ELLIPSISMASK) != 0 ? DT_END_ELLIPSIS : 0U;
    if ((style & SS_NOPREFIX) != 0) {
        format |= DT_NOPREFIX;
    } else if ((SendMessageW(control, WM_QUERYUISTATE, 0, 0) & UISF_HIDEACCEL) != 0) {
        format |= DT_HIDEPREFIX;
    }
    return format;
}

// The lines of a text that wraps at blanks, each as long as `width` allows.
std::vector<std::wstring> wrapped(HDC dc, const std::wstring& text, LONG width, UINT format) {
    std::vector<std::wstring> lines;
    std::wistringstream paragraphs(text);
    for (std::wstring paragraph; std::getline(paragraphs, paragraph);) {
        std::wistringstream words(paragraph);
        std::wstring line;
        for (std::wstring word; std::getline(words, word, L' ');) {
            std::wstring longer = line;
            if (!longer.empty()) {
                longer += L' ';
            }
            longer += word;
            RECT used{};
            DrawTextW(dc, longer.c_str(), static_cast<int>(longer.size()), &used,
                      format | DT_CALCRECT);
            if (used.right > width && !line.empty()) {
                lines.push_back(line);
                line = word;
            } else {
                line = longer;
            }
        }
        lines.push_back(line);
    }
    return lines;
}

void drawText(HWND control, HDC dc, const RECT& client) {
    const std::wstring text = textOf(control);
    const auto style = static_cast<DWORD>(GetWindowLongPtrW(control, GWL_STYLE));
    const UINT format = formatOf(control, style);
    const wchar_t begin = isReadFromRight(text, style) ? FROM_RIGHT : FROM_LEFT;
    TEXTMETRICW metrics{};
    GetTextMetricsW(dc, &metrics);
    RECT place = client;
    for (const std::wstring& line : isOneLine(style) ? std::vector<std::wstring>{text}
                                                     : wrapped(dc, text, client.right, format)) {
        const std::wstring drawn = line.empty() ? line : begin + line;
        DrawTextW(dc, drawn.c_str(), static_cast<int>(drawn.size()), &place, format);
        place.top += metrics.tmHeight;
    }
}

void paint(HWND control, HDC dc) {
    RECT client{};
    GetClientRect(control, &client);
    const auto font = reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0));
    const HGDIOBJ fontBefore = font == nullptr ? nullptr : SelectObject(dc, font);
    const auto background = reinterpret_cast<HBRUSH>(
        SendMessageW(GetParent(control), WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc),
                     reinterpret_cast<LPARAM>(control)));
    FillRect(dc, &client, background != nullptr ? background : GetSysColorBrush(COLOR_3DFACE));
    if (!IsWindowEnabled(control)) {
        SetTextColor(dc, GetSysColor(COLOR_GRAYTEXT));
    }
    drawText(control, dc, client);
    if (fontBefore != nullptr) {
        SelectObject(dc, fontBefore);
    }
}

} // namespace

bool isMirrored(HWND window) {
    return (static_cast<DWORD>(GetWindowLongPtrW(window, GWL_EXSTYLE)) &
            static_cast<DWORD>(WS_EX_LAYOUTRTL)) != 0;
}

bool isReadFromRight(const std::wstring& text, DWORD style) {
    if ((style & SS_NOPREFIX) == 0) {
        return true;
    }
    std::vector<WORD> types(text.size());
    // FALSE for an empty text, which has no letter
    if (!GetStringTypeW(CT_CTYPE2, text.c_str(), static_cast<int>(text.size()), types.data())) {
        return false;
    }
    const auto first = std::find_if(types.begin(), types.end(), [](WORD type) {
        return type == C2_LEFTTORIGHT || type == C2_RIGHTTOLEFT;
    });
    return first != types.end() && *first == C2_RIGHTTOLEFT;
}

void paintMirroredText(HWND control, HDC dc) {
    if (dc != nullptr) {
        paint(control, dc);
        return;
    }
    PAINTSTRUCT state{};
    paint(control, BeginPaint(control, &state));
    EndPaint(control, &state);
}

} // namespace libUikit
