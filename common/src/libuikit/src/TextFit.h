// Texts of static controls and buttons, fitted into their controls.
#pragma once

#include <libUikit/GdiResourceManager.h>

#include <memory>
#include <string>

namespace libUikit {

/// The text that the control shows. WM_GETTEXT gives a name with its control characters.
/// Platform: InternalGetWindowText
std::wstring textOf(HWND control);

/// Whether a static text with this style keeps its text on one line; others wrap it.
constexpr bool isOneLine(DWORD style) {
    const DWORD type = style & SS_TYPEMASK;
    return (style & (SS_CENTERIMAGE | SS_ELLIPSISMASK)) != 0 || type == SS_SIMPLE ||
           type == SS_LEFTNOWORDWRAP;
}

/// A control, its own style and the font for texts that fit.
class FittedText {
public:
    /// Whether `control` is one whose text this class can fit: a text static or a button.
    static bool canFit(HWND control);
    /// Whether `control` is a static that shows a text.
    static bool isTextStatic(HWND control);

    FittedText(HWND control, const LOGFONTW& font);

    /// Sets the font for texts that fit.
    void setFont(const LOGFONTW& font);
    /// Gives the control the largest font, and wrapping or not, with which its present text fits;
    /// and its own style back when it fits without help. A control that changes by that is drawn
    /// again; a text and a room that were fitted last time are not even measured.
    void fit();

private:
    void measure(const std::wstring& text, SIZE room);
    void apply(const std::shared_ptr<const Font>& font, DWORD style);

    HWND m_control;
    bool m_isStatic;
    DWORD m_style; // its own
    LOGFONTW m_font;
    std::shared_ptr<const Font> m_applied;
    // What was fitted last, in the font above.
    std::wstring m_fitted;
    SIZE m_room{-1, -1};
};

} // namespace libUikit
