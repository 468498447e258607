#include "TestDialog.h"

namespace test {

BEGIN_MESSAGE_MAP(TestDialog, CDialog)
ON_WM_TIMER()
ON_WM_QUERYDRAGICON()
ON_WM_HSCROLL()
ON_WM_CTLCOLOR()
ON_WM_CLOSE()
ON_BN_CLICKED(IDC_TEST_BUTTON, &TestDialog::OnButton)
ON_CBN_SELCHANGE(IDC_TEST_COMBO, &TestDialog::OnSelection)
ON_STN_CLICKED(IDC_TEST_STATIC, &TestDialog::OnText)
ON_MESSAGE(WM_TEST_STEP, &TestDialog::OnStep)
END_MESSAGE_MAP()

} // namespace test
