// Objects and handles: the maps, attaching, subclassing, creation and the end.
#include <afxwin.h>

#include "ThreadState.h"
#include "WindowProcedure.h"

#include <utility>

CWnd::CWnd() = default;

CWnd::~CWnd() {
    if (m_hWnd != nullptr && !m_temporary) {
        // Not the virtual function: overrides are gone by now.
        if (FromHandlePermanent(m_hWnd) == this) {
            ::DestroyWindow(m_hWnd);
        }
        if (m_hWnd != nullptr) {
            Detach(); // a window of another thread, which this one cannot destroy
        }
    }
}

CWnd* CWnd::FromHandlePermanent(HWND hWnd) {
    const auto& map = afx::threadState().permanent;
    const auto found = map.find(hWnd);
    return found == map.end() ? nullptr : found->second;
}

CWnd* CWnd::FromHandle(HWND hWnd) {
    if (hWnd == nullptr) {
        return nullptr;
    }
    if (CWnd* const permanent = FromHandlePermanent(hWnd)) {
        return permanent;
    }
    std::unique_ptr<CWnd>& temporary = afx::threadState().temporary[hWnd];
    if (temporary == nullptr) {
        temporary = std::make_unique<CWnd>();
        temporary->m_hWnd = hWnd;
        AfxWindowAccess::markTemporary(*temporary);
    }
    return temporary.get();
}

void CWnd::DeleteTempMap() {
    afx::threadState().temporary.clear();
}

BOOL CWnd::Attach(HWND hWndNew) {
    if (hWndNew == nullptr || FromHandlePermanent(hWndNew) != nullptr) {
        return FALSE;
    }
    afx::threadState().permanent[hWndNew] = this;
    m_hWnd = hWndNew;
    return TRUE;
}

HWND CWnd::Detach() {
    const HWND window = std::exchange(m_hWnd, nullptr);
    auto& map = afx::threadState().permanent;
    if (const auto found = map.find(window); found != map.end() && found->second == this) {
        map.erase(found);
    }
    return window;
}

void CWnd::takeMessages() {
    PreSubclassWindow();
    const auto before = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(m_hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&AfxWndProc)));
    if (before != &AfxWndProc) {
        m_super = before;
    }
}

void CWnd::PreSubclassWindow() {}

BOOL CWnd::SubclassWindow(HWND hWnd) {
    if (!Attach(hWnd)) {
        return FALSE;
    }
    takeMessages();
    return TRUE;
}

HWND CWnd::UnsubclassWindow() {
    // Not restored when another subclass was installed after ours: it still calls AfxWndProc, which
    // calls DefWindowProc() for a window without an object.
    if (m_super != nullptr &&
        GetWindowLongPtrW(m_hWnd, GWLP_WNDPROC) == reinterpret_cast<LONG_PTR>(&AfxWndProc)) {
        SetWindowLongPtrW(m_hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(m_super));
    }
    m_super = nullptr;
    return Detach();
}

BOOL CWnd::CreateEx(DWORD dwExStyle, LPCTSTR lpszClassName, LPCTSTR lpszWindowName, DWORD dwStyle,
                    int x, int y, int nWidth, int nHeight, HWND hWndParent, HMENU nIDorHMenu,
                    LPVOID lpParam) {
    HWND window = nullptr;
    {
        const afx::CreationHook hook(*this);
        if (!hook.isSet()) {
            return FALSE;
        }
        // ERROR_CANNOT_FIND_WND_CLASS, ERROR_INVALID_WINDOW_HANDLE, ERROR_TLW_WITH_WSCHILD, memory
        window =
            CreateWindowExW(dwExStyle, lpszClassName, lpszWindowName, dwStyle, x, y, nWidth,
                            nHeight, hWndParent, nIDorHMenu, GetModuleHandleW(nullptr), lpParam);
    }
    if (afx::threadState().pending != nullptr && window != nullptr) {
        ::DestroyWindow(window);
    }
    afx::rethrowPending();
    return window != nullptr;
}

BOOL CWnd::DestroyWindow() {
    return m_hWnd != nullptr && ::DestroyWindow(m_hWnd);
}
