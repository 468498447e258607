// Device contexts.
#include <afxwin.h>

#include <utility>

CDC::~CDC() {
    if (m_hDC != nullptr) {
        DeleteDC(Detach());
    }
}

BOOL CDC::Attach(HDC hDC) {
    m_hDC = hDC;
    return m_hDC != nullptr;
}

HDC CDC::Detach() {
    return std::exchange(m_hDC, nullptr);
}

COLORREF CDC::SetTextColor(COLORREF crColor) {
    return ::SetTextColor(m_hDC, crColor);
}

COLORREF CDC::GetBkColor() const {
    return ::GetBkColor(m_hDC);
}

COLORREF CDC::SetBkColor(COLORREF crColor) {
    return ::SetBkColor(m_hDC, crColor);
}

BOOL CDC::DrawIcon(int x, int y, HICON hIcon) {
    return ::DrawIcon(m_hDC, x, y, hIcon);
}

CPaintDC::CPaintDC(CWnd* pWnd) : m_hWnd(pWnd->GetSafeHwnd()) {
    if (!Attach(BeginPaint(m_hWnd, &m_ps))) {
        AfxThrowResourceException();
    }
}

CPaintDC::~CPaintDC() {
    EndPaint(m_hWnd, &m_ps);
    Detach();
}
