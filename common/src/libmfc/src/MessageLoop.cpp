// The modal loop, and what it does with each message.
#include "ThreadState.h"

namespace {

// The caret's blink timer, which the system sends without documenting a name for it.
constexpr UINT CARET_TIMER = 0x0118;

// The pointer move that a loop has seen last.
struct LastPointer {
    POINT position{};
    UINT message = 0;
};

// Asks the window that `message` is for, then its parents and owners.
// \return whether one has handled it
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

// Takes one message into `message`, lets the thread's windows look at it first, dispatches it.
// \return false for WM_QUIT
bool pumpMessage(MSG& message) {
    // 0 for WM_QUIT; -1 only for a bad window or pointer, which are not given
    const bool goesOn = GetMessageW(&message, nullptr, 0, 0) > 0;
    afx::rethrowPending();
    if (!goesOn) {
        return false;
    }
    if (!preTranslate(message)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    afx::rethrowPending();
    return true;
}

// Whether the loop is to do its idle work again after `message`. Pointer moves that change nothing
// and caret blinks do not count.
bool isIdleMessage(const MSG& message, LastPointer& last) {
    if (message.message == WM_MOUSEMOVE || message.message == WM_NCMOUSEMOVE) {
        const bool moved = message.message != last.message || message.pt.x != last.position.x ||
                           message.pt.y != last.position.y;
        last = {message.pt, message.message};
        return moved;
    }
    return message.message != WM_PAINT && message.message != CARET_TIMER;
}

} // namespace

int CWnd::RunModalLoop(DWORD dwFlags) {
    m_continueModal = true;
    m_nModalResult = -1;
    bool show = (dwFlags & MLF_SHOWONIDLE) != 0 && !::IsWindowVisible(m_hWnd);
    bool idle = true;
    LastPointer lastPointer;

    for (LONG idleCount = 0; ContinueModal();) {
        MSG message{};
        while (idle && !PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE)) {
            if (show) {
                ShowWindow(SW_SHOWNORMAL);
                ::SetForegroundWindow(m_hWnd); // FALSE when the system does not allow it
                UpdateWindow();
                show = false;
            }
            if (afx::threadState().depth == 0) { // else a running handler may hold one
                DeleteTempMap();
            }
            idle = SendMessage(WM_KICKIDLE, MSGF_DIALOGBOX, idleCount++) != 0;
        }
        afx::rethrowPending();
        if (!ContinueModal()) {
            break;
        }
        if (!pumpMessage(message)) {
            PostQuitMessage(static_cast<int>(message.wParam));
            m_continueModal = false;
            return -1;
        }
        if (isIdleMessage(message, lastPointer)) {
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
