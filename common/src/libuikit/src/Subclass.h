// The way into a window procedure that is not ours. comctl32's own (SetWindowSubclass) keeps its
// notes as window properties and looks them up thrice for each message, which are calls of the
// system: of a dialog that paints a few texts they made nearly half of the work.
#pragma once

#include <windows.h>

namespace libUikit {

/// While it lives, each message of a window of this thread goes to a handler, which passes it on or
/// does not. Several for one window hand on to each other, the latest first. The window may end
/// first: the handler sees WM_NCDESTROY, and nothing after that.
///
/// Whoever replaces the window procedure meanwhile and calls the one that was there is served as
/// long as the window lives.
///
/// Threads: the window's. Platform: SetWindowLongPtrW
class Subclass {
public:
    /// Called below frames of Windows: must not throw. `owner` is the constructor's. After pass()
    /// of a message that ends the window, `self` and `owner` may be gone.
    using Handler = LRESULT (*)(const Subclass& self, void* owner, UINT message, WPARAM wParam,
                                LPARAM lParam);

    Subclass(HWND window, Handler handler, void* owner);
    Subclass(const Subclass&) = delete;
    Subclass& operator=(const Subclass&) = delete;
    ~Subclass();

    HWND window() const { return m_window; }
    /// Lets the next handler, or else the window, have the message.
    LRESULT pass(UINT message, WPARAM wParam, LPARAM lParam) const;

private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    HWND m_window;
    Handler m_handler;
    void* m_owner;
};

} // namespace libUikit
