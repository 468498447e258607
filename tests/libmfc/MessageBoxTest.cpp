#include <afxwin.h>

#include <support/MessageBoxUser.h>

#include <gtest/gtest.h>
#include <string>
#include <thread>

namespace {

struct Shown {
    test::SeenBox box;
    int result;
};

Shown show(const wchar_t* text, UINT type, int button) {
    Shown shown{};
    const DWORD thread = GetCurrentThreadId();
    std::thread user([&] { shown.box = test::answerMessageBox(thread, button); });
    shown.result = AfxMessageBox(text, type, 0);
    user.join();
    return shown;
}

TEST(AfxMessageBoxes, ShowsTheTextUnderTheApplicationsNameAndGivesTheAnswer) {
    const CWinApp application(L"Antennas");
    const Shown shown = show(L"Ole Initialization Failed", 0, IDOK);
    EXPECT_EQ(shown.box.title, L"Antennas");
    EXPECT_EQ(shown.box.prompt, L"Ole Initialization Failed");
    EXPECT_EQ(shown.result, IDOK);
}

TEST(AfxMessageBoxes, GivesTheButtonThatWasPressed) {
    const CWinApp application;
    EXPECT_EQ(show(L"Again?", MB_YESNO, IDNO).result, IDNO);
}

TEST(AfxMessageBoxes, WorksWithoutAnApplicationObject) {
    EXPECT_EQ(show(L"No application", MB_OK, IDOK).box.prompt, L"No application");
}

} // namespace
