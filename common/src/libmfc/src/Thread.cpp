// The message loop.
#include <afxwin.h>

namespace {

// The caret's blink timer, which the system sends without documenting a name for it.
constexpr UINT WM_SYSTIMER_MESSAGE = 0x0118;

} // namespace

BOOL CWinThread::InitInstance() {
    return FALSE;
}

int CWinThread::Run() {
    bool idle = true;
    for (LONG idleCount = 0;;) {
        MSG message;
        while (idle && !PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE)) {
            if (!OnIdle(idleCount++)) {
                idle = false;
            }
        }
        if (!PumpMessage()) {
            return ExitInstance();
        }
        if (IsIdleMessage(&m_msgCur)) {
            idle = true;
            idleCount = 0;
        }
    }
}

int CWinThread::ExitInstance() {
    return static_cast<int>(m_msgCur.wParam);
}

BOOL CWinThread::OnIdle(LONG) {
    return FALSE;
}

BOOL CWinThread::PreTranslateMessage(MSG*) {
    return FALSE;
}

BOOL CWinThread::IsIdleMessage(MSG* pMsg) {
    if (pMsg->message == WM_MOUSEMOVE || pMsg->message == WM_NCMOUSEMOVE) {
        const bool moved = pMsg->message != m_lastPointerMessage || pMsg->pt.x != m_lastPointer.x ||
                           pMsg->pt.y != m_lastPointer.y;
        m_lastPointerMessage = pMsg->message;
        m_lastPointer = pMsg->pt;
        return moved;
    }
    return pMsg->message != WM_PAINT && pMsg->message != WM_SYSTIMER_MESSAGE;
}

BOOL CWinThread::PumpMessage() {
    // 0 for WM_QUIT; -1 only for a bad window or pointer, which are not given
    if (GetMessageW(&m_msgCur, nullptr, 0, 0) <= 0) {
        return FALSE;
    }
    if (!PreTranslateMessage(&m_msgCur)) {
        TranslateMessage(&m_msgCur);
        DispatchMessageW(&m_msgCur);
    }
    return TRUE;
}
