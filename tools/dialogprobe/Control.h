// A window of another process: what it shows, and what a person does to it.
#pragma once

#include <mrl/Json.h>

#include <windows.h>

#include <string>
#include <vector>

namespace dialogprobe {

/// Every question is a window message that waits at most 30 s for its answer, and then throws
/// std::runtime_error: a dialog that does not answer must not make its observer hang as well.
/// What a person would do is posted instead, so that the dialog sees it in its message loop.
class Control {
public:
    explicit Control(HWND window) : m_window(window) {}

    /// The children of `dialog`, in the order of the Tab key.
    static std::vector<Control> allOf(HWND dialog);

    HWND handle() const { return m_window; }
    int id() const { return GetDlgCtrlID(m_window); }
    std::wstring className() const;
    bool isClass(const wchar_t* name) const;
    DWORD style() const { return static_cast<DWORD>(GetWindowLongPtrW(m_window, GWL_STYLE)); }
    std::wstring text() const;
    /// Id, class, text, state, style and place on the screen; a combo box with its entries and its
    /// selection, a progress bar with its position and its range.
    mrl::Json description() const;
    /// The window of its thread that has the keyboard, or null.
    HWND focus() const;

    /// Pushes a button; presses and releases the left mouse button in the middle of the rest.
    void click() const;
    /// Selects an entry of a combo box and notifies its dialog. \param index from 0
    void select(int index) const;
    /// Presses and releases a key.
    void key(WPARAM virtualKey) const;

    LRESULT send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;
    void post(UINT message, WPARAM wParam, LPARAM lParam) const;

private:
    HWND m_window;
};

} // namespace dialogprobe
