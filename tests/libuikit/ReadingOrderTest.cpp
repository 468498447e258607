// In which direction the texts of mirrored dialogs are painted.
#include "KitDialog.h"

#include <ReadingOrder.h>
#include <libUikit/GdiResourceManager.h>

#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

namespace {

using test::KitDialog;

TEST(ReadingOrder, IsFromTheRightForTextsAndThatOfTheFirstLetterForNames) {
    EXPECT_TRUE(libUikit::isReadFromRight(L"\u05d0\u05d1", 0));
    EXPECT_TRUE(libUikit::isReadFromRight(L"SSID", 0));
    EXPECT_FALSE(libUikit::isReadFromRight(L"Lab \u05d0", SS_NOPREFIX));
    EXPECT_TRUE(libUikit::isReadFromRight(L"(5) \u05d0 Lab", SS_NOPREFIX));
    EXPECT_FALSE(libUikit::isReadFromRight(L"12", SS_NOPREFIX));
    EXPECT_FALSE(libUikit::isReadFromRight(L"", SS_NOPREFIX));
}

// Columns and rows of a picture that have ink in them.
struct Ink {
    std::vector<bool> columns;
    std::vector<bool> rows;

    // Width of the first run of columns with ink from the left, and from the right.
    int leftmost() const { return run(columns.begin(), columns.end()); }
    int rightmost() const { return run(columns.rbegin(), columns.rend()); }
    // Columns without ink at the right edge.
    int gapAtTheRight() const {
        return static_cast<int>(std::find(columns.rbegin(), columns.rend(), true) -
                                columns.rbegin());
    }
    int lines() const {
        int count = 0;
        for (std::size_t i = 0; i < rows.size(); ++i) {
            count += rows[i] && (i == 0 || !rows[i - 1]) ? 1 : 0;
        }
        return count;
    }

private:
    template <class Iterator>
    static int run(Iterator at, Iterator end) {
        const Iterator first = std::find(at, end, true);
        return static_cast<int>(std::find(first, end, false) - first);
    }
};

class MirroredTexts : public testing::Test {
protected:
    void SetUp() override {
        dialog.onColor = [this](CWnd*) { return white; };
        ASSERT_TRUE(dialog.Create(IDD_KIT));
    }
    void TearDown() override {
        dialog.DestroyWindow();
        DeleteObject(white);
    }

    Ink painted(int id, const wchar_t* text) {
        dialog.SetDlgItemText(id, text);
        const test::Painted painted(*dialog.GetDlgItem(id), LAYOUT_RTL);
        Ink ink{std::vector<bool>(static_cast<std::size_t>(painted.width())),
                std::vector<bool>(static_cast<std::size_t>(painted.height()))};
        for (int x = 0; x < painted.width(); ++x) {
            for (int y = 0; y < painted.height(); ++y) {
                // Darker than the background of the letters.
                if (GetGValue(painted.at(x, y)) < 200) {
                    ink.columns[static_cast<std::size_t>(x)] = true;
                    ink.rows[static_cast<std::size_t>(y)] = true;
                }
            }
        }
        return ink;
    }

    const test::Language language{test::HEBREW};
    const GdiResourceManager manager;
    const HBRUSH white = CreateSolidBrush(RGB(255, 255, 255));
    KitDialog dialog;
};

// An exclamation mark is far narrower than the letters here, which have no gaps.
constexpr int NARROW = 3;

TEST_F(MirroredTexts, BeginAtTheRightEdgeAndEndAtTheLeft) {
    const Ink ink = painted(IDC_KIT_LINE, L"\u05dd\u05dd \u05dd!");
    EXPECT_LE(ink.leftmost(), NARROW);
    EXPECT_GT(ink.rightmost(), NARROW);
    EXPECT_LE(ink.gapAtTheRight(), 3);
}

TEST_F(MirroredTexts, AreReadTheSameWayInEachOfTheirLines) {
    const Ink ink = painted(IDC_KIT_BLOCK, L"\u05dd\u05dd\u05dd\u05dd\u05dd\u05dd\u05dd\u05dd "
                                           L"\u05dd\u05dd\u05dd\u05dd\u05dd\u05dd\u05dd \u05dd!");
    EXPECT_EQ(ink.lines(), 2);
    EXPECT_LE(ink.gapAtTheRight(), 3);
}

TEST_F(MirroredTexts, ThatAreNamesKeepTheirOwnOrderAtTheRightEdge) {
    SetWindowLongPtrW(*dialog.GetDlgItem(IDC_KIT_LINE), GWL_STYLE,
                      static_cast<LONG_PTR>(dialog.styleOf(IDC_KIT_LINE)) | SS_NOPREFIX);
    const Ink ink = painted(IDC_KIT_LINE, L"LL!");
    EXPECT_LE(ink.rightmost(), NARROW);
    EXPECT_GT(ink.leftmost(), NARROW);
    EXPECT_LE(ink.gapAtTheRight(), 3);
}

TEST_F(MirroredTexts, KeepTheirCharacters) {
    dialog.SetDlgItemText(IDC_KIT_LINE, L"\u05dd.");
    EXPECT_EQ(dialog.text(IDC_KIT_LINE), L"\u05dd.") << "without directional characters";
}

TEST_F(MirroredTexts, TakeTheirBackgroundFromTheDialog) {
    EXPECT_EQ(painted(IDC_KIT_LINE, L"").lines(), 0);
}

} // namespace
