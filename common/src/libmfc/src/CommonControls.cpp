// The common controls, by their messages.
#include <afxcmn.h>

#include "CommonControls.h"
#include "MessageArguments.h"

#include <cstddef>

using afx::toInt;
using afx::toWParam;

namespace {

// A whole window is a tool of its parent, named by its handle; a part is a tool of the window.
TTTOOLINFOW toolInfo(CWnd* window, LPCTSTR text, LPCRECT rectangle, UINT_PTR id) {
    TTTOOLINFOW info{};
    // The size without the last member, which version 5 of the control knows too.
    info.cbSize = offsetof(TTTOOLINFOW, lpReserved);
    // Only read. NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast)
    info.lpszText = const_cast<LPTSTR>(text);
    if (id == 0) {
        info.uFlags = TTF_IDISHWND;
        info.hwnd = ::GetParent(window->GetSafeHwnd());
        info.uId = reinterpret_cast<UINT_PTR>(window->GetSafeHwnd());
    } else {
        info.hwnd = window->GetSafeHwnd();
        info.uId = id;
    }
    if (rectangle != nullptr) {
        info.rect = *rectangle;
    }
    return info;
}

LPARAM toLParam(TTTOOLINFOW& info) {
    return reinterpret_cast<LPARAM>(&info);
}

} // namespace

void afx::registerCommonControls() {
    const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_WIN95_CLASSES};
    InitCommonControlsEx(&classes); // FALSE when memory is short: creating the control fails then
}

void CProgressCtrl::SetRange(short nLower, short nUpper) {
    SendMessage(PBM_SETRANGE, 0, MAKELPARAM(nLower, nUpper));
}

int CProgressCtrl::SetPos(int nPos) {
    return toInt(SendMessage(PBM_SETPOS, toWParam(nPos)));
}

int CProgressCtrl::SetStep(int nStep) {
    return toInt(SendMessage(PBM_SETSTEP, toWParam(nStep)));
}

BOOL CToolTipCtrl::Create(CWnd* pParentWnd, DWORD dwStyle) {
    afx::registerCommonControls();
    if (!CreateEx(0, TOOLTIPS_CLASSW, nullptr, WS_POPUP | dwStyle, CW_USEDEFAULT, CW_USEDEFAULT,
                  CW_USEDEFAULT, CW_USEDEFAULT, pParentWnd->GetSafeHwnd(), nullptr)) {
        return FALSE;
    }
    Activate(FALSE); // the control begins active
    return TRUE;
}

BOOL CToolTipCtrl::AddTool(CWnd* pWnd, LPCTSTR lpszText, LPCRECT lpRectTool, UINT_PTR nIDTool) {
    TTTOOLINFOW info = toolInfo(pWnd, lpszText, lpRectTool, nIDTool);
    return SendMessage(TTM_ADDTOOLW, 0, toLParam(info)) != FALSE;
}

void CToolTipCtrl::Activate(BOOL bActivate) {
    SendMessage(TTM_ACTIVATE, bActivate != FALSE);
}

void CToolTipCtrl::RelayEvent(LPMSG lpMsg) {
    SendMessage(TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(lpMsg));
}
