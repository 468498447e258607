#include <afxdisp.h>

#include <gtest/gtest.h>
#include <objbase.h>
#include <thread>

namespace {

bool comIsUp() {
    APTTYPE type{};
    APTTYPEQUALIFIER qualifier{};
    return CoGetApartmentType(&type, &qualifier) == S_OK;
}

struct OleApplication final : CWinApp {
    BOOL InitInstance() override {
        started = AfxOleInit();
        startedAgain = AfxOleInit();
        AfxEnableControlContainer();
        up = comIsUp();
        return FALSE;
    }
    BOOL started = FALSE;
    BOOL startedAgain = FALSE;
    bool up = false;
};

// OLE belongs to a thread, so each test has its own.
template <class Body>
void onNewThread(Body body) {
    std::thread thread(body);
    thread.join();
}

TEST(Ole, RunsFromAfxOleInitUntilTheApplicationEnds) {
    onNewThread([] {
        OleApplication application;
        AfxWinMain(GetModuleHandleW(nullptr), nullptr, GetCommandLineW(), SW_SHOW);
        EXPECT_TRUE(application.started);
        EXPECT_TRUE(application.startedAgain);
        EXPECT_TRUE(application.up);
        EXPECT_FALSE(comIsUp());
    });
}

TEST(Ole, CannotStartInTheMultithreadedApartmentAndIsNotEndedThen) {
    onNewThread([] {
        ASSERT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
        OleApplication application;
        AfxWinMain(GetModuleHandleW(nullptr), nullptr, GetCommandLineW(), SW_SHOW);
        EXPECT_FALSE(application.started);
        EXPECT_TRUE(comIsUp());
        CoUninitialize();
    });
}

} // namespace
