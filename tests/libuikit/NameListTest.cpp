// Names with control characters, in lists and in texts.
#include "KitDialog.h"

#include <TextFit.h>

#include <gtest/gtest.h>

namespace {

constexpr const wchar_t* HOSTILE = L"Two\r\nLines\x1b";
constexpr const wchar_t* MADE_VISIBLE = L"Two\\r\\nLines\\x1B";

class Names : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dialog.Create(IDD_KIT));
        list.Attach(::GetDlgItem(dialog, IDC_KIT_COMBO));
        dialog.ShowsNames(list);
    }
    void TearDown() override { list.Detach(); }

    // What the drop-down list draws.
    std::wstring drawn(WPARAM index) const {
        COMBOBOXINFO parts{};
        parts.cbSize = sizeof parts;
        GetComboBoxInfo(list, &parts);
        wchar_t text[80]{};
        ::SendMessageW(parts.hwndList, LB_GETTEXT, index, reinterpret_cast<LPARAM>(text));
        return text;
    }
    std::wstring entry(int index) const {
        wchar_t text[80]{};
        const int length = list.GetLBText(index, text);
        EXPECT_EQ(length, list.SendMessage(CB_GETLBTEXTLEN, static_cast<WPARAM>(index)));
        return text;
    }

    test::KitDialog dialog;
    CComboBox list;
};

TEST_F(Names, InAListAreShownWithVisibleControlCharactersAndStayThemselvesInItsMessages) {
    list.InsertString(0, HOSTILE);
    list.InsertString(0, L"Lab");
    EXPECT_EQ(drawn(0), L"Lab");
    EXPECT_EQ(drawn(1), MADE_VISIBLE);
    EXPECT_EQ(entry(0), L"Lab");
    EXPECT_EQ(entry(1), HOSTILE);
    EXPECT_EQ(list.SelectString(-1, HOSTILE), 1);
    list.SendMessage(CB_DELETESTRING, 0);
    EXPECT_EQ(entry(0), HOSTILE);
    list.ResetContent();
    list.InsertString(0, L"Attic");
    EXPECT_EQ(entry(0), L"Attic");
    wchar_t text[80]{};
    EXPECT_EQ(list.GetLBText(1, text), CB_ERR);
}

TEST_F(Names, InATextAreShownWithVisibleControlCharactersAndStayThemselvesInItsMessages) {
    const HWND name = *dialog.GetDlgItem(IDC_KIT_NAME);
    dialog.SetDlgItemText(IDC_KIT_NAME, HOSTILE);
    EXPECT_EQ(libUikit::textOf(name), MADE_VISIBLE);
    EXPECT_EQ(dialog.text(IDC_KIT_NAME), HOSTILE);
    wchar_t cut[4]{};
    EXPECT_EQ(::SendMessageW(name, WM_GETTEXT, std::size(cut), reinterpret_cast<LPARAM>(cut)), 3);
    EXPECT_STREQ(cut, L"Two");
    dialog.SetDlgItemText(IDC_KIT_NAME, L"Lab");
    EXPECT_EQ(libUikit::textOf(name), L"Lab");
    EXPECT_EQ(dialog.text(IDC_KIT_NAME), L"Lab");
}

TEST_F(Names, AloneAreTreatedSo) {
    dialog.SetDlgItemText(IDC_KIT_BLOCK, L"Two\nlines");
    EXPECT_EQ(libUikit::textOf(*dialog.GetDlgItem(IDC_KIT_BLOCK)), L"Two\nlines");
}

TEST_F(Names, ThatAreMissingDoNotLookSelected) {
    dialog.ShowWindow(SW_SHOW);
    ::SetFocus(list);
    const auto middle = [this] {
        RedrawWindow(dialog, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
        CRect place;
        list.GetClientRect(place);
        const HDC dc = GetDC(list);
        const COLORREF colour = GetPixel(dc, place.Width() / 2, place.Height() / 2);
        ReleaseDC(list, dc);
        return colour;
    };
    EXPECT_NE(middle(), GetSysColor(COLOR_HIGHLIGHT));
    list.InsertString(0, L"Lab");
    list.SetCurSel(0);
    middle();
    list.ResetContent();
    EXPECT_NE(middle(), GetSysColor(COLOR_HIGHLIGHT)) << "nor those that have gone";
}

} // namespace
