#include "Density.h"

#include <mrl/SystemLibrary.h>

#include <commctrl.h>

#include <utility>

namespace libUikit {

namespace {

bool isComboBox(HWND control) {
    COMBOBOXINFO parts{};
    parts.cbSize = sizeof parts;
    return GetComboBoxInfo(control, &parts) != FALSE;
}

int sideOf(HICON icon) {
    ICONINFO parts{};
    BITMAP mask{};
    if (!GetIconInfo(icon, &parts)) {
        return 0;
    }
    GetObjectW(parts.hbmMask, sizeof mask, &mask);
    DeleteObject(parts.hbmMask);
    DeleteObject(parts.hbmColor);
    return mask.bmWidth;
}

void destroy(HICON icon) {
    if (icon != nullptr) {
        DestroyIcon(icon);
    }
}

// \return the icon itself where it has that size or cannot be copied, or else a copy
HICON iconOfSide(HICON icon, int side) {
    if (icon == nullptr || sideOf(icon) == side) {
        return icon;
    }
    const HANDLE copy = CopyImage(icon, IMAGE_ICON, side, side, LR_COPYFROMRESOURCE);
    return copy != nullptr ? static_cast<HICON>(copy) : icon;
}

} // namespace

Density::Density(HWND dialog) : m_dialog(dialog), m_first(GetDpiForWindow(dialog)), m_now(m_first) {
    static const mrl::SystemLibrary user(L"user32.dll");
    static auto* const setBehavior =
        user.find<decltype(SetDialogDpiChangeBehavior)>("SetDialogDpiChangeBehavior");
    if (setBehavior != nullptr) {
        // ERROR_ACCESS_DENIED for a dialog of another process
        setBehavior(dialog, DDC_DISABLE_ALL, DDC_DISABLE_ALL);
    }
}

void Density::remember() {
    for (HWND control = GetWindow(m_dialog, GW_CHILD); control != nullptr;
         control = GetWindow(control, GW_HWNDNEXT)) {
        Control found{control, {}, 0};
        GetWindowRect(control, &found.place);
        if (isComboBox(control)) {
            SendMessageW(control, CB_GETDROPPEDCONTROLRECT, 0,
                         reinterpret_cast<LPARAM>(&found.place));
            found.lines = static_cast<int>(SendMessageW(control, CB_GETITEMHEIGHT, 0, 0));
        }
        MapWindowPoints(nullptr, m_dialog, reinterpret_cast<LPPOINT>(&found.place), 2);
        m_controls.push_back(found);
    }
}

int Density::scaled(int length) const {
    return MulDiv(length, static_cast<int>(m_now), static_cast<int>(m_first));
}

void Density::change(UINT dpi, const RECT& window) {
    if (m_controls.empty()) {
        remember();
    }
    m_now = dpi;
    SetWindowPos(m_dialog, nullptr, window.left, window.top, window.right - window.left,
                 window.bottom - window.top, SWP_NOZORDER | SWP_NOACTIVATE);
    for (const auto& [control, place, lines] : m_controls) {
        SetWindowPos(control, nullptr, scaled(place.left), scaled(place.top),
                     scaled(place.right - place.left), scaled(place.bottom - place.top),
                     SWP_NOZORDER | SWP_NOACTIVATE);
    }
}

void Density::scaleLines() const {
    for (const Control& control : m_controls) {
        if (control.lines != 0) {
            SendMessageW(control.window, CB_SETITEMHEIGHT, 0, scaled(control.lines));
        }
    }
}

WindowIcons::~WindowIcons() {
    for (const Icon& icon : m_icons) {
        destroy(icon.copy);
    }
}

LRESULT WindowIcons::set(WPARAM kind, HICON icon) {
    if (kind >= m_icons.size()) {
        return DefSubclassProc(m_window, WM_SETICON, kind, reinterpret_cast<LPARAM>(icon));
    }
    const HICON before = std::exchange(m_icons[kind].given, icon);
    show(kind, GetDpiForWindow(m_window));
    return reinterpret_cast<LRESULT>(before);
}

void WindowIcons::fit(UINT dpi) {
    for (const WPARAM kind : {WPARAM{ICON_SMALL}, WPARAM{ICON_BIG}}) {
        if (m_icons[kind].given != nullptr) {
            show(kind, dpi);
        }
    }
}

void WindowIcons::show(WPARAM kind, UINT dpi) {
    Icon& icon = m_icons[kind];
    const int side = GetSystemMetricsForDpi(kind == ICON_BIG ? SM_CXICON : SM_CXSMICON, dpi);
    const HICON shown = iconOfSide(icon.given, side);
    DefSubclassProc(m_window, WM_SETICON, kind, reinterpret_cast<LPARAM>(shown));
    destroy(std::exchange(icon.copy, shown != icon.given ? shown : nullptr));
}

} // namespace libUikit
