#include <afxwin.h>

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

TEST(CommandLineInfo, KnowsTheFlagsOfServersInAnyLetterCase) {
    CCommandLineInfo info;
    info.ParseParam(L"AUTOMATION", TRUE, TRUE);
    EXPECT_TRUE(info.m_bRunAutomated);
    EXPECT_FALSE(info.m_bRunEmbedded);
    EXPECT_FALSE(info.m_bShowSplash);

    CCommandLineInfo embedded;
    embedded.ParseParam(L"Embedding", TRUE, TRUE);
    EXPECT_TRUE(embedded.m_bRunEmbedded);
    EXPECT_FALSE(embedded.m_bShowSplash);
}

TEST(CommandLineInfo, TakesNothingElseForAFlag) {
    CCommandLineInfo info;
    info.ParseParam(L"Automation", FALSE, FALSE);
    info.ParseParam(L"json", TRUE, TRUE);
    EXPECT_FALSE(info.m_bRunAutomated);
    EXPECT_TRUE(info.m_bShowSplash);
}

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
