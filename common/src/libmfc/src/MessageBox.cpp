// Message boxes of the application.
#include <afxwin.h>

namespace {

// The calling thread's active window.
HWND ownerOfBoxes() {
    return GetLastActivePopup(GetActiveWindow());
}

} // namespace

int CWinApp::DoMessageBox(LPCTSTR lpszPrompt, UINT nType, UINT) {
    const UINT icon = (nType & MB_ICONMASK) == 0 ? MB_ICONEXCLAMATION : 0;
    const HWND owner = ownerOfBoxes();
    // Without an owner the thread's other windows must wait as well.
    const UINT modality = owner == nullptr ? MB_TASKMODAL : 0;
    return MessageBoxW(owner, lpszPrompt, m_pszAppName, nType | icon | modality);
}

int AFXAPI AfxMessageBox(LPCTSTR lpszText, UINT nType, UINT nIDHelp) {
    if (CWinApp* const application = AfxGetApp()) {
        return application->DoMessageBox(lpszText, nType, nIDHelp);
    }
    return MessageBoxW(nullptr, lpszText, nullptr, nType | MB_TASKMODAL);
}
