#include "KitDialog.h"

#include <libUikit/MrlrGetCUIHandle.h>

#include <gtest/gtest.h>

namespace {

using test::KitDialog;
using test::WM_KIT_STEP;

// Types `key` with the focus on control `focus`, then ends the dialog with 77.
INT_PTR endedBy(WPARAM key, int focus, int* pushes = nullptr) {
    KitDialog dialog;
    dialog.step = [&] {
        dialog.step = [&] {
            dialog.step = [&] { dialog.EndDialog(77); };
            dialog.PostMessage(WM_KIT_STEP);
        };
        ::SetFocus(*dialog.GetDlgItem(focus));
        ::PostMessageW(::GetFocus(), WM_KEYDOWN, key, 0);
        dialog.PostMessage(WM_KIT_STEP);
    };
    const INT_PTR result = dialog.DoModal();
    if (pushes != nullptr) {
        *pushes = dialog.pushes;
    }
    return result;
}

TEST(DialogKeys, EscapeCancelsThoughTheCancelButtonIsDisabled) {
    EXPECT_EQ(endedBy(VK_ESCAPE, IDC_KIT_COMBO), IDCANCEL);
    EXPECT_EQ(endedBy(VK_ESCAPE, IDC_KIT_BUTTON), IDCANCEL);
}

TEST(DialogKeys, EnterDoesNotPushADisabledDefaultButton) {
    EXPECT_EQ(endedBy(VK_RETURN, IDC_KIT_COMBO), 77);
}

TEST(DialogKeys, EnterPushesTheButtonThatHasTheFocus) {
    int pushes = 0;
    EXPECT_EQ(endedBy(VK_RETURN, IDC_KIT_BUTTON, &pushes), 77);
    EXPECT_EQ(pushes, 1);
}

TEST(DialogKeys, EscapeClosesAnOpenListFirst) {
    KitDialog dialog;
    LRESULT openBefore = 0;
    LRESULT openAfter = 1;
    dialog.step = [&] {
        CWnd* const combo = dialog.GetDlgItem(IDC_KIT_COMBO);
        ::SetFocus(*combo);
        combo->SendMessage(CB_SHOWDROPDOWN, TRUE);
        openBefore = combo->SendMessage(CB_GETDROPPEDSTATE);
        dialog.step = [&] {
            openAfter = dialog.GetDlgItem(IDC_KIT_COMBO)->SendMessage(CB_GETDROPPEDSTATE);
            dialog.EndDialog(77);
        };
        combo->PostMessage(WM_KEYDOWN, VK_ESCAPE);
        dialog.PostMessage(WM_KIT_STEP);
    };
    EXPECT_EQ(dialog.DoModal(), 77);
    EXPECT_EQ(openBefore, TRUE);
    EXPECT_EQ(openAfter, FALSE);
}

TEST(ConsoleWindow, IsNotThereWithoutAConsole) {
    FreeConsole();
    EXPECT_EQ(MrlrGetCUIHandle(), nullptr);
    AllocConsole();
}

TEST(ConsoleWindow, StaysEnabledAndApartFromADialog) {
    FreeConsole();
    ASSERT_TRUE(AllocConsole());
    ShowWindow(GetConsoleWindow(), SW_SHOW);
    for (int tries = 0; tries < 100 && MrlrGetCUIHandle() == nullptr; ++tries) {
        Sleep(20);
    }
    CWnd* const console = MrlrGetCUIHandle();
    if (console == nullptr) {
        EXPECT_FALSE(IsWindowVisible(GetConsoleWindow()));
        return;
    }
    const HWND window = console->m_hWnd;
    EXPECT_EQ(window, GetConsoleWindow());
    KitDialog dialog(console);
    bool enabled = false;
    HWND owner = nullptr;
    dialog.step = [&] {
        enabled = IsWindowEnabled(window) != FALSE;
        owner = ::GetWindow(dialog, GW_OWNER);
        dialog.EndDialog(0);
    };
    EXPECT_EQ(dialog.DoModal(), 0);
    EXPECT_TRUE(enabled);
    EXPECT_EQ(owner, nullptr);
}

} // namespace
