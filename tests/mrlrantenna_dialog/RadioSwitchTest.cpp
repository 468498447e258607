// The radio on display, and the picture that switches it.
#include "DialogTest.h"

namespace {

using test::click;
using test::colour;
using test::Dialog;
using test::picture;
using test::shown;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr std::int32_t UNKNOWN = 0;
constexpr std::int32_t ON = 1;
constexpr std::int32_t OFF = 2;
constexpr COLORREF BLACK = RGB(0, 0, 0);
constexpr COLORREF BLUE = RGB(0, 0, 255);
constexpr COLORREF RED = RGB(255, 0, 0);

radiosim::Fault refusal(const char* function, WLAN_INTF_OPCODE opcode, DWORD code) {
    return {.function = function, .opcode = static_cast<std::uint32_t>(opcode), .code = code};
}

class RadioOnDisplay : public test::DialogTest {
protected:
    void failRadioQueries() {
        radio().addFault(
            refusal("WlanQueryInterface", wlan_intf_opcode_radio_state, ERROR_ACCESS_DENIED));
    }
    void failSwitching() {
        radio().addFault(
            refusal("WlanSetInterface", wlan_intf_opcode_radio_state, ERROR_ACCESS_DENIED));
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
            failRadioQueries();
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
    run({[&](Dialog& dialog) {
        changeTo(GetParam());
        dialog.updateRadioState();
        expectShown(GetParam(), dialog);
        dialog.updateRadioState(); // and stay
        expectShown(GetParam(), dialog);
    }});
}

TEST_P(RadioStates, ComeBackFromTheOppositePicture) {
    radiosim::Scenario scenario;
    scenario.interfaces.front().phys = {{.software = ON, .hardware = OFF}};
    startRadio(std::move(scenario));
    run({[&](Dialog& dialog) {
        EXPECT_EQ(picture(dialog), "greyed off");
        changeTo(GetParam());
        dialog.updateRadioState();
        expectShown(GetParam(), dialog);
    }});
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

TEST_F(RadioOnDisplay, IsTheLastPhyOfSeveral) {
    radiosim::Scenario scenario;
    scenario.interfaces.front().phys = {{.software = OFF}, {.software = ON}};
    startRadio(std::move(scenario));
    run({[&](Dialog& dialog) {
        EXPECT_EQ(picture(dialog), "on");
        radio().setRadio(0, 1, OFF, std::nullopt);
        dialog.updateRadioState();
        EXPECT_EQ(picture(dialog), "off");
    }});
}

TEST_F(RadioOnDisplay, IsOffInHardwareOnACardWithoutPhys) {
    radiosim::Scenario scenario;
    scenario.interfaces.front().phys = {};
    startRadio(std::move(scenario));
    run({[&](Dialog& dialog) {
        EXPECT_EQ(shown(dialog, IDC_RADIO_STATUS), localized("HARDWARE_SWITCH_OFF"));
        EXPECT_EQ(picture(dialog), "greyed off");
    }});
}

TEST_F(RadioOnDisplay, LeavesThePicturesAloneThatAreAsTheyShouldBe) {
    run({[&](Dialog& dialog) {
        journal().clear();
        dialog.updateRadioState();
        EXPECT_THAT(journal().entries(), ElementsAre("text 1045 " + localized("RADIO_BUTTON_ON")));
        radio().setRadio(0, 0, std::nullopt, OFF);
        dialog.updateRadioState();
        EXPECT_THAT(journal().entries({"enable", "disable"}),
                    ElementsAre("disable 1042", "disable 1043"));
    }});
}

// --- Colours -------------------------------------------------------------------------------------

TEST_F(RadioOnDisplay, TheConnectionIsBlueWhileThereIsOneAndRedWithout) {
    run({[&](Dialog& dialog) {
        EXPECT_EQ(colour(dialog, IDC_CONNECTION_STATE), RED);
        radio().setConnection(0, radiosim::Connection{.ssid = "Lab"});
        EXPECT_EQ(colour(dialog, IDC_CONNECTION_STATE), BLUE);
        radio().setConnection(0, std::nullopt);
        EXPECT_EQ(colour(dialog, IDC_CONNECTION_STATE), RED);
    }});
}

TEST_F(RadioOnDisplay, EachPaintingOfTheConnectionAsksForItOnce) {
    run({[&](Dialog& dialog) {
        radio().clearCalls();
        colour(dialog, IDC_CONNECTION_STATE);
        EXPECT_THAT(radio().callNames(), ElementsAre("WlanQueryInterface"));
    }});
}

TEST_F(RadioOnDisplay, OtherTextsKeepTheirColour) {
    run({[&](Dialog& dialog) {
        radio().clearCalls();
        const HDC dc = CreateCompatibleDC(nullptr);
        DefWindowProcW(dialog.m_hWnd, WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc),
                       reinterpret_cast<LPARAM>(::GetDlgItem(dialog.m_hWnd, IDC_SSID)));
        const COLORREF usual = GetTextColor(dc);
        DeleteDC(dc);
        for (const int id : {IDC_SSID, IDC_ADAPTER_NAME, IDC_STRENGTH_TEXT, IDC_INSTRUCTIONS}) {
            EXPECT_EQ(colour(dialog, id), usual) << id;
        }
        EXPECT_THAT(radio().callNames(), IsEmpty());
    }});
}

TEST_F(RadioOnDisplay, ColoursLeaveTheUsualBackground) {
    run({[](Dialog& dialog) {
        const HDC dc = CreateCompatibleDC(nullptr);
        const auto brushOf = [&](int id) {
            return dialog.SendMessage(WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc),
                                      reinterpret_cast<LPARAM>(::GetDlgItem(dialog.m_hWnd, id)));
        };
        const LRESULT usual = brushOf(IDC_SSID);
        EXPECT_NE(usual, 0);
        EXPECT_EQ(brushOf(IDC_CONNECTION_STATE), usual);
        EXPECT_EQ(brushOf(IDC_RADIO_STATUS), usual);
        DeleteDC(dc);
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
        failSwitching();
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
                    Contains(AllOf(StartsWith("WlanSetInterface "), HasSubstr(R"("phy":1)"))));
        EXPECT_EQ(picture(dialog), "off");
    }});
}

TEST_F(RadioOnDisplay, AClickThatFindsTheHardwareSwitchOffGreysThePictures) {
    run({[&](Dialog& dialog) {
        radio().setRadio(0, 0, std::nullopt, OFF);
        click(dialog, IDC_RADIO_ON_IMAGE);
        EXPECT_EQ(picture(dialog), "greyed off");
        EXPECT_EQ(switchings(), 0U);
    }});
}

} // namespace
