#include "TestDialog.h"

#include <support/WindowLooks.h>

#include <gmock/gmock.h>

namespace {

using test::TestDialog;

// Each test works on the controls of an open dialog.
class Controls : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(dialog.Create(IDD_TEST)); }
    TestDialog dialog;
};

TEST_F(Controls, ComboBoxHoldsItsEntriesInOrderAndSelectsByIndexAndByPrefix) {
    CComboBox& combo = dialog.combo;
    EXPECT_EQ(combo.InsertString(0, L"Lab"), 0);
    EXPECT_EQ(combo.InsertString(1, L"Annex"), 1);
    EXPECT_EQ(combo.InsertString(2, L"Lab-5G"), 2);
    EXPECT_EQ(combo.GetCount(), 3);
    wchar_t text[80]{};
    EXPECT_EQ(combo.GetLBText(2, text), 6);
    EXPECT_STREQ(text, L"Lab-5G");
    EXPECT_EQ(combo.GetCurSel(), CB_ERR);
    EXPECT_EQ(combo.SetCurSel(1), 1);
    EXPECT_EQ(combo.GetCurSel(), 1);
    EXPECT_EQ(combo.SelectString(0, L"lab"), 2) << "the search starts after the given entry";
    EXPECT_EQ(combo.SelectString(2, L"Lab"), 0) << "and goes round";
    EXPECT_EQ(combo.SelectString(-1, L"nowhere"), CB_ERR);
    combo.ResetContent();
    EXPECT_EQ(combo.GetCount(), 0);
}

TEST_F(Controls, ComboBoxCanHaveHigherEntries) {
    const int height = dialog.combo.GetItemHeight(-1);
    EXPECT_GT(height, 0);
    dialog.combo.SetItemHeight(-1, static_cast<UINT>(height + 7));
    EXPECT_GT(dialog.combo.GetItemHeight(-1), height); // systems differ in the border
}

TEST_F(Controls, ProgressBarKeepsItsPositionWithinItsRangeAndStepsByItsStep) {
    CProgressCtrl& progress = dialog.progress;
    progress.SetRange(0, 100);
    EXPECT_EQ(progress.SendMessage(PBM_GETRANGE, TRUE), 0);
    EXPECT_EQ(progress.SendMessage(PBM_GETRANGE, FALSE), 100);
    progress.SetPos(49);
    EXPECT_EQ(progress.SetPos(150), 49);
    EXPECT_EQ(progress.SendMessage(PBM_GETPOS), 100);
    progress.SetPos(5);
    EXPECT_EQ(progress.SetStep(1), 10);
    EXPECT_EQ(progress.SendMessage(PBM_STEPIT), 5);
    EXPECT_EQ(progress.SendMessage(PBM_GETPOS), 6);
}

TEST_F(Controls, ToolTipShowsAfterAMouseMessageOfItsToolWhenActive) {
    CToolTipCtrl tip;
    ASSERT_TRUE(tip.Create(&dialog));
    EXPECT_TRUE(tip.AddTool(&dialog.text, L"Turn the radio off"));
    EXPECT_TRUE(tip.AddTool(&dialog.combo, L"Networks"));
    tip.SendMessage(TTM_SETDELAYTIME, TTDT_INITIAL, 10);
    dialog.ShowWindow(SW_SHOW);
    CRect place;
    ::GetWindowRect(dialog.text, place);
    SetCursorPos(place.left + 3, place.top + 3);

    const auto shows = [&] {
        MSG move{
            dialog.text, WM_MOUSEMOVE, 0, MAKELPARAM(3, 3), 0, {place.left + 3, place.top + 3}};
        tip.RelayEvent(&move);
        for (int tries = 0; tries < 30 && !::IsWindowVisible(tip); ++tries) {
            Sleep(10);
            MSG message;
            while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
                DispatchMessageW(&message);
            }
        }
        return ::IsWindowVisible(tip) != FALSE;
    };
    EXPECT_FALSE(shows()) << "not active yet";
    tip.Activate(TRUE);
    EXPECT_TRUE(shows());
    EXPECT_EQ(test::textOf(tip), L"Turn the radio off");
}

TEST_F(Controls, ToolTipIsDestroyedWithTheDialog) {
    CToolTipCtrl tip;
    tip.Create(&dialog);
    dialog.DestroyWindow();
    EXPECT_EQ(tip.m_hWnd, nullptr);
}

TEST_F(Controls, ToolTipNeedsAParentsThread) {
    CWnd none;
    CToolTipCtrl tip;
    EXPECT_FALSE(tip.AddTool(&none, L"nothing"));
}

} // namespace
