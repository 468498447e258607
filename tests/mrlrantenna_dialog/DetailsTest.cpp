// The details of the selected network: which network they are of, and how they are written.
#include "DialogTest.h"

namespace {

using test::choose;
using test::connected;
using test::Dialog;
using test::network;
using test::shown;
using test::strength;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* SSID_TEXT = "text 1031 ";

class Details : public test::DialogTest {
protected:
    /// The names written into the field, in turn, and the list looked at, when entry `index` is
    /// chosen after the networks have become `now`.
    std::vector<std::string> namesWritten(std::vector<radiosim::AccessPoint> before, int index,
                                          std::vector<radiosim::AccessPoint> now) {
        startRadio(std::move(before));
        std::vector<std::string> names;
        run({[&](Dialog& dialog) {
            radio().setAccessPoints(0, std::move(now));
            journal().clear();
            choose(dialog, index);
            names = journal().entries({SSID_TEXT});
        }});
        for (std::string& name : names) {
            name = name.substr(std::string(SSID_TEXT).size());
        }
        return names;
    }
};

TEST_F(Details, ShowEverythingAboutTheSelectedNetwork) {
    radiosim::AccessPoint adHoc = network("Field", 81U);
    adHoc.secured = false;
    adHoc.auth = DOT11_AUTH_ALGO_80211_OPEN;
    adHoc.bssType = dot11_BSS_type_independent;
    adHoc.connectable = false;
    adHoc.reason = 0x00020001;
    startRadio({network("Guest", 20U), connected(network("Lab", 60U)), adHoc});
    run({[&](Dialog& dialog) {
        EXPECT_EQ(shown(dialog, IDC_SSID), "Lab");
        EXPECT_EQ(shown(dialog, IDC_BSS_TYPE), localized("INFRASTRUCTURE"));
        EXPECT_EQ(shown(dialog, IDC_SECURITY), localized("ENABLED"));
        EXPECT_EQ(shown(dialog, IDC_AUTH), "RSNA PSK");
        EXPECT_EQ(shown(dialog, IDC_CIPHER), localized("YES"));
        EXPECT_EQ(shown(dialog, IDC_CONNECTABLE), localized("YES"));
        EXPECT_EQ(strength(dialog), localized("VERY_GOOD") + " 60% 60");
        choose(dialog, 2);
        EXPECT_EQ(shown(dialog, IDC_SSID), "Field");
        EXPECT_EQ(shown(dialog, IDC_BSS_TYPE), localized("AD_HOC_INDEPENDENT"));
        EXPECT_EQ(shown(dialog, IDC_SECURITY), localized("NOT_ENABLED"));
        EXPECT_EQ(shown(dialog, IDC_AUTH), localized("AUTHENTICATION_OPEN"));
        EXPECT_EQ(shown(dialog, IDC_CIPHER), localized("NO"));
        EXPECT_EQ(shown(dialog, IDC_CONNECTABLE), localized("NO"));
        EXPECT_EQ(strength(dialog), localized("EXCELLENT") + " 81% 81");
    }});
}

TEST_F(Details, AreWrittenInAFixedOrder) {
    startRadio({network("Lab", 42U)});
    run({[&](Dialog& dialog) {
        journal().clear();
        dialog.updateSelectedNetworkInformation();
        EXPECT_THAT(journal().entries(),
                    ElementsAre("sleep 50", "text 1045 " + localized("RADIO_BUTTON_ON"),
                                "list select 0", "sleep 100", "sleep 100", "sleep 100",
                                "text 1030 " + localized("INFRASTRUCTURE"), "text 1031 Lab",
                                "text 1032 " + localized("ENABLED"),
                                "text 1033 " + localized("YES"), "text 1034 " + localized("NO"),
                                "text 1035 RSNA PSK", "text 1038 " + localized("GOOD"),
                                "text 1041 42%", "meter 42"));
    }});
}

// Three looks 100 ms apart, at 1.0, 1.1 and 1.2 s of a signal's life.
TEST_F(Details, ShowTheMeanOfThreeReadings) {
    startRadio({network("Guest"), network("Lab")});
    run({[&](Dialog& dialog) {
        radio().setAccessPoints(
            0, {network("Guest"),
                network("Lab", radiosim::Signal::Series{.values = {70, 71, 73},
                                                        .step = std::chrono::milliseconds(100),
                                                        .repeat = true})});
        choose(dialog, 1);
        EXPECT_EQ(strength(dialog), localized("VERY_GOOD") + " 71% 71");
    }});
}

struct Rating {
    unsigned int percent;
    const char* key;
};

class Ratings : public Details, public testing::WithParamInterface<Rating> {};

TEST_P(Ratings, FollowThePercentage) {
    const Rating& rating = GetParam();
    startRadio({network("Lab", rating.percent)});
    run({[&](Dialog& dialog) {
        const std::string percent = std::to_string(rating.percent);
        EXPECT_EQ(strength(dialog), localized(rating.key) + " " + percent + "% " + percent);
    }});
}

constexpr Rating ratings[] = {{99, "EXCELLENT"}, {80, "EXCELLENT"}, {79, "VERY_GOOD"},
                              {59, "GOOD"},      {39, "LOW"},       {19, "VERY_LOW"},
                              {1, "VERY_LOW"},   {0, "NO_SIGNAL"}};
INSTANTIATE_TEST_SUITE_P(Scale, Ratings, testing::ValuesIn(ratings));

// --- Which network -------------------------------------------------------------------------------

TEST_F(Details, OfTheFirstEntryEndOnTheFirstNetworkWhoseNameIsInTheEntry) {
    EXPECT_THAT(namesWritten({network("Lab"), network("Guest")}, 0,
                             {network("Zoo"), network("Attic"), network("Lab"), network("Guest")}),
                ElementsAre("Zoo", "Attic", "Lab"));
    EXPECT_THAT(namesWritten({network("lab2"), network("Guest")}, 0,
                             {network("Zoo"), network("lab"), network("Guest")}),
                ElementsAre("Zoo", "lab"));
}

TEST_F(Details, OfTheFirstEntryStayOnTheLastNetworkWhenNoneMatches) {
    EXPECT_THAT(
        namesWritten({network("Lab"), network("Guest")}, 0, {network("Zoo"), network("Attic")}),
        ElementsAre("Zoo", "Attic"));
}

TEST_F(Details, OfAnotherEntryAreWrittenForTheMatchAlone) {
    EXPECT_THAT(namesWritten({network("Lab"), network("Guest")}, 1,
                             {network("Zoo"), network("Attic"), network("Guest"), network("Lab")}),
                ElementsAre("Guest"));
}

TEST_F(Details, OfAnotherEntryComeFromTheFirstOfSeveralMatches) {
    EXPECT_THAT(namesWritten({network("Zoo"), network("Lab-5G"), network("Lab")}, 1,
                             {network("Zoo"), network("b-5"), network("Lab-5G"), network("Lab")}),
                ElementsAre("b-5"));
}

TEST_F(Details, OfAnotherEntryKeepTheirValuesWithoutAMatch) {
    startRadio({network("Lab", 42U), network("Guest", 80U)});
    run({[&](Dialog& dialog) {
        choose(dialog, 1);
        radio().setAccessPoints(0, {network("Zoo", 10U), network("Attic", 11U)});
        journal().clear();
        choose(dialog, 1);
        EXPECT_THAT(journal().entries({"text 1031", "text 1041", "meter"}), IsEmpty());
        EXPECT_EQ(shown(dialog, IDC_SSID), "Guest");
        EXPECT_EQ(strength(dialog), localized("EXCELLENT") + " 80% 80");
    }});
}

TEST_F(Details, OfALongerNameAverageInTheNamesThatItContains) {
    startRadio({network("Zoo"), network("Lab-5G", 90U), network("Lab", 40U)});
    run({[&](Dialog& dialog) {
        choose(dialog, 1);
        EXPECT_EQ(shown(dialog, IDC_SSID), "Lab-5G");
        EXPECT_EQ(strength(dialog), localized("VERY_GOOD") + " 65% 65");
        choose(dialog, 2);
        EXPECT_EQ(shown(dialog, IDC_SSID), "Lab");
        EXPECT_EQ(strength(dialog), localized("GOOD") + " 40% 40");
    }});
}

TEST_F(Details, SelectTheMatchingEntryAgain) {
    startRadio({network("Lab"), network("Guest")});
    run({[&](Dialog& dialog) {
        dialog.m_networkCombo.SetCurSel(1);
        journal().clear();
        dialog.updateSelectedNetworkInformation();
        EXPECT_THAT(journal().entries({"list"}), ElementsAre("list select 1"));
    }});
}

class ClearedDetails : public Details {
protected:
    void expectCleared(Dialog& dialog) {
        for (const int id : {IDC_BSS_TYPE, IDC_SSID, IDC_SECURITY, IDC_CONNECTABLE, IDC_CIPHER,
                             IDC_AUTH, IDC_STRENGTH_TEXT, IDC_STRENGTH_PERCENT}) {
            EXPECT_EQ(shown(dialog, id), "") << id;
        }
        EXPECT_EQ(dialog.m_signalMeter.SendMessage(PBM_GETPOS), 0);
    }
};

TEST_F(ClearedDetails, WhenTheListHasBecomeEmpty) {
    startRadio({network("Lab", 42U)});
    run({[&](Dialog& dialog) {
        EXPECT_EQ(shown(dialog, IDC_SSID), "Lab");
        radio().setAccessPoints(0, {});
        journal().clear();
        dialog.populateAvailableNetworks();
        dialog.updateSelectedNetworkInformation();
        expectCleared(dialog);
        // The radio's state is shown all the same.
        EXPECT_THAT(journal().entries({"text 1045"}),
                    ElementsAre("text 1045 " + localized("RADIO_BUTTON_ON")));
    }});
}

TEST_F(ClearedDetails, WhenNothingIsSelected) {
    startRadio({network("Lab", 42U), network("Guest")});
    run({[&](Dialog& dialog) {
        dialog.m_networkCombo.SetCurSel(-1);
        dialog.updateSelectedNetworkInformation();
        expectCleared(dialog);
    }});
}

TEST_F(ClearedDetails, WhenTheListCannotBeRead) {
    startRadio({network("Lab", 42U)});
    run({[&](Dialog& dialog) {
        radio().addFault({.function = "WlanGetAvailableNetworkList", .code = ERROR_GEN_FAILURE});
        dialog.populateAvailableNetworks();
        dialog.updateSelectedNetworkInformation();
        expectCleared(dialog);
    }});
}

// --- Another choice ------------------------------------------------------------------------------

TEST_F(Details, FollowTheChoiceMadeWithTheKeyboard) {
    startRadio({network("Guest", 20U), network("Lab", 42U)});
    run({[](Dialog& dialog) { test::press(dialog, VK_DOWN); },
         [&](Dialog& dialog) {
             EXPECT_EQ(test::selected(dialog), "Lab");
             EXPECT_EQ(shown(dialog, IDC_SSID), "Lab");
             EXPECT_THAT(dialogLines(), testing::Contains("Sel Changed"));
         }});
}

TEST_F(Details, AreReadWhileTheTimerIsStoppedAndRestartItsPeriod) {
    startRadio({network("Guest", 20U), network("Lab", 42U)});
    run({[&](Dialog& dialog) {
             // A period that would be over in no time; the choice must put the proper one in place.
             dialog.SetTimer(Dialog::SIGNAL_TIMER_ID, 10, nullptr);
             bool ranDuringLook = false;
             radio().onCall([&](const radiosim::Call&) {
                 ranDuringLook = ranDuringLook || test::timerRuns(dialog);
             });
             choose(dialog, 1);
             radio().onCall(nullptr);
             EXPECT_FALSE(ranDuringLook);
             journal().clear();
             radio().clearCalls();
             Sleep(50);
         },
         [&](Dialog& dialog) {
             EXPECT_THAT(journal().entries({"text 1039"}), IsEmpty()); // no tick
             EXPECT_TRUE(test::timerRuns(dialog));
         }});
}

} // namespace
