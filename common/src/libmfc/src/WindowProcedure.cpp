// The functions that Windows calls back. No exception may leave them: the frames below are
// Windows' own.
#include "WindowProcedure.h"

#include "ThreadState.h"

#include <utility>

namespace {

// The result of a message whose handler threw.
LRESULT answerAfterException(HWND window, UINT message) {
    switch (message) {
    case WM_PAINT:
        // While a part is invalid, the message comes again and again.
        ValidateRect(window, nullptr);
        return 0;
    case WM_CREATE:
        return -1;
    default:
        return 0;
    }
}

// Sets the current message for Default(), and restores the one before it at the end.
class CurrentMessage {
public:
    explicit CurrentMessage(const MSG& message)
        : m_state(afx::threadState()), m_before(m_state.current) {
        m_state.current = message;
        ++m_state.depth;
    }
    CurrentMessage(const CurrentMessage&) = delete;
    CurrentMessage& operator=(const CurrentMessage&) = delete;
    ~CurrentMessage() {
        --m_state.depth;
        m_state.current = m_before;
    }

private:
    afx::ThreadState& m_state;
    MSG m_before;
};

// The input method may create its helper window before the window of the call.
bool isInputMethodWindow(HWND window) {
    return (GetClassLongPtrW(window, GCL_STYLE) & CS_IME) != 0;
}

LRESULT CALLBACK creationHook(int code, WPARAM wParam, LPARAM lParam) {
    afx::ThreadState& state = afx::threadState();
    const auto window = reinterpret_cast<HWND>(wParam);
    if (code == HCBT_CREATEWND && state.creating != nullptr && !isInputMethodWindow(window)) {
        CWnd* const object = std::exchange(state.creating, nullptr);
        object->Attach(window);
        afx::guarded(0, [object] {
            AfxWindowAccess::takeMessages(*object);
            return 0;
        });
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

} // namespace

LRESULT CALLBACK AfxWndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    CWnd* const object = CWnd::FromHandlePermanent(window);
    if (object == nullptr) {
        return DefWindowProcW(window, message, wParam, lParam);
    }
    try {
        const CurrentMessage current(MSG{window, message, wParam, lParam, 0, {}});
        return AfxWindowAccess::handle(*object, message, wParam, lParam);
    } catch (...) {
        afx::keepException();
        if (message == WM_NCDESTROY) {
            // The window ends whatever its handlers do. The object may be gone already.
            afx::threadState().permanent.erase(window);
        }
        return answerAfterException(window, message);
    }
}

namespace afx {

CreationHook::CreationHook(CWnd& object) {
    threadState().creating = &object;
    // Fails with ERROR_NOT_ENOUGH_MEMORY and the like. It begins to work here, so the object comes
    // first. NOLINTNEXTLINE(cppcoreguidelines-prefer-member-initializer)
    m_hook = SetWindowsHookExW(WH_CBT, creationHook, nullptr, GetCurrentThreadId());
}

CreationHook::~CreationHook() {
    threadState().creating = nullptr;
    if (m_hook != nullptr) {
        UnhookWindowsHookEx(m_hook);
    }
}

} // namespace afx
