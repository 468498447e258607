// The radio on display, and the picture that switches it.
#include "DialogTest.h"

namespace {

using test::click;
using test::colour;
using test::Dialog;
using test::picture;
using test::shown;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int32_t UNKNOWN = 0;
constexpr std::int32_t ON = 1;
constexpr std::int32_t OFF = 2;
constexpr COLORREF BLACK = RGB(0, 0, 0);
constexpr COLORREF BLUE = RGB(0, 0, 255);
constexpr COLORREF RED = RGB(255, 0, 0);

class RadioOnDisplay : public test::DialogTest {
protected:
    /// Lets a function fail that reads or sets the state of the radio.
    void fail(const char* function) {
        radio().addFault({.function = function,
                          .opcode = wlan_intf_opcode_radio_state,
                          .code = ERROR_ACCESS_DENIED});
    }
    std::size_t switchings() { return radio().callCount("WlanSetInterface"); }
};

// --- The states ----------------------------------------------------------------------------------

struct StateRow {
    std::int32_t software;
    std::int32_t hardware;
    bool readable;
    const char* text;
    const char* picture;
    bool usable;
};

class RadioStates : public RadioOnDisplay, public testing::WithParamInterface<StateRow> {
protected:
    void changeTo(const StateRow& row) {
        if (row.readable) {
            radio().setRadio(0, 0, row.software, row.hardware);
        } else {
            fail("WlanQueryInterface");
        }
    }
    void expectShown(const StateRow& row, const Dialog& dialog) {
        EXPECT_EQ(shown(dialog, IDC_RADIO_STATUS), localized(row.text));
        EXPECT_EQ(picture(dialog), row.picture);
        EXPECT_EQ(dialog.m_radioOn, std::string(row.picture) == "on");
        EXPECT_EQ(dialog.m_radioUsable, row.usable);
        EXPECT_EQ(colour(dialog, IDC_RADIO_STATUS), row.usable ? BLACK : RED);
    }
};

TEST_P(RadioStates, AreShownInWordsPictureAndColour) {
    for (const std::int32_t hardware : {ON, OFF}) { // from either picture
        radiosim::Scenario scenario;
        scenario.interfaces.front().phys = {{.software = ON, .hardware = hardware}};
        startRadio(std::move(scenario));
        run({[&](Dialog& dialog) {
            EXPECT_EQ(picture(dialog), hardware == ON ? "on" : "greyed off");
            changeTo(GetParam());
            dialog.updateRadioState();
            expectShown(GetParam(), dialog);
            dialog.updateRadioState(); // and stay
            expectShown(GetParam(), dialog);
        }});
    }
}

constexpr StateRow stateRows[] = {
    {ON, ON, true, "RADIO_BUTTON_ON", "on", true},
    {OFF, ON, true, "RADIO_BUTTON_OFF", "off", true},
    {UNKNOWN, ON, true, "RADIO_BUTTON_OFF", "off", true},
    {ON, OFF, true, "HARDWARE_SWITCH_OFF", "greyed off", false},
    {OFF, OFF, true, "HARDWARE_SWITCH_OFF", "greyed off", false},
    {ON, UNKNOWN, true, "HARDWARE_SWITCH_OFF", "greyed off", false},
    {ON, ON, false, "RADIO_STATE_UNKNOWN", "greyed off", false},
};
INSTANTIATE_TEST_SUITE_P(Rows, RadioStates, testing::ValuesIn(stateRows));

TEST_F(RadioOnDisplay, LeavesThePicturesAloneThatAreAsTheyShouldBe) {
    run({[&](Dialog& dialog) {
        journal().clear();
        dialog.updateRadioState();
        EXPECT_THAT(journal().entries(),
                    ElementsAre(writtenKey(IDC_RADIO_STATUS, "RADIO_BUTTON_ON")));
        radio().setRadio(0, 0, std::nullopt, OFF);
        dialog.updateRadioState();
        EXPECT_THAT(journal().entries({"enable", "disable"}),
                    ElementsAre("disable " + std::to_string(IDC_RADIO_ON_IMAGE),
                                "disable " + std::to_string(IDC_RADIO_OFF_IMAGE)));
    }});
}

// --- Colours -------------------------------------------------------------------------------------

TEST_F(RadioOnDisplay, TheConnectionIsBlueWhileThereIsOneAndAskedForAtEachPainting) {
    run({[&](Dialog& dialog) {
        EXPECT_EQ(colour(dialog, IDC_CONNECTION_STATE), RED);
        radio().setConnection(0, radiosim::Connection{.ssid = "Lab"});
        radio().clearCalls();
        EXPECT_EQ(colour(dialog, IDC_CONNECTION_STATE), BLUE);
        EXPECT_THAT(radio().callNames(), ElementsAre("WlanQueryInterface"));
        radio().setConnection(0, std::nullopt);
        EXPECT_EQ(colour(dialog, IDC_CONNECTION_STATE), RED);
    }});
}

TEST_F(RadioOnDisplay, OtherTextsKeepTheirColourAndAllTheirBackground) {
    run({[&](Dialog& dialog) {
        radio().clearCalls();
        const HDC dc = CreateCompatibleDC(nullptr);
        const auto brushOf = [&](int id) {
            return dialog.SendMessage(WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc),
                                      reinterpret_cast<LPARAM>(::GetDlgItem(dialog.m_hWnd, id)));
        };
        const LRESULT usual =
            DefWindowProcW(dialog.m_hWnd, WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc),
                           reinterpret_cast<LPARAM>(::GetDlgItem(dialog.m_hWnd, IDC_SSID)));
        const COLORREF usualColour = GetTextColor(dc);
        EXPECT_NE(usual, 0);
        for (const int id : {IDC_SSID, IDC_ADAPTER_NAME, IDC_STRENGTH_TEXT, IDC_INSTRUCTIONS}) {
            EXPECT_EQ(colour(dialog, id), usualColour) << id;
        }
        EXPECT_THAT(radio().callNames(), IsEmpty());
        for (const int id : {IDC_SSID, IDC_CONNECTION_STATE, IDC_RADIO_STATUS}) {
            EXPECT_EQ(brushOf(id), usual) << id;
        }
        DeleteDC(dc);
    }});
}

class ThemeColour {
public:
    ThemeColour(int element, COLORREF colour) : m_element(element), m_before(GetSysColor(element)) {
        SetSysColors(1, &m_element, &colour);
    }
    ThemeColour(const ThemeColour&) = delete;
    ThemeColour& operator=(const ThemeColour&) = delete;
    ~ThemeColour() { SetSysColors(1, &m_element, &m_before); }

private:
    int m_element;
    COLORREF m_before;
};

TEST_F(RadioOnDisplay, ColouredTextsStandOnWhiteWhereTheThemeIsDark) {
    run({[&](Dialog& dialog) {
        EXPECT_EQ(test::colourBehind(dialog, IDC_RADIO_STATUS), GetSysColor(COLOR_3DFACE));
        const ThemeColour dark(COLOR_3DFACE, BLACK);
        EXPECT_EQ(test::colourBehind(dialog, IDC_RADIO_STATUS), RGB(255, 255, 255));
        EXPECT_EQ(colour(dialog, IDC_RADIO_STATUS), BLACK);
        EXPECT_EQ(test::colourBehind(dialog, IDC_CONNECTION_STATE), RGB(255, 255, 255));
        EXPECT_EQ(colour(dialog, IDC_CONNECTION_STATE), RED);
        EXPECT_EQ(test::colourBehind(dialog, IDC_SSID), BLACK) << "in the theme's own colours";
    }});
}

TEST_F(RadioOnDisplay, AThemeIsDarkBelowHalfTheBrightness) {
    run({[&](Dialog& dialog) {
        const COLORREF half = RGB(128, 128, 128);
        const ThemeColour light(COLOR_3DFACE, half);
        EXPECT_EQ(test::colourBehind(dialog, IDC_RADIO_STATUS), half);
        // A thousandth less, of 299 parts of red, 587 of green and 114 of blue.
        const ThemeColour dark(COLOR_3DFACE, RGB(119, 132, 131));
        EXPECT_EQ(test::colourBehind(dialog, IDC_RADIO_STATUS), RGB(255, 255, 255));
    }});
}

// --- Keyboard ------------------------------------------------------------------------------------

TEST_F(RadioOnDisplay, TheSpaceBarSwitchesItAndTheKeyboardGoesOnWithTheOtherPicture) {
    run({[&](Dialog& dialog) { test::press(dialog, VK_SPACE, IDC_RADIO_ON_IMAGE); },
         [&](Dialog& dialog) {
             EXPECT_EQ(picture(dialog), "off");
             EXPECT_EQ(::GetFocus(), dialog.m_radioOffImage.m_hWnd);
             test::press(dialog, VK_SPACE, IDC_RADIO_OFF_IMAGE);
         },
         [&](Dialog& dialog) {
             EXPECT_EQ(picture(dialog), "on");
             EXPECT_EQ(::GetFocus(), dialog.m_radioOnImage.m_hWnd);
             EXPECT_EQ(switchings(), 2U);
         }});
}

TEST_F(RadioOnDisplay, TheKeyboardGoesToTheListWhenThePictureIsGreyed) {
    run({[&](Dialog& dialog) {
        ::SetFocus(dialog.m_radioOnImage);
        radio().setRadio(0, 0, std::nullopt, OFF);
        dialog.updateRadioState();
        EXPECT_EQ(::GetFocus(), dialog.m_networkCombo.m_hWnd);
        radio().setRadio(0, 0, std::nullopt, ON);
        dialog.updateRadioState();
        EXPECT_EQ(::GetFocus(), dialog.m_networkCombo.m_hWnd) << "and stays there";
    }});
}

TEST_F(RadioOnDisplay, TheKeyboardStaysInTheListWhenThePictureChanges) {
    run({[&](Dialog& dialog) {
        ::SetFocus(dialog.m_networkCombo);
        radio().setRadio(0, 0, OFF, std::nullopt);
        dialog.updateRadioState();
        EXPECT_EQ(picture(dialog), "off");
        EXPECT_EQ(::GetFocus(), dialog.m_networkCombo.m_hWnd);
    }});
}

TEST_F(RadioOnDisplay, ThePictureFollowsTheListAndPrecedesTheButtonForTheTabKey) {
    run({[&](Dialog& dialog) {
        EXPECT_EQ(::GetFocus(), dialog.m_networkCombo.m_hWnd) << "where the keyboard starts";
        const auto next = [&](HWND control) { return GetNextDlgTabItem(dialog, control, FALSE); };
        EXPECT_EQ(next(dialog.m_networkCombo), dialog.m_radioOnImage.m_hWnd);
        EXPECT_EQ(next(dialog.m_radioOnImage), ::GetDlgItem(dialog, IDC_FINISH));
        EXPECT_EQ(next(::GetDlgItem(dialog, IDC_FINISH)), dialog.m_networkCombo.m_hWnd);
    }});
}

// --- Clicks --------------------------------------------------------------------------------------

TEST_F(RadioOnDisplay, AClickOnThePictureSwitchesTheRadioOffAndOnAgain) {
    run({[&](Dialog& dialog) {
        click(dialog, IDC_RADIO_ON_IMAGE);
        EXPECT_EQ(switchings(), 1U);
        EXPECT_FALSE(dialog.m_wirelessDevice->isRadioEnabled(0));
        EXPECT_EQ(picture(dialog), "off");
        EXPECT_FALSE(dialog.m_radioOn);
        EXPECT_EQ(shown(dialog, IDC_RADIO_STATUS), localized("RADIO_BUTTON_OFF"));
        click(dialog, IDC_RADIO_OFF_IMAGE);
        EXPECT_EQ(switchings(), 2U);
        EXPECT_TRUE(dialog.m_wirelessDevice->isRadioEnabled(0));
        EXPECT_EQ(picture(dialog), "on");
        EXPECT_TRUE(dialog.m_radioOn);
        EXPECT_EQ(shown(dialog, IDC_RADIO_STATUS), localized("RADIO_BUTTON_ON"));
    }});
    EXPECT_THAT(raisedKeys(), IsEmpty());
}

TEST_F(RadioOnDisplay, AClickThatTheCardRefusesChangesNothing) {
    run({[&](Dialog& dialog) {
        fail("WlanSetInterface");
        journal().clear();
        click(dialog, IDC_RADIO_ON_IMAGE);
        EXPECT_EQ(switchings(), 1U);
        EXPECT_EQ(picture(dialog), "on");
        EXPECT_TRUE(dialog.m_radioOn);
        EXPECT_THAT(journal().entries(), IsEmpty());
    }});
    EXPECT_THAT(raisedKeys(), IsEmpty());
}

TEST_F(RadioOnDisplay, AClickAfterTheRadioWasSwitchedElsewhereOnlyBringsThePictureUpToDate) {
    run({[&](Dialog& dialog) {
        radio().setRadio(0, 0, OFF, std::nullopt);
        click(dialog, IDC_RADIO_ON_IMAGE);
        EXPECT_EQ(picture(dialog), "off");
        EXPECT_FALSE(dialog.m_radioOn);
        radio().setRadio(0, 0, ON, std::nullopt);
        click(dialog, IDC_RADIO_OFF_IMAGE);
        EXPECT_EQ(picture(dialog), "on");
        EXPECT_TRUE(dialog.m_radioOn);
        EXPECT_EQ(switchings(), 0U);
    }});
}

TEST_F(RadioOnDisplay, AClickSwitchesTheLastPhyThatTheCardHasNow) {
    run({[&](Dialog& dialog) {
        radio().setPhys(0, {{.software = ON}, {.software = ON}});
        radio().clearCalls();
        click(dialog, IDC_RADIO_ON_IMAGE);
        EXPECT_THAT(radio().callTexts(),
                    testing::Contains(testing::AllOf(testing::StartsWith("WlanSetInterface "),
                                                     testing::HasSubstr(R"("phy":1)"))));
        EXPECT_EQ(picture(dialog), "off");
    }});
}

} // namespace
