// Dialogs. A modal one runs in a loop of the library rather than in Windows' DialogBox(), so that
// PreTranslateMessage() sees the messages and exceptions come out of DoModal().
#include <afxwin.h>

#include "ThreadState.h"
#include "WindowProcedure.h"

namespace {

// The dialog manager calls it for messages that the window procedure passes on.
INT_PTR CALLBACK dialogProcedure(HWND window, UINT message, WPARAM, LPARAM) {
    if (message != WM_INITDIALOG) {
        return FALSE;
    }
    auto* const dialog = dynamic_cast<CDialog*>(CWnd::FromHandlePermanent(window));
    if (dialog == nullptr) {
        return TRUE;
    }
    return afx::guarded(TRUE, [dialog] { return dialog->OnInitDialog(); });
}

// Owners are top-level windows.
HWND ownerWindow(CWnd* parent) {
    return parent == nullptr ? nullptr : GetAncestor(parent->GetSafeHwnd(), GA_ROOT);
}

// Disables the owner of a modal dialog.
// \return the window to enable again, or null
HWND disable(HWND owner) {
    if (owner == nullptr || owner == GetDesktopWindow() || !IsWindowEnabled(owner)) {
        return nullptr;
    }
    // A window of another process would stay disabled if this process ended in between. Windows
    // reports a console's window as its program's own, hence the second condition.
    DWORD process = 0;
    GetWindowThreadProcessId(owner, &process);
    if (process != GetCurrentProcessId() || owner == GetConsoleWindow()) {
        return nullptr;
    }
    EnableWindow(owner, FALSE);
    return owner;
}

} // namespace

BEGIN_MESSAGE_MAP(CDialog, CWnd)
ON_COMMAND(IDOK, &CDialog::OnOK)
ON_COMMAND(IDCANCEL, &CDialog::OnCancel)
END_MESSAGE_MAP()

CDialog::CDialog(UINT nIDTemplate, CWnd* pParentWnd)
    : m_templateName(MAKEINTRESOURCEW(nIDTemplate)), m_parent(pParentWnd) {}

HWND CDialog::createFrom(LPCTSTR templateName, HWND owner) {
    const afx::CreationHook hook(*this);
    if (!hook.isSet()) {
        return nullptr;
    }
    // ERROR_RESOURCE_NAME_NOT_FOUND, ERROR_CANNOT_FIND_WND_CLASS for a control, memory
    return CreateDialogParamW(GetModuleHandleW(nullptr), templateName, owner, dialogProcedure, 0);
}

BOOL CDialog::Create(UINT nIDTemplate, CWnd* pParentWnd) {
    const HWND window = createFrom(MAKEINTRESOURCEW(nIDTemplate), ownerWindow(pParentWnd));
    if (afx::threadState().pending != nullptr && window != nullptr) {
        ::DestroyWindow(window);
    }
    afx::rethrowPending();
    return window != nullptr;
}

INT_PTR CDialog::DoModal() {
    m_nModalResult = -1;
    m_continueModal = true; // EndDialog() may come from OnInitDialog()
    const HWND owner = ownerWindow(m_parent);
    const HWND disabledOwner = disable(owner);
    try {
        const bool created = createFrom(m_templateName, owner) != nullptr;
        afx::rethrowPending();
        if (created && m_continueModal) {
            RunModalLoop(MLF_SHOWONIDLE);
        }
        destroyModal(disabledOwner);
        afx::rethrowPending();
    } catch (...) {
        destroyModal(disabledOwner);
        afx::threadState().pending = nullptr; // thrown while the dialog ended; the first one counts
        throw;
    }
    return m_nModalResult;
}

// The owner is enabled first: otherwise Windows would bring another program's window to the front.
void CDialog::destroyModal(HWND disabledOwner) {
    m_continueModal = false;
    if (m_hWnd != nullptr) {
        SetWindowPos(m_hWnd, nullptr, 0, 0, 0, 0,
                     SWP_HIDEWINDOW | SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE | SWP_NOZORDER);
    }
    if (disabledOwner != nullptr) {
        ::EnableWindow(disabledOwner, TRUE);
        if (GetActiveWindow() == m_hWnd) {
            SetActiveWindow(disabledOwner);
        }
    }
    DestroyWindow();
}

void CDialog::EndDialog(int nResult) {
    EndModalLoop(nResult);
}

BOOL CDialog::OnInitDialog() {
    UpdateData(FALSE);
    return TRUE;
}

BOOL CDialog::PreTranslateMessage(MSG* pMsg) {
    if (CWnd::PreTranslateMessage(pMsg)) {
        return TRUE;
    }
    const bool isKey = pMsg->message >= WM_KEYFIRST && pMsg->message <= WM_KEYLAST;
    const bool isMouse = pMsg->message >= WM_MOUSEFIRST && pMsg->message <= WM_MOUSELAST;
    return (isKey || isMouse) && IsDialogMessageW(m_hWnd, pMsg);
}

void CDialog::OnOK() {
    if (UpdateData(TRUE)) {
        EndDialog(IDOK);
    }
}

void CDialog::OnCancel() {
    EndDialog(IDCANCEL);
}
