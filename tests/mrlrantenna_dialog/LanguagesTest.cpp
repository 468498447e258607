// The dialog in every language that is shipped: each text that a control may show has room in it.
#include "DialogTest.h"
#include "TemplateReader.h"

#include <LanguageFont.h>
#include <texts/JsonFile.h>

#include <libUikit/UiLanguage.h>

#include <support/WindowLooks.h>

#include <mrl/System.h>
#include <mrl/Unicode.h>

#include <tesk5/Language.h>
#include <tesk5/Texts.h>

#include <memory>

namespace {

using test::Dialog;
using test::network;
using test::selected;
using test::shown;
using test::TemplateControl;

// What a control may show, by the keys of the texts.
struct Showing {
    int id;
    std::vector<const char*> keys;
};
const Showing showings[] = {
    {IDC_FINISH, {"FINISH"}},
    {IDC_INSTRUCTIONS, {"INSTRUCTIONS_1"}},
    {IDC_RADIO_STATUS,
     {"HARDWARE_SWITCH_OFF", "RADIO_BUTTON_OFF", "RADIO_BUTTON_ON", "RADIO_STATE_UNKNOWN"}},
    {IDC_ADAPTER_LABEL, {"NETWORK_ADAPTER"}},
    {IDC_CONNECTION_STATE, {"VALID_STATE", "ERROR_INVALID_STATE"}},
    {IDC_NETWORKS_LABEL, {"AVAILABLE_NETWORKS"}},
    {IDC_BSS_TYPE_LABEL, {"BSS_TYPE"}},
    {IDC_SECURITY_LABEL, {"SECURITY"}},
    {IDC_AUTH_LABEL, {"AUTHENTICATION"}},
    {IDC_CIPHER_LABEL, {"CIPHER", "SIGNAL_QUALITY"}},
    {IDC_CONNECTABLE_LABEL, {"CONNECTABLE"}},
    {IDC_STRENGTH_LABEL, {"SIGNAL_STRENGTH"}},
    {IDC_BSS_TYPE, {"INFRASTRUCTURE", "AD_HOC_INDEPENDENT", "ANY", "UNKNOWN_BSS_TYPE"}},
    {IDC_SECURITY, {"ENABLED", "NOT_ENABLED"}},
    {IDC_AUTH,
     {"AUTHENTICATION_OPEN", "AUTHENTICATION_SHARED_KEY", "UNKNOWN_AUTHENTICATION_ALGORITHM"}},
    {IDC_CIPHER, {"YES", "NO"}},
    {IDC_CONNECTABLE, {"YES", "NO"}},
    {IDC_STRENGTH_TEXT, {"EXCELLENT", "VERY_GOOD", "GOOD", "LOW", "VERY_LOW", "NO_SIGNAL"}},
};

constexpr int WIDTH_TO_USE = 90; // percent

constexpr int DENSITIES[] = {96, 120, 144, 192};
constexpr const char* SHIPPED[] = {"ar", "de", "en", "es", "fr", "ja", "zh-Hans"};

LANGID languageOf(const std::string& tag) {
    return libUikit::languageOf(mrl::String(tag.c_str()).getUCS2Buffer());
}

// A font selected into a device context of its own.
class Measure {
public:
    explicit Measure(const LOGFONTW& font)
        : m_dc(CreateCompatibleDC(nullptr)), m_font(CreateFontIndirectW(&font)),
          m_before(SelectObject(m_dc, m_font)) {}
    Measure(const Measure&) = delete;
    Measure& operator=(const Measure&) = delete;
    ~Measure() {
        SelectObject(m_dc, m_before);
        DeleteObject(m_font);
        DeleteDC(m_dc);
    }

    // The units of a dialog in this font: four go to the width of a letter, eight to the height.
    SIZE dialogUnits() const {
        TEXTMETRICW metrics{};
        GetTextMetricsW(m_dc, &metrics);
        constexpr wchar_t LETTERS[] = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
        SIZE extent{};
        GetTextExtentPoint32W(m_dc, LETTERS, 52, &extent);
        return {(extent.cx / 26 + 1) / 2, metrics.tmHeight};
    }

    SIZE needs(const std::wstring& text, LONG width, UINT format) const {
        RECT used{0, 0, width, 0};
        DrawTextW(m_dc, text.c_str(), static_cast<int>(text.size()), &used, DT_CALCRECT | format);
        return {used.right - used.left, used.bottom - used.top};
    }

private:
    HDC m_dc;
    HFONT m_font;
    HGDIOBJ m_before;
};

LOGFONTW templateFont(int dpi) {
    LOGFONTW font{};
    font.lfHeight = -MulDiv(8, dpi, 72);
    font.lfWeight = FW_NORMAL;
    font.lfCharSet = DEFAULT_CHARSET;
    wcscpy(font.lfFaceName, L"MS Shell Dlg");
    return font;
}

bool fits(SIZE needed, SIZE room) {
    return needed.cx <= room.cx && needed.cy <= room.cy;
}

// Texts of one language that have no room at one density, as "control key".
std::vector<std::string> clipped(const mrl::Json& texts, LANGID language, int dpi) {
    const SIZE units = Measure(templateFont(dpi)).dialogUnits();
    const Measure measure(libUikit::fontForLanguage(templateFont(dpi), language));
    std::map<int, TemplateControl> controls;
    for (const TemplateControl& control : test::TemplateReader(IDD_SIGNAL_STRENGTH).controls) {
        controls[control.id] = control;
    }
    std::vector<std::string> found;
    for (const Showing& showing : showings) {
        const TemplateControl& control = controls.at(showing.id);
        SIZE room{MulDiv(control.place[2], units.cx, 4), MulDiv(control.place[3], units.cy, 8)};
        room.cx = room.cx * WIDTH_TO_USE / 100; // other systems' fonts run wider
        const bool isButton = showing.id == IDC_FINISH;
        if (isButton) {
            // Its frame and a gap beside the words.
            room.cx -= MulDiv(8, dpi, 96);
            room.cy -= MulDiv(4, dpi, 96);
        }
        for (const char* key : showing.keys) {
            const std::wstring text = mrl::toUtf16(texts.at(key).get<std::string>());
            const bool fitsOnALine = fits(measure.needs(text, room.cx, DT_SINGLELINE), room);
            const bool fitsWrapped =
                !isButton && fits(measure.needs(text, room.cx, DT_WORDBREAK), room);
            if (!fitsOnALine && !fitsWrapped) {
                found.push_back(std::to_string(showing.id) + " " + key);
            }
        }
    }
    return found;
}

TEST(DialogInEveryLanguage, HasRoomForEveryTextAtEveryDensityOfTheScreen) {
    for (const char* tag : SHIPPED) {
        const mrl::Json texts =
            tesk5::readJsonFile(test::shippedTree() / "resources" / "mrlrantenna" / "texts" /
                                (std::string(tag) + ".json"));
        for (const int dpi : DENSITIES) {
            EXPECT_THAT(clipped(texts, languageOf(tag), dpi), testing::IsEmpty())
                << tag << " " << dpi;
        }
    }
}

TEST(DialogInEveryLanguage, HasAFontWithItsLetters) {
    for (const char* tag : SHIPPED) {
        const LANGID language = languageOf(tag);
        EXPECT_TRUE(
            libUikit::hasLetters(libUikit::fontForLanguage(templateFont(96), language), language))
            << tag << ": install a font for it";
    }
}

class DialogInALanguage : public test::DialogTest {
protected:
    DialogInALanguage() { std::filesystem::current_path(test::shippedTree()); }
    ~DialogInALanguage() override {
        tesk5::Language::current().set("");
        libUikit::setUiLanguage(0);
    }

    static bool isMirrored(const Dialog& dialog) {
        return (GetWindowLongPtrW(dialog, GWL_EXSTYLE) & WS_EX_LAYOUTRTL) != 0;
    }
    static LONG leftOf(const Dialog& dialog, int controlId) {
        return test::leftInside(*dialog.GetDlgItem(controlId), dialog);
    }
};

TEST_F(DialogInALanguage, IsThatOfTheProgramsTextsAndShowsEachWholeInTheDialogsOwnFont) {
    startRadio({network("Lab", 50)});
    for (const char* tag : SHIPPED) {
        SCOPED_TRACE(tag);
        ASSERT_TRUE(tesk5::Language::current().set(tag));
        runTest({[&](Dialog& dialog) {
            EXPECT_EQ(shown(dialog, 0), localized("TITLE"));
            EXPECT_EQ(isMirrored(dialog), std::string(tag) == "ar");
            const LONG full = test::letterHeight(*dialog.GetDlgItem(IDC_NETWORK_COMBO));
            for (const Showing& showing : showings) {
                for (const char* key : showing.keys) {
                    dialog.SetDlgItemText(showing.id, tesk5::translation(key).getUCS2Buffer());
                    EXPECT_EQ(test::letterHeight(*dialog.GetDlgItem(showing.id)), full) << key;
                }
            }
        }});
    }
}

TEST_F(DialogInALanguage, IsMirroredInArabicExceptForNames) {
    startRadio({network("Office (5G)", 50)});
    ASSERT_TRUE(tesk5::Language::current().set("ar"));
    runTest({[&](Dialog& dialog) {
        EXPECT_GT(leftOf(dialog, IDC_IMAGE_FRAME), leftOf(dialog, IDC_GROUP));
        EXPECT_GT(leftOf(dialog, IDC_SSID_LABEL), leftOf(dialog, IDC_SSID));
        EXPECT_GT(leftOf(dialog, IDC_SIGNAL_METER), leftOf(dialog, IDC_STRENGTH_PERCENT));
        // The text is the name and nothing else, whatever it takes to show it.
        EXPECT_EQ(shown(dialog, IDC_SSID), "Office (5G)");
        EXPECT_EQ(selected(dialog), "Office (5G)");
        EXPECT_NE(GetWindowLongPtrW(dialog.m_networkCombo, GWL_EXSTYLE) & WS_EX_RTLREADING, 0U);
        EXPECT_NE(GetWindowLongPtrW(dialog.m_signalMeter, GWL_EXSTYLE) & WS_EX_LAYOUTRTL, 0U)
            << "the meter fills from the side at which reading begins";
    }});
}

TEST_F(DialogInALanguage, IsAsItsTemplateInALanguageWithoutANumber) {
    EXPECT_EQ(libUikit::languageOf(L"qqq-Test"), MAKELANGID(LANG_INVARIANT, SUBLANG_NEUTRAL));
    EXPECT_EQ(PRIMARYLANGID(libUikit::languageOf(L"zh-Hans")), LANG_CHINESE);
    EXPECT_EQ(PRIMARYLANGID(libUikit::languageOf(L"pt-BR")), LANG_PORTUGUESE);
    libUikit::setUiLanguage(libUikit::languageOf(L"qqq-Test"));
    startRadio({network("Lab", 50)});
    run({[&](Dialog& dialog) { EXPECT_FALSE(isMirrored(dialog)); }});
}

} // namespace
