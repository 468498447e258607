#include <afxwin.h>

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

TEST(CommandLineInfo, ReceivesTheProcessesArgumentsButNotItsName) {
    struct Collected final : CCommandLineInfo {
        void ParseParam(const TCHAR* text, BOOL flag, BOOL last) override {
            texts.emplace_back(text);
            flags.push_back(flag);
            lasts.push_back(last);
        }
        std::vector<std::wstring> texts;
        std::vector<BOOL> flags;
        std::vector<BOOL> lasts;
    } collected;
    CWinApp application;
    application.ParseCommandLine(collected);
    // The test program's own arguments, whatever the runner has given it.
    const std::wstring typed = GetCommandLineW();
    for (std::size_t i = 0; i < collected.texts.size(); ++i) {
        EXPECT_NE(typed.find((collected.flags[i] ? L"-" : L"") + collected.texts[i]),
                  std::wstring::npos);
        EXPECT_EQ(collected.lasts[i], i + 1 == collected.texts.size());
    }
}

} // namespace
