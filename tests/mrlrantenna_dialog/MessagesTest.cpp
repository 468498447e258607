// The remaining messages: painting, the icon of the minimised window, scroll bars.
#include "DialogTest.h"

namespace {

using test::Dialog;
using testing::ElementsAre;
using testing::IsEmpty;

class Messages : public test::DialogTest {};

TEST_F(Messages, DragIconIsTheModulesIcon) {
    run({[](Dialog& dialog) {
        ASSERT_NE(dialog.m_hIcon, nullptr);
        EXPECT_EQ(reinterpret_cast<HICON>(dialog.SendMessage(WM_QUERYDRAGICON)), dialog.m_hIcon);
    }});
}

TEST_F(Messages, ScrollBarsHaveNoMeaning) {
    run({[&](Dialog& dialog) {
        journal().clear();
        radio().clearCalls();
        dialog.SendMessage(WM_HSCROLL, SB_LINERIGHT, 0);
        EXPECT_THAT(journal().entries(), IsEmpty());
        EXPECT_THAT(radio().callNames(), IsEmpty());
        EXPECT_TRUE(dialog.IsWindowVisible());
    }});
}

TEST_F(Messages, AnOpenWindowIsPaintedAsAnyDialog) {
    run({[&](Dialog& dialog) {
            journal().clear();
            dialog.Invalidate();
            dialog.UpdateWindow();
            EXPECT_THAT(journal().entries({"icon"}), IsEmpty());
            EXPECT_FALSE(::GetUpdateRect(dialog.m_hWnd, nullptr, FALSE));
        }},
        test::DialogDriver::Place::ON_SCREEN);
}

TEST_F(Messages, AMinimisedWindowIsPaintedAsItsIcon) {
    run({[&](Dialog& dialog) {
            // The style without the place: there is room to look at the icon.
            dialog.ModifyStyle(0, WS_MINIMIZE);
            ASSERT_TRUE(dialog.IsIconic());
            journal().clear();
            dialog.Invalidate();
            dialog.SendMessage(WM_PAINT);
            EXPECT_THAT(journal().entries({"icon"}), ElementsAre("icon background"));
            EXPECT_FALSE(::GetUpdateRect(dialog.m_hWnd, nullptr, FALSE));
            dialog.ModifyStyle(WS_MINIMIZE, 0);
        }},
        test::DialogDriver::Place::ON_SCREEN);
    EXPECT_FALSE(ended());
}

TEST_F(Messages, UpdateDataBindsEachControlToItsMember) {
    run({[](Dialog& dialog) {
        EXPECT_EQ(dialog.m_signalMeter.GetDlgCtrlID(), IDC_SIGNAL_METER);
        EXPECT_EQ(dialog.m_networkCombo.GetDlgCtrlID(), IDC_NETWORK_COMBO);
        EXPECT_EQ(dialog.m_radioOnImage.GetDlgCtrlID(), IDC_RADIO_ON_IMAGE);
        EXPECT_EQ(dialog.m_radioOffImage.GetDlgCtrlID(), IDC_RADIO_OFF_IMAGE);
    }});
}

TEST_F(Messages, ANewDialogHasNoToolTipAndAUsableRadio) {
    const tesk5::DiagDevice card = device();
    const MRLRAntennaDlg dialog(card);
    EXPECT_EQ(dialog.m_toolTip, nullptr);
    EXPECT_TRUE(dialog.m_radioUsable);
    EXPECT_EQ(dialog.m_diagDevice, &card);
    EXPECT_NE(dialog.m_wirelessDevice, nullptr);
    EXPECT_NE(dialog.m_hIcon, nullptr);
    EXPECT_EQ(MRLRAntennaDlg::SIGNAL_TIMER_ID, 129U);
    EXPECT_EQ(MRLRAntennaDlg::SIGNAL_TIMER_MS, 10000U);
}

} // namespace
