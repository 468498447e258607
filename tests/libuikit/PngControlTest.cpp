#include "KitDialog.h"

#include <GdiplusHeaders.h>

#include <libUikit/GdiResourceManager.h>
#include <mrl/System.h>
#include <support/CapturedLog.h>

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <vector>

namespace {

using test::KitDialog;
using testing::HasSubstr;

constexpr COLORREF BACKGROUND = RGB(0, 0, 255);
constexpr COLORREF RED = RGB(255, 0, 0);
constexpr COLORREF GREEN = RGB(0, 255, 0);

// Writes a PNG whose left half is `left` and whose right half is `right`.
void writePng(const std::filesystem::path& file, int width, int height, Gdiplus::Color left,
              Gdiplus::Color right) {
    const auto session = libUikit::GdiplusSession::acquire();
    Gdiplus::Bitmap bitmap(width, height, PixelFormat32bppARGB);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            bitmap.SetPixel(x, y, x < width / 2 ? left : right);
        }
    }
    constexpr CLSID PNG_ENCODER = {
        0x557cf406, 0x1a04, 0x11d3, {0x9a, 0x73, 0x00, 0x00, 0xf8, 0x1e, 0xf3, 0x2e}};
    ASSERT_EQ(bitmap.Save(file.c_str(), &PNG_ENCODER, nullptr), Gdiplus::Ok);
}

class Pictures : public testing::Test {
protected:
    void SetUp() override {
        std::filesystem::create_directories(folder);
        dialog.onColor = [this](CWnd* control) {
            return control == &dialog.picture ? brush : GetSysColorBrush(COLOR_3DFACE);
        };
        ASSERT_TRUE(dialog.Create(IDD_KIT));
    }
    void TearDown() override {
        dialog.DestroyWindow();
        std::filesystem::remove_all(folder);
        DeleteObject(brush);
    }

    // The path of a red and green picture, red on the left.
    mrl::String redAndGreen(int width, int height, BYTE alpha = 255) {
        const auto file = folder / L"half.png";
        writePng(file, width, height, Gdiplus::Color(alpha, 255, 0, 0),
                 Gdiplus::Color(alpha, 0, 255, 0));
        return mrl::String(file.c_str());
    }

    // What the control paints at a place given in parts of its size.
    COLORREF pixel(double x, double y) {
        const test::Painted painted(dialog.picture);
        return painted.at(static_cast<int>(x * (painted.width() - 1)),
                          static_cast<int>(y * (painted.height() - 1)));
    }

    // Beside the executable, where relative paths begin.
    const std::filesystem::path folder = mrl::System::executableFolder() / L"pictures of the test";
    const HBRUSH brush = CreateSolidBrush(BACKGROUND);
    test::CapturedLog log;
    KitDialog dialog;
};

TEST_F(Pictures, FillTheControlWhenTheAspectMayChange) {
    ASSERT_TRUE(dialog.picture.SetImage(redAndGreen(400, 400), false, false, false));
    EXPECT_EQ(pixel(0.01, 0.01), RED);
    EXPECT_EQ(pixel(0.01, 0.99), RED);
    EXPECT_EQ(pixel(0.99, 0.5), GREEN);
    EXPECT_THAT(log.texts(), testing::IsEmpty());
}

TEST_F(Pictures, KeepTheirAspectInTheMiddleOverTheDialogsBackground) {
    ASSERT_TRUE(dialog.picture.SetImage(redAndGreen(800, 200), false, true, false));
    EXPECT_EQ(pixel(0.5, 0.02), BACKGROUND);
    EXPECT_EQ(pixel(0.5, 0.98), BACKGROUND);
    EXPECT_EQ(pixel(0.02, 0.5), RED);
    EXPECT_EQ(pixel(0.98, 0.5), GREEN);
}

TEST_F(Pictures, GrowOnlyWhenAskedTo) {
    const mrl::String small = redAndGreen(8, 8);
    ASSERT_TRUE(dialog.picture.SetImage(small, false, true, false));
    EXPECT_EQ(pixel(0.3, 0.5), BACKGROUND);
    ASSERT_TRUE(dialog.picture.SetImage(small, false, true, true));
    EXPECT_EQ(pixel(0.3, 0.5), RED);
    ASSERT_TRUE(dialog.picture.SetImage(small, false, false, true));
    EXPECT_EQ(pixel(0.02, 0.02), RED);
}

TEST_F(Pictures, GiveTheControlTheirSizeWhenAskedTo) {
    ASSERT_TRUE(dialog.picture.SetImage(redAndGreen(31, 17), true, true, false));
    CRect client;
    dialog.picture.GetClientRect(client);
    EXPECT_EQ(client.Width(), 31);
    EXPECT_EQ(client.Height(), 17);
}

TEST_F(Pictures, LetTheBackgroundShineThrough) {
    ASSERT_TRUE(dialog.picture.SetImage(redAndGreen(400, 400, 128), false, false, false));
    const COLORREF mixed = pixel(0.1, 0.5);
    EXPECT_NEAR(GetRValue(mixed), 128, 2);
    EXPECT_EQ(GetGValue(mixed), 0);
    EXPECT_NEAR(GetBValue(mixed), 127, 2);
    ASSERT_TRUE(dialog.picture.SetImage(redAndGreen(400, 400, 0), false, false, false));
    EXPECT_EQ(pixel(0.1, 0.5), BACKGROUND);
}

TEST_F(Pictures, AreGreyWhileTheControlIsDisabled) {
    ASSERT_TRUE(dialog.picture.SetImage(redAndGreen(400, 400), false, false, false));
    dialog.ShowWindow(SW_SHOW);
    dialog.picture.UpdateWindow();
    EXPECT_FALSE(GetUpdateRect(dialog.picture, nullptr, FALSE));
    dialog.picture.EnableWindow(FALSE);
    EXPECT_TRUE(GetUpdateRect(dialog.picture, nullptr, FALSE)) << "it is painted again";
    // Half the background, half the grey of red.
    const COLORREF grey = pixel(0.1, 0.5);
    EXPECT_NEAR(GetRValue(grey), 38, 3);
    EXPECT_NEAR(GetGValue(grey), 38, 3);
    EXPECT_NEAR(GetBValue(grey), 165, 3);
    dialog.picture.EnableWindow(TRUE);
    EXPECT_EQ(pixel(0.1, 0.5), RED);
}

TEST_F(Pictures, AreFoundBesideTheExecutableAndInTheCurrentFolder) {
    redAndGreen(40, 40);
    EXPECT_TRUE(dialog.picture.SetImage("pictures of the test/half.png", false, true, false));
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder);
    EXPECT_TRUE(dialog.picture.SetImage("half.png", false, true, false));
    std::filesystem::current_path(before);
    EXPECT_FALSE(dialog.picture.SetImage("half.png", false, true, false));
}

TEST_F(Pictures, ThatAreMissingLeaveTheControlEmptyAndOneLine) {
    EXPECT_TRUE(dialog.picture.SetImage(redAndGreen(400, 400), false, false, false));
    EXPECT_FALSE(dialog.picture.SetImage("no/such.png", false, true, false));
    EXPECT_FALSE(dialog.picture.SetImage("no/such.png", false, true, false));
    EXPECT_EQ(pixel(0.5, 0.5), BACKGROUND);
    const auto lines = log.lines();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].priority, 1);
    EXPECT_EQ(lines[0].logger, "libUikit.PngControl");
    EXPECT_THAT(lines[0].text, HasSubstr("such.png cannot be opened"));
}

TEST_F(Pictures, ThatAreBrokenLeaveTheControlEmptyAndOneLine) {
    const auto file = folder / L"broken.png";
    std::ofstream(file, std::ios::binary) << "\x89PNG\r\n\x1a\nand then nothing of use";
    EXPECT_FALSE(dialog.picture.SetImage(mrl::String(file.c_str()), false, true, false));
    EXPECT_EQ(pixel(0.5, 0.5), BACKGROUND);
    EXPECT_THAT(log.texts(), testing::ElementsAre(HasSubstr("broken.png is")));

    std::ofstream(folder / L"empty.png", std::ios::binary);
    EXPECT_FALSE(
        dialog.picture.SetImage(mrl::String((folder / L"empty.png").c_str()), false, true, false));
}

TEST_F(Pictures, HaveTheTextAsANameThatIsNotDrawn) {
    EXPECT_EQ(dialog.text(IDC_KIT_PICTURE), L"radio");
    dialog.picture.SetWindowText(L"\u2588\u2588\u2588\u2588\u2588\u2588\u2588\u2588");
    EXPECT_EQ(dialog.text(IDC_KIT_PICTURE).size(), 8U);
    EXPECT_EQ(pixel(0.05, 0.1), BACKGROUND);
}

TEST_F(Pictures, NotifyTheDialogOfClicks) {
    dialog.picture.SendMessage(WM_LBUTTONDOWN);
    dialog.picture.SendMessage(WM_LBUTTONUP);
    EXPECT_EQ(dialog.pictureClicks, 1);
}

// A picture with SS_NOTIFY is a button.

TEST_F(Pictures, ArePressedByTheSpaceBarOnceAKeystroke) {
    constexpr LPARAM REPEATED = 1 << 30;
    dialog.picture.SendMessage(WM_KEYDOWN, VK_SPACE);
    EXPECT_EQ(dialog.pictureClicks, 1);
    dialog.picture.SendMessage(WM_KEYDOWN, VK_SPACE, REPEATED);
    dialog.picture.SendMessage(WM_KEYDOWN, VK_RETURN);
    EXPECT_EQ(dialog.pictureClicks, 1);
}

TEST_F(Pictures, ArePressedByScreenReadersLikeAButton) {
    EXPECT_EQ(dialog.picture.SendMessage(WM_GETOBJECT, 0, OBJID_QUERYCLASSNAMEIDX), 65536 + 2);
    EXPECT_EQ(dialog.text(IDC_KIT_PICTURE), L"radio") << "its name";
    dialog.picture.SendMessage(BM_CLICK);
    EXPECT_EQ(dialog.pictureClicks, 1);
    dialog.picture.EnableWindow(FALSE);
    dialog.picture.SendMessage(BM_CLICK);
    EXPECT_EQ(dialog.pictureClicks, 1);
}

TEST_F(Pictures, AreReachedByTheTabKeyWhileTheyAreEnabled) {
    const HWND list = ::GetDlgItem(dialog, IDC_KIT_COMBO);
    EXPECT_EQ(GetNextDlgTabItem(dialog, list, FALSE), dialog.picture.m_hWnd);
    EXPECT_EQ(dialog.picture.SendMessage(WM_GETDLGCODE), DLGC_BUTTON);
    dialog.picture.EnableWindow(FALSE);
    EXPECT_EQ(GetNextDlgTabItem(dialog, list, FALSE), ::GetDlgItem(dialog, IDC_KIT_BUTTON));
}

TEST_F(Pictures, ShowTheKeyboardFocusAroundThem) {
    ASSERT_TRUE(dialog.picture.SetImage(redAndGreen(400, 400), false, true, false));
    dialog.ShowWindow(SW_SHOW);
    const auto dots = [this] {
        const test::Painted painted(dialog.picture);
        int found = 0;
        for (int y = 0; y < painted.height(); ++y) { // beside the picture
            found += painted.at(0, y) != BACKGROUND ? 1 : 0;
        }
        return found;
    };
    ::SetFocus(*dialog.GetDlgItem(IDC_KIT_BUTTON));
    EXPECT_EQ(dots(), 0);
    ::SetFocus(dialog.picture);
    dialog.picture.SendMessage(WM_UPDATEUISTATE, MAKEWPARAM(UIS_CLEAR, UISF_HIDEFOCUS));
    EXPECT_GT(dots(), 10);
    RedrawWindow(dialog, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    dialog.picture.SendMessage(WM_UPDATEUISTATE, MAKEWPARAM(UIS_SET, UISF_HIDEFOCUS));
    EXPECT_TRUE(GetUpdateRect(dialog.picture, nullptr, FALSE)) << "it is painted again";
}

TEST_F(Pictures, OutliveTheManagerThatTheDialogWasMadeUnder) {
    {
        const GdiResourceManager manager;
        EXPECT_TRUE(dialog.picture.SetImage(redAndGreen(400, 400), false, false, false));
    }
    EXPECT_EQ(pixel(0.1, 0.5), RED);
}

TEST(PicturesInMirroredDialogs, KeepTheirSides) {
    const test::Language arabic(MAKELANGID(LANG_ARABIC, SUBLANG_DEFAULT));
    const auto file = mrl::System::executableFolder() / L"mirrored.png";
    writePng(file, 400, 400, Gdiplus::Color(255, 255, 0, 0), Gdiplus::Color(255, 0, 255, 0));
    KitDialog dialog;
    ASSERT_TRUE(dialog.Create(IDD_KIT));
    dialog.ShowWindow(SW_SHOW);
    EXPECT_TRUE(dialog.picture.SetImage(mrl::String(file.c_str()), false, false, false));
    dialog.picture.UpdateWindow();
    CRect place;
    ::GetWindowRect(dialog.picture, place);
    const HDC screen = GetDC(nullptr);
    EXPECT_EQ(GetPixel(screen, place.left + 3, place.top + 5), RED);
    EXPECT_EQ(GetPixel(screen, place.right - 3, place.top + 5), GREEN);
    ReleaseDC(nullptr, screen);
    std::filesystem::remove(file);
}

} // namespace
