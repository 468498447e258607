// The dialog's template as it stands in the program's resources.
#include "TemplateReader.h"

#include <resource.h>

#include <gmock/gmock.h>

namespace {

using test::TemplateReader;
using Control = test::TemplateControl;

// Window classes by the numbers that templates have for them.
const std::string BUTTON = "#128";
const std::string STATIC = "#130";
const std::string COMBO = "#133";
const std::string METER = "MSCTLS_PROGRESS32";

constexpr DWORD HIDDEN = 1;
constexpr DWORD DISABLED = 2;
constexpr DWORD CENTRED = 4;
constexpr DWORD CLICKS = 8;
constexpr DWORD TAB_STOP = 16;
// What kind of button, static or combo box it is, in higher bits.
constexpr DWORD DEFAULT_BUTTON = BS_DEFPUSHBUTTON << 8;
constexpr DWORD GROUP_BOX = BS_GROUPBOX << 8;
constexpr DWORD ETCHED = SS_ETCHEDFRAME << 8;
constexpr DWORD SORTED_LIST = (CBS_DROPDOWNLIST | CBS_SORT) << 8;
constexpr DWORD SCROLLS = 32;

// Traits of a control, out of its style.
DWORD traits(const Control& control) {
    DWORD found = 0;
    found |= (control.style & WS_VISIBLE) == 0 ? HIDDEN : 0;
    found |= (control.style & WS_DISABLED) != 0 ? DISABLED : 0;
    found |= (control.style & WS_TABSTOP) != 0 ? TAB_STOP : 0;
    if (control.kind == STATIC) {
        found |= (control.style & SS_CENTERIMAGE) != 0 ? CENTRED : 0;
        found |= (control.style & SS_NOTIFY) != 0 ? CLICKS : 0;
        found |= (control.style & SS_TYPEMASK) << 8;
    } else if (control.kind == BUTTON) {
        found |= (control.style & BS_TYPEMASK) << 8;
    } else if (control.kind == COMBO) {
        found |= (control.style & (CBS_DROPDOWNLIST | CBS_SORT)) << 8;
        found |= (control.style & WS_VSCROLL) != 0 ? SCROLLS : 0;
    }
    return found;
}

struct Expected {
    int id;
    std::string kind;
    std::string text;
    std::array<short, 4> place;
    DWORD traits;

    friend bool operator==(const Expected&, const Expected&) = default;
};

void PrintTo(const Expected& control, std::ostream* out) {
    *out << control.id << " " << control.kind << " \"" << control.text << "\"";
    for (const short side : control.place) {
        *out << " " << side;
    }
    *out << " traits " << control.traits;
}

const Expected expectedControls[] = {
    {1015, BUTTON, "Finish", {374, 258, 50, 14}, TAB_STOP},
    {1016, BUTTON, "Fail", {312, 258, 50, 14}, HIDDEN | DISABLED | TAB_STOP},
    {2, BUTTON, "Cancel", {312, 258, 50, 14}, DEFAULT_BUTTON | HIDDEN | DISABLED | TAB_STOP},
    {1017, BUTTON, "", {179, 0, 247, 252}, GROUP_BOX},
    {1019, STATIC, "Network Adapter:", {183, 11, 237, 12}, CENTRED},
    {1020, STATIC, "Network adapter not available", {183, 26, 237, 24}, 0},
    {1039, STATIC, "", {183, 51, 237, 36}, CENTRED},
    {1022, STATIC, "Available Networks:", {183, 91, 237, 12}, CENTRED},
    {1021, COMBO, "", {183, 106, 237, 24}, SORTED_LIST | SCROLLS | TAB_STOP},
    {1023, STATIC, "BSS Type:", {183, 125, 95, 12}, CENTRED},
    {1030, STATIC, "", {282, 125, 138, 12}, CENTRED},
    {1024, STATIC, "SSID:", {183, 141, 95, 12}, CENTRED},
    {1031, STATIC, "", {282, 141, 138, 12}, CENTRED},
    {1025, STATIC, "Security:", {183, 156, 95, 12}, CENTRED},
    {1032, STATIC, "", {282, 156, 138, 12}, CENTRED},
    {1028, STATIC, "Authentication:", {183, 173, 95, 12}, CENTRED},
    {1035, STATIC, "", {282, 173, 138, 12}, CENTRED},
    {1027, STATIC, "Signal Quality:", {183, 189, 95, 12}, CENTRED},
    {1034, STATIC, "", {282, 189, 138, 12}, CENTRED},
    {1026, STATIC, "Connectable:", {183, 204, 95, 12}, CENTRED},
    {1033, STATIC, "", {282, 204, 138, 12}, CENTRED},
    {1029, STATIC, "Signal Strength:", {183, 221, 95, 12}, CENTRED},
    {1038, STATIC, "", {282, 221, 138, 12}, CENTRED},
    {1041, STATIC, "", {390, 235, 30, 12}, CENTRED},
    {1001, METER, "", {183, 235, 202, 12}, 0},
    {1044, STATIC, "", {41, 86, 91, 91}, ETCHED},
    {1036,
     STATIC,
     "Adjust your Antenna(s) until greatest signal strength has been achieved.",
     {4, 11, 169, 72},
     0},
    {1037,
     STATIC,
     "If the signal strength is acceptable, please click on \"Pass\" to finish testing.",
     {4, 252, 302, 24},
     HIDDEN},
    {1042, STATIC, "", {43, 88, 88, 88}, CENTRED | CLICKS},
    {1043, STATIC, "", {42, 88, 88, 88}, CENTRED | CLICKS},
    {1045, STATIC, "Click the image above to turn the wireless radio off.", {4, 182, 169, 50}, 0},
};

TEST(DialogTemplate, IsAnAppWindowWithACaptionAndAModalFrame) {
    const TemplateReader read(IDD_SIGNAL_STRENGTH);
    EXPECT_EQ(IDD_SIGNAL_STRENGTH, 102);
    ASSERT_TRUE(read.extended);
    EXPECT_EQ(read.frame.width, 430);
    EXPECT_EQ(read.frame.height, 279);
    EXPECT_EQ(read.frame.caption, "Signal Strength Test");
    EXPECT_EQ(read.frame.font, "MS Shell Dlg");
    EXPECT_EQ(read.frame.fontSize, 8);
    constexpr DWORD STYLE = static_cast<DWORD>(WS_POPUP) | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME;
    EXPECT_EQ(read.frame.style & STYLE, STYLE);
    EXPECT_EQ(read.frame.exStyle & WS_EX_APPWINDOW, DWORD{WS_EX_APPWINDOW});
}

// Compared without order: the order in the template matters for the keyboard only.
TEST(DialogTemplate, HasItsControlsWithTheirPlacesTextsAndFirstStates) {
    const TemplateReader read(IDD_SIGNAL_STRENGTH);
    std::vector<Expected> found;
    for (const Control& control : read.controls) {
        found.push_back({.id = control.id,
                         .kind = control.kind,
                         .text = control.text,
                         .place = control.place,
                         .traits = traits(control)});
    }
    EXPECT_EQ(found.size(), 31U);
    EXPECT_THAT(found, testing::UnorderedElementsAreArray(expectedControls));
}

} // namespace
