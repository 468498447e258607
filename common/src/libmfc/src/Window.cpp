// The operations of a window object that call the Windows function of the same name.
#include <afxwin.h>

LRESULT CWnd::SendMessage(UINT message, WPARAM wParam, LPARAM lParam) const {
    return ::SendMessageW(m_hWnd, message, wParam, lParam);
}

BOOL CWnd::PostMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    return ::PostMessageW(m_hWnd, message, wParam, lParam);
}

BOOL CWnd::PreTranslateMessage(MSG*) {
    return FALSE;
}

BOOL CWnd::ModifyStyleEx(DWORD dwRemove, DWORD dwAdd, UINT nFlags) {
    const auto before = static_cast<DWORD>(GetWindowLongPtrW(m_hWnd, GWL_EXSTYLE));
    const DWORD after = (before & ~dwRemove) | dwAdd;
    if (after == before) {
        return FALSE;
    }
    SetWindowLongPtrW(m_hWnd, GWL_EXSTYLE, static_cast<LONG_PTR>(after));
    if (nFlags != 0) {
        ::SetWindowPos(m_hWnd, nullptr, 0, 0, 0, 0,
                       SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | nFlags);
    }
    return TRUE;
}

int CWnd::GetDlgCtrlID() const {
    return ::GetDlgCtrlID(m_hWnd);
}

BOOL CWnd::EnableWindow(BOOL bEnable) {
    return ::EnableWindow(m_hWnd, bEnable);
}

BOOL CWnd::IsWindowEnabled() const {
    return ::IsWindowEnabled(m_hWnd);
}

CWnd* CWnd::SetFocus() {
    return FromHandle(::SetFocus(m_hWnd));
}

CWnd* CWnd::GetFocus() {
    return FromHandle(::GetFocus());
}

BOOL CWnd::ShowWindow(int nCmdShow) {
    return ::ShowWindow(m_hWnd, nCmdShow);
}

BOOL CWnd::IsIconic() const {
    return ::IsIconic(m_hWnd);
}

HICON CWnd::SetIcon(HICON hIcon, BOOL bBigIcon) {
    return reinterpret_cast<HICON>(
        SendMessage(WM_SETICON, bBigIcon ? ICON_BIG : ICON_SMALL, reinterpret_cast<LPARAM>(hIcon)));
}

void CWnd::SetWindowText(LPCTSTR lpszString) {
    ::SetWindowTextW(m_hWnd, lpszString);
}

void CWnd::GetClientRect(LPRECT lpRect) const {
    ::GetClientRect(m_hWnd, lpRect);
}

void CWnd::Invalidate(BOOL bErase) {
    ::InvalidateRect(m_hWnd, nullptr, bErase);
}

void CWnd::UpdateWindow() {
    ::UpdateWindow(m_hWnd);
}

UINT_PTR CWnd::SetTimer(UINT_PTR nIDEvent, UINT nElapse,
                        void(CALLBACK* lpfnTimer)(HWND, UINT, UINT_PTR, DWORD)) {
    return ::SetTimer(m_hWnd, nIDEvent, nElapse, lpfnTimer);
}

BOOL CWnd::KillTimer(UINT_PTR nIDEvent) {
    return ::KillTimer(m_hWnd, nIDEvent);
}

CWnd* CWnd::GetDlgItem(int nID) const {
    return FromHandle(::GetDlgItem(m_hWnd, nID));
}

void CWnd::SetDlgItemText(int nID, LPCTSTR lpszString) {
    ::SetDlgItemTextW(m_hWnd, nID, lpszString);
}
