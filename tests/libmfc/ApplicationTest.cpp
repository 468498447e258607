#include <afxwin.h>

#include <support/HelperProgram.h>

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using Steps = std::vector<std::string>;

class RecordingApplication : public CWinApp {
public:
    explicit RecordingApplication(LPCTSTR name = nullptr) : CWinApp(name) {}

    BOOL InitInstance() override {
        steps.emplace_back("InitInstance");
        return starts;
    }
    int Run() override {
        steps.emplace_back("Run");
        return 5;
    }
    int ExitInstance() override {
        steps.emplace_back("ExitInstance");
        return CWinApp::ExitInstance();
    }

    int start() {
        return AfxWinMain(GetModuleHandleW(nullptr), nullptr, GetCommandLineW(), SW_SHOW);
    }

    bool starts = true;
    Steps steps;
};

TEST(Application, IsTheOneThatAfxGetAppGivesWhileItLives) {
    EXPECT_EQ(AfxGetApp(), nullptr);
    {
        const RecordingApplication application;
        EXPECT_EQ(AfxGetApp(), &application);
        const RecordingApplication second;
        EXPECT_EQ(AfxGetApp(), &application);
    }
    EXPECT_EQ(AfxGetApp(), nullptr);
}

TEST(Application, TakesItsNameFromTheExecutableUnlessItIsGivenOne) {
    EXPECT_STREQ(RecordingApplication().m_pszAppName, L"test_libmfc");
    EXPECT_STREQ(RecordingApplication(L"Antennas").m_pszAppName, L"Antennas");
}

TEST(Application, GivesRunsValueAsTheProcessesAfterAGoodStart) {
    RecordingApplication application;
    EXPECT_EQ(application.start(), 5);
    EXPECT_EQ(application.steps, (Steps{"InitInstance", "Run"}));
}

TEST(Application, ThatRefusesToStartExitsWithoutRunning) {
    RecordingApplication application;
    application.starts = false;
    EXPECT_EQ(application.start(), 0);
    EXPECT_EQ(application.steps, (Steps{"InitInstance", "ExitInstance"}));
}

TEST(Application, CannotRunWhenThereIsNone) {
    EXPECT_EQ(AfxWinMain(GetModuleHandleW(nullptr), nullptr, GetCommandLineW(), SW_SHOW), -1);
}

TEST(Application, LooksForIconsInTheExecutable) {
    const RecordingApplication application;
    EXPECT_EQ(application.LoadIcon(4711U), nullptr);
}

// The process from its entry on, in a program that has no main() of its own.

DWORD runProbe(const std::wstring& arguments) {
    return test::runHelper(MFC_APPLICATION_PROBE, arguments).code;
}

TEST(ApplicationProcess, ExitsWithWhatRunReturnsAfterReadingItsArguments) {
    EXPECT_EQ(runProbe(L""), 40U);
    EXPECT_EQ(runProbe(L"run --twice"), 42U);
}

TEST(ApplicationProcess, ExitsWithWhatExitInstanceReturnsWhenItDoesNotStart) {
    EXPECT_EQ(runProbe(L"refuse"), 23U);
}

} // namespace
