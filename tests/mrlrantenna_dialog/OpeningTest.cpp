// How the dialog opens: its steps in order, its texts, the radio, tool tips, the Tablet PC.
#include "DialogTest.h"

#include "TabletPcDouble.h"

#include <Subclass.h>

#include <mrl/Unicode.h>

#include <optional>

namespace {

using libUikit::Subclass;
using test::Dialog;
using test::network;
using test::picture;
using test::shown;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr DWORD UNKNOWN_CODE = 0x2FFF1234;

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

    /// How many warnings were raised. The first event is one if there is any.
    long warnings() {
        const std::vector<std::string> keys = raisedKeys();
        return static_cast<long>(std::count(keys.begin(), keys.end(), "WARNING_EVENT"));
    }

    /// The journal, with the calls of `functions` in it.
    std::vector<std::string> journalOfOpening(std::vector<std::string> functions = {}) {
        radio().onCall([this, functions](const radiosim::Call& call) {
            if (std::count(functions.begin(), functions.end(), call.function) != 0) {
                journal().note("call " + call.function);
            }
        });
        std::vector<std::string> opening;
        run({[&](Dialog&) { opening = journal().entries(); }});
        radio().onCall(nullptr);
        return opening;
    }
};

TEST_F(OpeningTheDialog, GoesStepByStep) {
    startRadio({network("Lab", 42U)});
    EXPECT_THAT(
        journalOfOpening({"WlanEnumInterfaces", "WlanGetAvailableNetworkList"}),
        ElementsAre(
            "sleep 1000", "icon big", "icon small", "sleep 1000", "text 0 " + localized("TITLE"),
            "text 1019 " + localized("NETWORK_ADAPTER"), "call WlanEnumInterfaces",
            "text 1020 Simulated Wireless Adapter", "text 1015 " + localized("FINISH"),
            "text 1036 " + localized("INSTRUCTIONS_1"),
            "text 1022 " + localized("AVAILABLE_NETWORKS"), "text 1023 " + localized("BSS_TYPE"),
            "text 1024 SSID", "text 1025 " + localized("SECURITY"),
            "text 1028 " + localized("AUTHENTICATION"), "text 1027 " + localized("CIPHER"),
            "text 1026 " + localized("CONNECTABLE"), "text 1029 " + localized("SIGNAL_STRENGTH"),
            "list empty", "tips off", "tip 1042 " + localized("TURN_RADIO_OFF"),
            "text 1042 " + localized("TURN_RADIO_OFF"), "tip 1043 " + localized("TURN_RADIO_ON"),
            "text 1043 " + localized("TURN_RADIO_ON"), "tips on", "list empty",
            "call WlanGetAvailableNetworkList", "list insert 0 Lab", "list select 0",
            "list select 0", "sleep 50", "call WlanGetAvailableNetworkList",
            "text 1045 " + localized("RADIO_BUTTON_ON"), "list select 0",
            "call WlanGetAvailableNetworkList", "sleep 100", "call WlanGetAvailableNetworkList",
            "sleep 100", "call WlanGetAvailableNetworkList", "sleep 100",
            "text 1030 " + localized("INFRASTRUCTURE"), "text 1031 Lab",
            "text 1032 " + localized("ENABLED"), "text 1033 " + localized("YES"),
            "text 1034 " + localized("NO"), "text 1035 RSNA PSK", "text 1038 " + localized("GOOD"),
            "text 1041 42%", "meter 42", "meter range 0 100", "meter step 1"));
}

TEST_F(OpeningTheDialog, OpensTraceScopesNamedAfterItsOperations) {
    startRadio({network("Lab")});
    mrl::LogFactory::setPriority(0);
    run({});
    mrl::LogFactory::setPriority(1);
    std::vector<std::string> scopes;
    for (const test::CapturedLog::Line& line : log().lines()) {
        if (line.priority == 0 && line.logger == test::DIALOG_LOGGER &&
            line.text.starts_with("> ")) {
            scopes.push_back(line.text.substr(2, line.text.rfind(" (") - 2));
        }
    }
    EXPECT_THAT(scopes,
                ElementsAre("OnInitDialog()", "populateText()", "populateAvailableNetworks()",
                            "updateSelectedNetworkInformation()", "startWirelessProgress()"));
}

TEST_F(OpeningTheDialog, LogsTheAdapter) {
    run({});
    EXPECT_THAT(logged(test::DIALOG_LOGGER),
                ElementsAre(test::LineSaying(
                    std::string("The interface description: Simulated Wireless Adapter"))));
}

TEST_F(OpeningTheDialog, HasNoTextForTheSignalQualityLabelButThatOfTheCipher) {
    startRadio({test::connected(network("Lab"))});
    run({[&](Dialog& dialog) {
        EXPECT_EQ(shown(dialog, 0), localized("TITLE"));
        EXPECT_EQ(shown(dialog, IDC_CIPHER_LABEL), localized("CIPHER"));
        EXPECT_EQ(shown(dialog, IDC_CIPHER), localized("YES"));
        EXPECT_EQ(shown(dialog, IDC_SSID_LABEL), "SSID");
    }});
}

TEST_F(OpeningTheDialog, HasTheModulesIcons) {
    run({[](Dialog& dialog) {
        ASSERT_NE(dialog.m_hIcon, nullptr);
        EXPECT_EQ(reinterpret_cast<HICON>(dialog.SendMessage(WM_GETICON, ICON_BIG)),
                  dialog.m_hIcon);
        EXPECT_EQ(reinterpret_cast<HICON>(dialog.SendMessage(WM_GETICON, ICON_SMALL)),
                  dialog.m_hIcon);
    }});
}

TEST_F(OpeningTheDialog, SetsUpTheMeterTheTimerAndTheFinishButton) {
    run({[](Dialog& dialog) {
        EXPECT_EQ(dialog.m_signalMeter.SendMessage(PBM_GETRANGE, TRUE), 0);
        EXPECT_EQ(dialog.m_signalMeter.SendMessage(PBM_GETRANGE, FALSE), 100);
        EXPECT_EQ(dialog.m_signalMeter.SetStep(1), 1);
        EXPECT_TRUE(test::timerRuns(dialog));
        EXPECT_TRUE(test::isEnabled(dialog, IDC_FINISH));
        EXPECT_TRUE(::IsWindowVisible(dialog));
    }});
}

TEST_F(OpeningTheDialog, LeavesHiddenWhatTheTemplateHides) {
    run({[](Dialog& dialog) {
        for (const int id : {IDC_FAIL, IDCANCEL, IDC_PASS_HINT}) {
            EXPECT_FALSE(test::isShown(dialog, id)) << id;
        }
        EXPECT_FALSE(test::isEnabled(dialog, IDC_FAIL));
        EXPECT_FALSE(test::isEnabled(dialog, IDCANCEL));
    }});
}

TEST_F(OpeningTheDialog, AsksForBothPicturesByTheirRelativePaths) {
    run({});
    const std::vector<std::string> lines = logged("libUikit.PngControl");
    EXPECT_THAT(lines, ElementsAre(HasSubstr("resources/mrlrantenna/signal_enabled.png"),
                                   HasSubstr("resources/mrlrantenna/signal_disabled.png")));
}

// --- The radio -----------------------------------------------------------------------------------

TEST_F(OpeningTheDialog, LeavesARadioAloneThatIsOn) {
    run({[&](Dialog& dialog) {
        EXPECT_EQ(radio().callCount("WlanSetInterface"), 0U);
        EXPECT_EQ(picture(dialog), "on");
    }});
    EXPECT_THAT(raisedKeys(), IsEmpty());
}

TEST_F(OpeningTheDialog, SwitchesTheRadioOnBeforeItLoadsThePictures) {
    startRadioSwitchedOff();
    EXPECT_THAT(journalOfOpening({"WlanSetInterface"}), testing::Contains("call WlanSetInterface"));
    EXPECT_THAT(journal().entries({"tips on", "call", "text 1045"}),
                ElementsAre("tips on", "call WlanSetInterface",
                            "text 1045 " + localized("RADIO_BUTTON_ON")));
    EXPECT_THAT(raisedKeys(), IsEmpty());
}

TEST_F(OpeningTheDialog, LoadsThePicturesAfterSwitchingTheRadioAndBeforeTheFirstLook) {
    startRadioSwitchedOff();
    const test::Journal all;
    run({});
    std::vector<std::string> order;
    for (const std::string& entry : all.entries({"call", "log"})) {
        for (const char* step : {"WlanSetInterface", "signal_enabled.png", "signal_disabled.png",
                                 "WlanGetAvailableNetworkList"}) {
            if (entry.find(step) != std::string::npos && order.size() < 4) {
                order.emplace_back(step);
            }
        }
    }
    EXPECT_THAT(order, ElementsAre("WlanSetInterface", "signal_enabled.png", "signal_disabled.png",
                                   "WlanGetAvailableNetworkList"));
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
    ASSERT_EQ(warnings(), 1);
    EXPECT_THAT(test::text(raised().front()),
                StartsWith("warning WARNING_EVENT "
                           "modules/src/windows/diag/mrlrantenna/mrlrantennaDlg.cpp:"));
    ASSERT_EQ(raised().front().variables.size(), 1U);
    EXPECT_EQ(raised().front().variables.front().first.utf8(), "warningEvent");
    EXPECT_EQ(raised().front().variables.front().second.valueString().utf8(), words);
    // One line: the log writes the line end of the system's message as "\\r\\n".
    const std::string bare = words.substr(0, words.find('\r'));
    EXPECT_THAT(dialogLines(),
                testing::Contains(StartsWith("WARNING:: setRadioState returned: " + bare)));
}

TEST_F(OpeningTheDialog, WarnsWithTheCodeWhereTheSystemHasNoMessage) {
    startRadioSwitchedOff(UNKNOWN_CODE);
    ASSERT_TRUE(systemText(UNKNOWN_CODE).empty());
    run({[](Dialog& dialog) { EXPECT_TRUE(::IsWindowVisible(dialog)); }});
    ASSERT_EQ(warnings(), 1);
    EXPECT_THAT(test::text(raised().front()),
                HasSubstr("warningEvent=\"Error code: " + std::to_string(UNKNOWN_CODE) + "\""));
}

TEST_F(OpeningTheDialog, WarnsOfANegativeCodeAsSuch) {
    startRadioSwitchedOff(0xE0001234);
    run({});
    ASSERT_EQ(warnings(), 1);
    EXPECT_THAT(test::text(raised().front()), HasSubstr("warningEvent=\"Error code: -536866252\""));
}

TEST_F(OpeningTheDialog, GoesOnWithoutTheService) {
    radiosim::Scenario scenario;
    scenario.faults = {{.function = "WlanOpenHandle", .code = ERROR_SERVICE_NOT_ACTIVE}};
    startRadio(std::move(scenario));
    run({[&](Dialog& dialog) {
        EXPECT_EQ(test::selected(dialog), "none");
        EXPECT_EQ(shown(dialog, IDC_ADAPTER_NAME), "");
        EXPECT_EQ(shown(dialog, IDC_RADIO_STATUS), localized("RADIO_STATE_UNKNOWN"));
        EXPECT_EQ(picture(dialog), "greyed off");
    }});
    EXPECT_THAT(raisedKeys(), ElementsAre("WARNING_EVENT"));
}

// --- The list's height ---------------------------------------------------------------------------

// Not every system changes the height of a list that it draws itself, so the messages to the list
// are tested.
TEST_F(OpeningTheDialog, AsksForTwiceTheHeightOfTheListsItemsOnATabletPc) {
    int normal = 0;
    run({[&](Dialog& dialog) { normal = dialog.m_networkCombo.GetItemHeight(0); }});
    EXPECT_GT(normal, 0);
    EXPECT_THAT(journal().entries({"list height"}), IsEmpty());
    journal().clear();
    doubles::tabletPc = true;
    run({});
    const std::string change = "list height 0 " + std::to_string(2 * normal);
    EXPECT_THAT(journal().entries({"list height", "sleep 1000", "icon"}),
                ElementsAre(change, "sleep 1000", "icon big", "icon small", "sleep 1000"));
}

std::optional<Subclass> g_list;

LRESULT CALLBACK answerHugeHeight(HWND list, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                  DWORD_PTR) {
    return message == CB_GETITEMHEIGHT ? 0x9000 : DefSubclassProc(list, message, wParam, lParam);
}

LRESULT CALLBACK makeListHuge(int code, WPARAM wParam, LPARAM lParam) {
    const auto& sent = *reinterpret_cast<const CWPSTRUCT*>(lParam);
    if (code == HC_ACTION && sent.message == WM_INITDIALOG) {
        g_list.emplace(::GetDlgItem(sent.hwnd, IDC_NETWORK_COMBO), answerHugeHeight, nullptr);
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

TEST_F(OpeningTheDialog, KeepsTheDoubledHeightToSixteenBits) {
    doubles::tabletPc = true;
    const HHOOK hook =
        SetWindowsHookExW(WH_CALLWNDPROC, makeListHuge, nullptr, GetCurrentThreadId());
    run({});
    UnhookWindowsHookEx(hook);
    g_list.reset();
    EXPECT_THAT(journal().entries({"list height"}),
                ElementsAre("list height 0 " + std::to_string(0x2000)));
}

// --- Tool tips -----------------------------------------------------------------------------------

std::string toolTipOf(const Dialog& dialog, int controlId) {
    wchar_t text[200] = {};
    TTTOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V2_SIZE;
    tool.hwnd = dialog.m_hWnd;
    tool.uId = reinterpret_cast<UINT_PTR>(::GetDlgItem(dialog.m_hWnd, controlId));
    tool.lpszText = text;
    dialog.m_toolTip->SendMessage(TTM_GETTEXTW, std::size(text), reinterpret_cast<LPARAM>(&tool));
    return mrl::toUtf8(static_cast<const wchar_t*>(text));
}

TEST_F(OpeningTheDialog, GivesEachPictureAToolTip) {
    run({[&](Dialog& dialog) {
        ASSERT_NE(dialog.m_toolTip, nullptr);
        EXPECT_EQ(dialog.m_toolTip->SendMessage(TTM_GETTOOLCOUNT), 2);
        EXPECT_EQ(toolTipOf(dialog, IDC_RADIO_ON_IMAGE), localized("TURN_RADIO_OFF"));
        EXPECT_EQ(toolTipOf(dialog, IDC_RADIO_OFF_IMAGE), localized("TURN_RADIO_ON"));
    }});
}

// Messages of the loop reach the tool tip, which could not show itself otherwise.
TEST_F(OpeningTheDialog, RelaysTheLoopsMessagesToTheToolTip) {
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
             toolTip.emplace(dialog.m_toolTip->m_hWnd, countRelays, &relayed);
             dialog.m_radioOnImage.PostMessage(WM_MOUSEMOVE, 0, MAKELPARAM(20, 20));
         },
         [&](Dialog&) { EXPECT_GE(relayed, 1); }});
}

// Keeps the window class of tool tips from being used.
LRESULT CALLBACK refuseToolTips(int code, WPARAM wParam, LPARAM lParam) {
    if (code == HCBT_CREATEWND) {
        wchar_t name[sizeof TOOLTIPS_CLASSW] = {};
        GetClassNameW(reinterpret_cast<HWND>(wParam), name, static_cast<int>(std::size(name)));
        if (std::wstring_view(name) == TOOLTIPS_CLASSW) {
            return 1;
        }
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

TEST_F(OpeningTheDialog, GoesOnWithoutToolTipsWhenTheyCannotBeMade) {
    const HHOOK hook = SetWindowsHookExW(WH_CBT, refuseToolTips, nullptr, GetCurrentThreadId());
    run({[&](Dialog& dialog) {
        EXPECT_TRUE(::IsWindowVisible(dialog));
        EXPECT_TRUE(test::timerRuns(dialog));
    }});
    UnhookWindowsHookEx(hook);
    std::vector<std::string> complaints;
    for (const test::CapturedLog::Line& line : log().lines()) {
        if (line.logger == test::DIALOG_LOGGER && line.priority == 4) {
            complaints.push_back(line.text.substr(line.text.find(' ') + 1));
        }
    }
    EXPECT_THAT(complaints, ElementsAre("Unable To create ToolTip"));
    EXPECT_THAT(journal().entries({"tip"}), IsEmpty());
}

} // namespace
