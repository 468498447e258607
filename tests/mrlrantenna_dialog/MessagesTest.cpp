// How the window is painted, open and minimised.
#include "DialogTest.h"

#include <algorithm>

namespace {

using test::Dialog;

class Messages : public test::DialogTest {};

TEST_F(Messages, AnOpenWindowIsPaintedAsAnyDialog) {
    run({[&](Dialog& dialog) {
            journal().clear();
            dialog.Invalidate();
            dialog.UpdateWindow();
            EXPECT_EQ(journal().count("icon background"), 0);
            EXPECT_FALSE(::GetUpdateRect(dialog.m_hWnd, nullptr, FALSE));
        }},
        test::DialogDriver::Place::ON_SCREEN);
}

// The smallest rectangle with everything in it that is not as the corner of the client area.
CRect painted(HWND window) {
    CRect client;
    ::GetClientRect(window, &client);
    const HDC dc = ::GetDC(window);
    const COLORREF background = GetPixel(dc, 0, 0);
    CRect found(client.right, client.bottom, 0, 0);
    for (int y = 0; y < client.bottom; ++y) {
        for (int x = 0; x < client.right; ++x) {
            if (GetPixel(dc, x, y) != background) {
                found =
                    CRect(std::min<int>(found.left, x), std::min<int>(found.top, y),
                          std::max<int>(found.right, x + 1), std::max<int>(found.bottom, y + 1));
            }
        }
    }
    ::ReleaseDC(window, dc);
    return found;
}

TEST_F(Messages, AMinimisedWindowIsPaintedAsItsIconInTheMiddle) {
    run({[&](Dialog& dialog) {
            for (HWND child = ::GetWindow(dialog.m_hWnd, GW_CHILD); child != nullptr;
                 child = ::GetWindow(child, GW_HWNDNEXT)) {
                ::ShowWindow(child, SW_HIDE);
            }
            // Without a frame, which some systems include when they paint such a window. Only the
            // style of a minimised window, not its size, so that the icon can be seen.
            const LONG_PTR bare = GetWindowLongPtrW(dialog, GWL_STYLE) &
                                  ~LONG_PTR{WS_CAPTION | WS_SYSMENU | DS_MODALFRAME};
            SetWindowLongPtrW(dialog, GWL_STYLE, bare);
            dialog.ModifyStyleEx(WS_EX_DLGMODALFRAME | WS_EX_WINDOWEDGE, 0);
            ::SetWindowPos(dialog.m_hWnd, nullptr, 0, 0, 130, 100,
                           SWP_NOMOVE | SWP_NOZORDER | SWP_FRAMECHANGED);
            dialog.UpdateWindow();
            SetWindowLongPtrW(dialog, GWL_STYLE, bare | WS_MINIMIZE);
            ASSERT_TRUE(dialog.IsIconic());
            journal().clear();
            dialog.Invalidate();
            dialog.SendMessage(WM_PAINT);
            EXPECT_THAT(journal().entries({"icon"}), testing::ElementsAre("icon background"));
            EXPECT_FALSE(::GetUpdateRect(dialog.m_hWnd, nullptr, FALSE));
            CRect client;
            dialog.GetClientRect(&client);
            const int width = GetSystemMetrics(SM_CXICON);
            const int height = GetSystemMetrics(SM_CYICON);
            const CRect found = painted(dialog);
            EXPECT_GT(found.Width(), width / 2);
            EXPECT_GT(found.Height(), height / 2);
            // The same icon in the corner has its margins, too.
            const HDC dc = ::GetDC(dialog.m_hWnd);
            DrawIcon(dc, 1, 1, dialog.m_hIcon);
            ::ReleaseDC(dialog.m_hWnd, dc);
            const CRect both = painted(dialog);
            EXPECT_EQ(found.left - both.left, (client.Width() - width + 1) / 2 - 1);
            EXPECT_EQ(found.top - both.top, (client.Height() - height + 1) / 2 - 1);
            SetWindowLongPtrW(dialog, GWL_STYLE, bare);
        }},
        test::DialogDriver::Place::ON_SCREEN);
    EXPECT_FALSE(ended());
}

TEST_F(Messages, ThePicturesKeepTheirShapeInControlsOfTheTemplatesSize) {
    std::filesystem::current_path(test::shippedTree());
    run({[&](Dialog& dialog) {
            for (const int id : {IDC_RADIO_ON_IMAGE, IDC_RADIO_OFF_IMAGE}) {
                const HWND control = ::GetDlgItem(dialog.m_hWnd, id);
                ::ShowWindow(control, SW_SHOW);
                ::UpdateWindow(control);
                CRect client;
                ::GetClientRect(control, &client);
                CRect inTemplate(0, 0, 88, 88);
                MapDialogRect(dialog.m_hWnd, &inTemplate);
                EXPECT_EQ(client.Width(), inTemplate.Width()) << id;
                EXPECT_EQ(client.Height(), inTemplate.Height()) << id;
                EXPECT_GT(client.Width(), client.Height() * 1.05) << id;
                const CRect picture = painted(control);
                EXPECT_LT(picture.Width(), picture.Height() * 1.05) << id;
                ::ShowWindow(control, SW_HIDE);
            }
        }},
        test::DialogDriver::Place::ON_SCREEN);
}

TEST_F(Messages, ANewDialogHasNoToolTipAndAUsableRadio) {
    const tesk5::DiagDevice card = device();
    const MRLRAntennaDlg dialog(card);
    EXPECT_EQ(dialog.m_toolTip, nullptr);
    EXPECT_TRUE(dialog.m_radioUsable);
    EXPECT_EQ(dialog.m_diagDevice, &card);
    EXPECT_EQ(MRLRAntennaDlg::SIGNAL_TIMER_ID, 129U);
    EXPECT_EQ(MRLRAntennaDlg::SIGNAL_TIMER_MS, 10000U);
}

} // namespace
