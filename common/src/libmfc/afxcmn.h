// The common controls in use: progress bar and tool tip.
#pragma once

#include <afxwin.h>

#include <commctrl.h>

/// A progress bar.
class CProgressCtrl : public CWnd {
public:
    /// \param nLower, nUpper ends of the range; 0 and 100 unless set. Platform: PBM_SETRANGE
    void SetRange(short nLower, short nUpper);
    /// \return the position before. Positions outside the range become its nearer end.
    int SetPos(int nPos);
    /// How far PBM_STEPIT goes; 10 unless set. \return the step before
    int SetStep(int nStep);
};

/// A tool tip that serves any number of tools.
class CToolTipCtrl : public CWnd {
public:
    /// Creates the window, owned by `pParentWnd`; the tip does not show before Activate(TRUE).
    /// \param dwStyle further TTS_ styles
    /// \return whether it worked
    BOOL Create(CWnd* pParentWnd, DWORD dwStyle = 0);

    /// Adds the window `pWnd` as a whole when there is no rectangle, or else the part
    /// `lpRectTool` of it under the id `nIDTool`.
    /// \param lpszText copied
    /// \return whether it worked. Platform: TTM_ADDTOOLW
    BOOL AddTool(CWnd* pWnd, LPCTSTR lpszText, LPCRECT lpRectTool = nullptr, UINT_PTR nIDTool = 0);
    void Activate(BOOL bActivate);
    /// Shows the tip a mouse message; others are ignored. For PreTranslateMessage().
    void RelayEvent(LPMSG lpMsg);
};
