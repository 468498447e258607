// Message boxes of the application.
#include <afxwin.h>

int AFXAPI AfxMessageBox(LPCTSTR lpszText, UINT nType, UINT) {
    const UINT icon = (nType & MB_ICONMASK) == 0 ? MB_ICONEXCLAMATION : 0;
    // The calling thread's active window. Without one its other windows must wait as well.
    const HWND owner = GetLastActivePopup(GetActiveWindow());
    const UINT modality = owner == nullptr ? MB_TASKMODAL : 0;
    const CWinApp* const application = AfxGetApp();
    return MessageBoxW(owner, lpszText,
                       application == nullptr ? nullptr : application->m_pszAppName,
                       nType | icon | modality);
}
