// The application's loop, the modal loop, and what they do with each message.
#include "MessageLoop.h"

#include "ThreadState.h"

namespace {

// The caret's blink timer, which the system sends without documenting a name for it.
constexpr UINT CARET_TIMER = 0x0118;

// Whether the window is of this thread: only then is WM_ENTERIDLE sent to it. Another process's
// window might not answer.
bool isOfThisThread(HWND window) {
    return window != nullptr && GetWindowThreadProcessId(window, nullptr) == GetCurrentThreadId();
}

} // namespace

namespace afx {

bool preTranslate(MSG& message) {
    // A handler may destroy windows; GetParent() of a window that is gone ends the walk.
    for (HWND window = message.hwnd; window != nullptr; window = GetParent(window)) {
        CWnd* const object = CWnd::FromHandlePermanent(window);
        if (object != nullptr && object->PreTranslateMessage(&message)) {
            return true;
        }
    }
    return false;
}

bool pumpMessage(MSG& message, CWinThread* thread) {
    // 0 for WM_QUIT; -1 only for a bad window or pointer, which are not given
    const bool goesOn = GetMessageW(&message, nullptr, 0, 0) > 0;
    rethrowPending();
    if (!goesOn) {
        return false;
    }
    const bool handled =
        thread != nullptr ? thread->PreTranslateMessage(&message) != FALSE : preTranslate(message);
    if (!handled) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    rethrowPending();
    return true;
}

void freeTemporaries() {
    if (threadState().depth == 0) {
        CWnd::DeleteTempMap();
    }
}

bool isIdleMessage(const MSG& message, LastPointer& last) {
    if (message.message == WM_MOUSEMOVE || message.message == WM_NCMOUSEMOVE) {
        const bool moved = message.message != last.message || message.pt.x != last.position.x ||
                           message.pt.y != last.position.y;
        last = {message.pt, message.message};
        return moved;
    }
    return message.message != WM_PAINT && message.message != CARET_TIMER;
}

} // namespace afx

CWinThread::CWinThread() {
    CWinThread*& own = afx::threadState().thread;
    own = own == nullptr ? this : own;
}

CWinThread::~CWinThread() {
    CWinThread*& own = afx::threadState().thread;
    own = own == this ? nullptr : own;
}

BOOL CWinThread::InitInstance() {
    return FALSE;
}

int CWinThread::Run() {
    bool idle = true;
    for (LONG idleCount = 0;;) {
        MSG next;
        while (idle && !PeekMessageW(&next, nullptr, 0, 0, PM_NOREMOVE)) {
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
    afx::freeTemporaries();
    return FALSE;
}

BOOL CWinThread::PreTranslateMessage(MSG* pMsg) {
    return afx::preTranslate(*pMsg);
}

BOOL CWinThread::IsIdleMessage(MSG* pMsg) {
    return afx::isIdleMessage(*pMsg, m_lastPointer);
}

BOOL CWinThread::PumpMessage() {
    return afx::pumpMessage(m_msgCur, this);
}

int CWnd::RunModalLoop(DWORD dwFlags) {
    m_continueModal = true;
    m_nModalResult = -1;
    const HWND parent = ::GetParent(m_hWnd);
    const bool notifyParent = (dwFlags & MLF_NOIDLEMSG) == 0 && isOfThisThread(parent);
    bool show = (dwFlags & MLF_SHOWONIDLE) != 0 && (GetStyle() & WS_VISIBLE) == 0;
    bool idle = true;
    afx::LastPointer lastPointer;

    for (LONG idleCount = 0; ContinueModal();) {
        MSG message{};
        while (idle && !PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE)) {
            if (show) {
                ShowWindow(SW_SHOWNORMAL);
                UpdateWindow();
                show = false;
            }
            if (notifyParent && idleCount == 0) {
                ::SendMessageW(parent, WM_ENTERIDLE, MSGF_DIALOGBOX,
                               reinterpret_cast<LPARAM>(m_hWnd));
            }
            afx::freeTemporaries();
            idle = (dwFlags & MLF_NOKICKIDLE) == 0 &&
                   SendMessage(WM_KICKIDLE, MSGF_DIALOGBOX, idleCount++) != 0;
        }
        afx::rethrowPending();
        if (!ContinueModal()) {
            break;
        }
        if (!afx::pumpMessage(message, AfxGetThread())) {
            PostQuitMessage(static_cast<int>(message.wParam));
            m_continueModal = false;
            return -1;
        }
        if (afx::isIdleMessage(message, lastPointer)) {
            idle = true;
            idleCount = 0;
        }
    }
    return m_nModalResult;
}

BOOL CWnd::ContinueModal() {
    return m_continueModal;
}

void CWnd::EndModalLoop(int nResult) {
    m_nModalResult = nResult;
    if (m_continueModal) {
        m_continueModal = false;
        PostMessage(WM_NULL); // the loop may be waiting
    }
}
