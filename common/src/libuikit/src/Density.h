// A dialog on screens of different densities (DPI): its layout and its icons.
#pragma once

#include <windows.h>

#include <array>
#include <vector>

namespace libUikit {

/// The controls of a dialog, which keep their places in proportion when the window comes to a
/// screen of another density. The layout at the first density is the measure: a way there and back
/// changes nothing.
class Density {
public:
    /// Switches off that Windows' dialog manager scales `dialog` by itself, where it does.
    /// Platform: SetDialogDpiChangeBehavior (Windows 10 1703 and later)
    explicit Density(HWND dialog);

    /// Gives the dialog the place `window` and its controls those of `dpi`.
    void change(UINT dpi, const RECT& window);
    /// Gives lists their line height. Called after fonts have been set, which change it.
    void scaleLines() const;
    /// A length of the first density at the present one.
    int scaled(int length) const;

private:
    struct Control {
        HWND window;
        RECT place; // in the dialog; a combo box's with its open list
        int lines;  // height of a combo box's lines; 0 for other controls
    };
    void remember();

    HWND m_dialog;
    UINT m_first;
    UINT m_now;
    std::vector<Control> m_controls; // empty until the first change
};

/// A window's icons in the sizes of its density, taken from the resource that the given icon comes
/// from rather than scaled from it.
class WindowIcons {
public:
    explicit WindowIcons(HWND window) : m_window(window) {}
    WindowIcons(const WindowIcons&) = delete;
    WindowIcons& operator=(const WindowIcons&) = delete;
    ~WindowIcons();

    /// Handles WM_SETICON. \return its result, the icon that was given before
    LRESULT set(WPARAM kind, HICON icon);
    /// Chooses the sizes again, for a density.
    void fit(UINT dpi);

private:
    struct Icon {
        HICON given = nullptr;
        HICON copy = nullptr; // shown in its place; owned
    };
    void show(WPARAM kind, UINT dpi);

    HWND m_window;
    std::array<Icon, 2> m_icons; // by ICON_SMALL and ICON_BIG
};

} // namespace libUikit
