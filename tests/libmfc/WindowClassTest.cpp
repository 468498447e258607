#include <afxwin.h>

#include <gtest/gtest.h>
#include <string>

namespace {

constexpr UINT STYLE = CS_BYTEALIGNWINDOW | CS_DBLCLKS | CS_HREDRAW | CS_VREDRAW;

TEST(WindowClass, IsRegisteredWithTheGivenProperties) {
    const HBRUSH brush = GetSysColorBrush(COLOR_WINDOW);
    const std::wstring name = AfxRegisterWndClass(STYLE, nullptr, brush);
    WNDCLASSW found{};
    ASSERT_NE(GetClassInfoW(GetModuleHandleW(nullptr), name.c_str(), &found), 0);
    EXPECT_EQ(found.style, STYLE);
    EXPECT_EQ(found.hbrBackground, brush);
    EXPECT_EQ(found.hCursor, nullptr);
    EXPECT_EQ(found.hIcon, nullptr);
}

TEST(WindowClass, HasOneNameForEqualPropertiesAndAnotherForOthers) {
    const std::wstring name = AfxRegisterWndClass(STYLE);
    EXPECT_EQ(AfxRegisterWndClass(STYLE), name);
    EXPECT_NE(AfxRegisterWndClass(CS_DBLCLKS), name);
}

TEST(WindowClass, ReportsAFailureAsTheOneResourceException) {
    const auto thrown = [] {
        try {
            AfxThrowResourceException();
        } catch (CResourceException* exception) {
            exception->Delete();
            return exception;
        }
    };
    EXPECT_EQ(thrown(), thrown());
}

} // namespace
