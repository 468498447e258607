#include "KitDialog.h"

namespace test {

BEGIN_MESSAGE_MAP(KitDialog, CDialog)
ON_WM_CTLCOLOR()
ON_STN_CLICKED(IDC_KIT_PICTURE, &KitDialog::OnPicture)
ON_BN_CLICKED(IDC_KIT_BUTTON, &KitDialog::OnPush)
ON_MESSAGE(WM_KIT_STEP, &KitDialog::OnStep)
END_MESSAGE_MAP()

void KitDialog::PreSubclassWindow() {
    CDialog::PreSubclassWindow();
    MRLLangExt::PreSubclassWindow(this);
}

BOOL KitDialog::OnInitDialog() {
    CDialog::OnInitDialog();
    MRLLangExt::OnInitDialog(this);
    PostMessage(WM_KIT_STEP);
    return TRUE;
}

void KitDialog::DoDataExchange(CDataExchange* exchange) {
    CDialog::DoDataExchange(exchange);
    DDX_Control(exchange, IDC_KIT_PICTURE, picture);
}

LRESULT KitDialog::OnStep(WPARAM, LPARAM) {
    const auto run = step; // a step may replace itself
    run();
    return 0;
}

HBRUSH KitDialog::OnCtlColor(CDC* dc, CWnd* control, UINT type) {
    const HBRUSH brush = CDialog::OnCtlColor(dc, control, type);
    return onColor ? onColor(control) : brush;
}

Painted::Painted(HWND control, DWORD layout) : m_dc(CreateCompatibleDC(nullptr)) {
    GetClientRect(control, &m_size);
    const HDC window = GetDC(control);
    m_bitmap = CreateCompatibleBitmap(window, m_size.right, m_size.bottom);
    ReleaseDC(control, window);
    m_before = SelectObject(m_dc, m_bitmap);
    SetLayout(m_dc, layout);
    SendMessageW(control, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(m_dc), PRF_CLIENT);
    SetLayout(m_dc, 0);
}

Painted::~Painted() {
    SelectObject(m_dc, m_before);
    DeleteObject(m_bitmap);
    DeleteDC(m_dc);
}

} // namespace test
