// From the window procedure to the handler of a message.
#include <afxwin.h>

#include "ThreadState.h"
#include "WindowProcedure.h"

namespace {

UINT mappedMessage(UINT message) {
    return message >= WM_CTLCOLORMSGBOX && message <= WM_CTLCOLORSTATIC ? afx::CTLCOLOR_MESSAGE
                                                                        : message;
}

} // namespace

BEGIN_MESSAGE_MAP(CWnd, CCmdTarget)
END_MESSAGE_MAP()

LRESULT CWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCDESTROY) {
        LRESULT ignored = 0;
        if (!OnWndMsg(message, wParam, lParam, &ignored)) {
            DefWindowProc(message, wParam, lParam);
        }
        onNcDestroy(); // the object may be gone from here on
        return 0;
    }
    LRESULT result = 0;
    return OnWndMsg(message, wParam, lParam, &result) ? result
                                                      : DefWindowProc(message, wParam, lParam);
}

BOOL CWnd::OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* pResult) {
    if (message == WM_COMMAND) {
        return OnCommand(wParam, lParam);
    }
    const AFX_MSGMAP_ENTRY* const entry = findMessageEntry(mappedMessage(message), 0, 0);
    if (entry == nullptr) {
        return FALSE;
    }
    *pResult = entry->pfn(this, MSG{m_hWnd, message, wParam, lParam, 0, {}});
    return TRUE;
}

BOOL CWnd::OnCommand(WPARAM wParam, LPARAM) {
    return OnCmdMsg(LOWORD(wParam), HIWORD(wParam), nullptr, nullptr);
}

LRESULT CWnd::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    return m_super != nullptr ? ::CallWindowProcW(m_super, m_hWnd, message, wParam, lParam)
                              : ::DefWindowProcW(m_hWnd, message, wParam, lParam);
}

LRESULT CWnd::Default() {
    const MSG& current = afx::threadState().current;
    return DefWindowProc(current.message, current.wParam, current.lParam);
}

void CWnd::onNcDestroy() {
    UnsubclassWindow();
    PostNcDestroy();
}

void CWnd::PostNcDestroy() {}

void CWnd::OnPaint() {
    Default();
}

void CWnd::OnTimer(UINT_PTR) {
    Default();
}

HCURSOR CWnd::OnQueryDragIcon() {
    return reinterpret_cast<HCURSOR>(Default());
}

void CWnd::OnHScroll(UINT, UINT, CScrollBar*) {
    Default();
}

HBRUSH CWnd::OnCtlColor(CDC*, CWnd*, UINT) {
    return reinterpret_cast<HBRUSH>(Default());
}

void CWnd::OnClose() {
    Default();
}

namespace afx {

ColorRequest::ColorRequest(const MSG& message)
    : m_control(CWnd::FromHandle(reinterpret_cast<HWND>(message.lParam))),
      m_type(message.message - WM_CTLCOLORMSGBOX) {
    m_dc.Attach(reinterpret_cast<HDC>(message.wParam));
}

ColorRequest::~ColorRequest() {
    m_dc.Detach();
}

CScrollBar* scrollBarOf(const MSG& message) {
    return dynamic_cast<CScrollBar*>(
        CWnd::FromHandlePermanent(reinterpret_cast<HWND>(message.lParam)));
}

} // namespace afx
