#include "KitDialog.h"

#include <cstdlib>

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

std::wstring KitDialog::text(int id) const {
    wchar_t buffer[256]{};
    ::GetDlgItemTextW(m_hWnd, id, buffer, static_cast<int>(std::size(buffer)));
    return buffer;
}

LONG KitDialog::letterHeight(int id) const {
    LOGFONTW font{};
    GetObjectW(reinterpret_cast<HFONT>(GetDlgItem(id)->SendMessage(WM_GETFONT)), sizeof font,
               &font);
    return std::labs(font.lfHeight);
}

} // namespace test
