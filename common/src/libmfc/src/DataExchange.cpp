// Dialog data exchange.
#include <afxwin.h>

BOOL CWnd::UpdateData(BOOL bSaveAndValidate) {
    if (m_hWnd == nullptr) {
        return FALSE;
    }
    CDataExchange exchange(this, bSaveAndValidate);
    DoDataExchange(&exchange);
    return TRUE;
}

void CWnd::DoDataExchange(CDataExchange*) {}

HWND CDataExchange::PrepareCtrl(int nIDC) {
    // ERROR_CONTROL_ID_NOT_FOUND
    const HWND control = ::GetDlgItem(m_pDlgWnd->GetSafeHwnd(), nIDC);
    if (control == nullptr) {
        AfxThrowNotSupportedException();
    }
    return control;
}

void AFXAPI DDX_Control(CDataExchange* pDX, int nIDC, CWnd& rControl) {
    if (rControl.m_hWnd != nullptr) {
        return;
    }
    if (!rControl.SubclassWindow(pDX->PrepareCtrl(nIDC))) {
        AfxThrowNotSupportedException();
    }
}
