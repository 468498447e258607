// The arguments that every application on this library understands.
#include <afxwin.h>

#include <wchar.h>

void CCommandLineInfo::ParseParam(const TCHAR* pszParam, BOOL bFlag, BOOL) {
    if (!bFlag) {
        return;
    }
    if (_wcsicmp(pszParam, L"Automation") == 0) {
        m_bRunAutomated = TRUE;
        m_bShowSplash = FALSE;
    } else if (_wcsicmp(pszParam, L"Embedding") == 0) {
        m_bRunEmbedded = TRUE;
        m_bShowSplash = FALSE;
    }
}
