// Connects windows with their objects, and messages with the objects' handlers.
#pragma once

#include <afxwin.h>

LRESULT CALLBACK AfxWndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

/// The library's access to private members of CWnd.
class AfxWindowAccess {
public:
    /// Calls PreSubclassWindow(), then routes the window's messages to `object`.
    static void takeMessages(CWnd& object) { object.takeMessages(); }
    static LRESULT handle(CWnd& object, UINT message, WPARAM wParam, LPARAM lParam) {
        return object.WindowProc(message, wParam, lParam);
    }
    static void markTemporary(CWnd& object) { object.m_temporary = true; }
};

namespace afx {

/// While it lives, the first window that the thread creates becomes `object`'s.
class CreationHook {
public:
    explicit CreationHook(CWnd& object);
    CreationHook(const CreationHook&) = delete;
    CreationHook& operator=(const CreationHook&) = delete;
    ~CreationHook();

    /// Whether there is a hook; without one the window would not become `object`'s.
    bool isSet() const { return m_hook != nullptr; }

private:
    HHOOK m_hook = nullptr;
};

} // namespace afx
