// The refresh that notifications leave pending for the dialog, without any thread but this one.
#include <windows.h>

#include <PostedRefresh.h>

#include <gtest/gtest.h>

namespace {

// Dialogs are only compared.
MRLRAntennaDlg* dialogAt(char& place) {
    return reinterpret_cast<MRLRAntennaDlg*>(&place);
}

class APostedRefresh : public testing::Test {
protected:
    APostedRefresh() { m_refresh.open(m_dialog, &m_window); }
    ~APostedRefresh() override { m_refresh.close(m_dialog); }

    char m_places[2] = {};
    MRLRAntennaDlg* const m_dialog = dialogAt(m_places[0]);
    MRLRAntennaDlg* const m_otherDialog = dialogAt(m_places[1]);
    doubles::Window m_window;
    PostedRefresh& m_refresh = PostedRefresh::instance();
};

TEST_F(APostedRefresh, IsNotPendingBeforeItIsPosted) {
    EXPECT_FALSE(m_refresh.takePending(m_dialog));
}

TEST_F(APostedRefresh, WakesTheLoopAndIsTakenOnce) {
    m_refresh.post(m_dialog);
    EXPECT_EQ(m_window.emptyMessages, 1);
    EXPECT_TRUE(m_refresh.takePending(m_dialog));
    EXPECT_FALSE(m_refresh.takePending(m_dialog));
}

TEST_F(APostedRefresh, IsOneForAllNotificationsUntilItIsTaken) {
    m_refresh.post(m_dialog);
    m_refresh.post(m_dialog);
    EXPECT_EQ(m_window.emptyMessages, 1);
    m_refresh.takePending(m_dialog);
    m_refresh.post(m_dialog);
    EXPECT_EQ(m_window.emptyMessages, 2);
}

TEST_F(APostedRefresh, IsOnlyForTheDialogThatIsOpen) {
    m_refresh.post(m_otherDialog);
    m_refresh.post(nullptr);
    EXPECT_EQ(m_window.emptyMessages, 0);
    m_refresh.post(m_dialog);
    EXPECT_FALSE(m_refresh.takePending(m_otherDialog));
    m_refresh.close(m_otherDialog);
    EXPECT_TRUE(m_refresh.takePending(m_dialog));
}

TEST_F(APostedRefresh, IsDroppedWhenTheDialogCloses) {
    m_refresh.post(m_dialog);
    m_refresh.close(m_dialog);
    EXPECT_FALSE(m_refresh.takePending(m_dialog));
    m_refresh.post(m_dialog);
    m_refresh.post(nullptr);
    EXPECT_EQ(m_window.emptyMessages, 1);
}

// A new dialog may get the address of the one before.
TEST_F(APostedRefresh, IsNotLeftToTheNextDialogAtTheSamePlace) {
    m_refresh.post(m_dialog);
    m_refresh.close(m_dialog);
    doubles::Window nextWindow;
    m_refresh.open(m_dialog, &nextWindow);
    EXPECT_FALSE(m_refresh.takePending(m_dialog));
    m_refresh.post(m_dialog);
    EXPECT_EQ(nextWindow.emptyMessages, 1);
}

} // namespace
