#include <mrl/System.h>

#include <gtest/gtest.h>
#include <process.h>
#include <string>
#include <winerror.h>

namespace {

// The exit value of the probe, which lies in the folder beside the tests'.
int probed(const wchar_t* what) {
    const std::wstring path =
        (mrl::System::executableFolder().parent_path() / L"helpers" / DELAY_LOAD_PROBE).wstring();
    const wchar_t* const arguments[] = {DELAY_LOAD_PROBE, what, nullptr};
    return static_cast<int>(_wspawnv(_P_WAIT, path.c_str(), arguments));
}

TEST(DelayLoad, BringsTheDllWithTheFirstCall) {
    EXPECT_EQ(probed(L"there"), 0);
}

TEST(DelayLoad, OfADllThatIsNowhereEndsTheProgram) {
    EXPECT_EQ(probed(L"dll"), ERROR_MOD_NOT_FOUND);
}

TEST(DelayLoad, OfAFunctionThatIsNowhereEndsTheProgramWhenItIsCalled) {
    EXPECT_EQ(probed(L"function"), ERROR_PROC_NOT_FOUND);
}

} // namespace
