// How the dialog opens: its steps in order, its texts, the radio, tool tips, the Tablet PC.
#include "DialogTest.h"

#include "TabletPcDouble.h"

#include <Subclass.h>

#include <mrl/Unicode.h>

#include <algorithm>
#include <optional>

namespace {

using libUikit::Subclass;
using test::Dialog;
using test::network;
using test::picture;
using test::scopeOpened;
using test::written;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class OpeningTheDialog : public test::DialogTest {
protected:
    void startRadioSwitchedOff(DWORD refusal = 0) {
        radiosim::Scenario scenario;
        scenario.interfaces.front().phys = {{.software = 2, .hardware = 1}};
        if (refusal != 0) {
            scenario.faults = {{.function = "WlanSetInterface", .code = refusal}};
        }
        startRadio(std::move(scenario));
    }

    /// The texts of the warnings so far.
    std::vector<std::string> warnings() {
        std::vector<std::string> texts;
        for (const tesk5::RaisedEvent& event : raised()) {
            if (event.key.utf8() == "WARNING_EVENT") {
                EXPECT_THAT(test::text(event),
                            StartsWith("warning WARNING_EVENT "
                                       "modules/src/windows/diag/mrlrantenna/mrlrantennaDlg.cpp:"));
                EXPECT_EQ(event.variables.front().first.utf8(), "warningEvent");
                texts.push_back(event.variables.front().second.valueString().utf8());
            }
        }
        return texts;
    }
};

TEST_F(OpeningTheDialog, GoesStepByStep) {
    startRadio({network("Lab", 42U)});
    radio().onCall([](const radiosim::Call& call) {
        for (const char* noted :
             {"WlanEnumInterfaces", "WlanGetAvailableNetworkList", "WlanSetInterface"}) {
            if (call.function == noted) {
                test::Journal::note(noted);
            }
        }
    });
    // Disabled, to see that it is enabled at the end.
    journal().onEntry = [](const std::string& entry, HWND dialog) {
        if (entry == "opens") {
            ::EnableWindow(::GetDlgItem(dialog, IDC_FINISH), FALSE);
        }
    };
    std::vector<std::string> opening;
    run({[&](Dialog& dialog) {
        opening = journal().entries();
        EXPECT_TRUE(::IsWindowVisible(dialog));
        EXPECT_EQ(picture(dialog), "on");
    }});
    radio().onCall(nullptr);
    const std::string finish = std::to_string(IDC_FINISH);
    const std::string tipOn = "tip " + std::to_string(IDC_RADIO_ON_IMAGE) + " ";
    const std::string tipOff = "tip " + std::to_string(IDC_RADIO_OFF_IMAGE) + " ";
    EXPECT_THAT(
        opening,
        ElementsAre(
            "opens", "disable " + finish, "exchange show", "pause 1000 ms", "icon big",
            "icon small", "pause 1000 ms", writtenKey(0, "TITLE"),
            writtenKey(IDC_ADAPTER_LABEL, "NETWORK_ADAPTER"), "WlanEnumInterfaces",
            written(IDC_ADAPTER_NAME, "Simulated Wireless Adapter"),
            writtenKey(IDC_FINISH, "FINISH"), writtenKey(IDC_INSTRUCTIONS, "INSTRUCTIONS_1"),
            writtenKey(IDC_NETWORKS_LABEL, "AVAILABLE_NETWORKS"),
            writtenKey(IDC_BSS_TYPE_LABEL, "BSS_TYPE"), written(IDC_SSID_LABEL, "SSID"),
            writtenKey(IDC_SECURITY_LABEL, "SECURITY"),
            writtenKey(IDC_AUTH_LABEL, "AUTHENTICATION"), writtenKey(IDC_CIPHER_LABEL, "CIPHER"),
            writtenKey(IDC_CONNECTABLE_LABEL, "CONNECTABLE"),
            writtenKey(IDC_STRENGTH_LABEL, "SIGNAL_STRENGTH"), "list empty", "tips off",
            tipOn + localized("TURN_RADIO_OFF"), writtenKey(IDC_RADIO_ON_IMAGE, "TURN_RADIO_OFF"),
            tipOff + localized("TURN_RADIO_ON"), writtenKey(IDC_RADIO_OFF_IMAGE, "TURN_RADIO_ON"),
            "tips on", "exchange read", "exchange read", "count entries", "list empty",
            "WlanGetAvailableNetworkList", "list insert 0 Lab", "list select 0", "list select 0",
            "pause 50 ms", "WlanGetAvailableNetworkList", "count entries",
            writtenKey(IDC_RADIO_STATUS, "RADIO_BUTTON_ON"), "list select 0",
            "WlanGetAvailableNetworkList", "pause 100 ms", "WlanGetAvailableNetworkList",
            "pause 100 ms", "WlanGetAvailableNetworkList", "pause 100 ms",
            writtenKey(IDC_BSS_TYPE, "INFRASTRUCTURE"), written(IDC_SSID, "Lab"),
            writtenKey(IDC_SECURITY, "ENABLED"), writtenKey(IDC_CONNECTABLE, "YES"),
            writtenKey(IDC_CIPHER, "NO"), written(IDC_AUTH, "RSNA PSK"),
            writtenKey(IDC_STRENGTH_TEXT, "GOOD"), written(IDC_STRENGTH_PERCENT, "42%"), "meter 42",
            "exchange read", "exchange read", "enable " + finish, "meter range 0 100",
            "meter step 1"));
    EXPECT_THAT(raisedKeys(), IsEmpty());
}

TEST_F(OpeningTheDialog, OpensEachTraceScopeBeforeItsFirstStep) {
    startRadio({network("Lab")});
    mrl::LogFactory::setPriority(0);
    run({});
    mrl::LogFactory::setPriority(1);
    EXPECT_THAT(journal().entries({scopeOpened(""), "exchange", "pause 1000", "pause 50", "count"}),
                ElementsAre(StartsWith(scopeOpened("OnInitDialog()")), "exchange show",
                            "pause 1000 ms", StartsWith(scopeOpened("populateText()")),
                            "pause 1000 ms", "exchange read", "exchange read",
                            StartsWith(scopeOpened("populateAvailableNetworks()")), "count entries",
                            StartsWith(scopeOpened("updateSelectedNetworkInformation()")),
                            "pause 50 ms", "count entries",
                            StartsWith(scopeOpened("startWirelessProgress()")), "exchange read",
                            "exchange read"));
}

TEST_F(OpeningTheDialog, LogsTheAdapter) {
    run({});
    EXPECT_THAT(logged(test::DIALOG_LOGGER),
                ElementsAre(test::LineSaying(
                    std::string("The interface description: Simulated Wireless Adapter"))));
}

TEST_F(OpeningTheDialog, HasTheModulesIcons) {
    run({[](Dialog& dialog) {
        const auto icon = reinterpret_cast<LRESULT>(dialog.m_hIcon);
        EXPECT_NE(icon, 0);
        EXPECT_EQ(dialog.SendMessage(WM_GETICON, ICON_BIG), icon);
        EXPECT_NE(dialog.SendMessage(WM_GETICON, ICON_SMALL), 0);
        EXPECT_EQ(dialog.SendMessage(WM_QUERYDRAGICON), icon);
    }});
}

// --- The radio -----------------------------------------------------------------------------------

TEST_F(OpeningTheDialog, SwitchesTheRadioOnThenLoadsThePicturesThenLooksForNetworks) {
    startRadioSwitchedOff();
    run({[](Dialog& dialog) { EXPECT_EQ(picture(dialog), "on"); }});
    std::vector<std::string> order =
        journal().entries({"tips on", "call WlanSetInterface", "log 1 libUikit.PngControl",
                           "call WlanGetAvailableNetworkList"});
    ASSERT_GE(order.size(), 5U);
    order.resize(5);
    EXPECT_THAT(order, ElementsAre("tips on", "call WlanSetInterface = 0",
                                   HasSubstr("resources/mrlrantenna/signal_enabled.png"),
                                   HasSubstr("resources/mrlrantenna/signal_disabled.png"),
                                   "call WlanGetAvailableNetworkList = 0"));
    EXPECT_THAT(raisedKeys(), IsEmpty());
}

TEST_F(OpeningTheDialog, SwitchesTheLastPhyOfSeveral) {
    radiosim::Scenario scenario;
    scenario.interfaces.front().phys = {{.software = 1}, {.software = 1}, {.software = 2}};
    startRadio(std::move(scenario));
    run({[](Dialog& dialog) {
        EXPECT_EQ(dialog.m_wirelessDevice->getRadioState(2), SOFTWARE_ON | HARDWARE_ON);
        EXPECT_EQ(picture(dialog), "on");
    }});
}

std::string systemText(DWORD code) {
    wchar_t buffer[1025] = {};
    FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code,
                   GetUserDefaultLangID(), buffer, 1025, nullptr);
    return mrl::toUtf8(static_cast<const wchar_t*>(buffer));
}

TEST_F(OpeningTheDialog, WarnsWithTheSystemsMessageOfARadioThatStaysOff) {
    startRadioSwitchedOff(ERROR_ACCESS_DENIED);
    run({[](Dialog& dialog) {
        EXPECT_EQ(picture(dialog), "off");
        EXPECT_FALSE(dialog.m_radioOn);
    }});
    const std::string words = systemText(ERROR_ACCESS_DENIED);
    ASSERT_FALSE(words.empty());
    EXPECT_THAT(warnings(), ElementsAre(words));
    // One line: the log writes the line end of the system's message as "\\r\\n".
    const std::string bare = words.substr(0, words.find('\r'));
    EXPECT_THAT(dialogLines(),
                testing::Contains(StartsWith("WARNING:: setRadioState returned: " + bare)));
}

TEST_F(OpeningTheDialog, WarnsWithTheSignedCodeWhereTheSystemHasNoMessage) {
    for (const DWORD code : {0x2FFF1234UL, 0xE0001234UL}) {
        ASSERT_TRUE(systemText(code).empty());
        startRadioSwitchedOff(code);
        run({});
    }
    EXPECT_THAT(warnings(), ElementsAre("Error code: 805245492", "Error code: -536866252"));
}

// --- The list's height ---------------------------------------------------------------------------

LRESULT CALLBACK answerHeight(HWND list, UINT message, WPARAM index, LPARAM lParam, UINT_PTR,
                              DWORD_PTR height) {
    return message == CB_GETITEMHEIGHT && index == 0
               ? *reinterpret_cast<const int*>(height)
               : DefSubclassProc(list, message, index, lParam);
}

// Not every system changes the height of a list that it draws itself, so the messages to the list
// are tested.
TEST_F(OpeningTheDialog, AsksForTwiceTheHeightOfTheListsItemsInSixteenBitsOnATabletPc) {
    int height = 0;
    std::optional<Subclass> list;
    journal().onEntry = [&](const std::string& entry, HWND dialog) {
        if (entry == "opens") {
            list.emplace(::GetDlgItem(dialog, IDC_NETWORK_COMBO), answerHeight, &height);
        }
    };
    const auto stepsOn = [&](bool tabletPc, int itemHeight) {
        doubles::tabletPc = tabletPc;
        height = itemHeight;
        journal().clear();
        run({});
        std::vector<std::string> steps =
            journal().entries({"exchange show", "list height", "pause", "icon big"});
        steps.erase(std::find(steps.begin(), steps.end(), "icon big"), steps.end());
        return steps;
    };
    const char* const pause = "pause 1000 ms";
    EXPECT_THAT(stepsOn(false, 16), ElementsAre("exchange show", pause));
    EXPECT_THAT(stepsOn(true, 16), ElementsAre("exchange show", "list height 0 32", pause));
    EXPECT_THAT(stepsOn(true, 0x9000), ElementsAre("exchange show", "list height 0 8192", pause));
}

// --- Tool tips -----------------------------------------------------------------------------------

// Messages of the loop reach the tool tip, which could not show itself otherwise.
TEST_F(OpeningTheDialog, RelaysTheLoopsMessagesToAToolTipThatShowsInAnActiveDialogOnly) {
    int relayed = 0;
    std::optional<Subclass> toolTip;
    const auto countRelays = [](HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                DWORD_PTR count) -> LRESULT {
        if (message == TTM_RELAYEVENT &&
            reinterpret_cast<const MSG*>(lParam)->message == WM_MOUSEMOVE) {
            ++*reinterpret_cast<int*>(count);
        }
        return DefSubclassProc(window, message, wParam, lParam);
    };
    run({[&](Dialog& dialog) {
             EXPECT_EQ(GetWindowLongPtrW(*dialog.m_toolTip, GWL_STYLE) & TTS_ALWAYSTIP, 0);
             toolTip.emplace(dialog.m_toolTip->m_hWnd, countRelays, &relayed);
             dialog.m_radioOnImage.PostMessage(WM_MOUSEMOVE, 0, MAKELPARAM(20, 20));
         },
         [&](Dialog&) { EXPECT_GE(relayed, 1); }});
}

LRESULT CALLBACK refuseToolTips(int code, WPARAM wParam, LPARAM lParam) {
    return code == HCBT_CREATEWND && test::isToolTip(reinterpret_cast<HWND>(wParam))
               ? 1
               : CallNextHookEx(nullptr, code, wParam, lParam);
}

TEST_F(OpeningTheDialog, GoesOnWithoutToolTipsWhenTheyCannotBeMade) {
    const HHOOK hook = SetWindowsHookExW(WH_CBT, refuseToolTips, nullptr, GetCurrentThreadId());
    run({[&](Dialog& dialog) {
        EXPECT_TRUE(::IsWindowVisible(dialog));
        EXPECT_TRUE(test::timerRuns(dialog));
    }});
    UnhookWindowsHookEx(hook);
    EXPECT_THAT(journal().entries({"log 4"}),
                ElementsAre(testing::EndsWith(" Unable To create ToolTip")));
    EXPECT_THAT(journal().entries({"tip"}), IsEmpty());
}

} // namespace
