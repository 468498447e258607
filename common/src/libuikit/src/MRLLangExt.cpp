#include <libUikit/MRLLangExt.h>

#include <libUikit/PngControl.h>
#include <libUikit/UiLanguage.h>

#include "Density.h"
#include "DialogKeys.h"
#include "LanguageFont.h"
#include "NameList.h"
#include "ReadingOrder.h"
#include "Subclass.h"
#include "TextFit.h"

#include <cstdlib>
#include <deque>
#include <utility>
#include <vector>

using libUikit::FittedText;
using libUikit::isMirrored;
using libUikit::Subclass;

namespace {

constexpr auto MIRRORED = static_cast<DWORD>(WS_EX_LAYOUTRTL);

void setMirrored(HWND window) {
    SetWindowLongPtrW(window, GWL_EXSTYLE, GetWindowLongPtrW(window, GWL_EXSTYLE) | MIRRORED);
}

// Mirrors a dialog that has its controls already: each gets the same place again, which is then
// counted from the other side.
void mirror(HWND dialog) {
    std::vector<std::pair<HWND, RECT>> controls;
    for (HWND control = GetWindow(dialog, GW_CHILD); control != nullptr;
         control = GetWindow(control, GW_HWNDNEXT)) {
        RECT place{};
        GetWindowRect(control, &place);
        MapWindowPoints(nullptr, dialog, reinterpret_cast<LPPOINT>(&place), 2);
        controls.emplace_back(control, place);
    }
    setMirrored(dialog);
    for (const auto& [control, place] : controls) {
        setMirrored(control);
        COMBOBOXINFO combo{};
        combo.cbSize = sizeof combo;
        if (GetComboBoxInfo(control, &combo) && combo.hwndList != nullptr) {
            setMirrored(combo.hwndList);
        }
        // The height stays: a combo box would take it for that of its open list.
        SetWindowPos(control, nullptr, place.left, place.top, 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
    }
    SetWindowPos(dialog, nullptr, 0, 0, 0, 0,
                 SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
}

// For functions that Windows calls, which must not throw. Only memory can run out, and then a text
// stays as it is.
template <class Body>
void quietly(Body body) {
    try {
        body();
    } catch (...) {
    }
}

// A control whose text is fitted whenever it changes.
class TextControl {
public:
    TextControl(HWND control, const LOGFONTW& font)
        : m_text(control, font), m_messages(control, onMessage, this) {}

    void setFont(const LOGFONTW& font) {
        m_text.setFont(font);
        m_text.fit();
    }

private:
    static LRESULT CALLBACK onMessage(HWND control, UINT message, WPARAM wParam, LPARAM lParam,
                                      UINT_PTR, DWORD_PTR owner) {
        auto* const self = reinterpret_cast<TextControl*>(owner);
        if (message == WM_SETTEXT && isName(control)) {
            quietly([&] { lParam = self->showName(lParam); });
        }
        if (const std::wstring& name = self->m_name; !name.empty()) {
            if (message == WM_GETTEXTLENGTH) {
                return static_cast<LRESULT>(name.size());
            }
            if (message == WM_GETTEXT && wParam > 0) {
                const std::size_t length =
                    name.copy(reinterpret_cast<wchar_t*>(lParam), wParam - 1);
                reinterpret_cast<wchar_t*>(lParam)[length] = L'\0';
                return static_cast<LRESULT>(length);
            }
        }
        const LRESULT result = isMirrored(control) && FittedText::isTextStatic(control)
                                   ? mirrored(control, message, wParam, lParam)
                                   : DefSubclassProc(control, message, wParam, lParam);
        if (message == WM_SETTEXT || message == WM_SIZE) {
            if (message == WM_SIZE) {
                InvalidateRect(control, nullptr, TRUE);
            }
            quietly([&] { self->m_text.fit(); });
        }
        return result;
    }

    static bool isName(HWND control) {
        return (GetWindowLongPtrW(control, GWL_STYLE) & SS_NOPREFIX) != 0 &&
               FittedText::isTextStatic(control);
    }

    // Keeps a name that cannot be shown as it is. \return the text for the control
    LPARAM showName(LPARAM set) {
        m_name.clear();
        if (set == 0) {
            return set;
        }
        const std::wstring name(reinterpret_cast<const wchar_t*>(set));
        m_shown = libUikit::shownName(name);
        if (m_shown == name) {
            return set;
        }
        m_name = name;
        return reinterpret_cast<LPARAM>(m_shown.c_str());
    }

    // The control itself does not get messages on which it would draw.
    static LRESULT mirrored(HWND control, UINT message, WPARAM wParam, LPARAM lParam) {
        switch (message) {
        case WM_PAINT:
        case WM_PRINTCLIENT:
            quietly([&] { libUikit::paintMirroredText(control, reinterpret_cast<HDC>(wParam)); });
            return 0;
        case WM_ERASEBKGND:
            return TRUE; // painting covers everything
        case WM_SETTEXT:
        case WM_ENABLE:
            InvalidateRect(control, nullptr, TRUE);
            return DefWindowProcW(control, message, wParam, lParam);
        default:
            return DefSubclassProc(control, message, wParam, lParam);
        }
    }

    FittedText m_text;
    std::wstring m_name;  // with control characters; empty for any other text
    std::wstring m_shown; // the same made visible
    Subclass m_messages;
};

} // namespace

class MRLLangExt::Impl {
public:
    explicit Impl(HWND dialog)
        : m_keys(dialog), m_density(dialog), m_icons(dialog),
          m_font(libUikit::fontForLanguage(fontOf(dialog), libUikit::uiLanguage())),
          m_fullHeight(m_font.lfHeight), m_messages(dialog, onDialogMessage, this) {
        EnumChildWindows(dialog, addChild, reinterpret_cast<LPARAM>(this));
        useFont();
    }
    void showNames(HWND list) { m_nameLists.emplace_back(list); }

    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;
    ~Impl() = default;

private:
    // The dialog's font, its height as that of the letters.
    static LOGFONTW fontOf(HWND window) {
        auto font = reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0));
        if (font == nullptr) {
            font = static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
        }
        LOGFONTW properties{};
        GetObjectW(font, sizeof properties, &properties);
        const HDC dc = GetDC(window);
        const HGDIOBJ before = SelectObject(dc, font);
        TEXTMETRICW metrics{};
        if (GetTextMetricsW(dc, &metrics)) {
            properties.lfHeight = -(metrics.tmHeight - metrics.tmInternalLeading);
        }
        SelectObject(dc, before);
        ReleaseDC(window, dc);
        return properties;
    }

    static BOOL CALLBACK addChild(HWND child, LPARAM self) {
        reinterpret_cast<Impl*>(self)->add(child);
        return TRUE;
    }

    void add(HWND child) {
        const CWnd* const object = CWnd::FromHandlePermanent(child);
        if (dynamic_cast<const PngControl*>(object) != nullptr) {
            return; // its text is a name and never shown
        }
        if (!FittedText::canFit(child)) {
            m_others.push_back(child);
            return;
        }
        m_texts.emplace_back(child, m_font);
    }

    // Every control in the font, and the texts as they fit.
    void useFont() {
        const std::shared_ptr<const libUikit::Font> font = GdiResourceManager::font(m_font);
        if (font == nullptr) {
            return; // no memory: the template's font stays
        }
        for (const HWND control : m_others) {
            SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font->handle()), TRUE);
        }
        m_full = font;
        for (TextControl& text : m_texts) {
            text.setFont(m_font);
        }
    }

    void changeDpi(UINT dpi, const RECT& window) {
        m_density.change(dpi, window);
        m_font.lfHeight = m_density.scaled(m_fullHeight);
        useFont();
        m_density.scaleLines();
        m_icons.fit(dpi);
    }

    static LRESULT CALLBACK onDialogMessage(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam,
                                            UINT_PTR, DWORD_PTR owner) {
        auto* const self = reinterpret_cast<Impl*>(owner);
        if (message == WM_SETICON) {
            return self->m_icons.set(wParam, reinterpret_cast<HICON>(lParam));
        }
        const LRESULT result = DefSubclassProc(dialog, message, wParam, lParam);
        if (message == WM_DPICHANGED) {
            const RECT& window = *reinterpret_cast<const RECT*>(lParam);
            quietly([&] { self->changeDpi(HIWORD(wParam), window); });
        }
        return result;
    }

    libUikit::DialogKeys m_keys;
    libUikit::Density m_density;
    libUikit::WindowIcons m_icons;
    LOGFONTW m_font{};
    LONG m_fullHeight; // of the font, at the first density
    std::shared_ptr<const libUikit::Font> m_full;
    std::deque<TextControl> m_texts; // a deque: their addresses must not change
    std::vector<HWND> m_others;
    std::deque<libUikit::NameList> m_nameLists;
    Subclass m_messages;
};

MRLLangExt::MRLLangExt() = default;

MRLLangExt::~MRLLangExt() = default;

void MRLLangExt::PreSubclassWindow(CWnd* dialog) {
    if (libUikit::isRightToLeft(libUikit::uiLanguage())) {
        // Controls inherit it from a dialog that has it when they are created.
        dialog->ModifyStyleEx(0, MIRRORED);
    }
}

void MRLLangExt::ShowsNames(const CComboBox& list) {
    m_impl->showNames(list.m_hWnd);
    COMBOBOXINFO parts{};
    parts.cbSize = sizeof parts;
    if (!isMirrored(list.m_hWnd) || !GetComboBoxInfo(list.m_hWnd, &parts)) {
        return;
    }
    for (const HWND part : {list.m_hWnd, parts.hwndList}) {
        // In mirrored windows the style says the opposite of its name.
        SetWindowLongPtrW(part, GWL_EXSTYLE,
                          GetWindowLongPtrW(part, GWL_EXSTYLE) | WS_EX_RTLREADING);
    }
}

void MRLLangExt::OnInitDialog(CWnd* dialog) {
    // Not every system allows the style to be changed in PreSubclassWindow().
    if (libUikit::isRightToLeft(libUikit::uiLanguage()) && !isMirrored(dialog->m_hWnd)) {
        mirror(dialog->m_hWnd);
    }
    m_impl = std::make_unique<Impl>(dialog->m_hWnd);
}
