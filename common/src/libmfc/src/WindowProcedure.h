// Brings windows and their objects together, and messages from Windows to the objects.
#pragma once

#include <afxwin.h>

LRESULT CALLBACK AfxWndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

/// The library's way to what CWnd and CDialog keep to themselves.
class AfxWindowAccess {
public:
    /// PreSubclassWindow(), then the window's messages come to `object`.
    static void takeMessages(CWnd& object) { object.takeMessages(); }
    static LRESULT handle(CWnd& object, UINT message, WPARAM wParam, LPARAM lParam) {
        return object.WindowProc(message, wParam, lParam);
    }
    static void markTemporary(CWnd& object) { object.m_temporary = true; }
};

namespace afx {

/// While it lives, the first window that the thread creates becomes `object`'s. What waits for the
/// process's or the thread's first window is done before.
class CreationHook {
public:
    explicit CreationHook(CWnd& object);
    CreationHook(const CreationHook&) = delete;
    CreationHook& operator=(const CreationHook&) = delete;
    ~CreationHook();

    /// Whether there is a hook; without one the window would stay foreign, or lack what it needs.
    bool isSet() const { return m_hook != nullptr; }

private:
    HHOOK m_hook = nullptr;
};

} // namespace afx
