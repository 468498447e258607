#include "NameList.h"

#include <mrl/Unicode.h>

namespace libUikit {

std::wstring shownName(const std::wstring& text) {
    return mrl::toUtf16(mrl::escapeControls(mrl::toUtf8(text)));
}

NameList::NameList(HWND list) : m_list(list), m_messages(list, onMessage, this) {}

LRESULT CALLBACK NameList::onMessage(HWND list, UINT message, WPARAM wParam, LPARAM lParam,
                                     UINT_PTR, DWORD_PTR self) {
    try {
        return reinterpret_cast<NameList*>(self)->handle(message, wParam, lParam);
    } catch (...) { // memory is short: the list is then as it would be without the kit
        return DefSubclassProc(list, message, wParam, lParam);
    }
}

LRESULT NameList::handle(UINT message, WPARAM wParam, LPARAM lParam) {
    const auto* const name = reinterpret_cast<const wchar_t*>(lParam);
    switch (message) {
    case CB_ADDSTRING:
    case CB_INSERTSTRING:
        return insert(message, wParam, name);
    case CB_RESETCONTENT:
        m_names.clear();
        break;
    case CB_DELETESTRING:
        if (wParam < m_names.size()) {
            m_names.erase(m_names.begin() + static_cast<std::ptrdiff_t>(wParam));
        }
        break;
    case CB_SELECTSTRING:
    case CB_FINDSTRING:
    case CB_FINDSTRINGEXACT: {
        const std::wstring shown = shownName(name);
        return DefSubclassProc(m_list, message, wParam, reinterpret_cast<LPARAM>(shown.c_str()));
    }
    case CB_GETLBTEXTLEN:
    case CB_GETLBTEXT:
        if (wParam < m_names.size()) {
            if (message == CB_GETLBTEXT) {
                m_names[wParam].copy(reinterpret_cast<wchar_t*>(lParam), m_names[wParam].size());
                reinterpret_cast<wchar_t*>(lParam)[m_names[wParam].size()] = L'\0';
            }
            return static_cast<LRESULT>(m_names[wParam].size());
        }
        break;
    case WM_PAINT: {
        const LRESULT result = DefSubclassProc(m_list, message, wParam, lParam);
        paintEmpty();
        return result;
    }
    default:
        break;
    }
    return DefSubclassProc(m_list, message, wParam, lParam);
}

LRESULT NameList::insert(UINT message, WPARAM wParam, const std::wstring& name) {
    m_names.reserve(m_names.size() + 1); // nothing below fails for lack of memory
    std::wstring kept = name;
    const std::wstring shown = shownName(name);
    const LRESULT index =
        DefSubclassProc(m_list, message, wParam, reinterpret_cast<LPARAM>(shown.c_str()));
    if (index >= 0) { // else CB_ERR, CB_ERRSPACE
        m_names.insert(m_names.begin() + index, std::move(kept));
    }
    return index;
}

// Some systems paint the selected entry, and the place of one, in the colour of selections.
void NameList::paintEmpty() const {
    COMBOBOXINFO parts{};
    parts.cbSize = sizeof parts;
    if (!m_names.empty() || GetFocus() != m_list || !GetComboBoxInfo(m_list, &parts)) {
        return;
    }
    const HDC dc = GetDC(m_list);
    const RECT& item = parts.rcItem;
    const COLORREF painted =
        GetPixel(dc, (item.left + item.right) / 2, (item.top + item.bottom) / 2);
    if (painted == GetSysColor(COLOR_HIGHLIGHT)) {
        FillRect(dc, &item, GetSysColorBrush(COLOR_WINDOW));
        SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
        SetBkColor(dc, GetSysColor(COLOR_WINDOW));
        DrawFocusRect(dc, &item);
    }
    ReleaseDC(m_list, dc);
}

} // namespace libUikit
