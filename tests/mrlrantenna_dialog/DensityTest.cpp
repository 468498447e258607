// The dialog on a screen of another density: every control and the icons.
#include "DialogTest.h"
#include "TabletPcDouble.h"

#include <libUikit/UiLanguage.h>

#include <support/WindowLooks.h>

#include <map>

namespace {

using test::Dialog;

// Where a control lies in the dialog, its letters and, of a list, the height of a line.
struct Look {
    std::array<LONG, 4> place{}; // x, y, width, height
    LONG letters = 0;
    LONG line = 0;

    friend bool operator==(const Look&, const Look&) = default;
};

void PrintTo(const Look& look, std::ostream* out) {
    for (const LONG side : look.place) {
        *out << side << " ";
    }
    *out << "letters " << look.letters << " line " << look.line;
}

using Looks = std::map<int, Look>;

Looks looksOf(const Dialog& dialog) {
    Looks looks;
    for (HWND control = GetWindow(dialog, GW_CHILD); control != nullptr;
         control = GetWindow(control, GW_HWNDNEXT)) {
        RECT place{};
        GetWindowRect(control, &place);
        MapWindowPoints(nullptr, dialog, reinterpret_cast<LPPOINT>(&place), 2);
        Look& look = looks[::GetDlgCtrlID(control)];
        look.place = {place.left, place.top, place.right - place.left, place.bottom - place.top};
        look.letters = test::letterHeight(control);
        if (control == dialog.m_networkCombo.m_hWnd) {
            look.line = dialog.m_networkCombo.GetItemHeight(0);
        }
    }
    return looks;
}

bool isPicture(int id) {
    return id == IDC_RADIO_ON_IMAGE || id == IDC_RADIO_OFF_IMAGE; // draws no letters
}

CRect placeOf(HWND window) {
    CRect place;
    ::GetWindowRect(window, place);
    return place;
}

// Tells the dialog that it has come to a screen with this part of 96 DPI, as Windows does.
void move(const Dialog& dialog, UINT percent, RECT suggested) {
    const UINT dpi = 96 * percent / 100;
    dialog.SendMessage(WM_DPICHANGED, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&suggested));
}

int sideOf(LRESULT icon) {
    ICONINFO parts{};
    BITMAP bitmap{};
    if (!GetIconInfo(reinterpret_cast<HICON>(icon), &parts)) {
        return 0;
    }
    GetObjectW(parts.hbmMask, sizeof bitmap, &bitmap);
    DeleteObject(parts.hbmMask);
    DeleteObject(parts.hbmColor);
    return bitmap.bmWidth;
}

class Densities : public test::DialogTest {
protected:
    ~Densities() override { libUikit::setUiLanguage(0); }

    // A factor of 1 to 2 in steps of a quarter, and the way back.
    void check() {
        run({[](Dialog& dialog) {
            const Looks first = looksOf(dialog);
            EXPECT_EQ(first.size(), 31U);
            const CRect place = placeOf(dialog);
            for (const LONG percent : {125, 200, 150, 100}) {
                const RECT suggested{-9000, -9000, -9000 + place.Width() * percent / 100,
                                     -9000 + place.Height() * percent / 100};
                move(dialog, static_cast<UINT>(percent), suggested);
                EXPECT_TRUE(EqualRect(placeOf(dialog), &suggested));
                const Looks now = looksOf(dialog);
                for (const auto& [id, before] : first) {
                    SCOPED_TRACE(id);
                    SCOPED_TRACE(percent);
                    const Look& look = now.at(id);
                    if (percent == 100) {
                        EXPECT_EQ(look, before);
                        continue;
                    }
                    const auto scaled = [&](LONG length) { return length * percent / 100; };
                    const std::size_t sides = id == IDC_NETWORK_COMBO ? 3 : 4;
                    for (std::size_t side = 0; side < sides; ++side) {
                        EXPECT_NEAR(look.place[side], scaled(before.place[side]), 1);
                    }
                    // A list's own height is that of its letters and its frame.
                    EXPECT_NEAR(look.place[3], scaled(before.place[3]), percent / 20);
                    EXPECT_NEAR(look.letters,
                                isPicture(id) ? before.letters : scaled(before.letters), 1);
                    EXPECT_NEAR(look.line, scaled(before.line), 1);
                }
            }
        }});
    }
};

TEST_F(Densities, KeepEveryControlInProportionThereAndBack) {
    check();
}

TEST_F(Densities, KeepTheTallLinesOfATabletPc) {
    doubles::tabletPc = true;
    check();
}

TEST_F(Densities, KeepAMirroredDialogInProportion) {
    libUikit::setUiLanguage(MAKELANGID(LANG_ARABIC, SUBLANG_DEFAULT));
    check();
}

TEST_F(Densities, HaveIconsOfTheirOwnSizes) {
    run({[](Dialog& dialog) {
        for (const UINT percent : {100U, 150U, 200U, 100U}) {
            SCOPED_TRACE(percent);
            const UINT dpi = 96 * percent / 100;
            move(dialog, percent, placeOf(dialog));
            EXPECT_EQ(sideOf(dialog.SendMessage(WM_GETICON, ICON_BIG)),
                      GetSystemMetricsForDpi(SM_CXICON, dpi));
            EXPECT_EQ(sideOf(dialog.SendMessage(WM_GETICON, ICON_SMALL)),
                      GetSystemMetricsForDpi(SM_CXSMICON, dpi));
        }
    }});
}

} // namespace
