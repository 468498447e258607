// The application on a thread on which OLE cannot start.
#include <MRLrAntennaApp.h>

#include <support/MessageBoxUser.h>

#include <gtest/gtest.h>
#include <objbase.h>

#include <thread>

namespace {

TEST(OleFailure, IsShownAndEndsTheApplicationBeforeAnyTestRuns) {
    std::thread application([] {
        // OLE needs a single-threaded apartment.
        ASSERT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
        test::SeenBox box;
        const DWORD thread = GetCurrentThreadId();
        std::thread user([&] { box = test::answerMessageBox(thread, IDOK); });
        EXPECT_FALSE(theApp.InitInstance());
        user.join();
        EXPECT_EQ(box.prompt, L"Ole Initialization Failed");
        CoUninitialize();
    });
    application.join();
}

} // namespace
