#include "KitDialog.h"

#include <LanguageFont.h>
#include <libUikit/GdiResourceManager.h>

#include <gtest/gtest.h>
#include <optional>
#include <string>

namespace {

using test::KitDialog;
using test::Language;

constexpr LANGID ENGLISH = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);
constexpr LANGID ARABIC = MAKELANGID(LANG_ARABIC, SUBLANG_DEFAULT);
constexpr LANGID JAPANESE = MAKELANGID(LANG_JAPANESE, SUBLANG_DEFAULT);

TEST(UiLanguage, IsTheUsersUnlessItIsSet) {
    EXPECT_EQ(libUikit::uiLanguage(), GetUserDefaultUILanguage());
    {
        const Language hebrew(test::HEBREW);
        EXPECT_EQ(libUikit::uiLanguage(), test::HEBREW);
    }
    EXPECT_EQ(libUikit::uiLanguage(), GetUserDefaultUILanguage());
}

TEST(UiLanguage, KnowsWhichWayItIsWritten) {
    EXPECT_TRUE(libUikit::isRightToLeft(ARABIC));
    EXPECT_TRUE(libUikit::isRightToLeft(test::HEBREW));
    EXPECT_FALSE(libUikit::isRightToLeft(ENGLISH));
    EXPECT_FALSE(libUikit::isRightToLeft(JAPANESE));
    EXPECT_FALSE(libUikit::isRightToLeft(0xffff));
}

LONG distanceFromLeft(const KitDialog& dialog, int id) {
    return test::leftInside(*dialog.GetDlgItem(id), dialog);
}

LOGFONTW tahoma() {
    LOGFONTW font{};
    font.lfHeight = -11;
    wcscpy(font.lfFaceName, L"Tahoma");
    return font;
}

TEST(DialogLayout, IsMirroredForLanguagesWrittenFromRightToLeft) {
    LONG english = 0;
    {
        const Language language(ENGLISH);
        KitDialog dialog;
        ASSERT_TRUE(dialog.Create(IDD_KIT));
        EXPECT_EQ(GetWindowLongPtrW(dialog, GWL_EXSTYLE) & WS_EX_LAYOUTRTL, 0U);
        english = distanceFromLeft(dialog, IDC_KIT_LINE);
    }
    const Language language(test::HEBREW);
    KitDialog dialog;
    ASSERT_TRUE(dialog.Create(IDD_KIT));
    EXPECT_NE(GetWindowLongPtrW(dialog, GWL_EXSTYLE) & WS_EX_LAYOUTRTL, 0U);
    EXPECT_NE(GetWindowLongPtrW(*dialog.GetDlgItem(IDC_KIT_LINE), GWL_EXSTYLE) & WS_EX_LAYOUTRTL,
              0U);
    EXPECT_GT(distanceFromLeft(dialog, IDC_KIT_LINE), english + 100);
    EXPECT_LT(distanceFromLeft(dialog, IDC_KIT_PICTURE), english + 100);
}

TEST(LanguageFont, KeepsAFontThatHasTheLetters) {
    LOGFONTW font = tahoma();
    EXPECT_TRUE(libUikit::hasLetters(font, ENGLISH));
    EXPECT_STREQ(libUikit::fontForLanguage(font, ENGLISH).lfFaceName, L"Tahoma");
}

TEST(LanguageFont, ReplacesAFontThatLacksThemByOneThatHasThemWhereThereIsOne) {
    LOGFONTW font = tahoma();
    for (const int language : {LANG_JAPANESE, LANG_CHINESE, LANG_ARABIC}) {
        const LANGID id = MAKELANGID(static_cast<WORD>(language), SUBLANG_DEFAULT);
        const LOGFONTW chosen = libUikit::fontForLanguage(font, id);
        EXPECT_EQ(chosen.lfHeight, -11) << language;
        const bool isReplaced = std::wstring(chosen.lfFaceName) != L"Tahoma";
        EXPECT_NE(isReplaced, libUikit::hasLetters(font, id) || !libUikit::hasLetters(chosen, id))
            << language;
    }
}

class FittedTexts : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(dialog.Create(IDD_KIT)); }

    void set(int id, const wchar_t* text) { dialog.SetDlgItemText(id, text); }
    LONG full() const { return dialog.letterHeight(IDC_KIT_COMBO); }

    const Language language{ENGLISH};
    const GdiResourceManager manager;
    KitDialog dialog;
};

TEST_F(FittedTexts, ThatFitKeepTheDialogsFontAndTheirStyle) {
    EXPECT_EQ(dialog.letterHeight(IDC_KIT_LINE), full());
    EXPECT_NE(dialog.styleOf(IDC_KIT_LINE) & SS_CENTERIMAGE, 0U);
    EXPECT_EQ(dialog.letterHeight(IDC_KIT_BUTTON), full());
}

TEST_F(FittedTexts, ThatAreSlightlyTooLongGetASmallerFont) {
    set(IDC_KIT_LINE, L"Signal strength now.");
    EXPECT_LT(dialog.letterHeight(IDC_KIT_LINE), full());
    EXPECT_GE(dialog.letterHeight(IDC_KIT_LINE), full() * 3 / 5);
    EXPECT_EQ(dialog.styleOf(IDC_KIT_LINE) & SS_ENDELLIPSIS, 0U);
    set(IDC_KIT_LINE, L"short");
    EXPECT_EQ(dialog.letterHeight(IDC_KIT_LINE), full()) << "and the full one again later";
}

TEST_F(FittedTexts, WrapWhereTheControlHasRoomForSeveralLines) {
    set(IDC_KIT_TALL, L"Several words on several lines");
    EXPECT_EQ(dialog.styleOf(IDC_KIT_TALL) & SS_CENTERIMAGE, 0U);
    EXPECT_EQ(dialog.letterHeight(IDC_KIT_TALL), full());
    set(IDC_KIT_TALL, L"short");
    EXPECT_NE(dialog.styleOf(IDC_KIT_TALL) & SS_CENTERIMAGE, 0U);
}

TEST_F(FittedTexts, ThatWrapAlreadyGetASmallerFontWhenTheLinesDoNotFit) {
    set(IDC_KIT_BLOCK, L"Some more words than two lines of this width can hold");
    EXPECT_LT(dialog.letterHeight(IDC_KIT_BLOCK), full());
}

TEST_F(FittedTexts, ThatAreFarTooLongEndInDots) {
    set(IDC_KIT_LINE, std::wstring(200, L'W').c_str());
    EXPECT_NE(dialog.styleOf(IDC_KIT_LINE) & SS_ENDELLIPSIS, 0U);
    EXPECT_NE(dialog.styleOf(IDC_KIT_LINE) & SS_CENTERIMAGE, 0U);
    set(IDC_KIT_LINE, L"short");
    EXPECT_EQ(dialog.styleOf(IDC_KIT_LINE) & SS_ENDELLIPSIS, 0U);
}

TEST_F(FittedTexts, OfButtonsGetASmallerFontToo) {
    set(IDC_KIT_BUTTON, L"A considerably longer label");
    EXPECT_LT(dialog.letterHeight(IDC_KIT_BUTTON), full());
}

TEST_F(FittedTexts, AreFittedAgainWhenTheControlChangesItsSize) {
    set(IDC_KIT_LINE, L"Signal strength now.");
    ASSERT_LT(dialog.letterHeight(IDC_KIT_LINE), full());
    CRect place;
    dialog.GetDlgItem(IDC_KIT_LINE)->GetClientRect(place);
    ::MoveWindow(*dialog.GetDlgItem(IDC_KIT_LINE), 0, 0, 3 * place.Width(), place.Height(), TRUE);
    EXPECT_EQ(dialog.letterHeight(IDC_KIT_LINE), full());
}

// Each drawing of a control sends WM_CTLCOLOR.
class DrawnTexts : public FittedTexts {
protected:
    void SetUp() override {
        FittedTexts::SetUp();
        dialog.ShowWindow(SW_SHOWNOACTIVATE);
        drawingsOf(L"at first");
    }
    /// How often the control is drawn until it shows `text`.
    int drawingsOf(const wchar_t* text) {
        int drawings = 0;
        dialog.onColor = [&](CWnd* control) {
            drawings += control->GetDlgCtrlID() == IDC_KIT_LINE ? 1 : 0;
            return GetSysColorBrush(COLOR_3DFACE);
        };
        set(IDC_KIT_LINE, text);
        RedrawWindow(dialog, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
        dialog.onColor = nullptr;
        return drawings;
    }
};

TEST_F(DrawnTexts, AreDrawnOnceWhereTheyFit) {
    EXPECT_EQ(drawingsOf(L"short"), 1);
    EXPECT_EQ(drawingsOf(L"other"), 1);
    EXPECT_EQ(drawingsOf(L"other"), 1) << "the system decides on that, not the kit";
}

TEST_F(DrawnTexts, AreDrawnAgainInTheFontThatFits) {
    EXPECT_EQ(drawingsOf(L"Signal strength now."), 2);
    EXPECT_EQ(drawingsOf(L"Signal strength now."), 1);
    EXPECT_EQ(drawingsOf(L"short"), 2);
}

TEST_F(FittedTexts, FollowTheScaleOfTheScreen) {
    const LONG before = full();
    const UINT dpi = GetDpiForWindow(dialog);
    RECT suggested{0, 0, 800, 600};
    dialog.SendMessage(WM_DPICHANGED, MAKEWPARAM(2 * dpi, 2 * dpi),
                       reinterpret_cast<LPARAM>(&suggested));
    EXPECT_EQ(full(), 2 * before);
    dialog.SendMessage(WM_DPICHANGED, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&suggested));
    EXPECT_EQ(full(), before);
}

TEST_F(FittedTexts, KeepTheirStateWhenTheirStyleChanges) {
    dialog.GetDlgItem(IDC_KIT_LINE)->EnableWindow(FALSE);
    set(IDC_KIT_LINE, std::wstring(200, L'W').c_str());
    EXPECT_NE(dialog.styleOf(IDC_KIT_LINE) & WS_DISABLED, 0U);
}

TEST(GdiResources, AreMadeOnceForEqualProperties) {
    LOGFONTW font = tahoma();
    EXPECT_NE(GdiResourceManager::font(font), GdiResourceManager::font(font)) << "no manager";
    const GdiResourceManager manager;
    const auto first = GdiResourceManager::font(font);
    EXPECT_EQ(GdiResourceManager::font(font), first);
    font.lfHeight = -12;
    EXPECT_NE(GdiResourceManager::font(font), first);
}

TEST(GdiResources, InUseOutliveTheirManager) {
    std::optional<GdiResourceManager> manager(std::in_place);
    const auto kept = GdiResourceManager::font(tahoma());
    manager.reset();
    EXPECT_EQ(GetObjectType(kept->handle()), UINT{OBJ_FONT});
}

} // namespace
