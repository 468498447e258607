// Windows whose messages the kit handles before they do.
#pragma once

#include <windows.h>

#include <commctrl.h>

namespace libUikit {

/// Calls `procedure` for each message of `window` for its own lifetime, with itself as the id and
/// `owner` as the reference data; it goes on with DefSubclassProc(). The window may end first.
///
/// `procedure` is called below frames of Windows and must not throw. When DefSubclassProc() has
/// ended the window, `owner` may be gone.
/// Threads: the window's. Platform: SetWindowSubclass, RemoveWindowSubclass
class Subclass {
public:
    Subclass(HWND window, SUBCLASSPROC procedure, void* owner)
        : m_window(window), m_procedure(procedure) {
        // FALSE when memory is short: the window is then as it would be without the kit
        SetWindowSubclass(window, procedure, id(), reinterpret_cast<DWORD_PTR>(owner));
    }
    Subclass(const Subclass&) = delete;
    Subclass& operator=(const Subclass&) = delete;
    ~Subclass() { RemoveWindowSubclass(m_window, m_procedure, id()); }

private:
    UINT_PTR id() const { return reinterpret_cast<UINT_PTR>(this); }

    HWND m_window;
    SUBCLASSPROC m_procedure;
};

} // namespace libUikit
