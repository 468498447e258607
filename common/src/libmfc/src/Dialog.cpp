// Dialogs. A modal one runs in a loop of the library rather than in Windows' DialogBox(), so that
// PreTranslateMessage() sees the messages and exceptions come out of DoModal().
#include <afxwin.h>

#include "CommonControls.h"
#include "ThreadState.h"
#include "WindowProcedure.h"

#include <algorithm>

namespace {

// Whether the template leaves the dialog's place open: it is at 0, 0 there.
bool leavesPlaceOpen(LPCTSTR templateName) {
    const HMODULE module = GetModuleHandleW(nullptr);
    const HRSRC found = FindResourceW(module, templateName, RT_DIALOG);
    const HGLOBAL loaded = found == nullptr ? nullptr : LoadResource(module, found);
    const auto* const words =
        loaded == nullptr ? nullptr : static_cast<const WORD*>(LockResource(loaded));
    if (words == nullptr) {
        return false;
    }
    const bool isExtended = words[0] == 1 && words[1] == 0xFFFF;
    const WORD* const place = words + (isExtended ? 9 : 5);
    return place[0] == 0 && place[1] == 0;
}

// In the work area of the monitor where the user is, which is that of the window in use.
void centre(HWND dialog) {
    POINT pointer{};
    GetCursorPos(&pointer);
    const HWND inUse = GetForegroundWindow();
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    if (!GetMonitorInfoW(inUse != nullptr ? MonitorFromWindow(inUse, MONITOR_DEFAULTTONEAREST)
                                          : MonitorFromPoint(pointer, MONITOR_DEFAULTTONEAREST),
                         &monitor)) {
        return; // the monitor has just gone
    }
    const CRect area(monitor.rcWork);
    // Twice: on a monitor of another density, the dialog has another size.
    for (int pass = 0; pass < 2; ++pass) {
        CRect place;
        ::GetWindowRect(dialog, place);
        const int left = area.left + std::max(0, (area.Width() - place.Width()) / 2);
        const int top = area.top + std::max(0, (area.Height() - place.Height()) / 2);
        ::SetWindowPos(dialog, nullptr, left, top, 0, 0,
                       SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
}

// Windows places a dialog at the corner of its owner, and at that of the screen when there is none.
void placeDialog(HWND dialog, LPCTSTR templateName) {
    constexpr LONG_PTR PLACED = DS_ABSALIGN | DS_CENTER | DS_CENTERMOUSE;
    const HWND owner = ::GetWindow(dialog, GW_OWNER);
    const bool ownerIsInView = owner != nullptr && ::IsWindowVisible(owner) && !::IsIconic(owner);
    if (!ownerIsInView && (GetWindowLongPtrW(dialog, GWL_STYLE) & PLACED) == 0 &&
        leavesPlaceOpen(templateName)) {
        centre(dialog);
    }
}

// The dialog manager calls it for messages that the window procedure passes on. WM_INITDIALOG comes
// with the template's name.
INT_PTR CALLBACK dialogProcedure(HWND window, UINT message, WPARAM, LPARAM templateName) {
    if (message != WM_INITDIALOG) {
        return FALSE;
    }
    auto* const dialog = dynamic_cast<CDialog*>(CWnd::FromHandlePermanent(window));
    if (dialog == nullptr) {
        return TRUE;
    }
    placeDialog(window, reinterpret_cast<LPCTSTR>(templateName));
    return afx::guarded(TRUE, [dialog] { return dialog->OnInitDialog(); });
}

// The owner for a parent: the top-level window around it, if it is of this process. Windows joins
// the input of an owner's thread with that of the dialog's: a window of another process would not
// answer while this program sleeps, and stay disabled if it ended. Windows reports a console's
// window as its program's own, hence the last condition.
HWND ownerWindow(CWnd* parent) {
    if (parent == nullptr) {
        return nullptr;
    }
    const HWND window = GetAncestor(parent->GetSafeHwnd(), GA_ROOT);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return process == GetCurrentProcessId() && window != GetConsoleWindow() ? window : nullptr;
}

// Disables the owner of a modal dialog.
// \return the window to enable again, or null
HWND disable(HWND owner) {
    if (owner == nullptr || !::IsWindowEnabled(owner)) {
        return nullptr;
    }
    ::EnableWindow(owner, FALSE);
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
    afx::registerCommonControls();
    const afx::CreationHook hook(*this);
    if (!hook.isSet()) {
        return nullptr;
    }
    // ERROR_RESOURCE_NAME_NOT_FOUND, ERROR_CANNOT_FIND_WND_CLASS for a control, memory
    return CreateDialogParamW(GetModuleHandleW(nullptr), templateName, owner, dialogProcedure,
                              reinterpret_cast<LPARAM>(templateName));
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
        ::SetWindowPos(m_hWnd, nullptr, 0, 0, 0, 0,
                       SWP_HIDEWINDOW | SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE | SWP_NOZORDER);
    }
    if (disabledOwner != nullptr) {
        ::EnableWindow(disabledOwner, TRUE);
        if (::GetActiveWindow() == m_hWnd) {
            ::SetActiveWindow(disabledOwner);
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
    return (isKey || isMouse) && ::IsDialogMessageW(m_hWnd, pMsg);
}

void CDialog::OnOK() {
    if (UpdateData(TRUE)) {
        EndDialog(IDOK);
    }
}

void CDialog::OnCancel() {
    EndDialog(IDCANCEL);
}
