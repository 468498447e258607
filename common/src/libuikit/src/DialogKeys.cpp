// Done in a message filter, which the dialog manager calls before it acts: the dialog itself does
// not get these keys, and systems differ in what they do with a disabled button.
#include "DialogKeys.h"

namespace libUikit {

namespace {

thread_local DialogKeys* t_first = nullptr;

bool canBePushed(HWND control) {
    return control != nullptr && IsWindowEnabled(control);
}

// \return whether the key is handled
bool escape(HWND dialog) {
    const HWND cancel = GetDlgItem(dialog, IDCANCEL);
    if (cancel == nullptr || IsWindowEnabled(cancel)) {
        return false; // the dialog manager does it
    }
    PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED),
                 reinterpret_cast<LPARAM>(cancel));
    return true;
}

bool enter(HWND dialog, HWND focus, LRESULT dialogCode) {
    if ((dialogCode & DLGC_DEFPUSHBUTTON) != 0) {
        return false;
    }
    if ((dialogCode & DLGC_UNDEFPUSHBUTTON) != 0) {
        PostMessageW(focus, BM_CLICK, 0, 0);
        return true;
    }
    const LRESULT answer = SendMessageW(dialog, DM_GETDEFID, 0, 0);
    const int id = HIWORD(answer) == DC_HASDEFID ? LOWORD(answer) : IDOK;
    return !canBePushed(GetDlgItem(dialog, id));
}

bool isHandled(HWND dialog, const MSG& message) {
    const bool isEscape = message.wParam == VK_ESCAPE || message.wParam == VK_CANCEL;
    if (message.message != WM_KEYDOWN || (!isEscape && message.wParam != VK_RETURN)) {
        return false;
    }
    const LRESULT dialogCode = SendMessageW(message.hwnd, WM_GETDLGCODE, message.wParam,
                                            reinterpret_cast<LPARAM>(&message));
    if ((dialogCode & DLGC_WANTMESSAGE) != 0) {
        return false; // an open list, for example, which closes
    }
    return isEscape ? escape(dialog) : enter(dialog, message.hwnd, dialogCode);
}

LRESULT CALLBACK filter(int code, WPARAM wParam, LPARAM lParam) {
    if (code == MSGF_DIALOGBOX) {
        const MSG& message = *reinterpret_cast<const MSG*>(lParam);
        for (const DialogKeys* keys = t_first; keys != nullptr; keys = keys->next()) {
            const HWND dialog = keys->dialog();
            const bool isHere = message.hwnd == dialog || IsChild(dialog, message.hwnd);
            if (isHere && isHandled(dialog, message)) {
                return TRUE;
            }
        }
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

} // namespace

DialogKeys::DialogKeys(HWND dialog)
    : m_dialog(dialog),
      // ERROR_NOT_ENOUGH_MEMORY: the keys then work as the system has it
      m_hook(SetWindowsHookExW(WH_MSGFILTER, filter, nullptr, GetCurrentThreadId())),
      m_next(t_first) {
    t_first = this;
}

DialogKeys::~DialogKeys() {
    DialogKeys** link = &t_first;
    while (*link != nullptr && *link != this) {
        link = &(*link)->m_next;
    }
    if (*link == this) {
        *link = m_next;
    }
    if (m_hook != nullptr) {
        UnhookWindowsHookEx(m_hook);
    }
}

} // namespace libUikit
