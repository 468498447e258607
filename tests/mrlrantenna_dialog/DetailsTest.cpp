// The details of the selected network: which network they are of, and how they are written.
#include "DialogTest.h"

namespace {

using test::choose;
using test::Dialog;
using test::network;
using test::shown;
using test::strength;
using test::written;
using testing::ElementsAre;

class Details : public test::DialogTest {};

TEST_F(Details, ShowEverythingAboutTheSelectedNetwork) {
    radiosim::AccessPoint adHoc = network("Field", 81U);
    adHoc.secured = false;
    adHoc.auth = DOT11_AUTH_ALGO_80211_OPEN;
    adHoc.bssType = dot11_BSS_type_independent;
    adHoc.connectable = false;
    adHoc.reason = 0x00020001;
    startRadio({network("Guest", 20U), test::connected(network("Lab", 60U)), adHoc});
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

// --- Which network -------------------------------------------------------------------------------

using Names = std::vector<std::string>;

// The networks, the entry that is chosen when they have changed, and whose details are then written
// into the fields, in turn.
struct Choice {
    const char* name;
    Names before;
    int index;
    Names now;
    Names written;
};

void PrintTo(const Choice& choice, std::ostream* out) {
    *out << choice.name;
}

class DetailsOfAnEntry : public Details, public testing::WithParamInterface<Choice> {};

TEST_P(DetailsOfAnEntry, AreThoseOf) {
    startRadio(test::networks(GetParam().before));
    run({[&](Dialog& dialog) {
        radio().setAccessPoints(0, test::networks(GetParam().now));
        journal().clear();
        choose(dialog, GetParam().index);
        Names expected;
        for (const std::string& name : GetParam().written) {
            expected.push_back(written(IDC_SSID, name));
        }
        EXPECT_EQ(journal().entries({written(IDC_SSID, "")}), expected);
    }});
}

const Choice choices[] = {
    {"AllUpToTheMatchOfTheFirstEntry",
     {"Lab", "Guest"},
     0,
     {"Zoo", "Attic", "Lab", "Guest"},
     {"Zoo", "Attic", "Lab"}},
    {"TheFirstEntryByAPartOfItsName",
     {"lab2", "Guest"},
     0,
     {"Zoo", "lab", "Guest"},
     {"Zoo", "lab"}},
    {"AllWhereNothingMatchesTheFirstEntry",
     {"Lab", "Guest"},
     0,
     {"Zoo", "Attic"},
     {"Zoo", "Attic"}},
    {"TheMatchAloneOfAnotherEntry",
     {"Lab", "Guest"},
     1,
     {"Zoo", "Attic", "Guest", "Lab"},
     {"Guest"}},
    {"TheFirstOfSeveralMatches",
     {"Zoo", "Lab-5G", "Lab"},
     1,
     {"Zoo", "b-5", "Lab-5G", "Lab"},
     {"b-5"}},
};
INSTANTIATE_TEST_SUITE_P(Entries, DetailsOfAnEntry, testing::ValuesIn(choices),
                         [](const auto& choice) { return std::string(choice.param.name); });

TEST_F(Details, OfAnotherEntryKeepTheirValuesWithoutAMatch) {
    startRadio({network("Lab", 42U), network("Guest", 80U)});
    run({[&](Dialog& dialog) {
        choose(dialog, 1);
        radio().setAccessPoints(0, {network("Zoo", 10U), network("Attic", 11U)});
        journal().clear();
        choose(dialog, 1);
        EXPECT_THAT(journal().entries({"text", "meter"}),
                    ElementsAre(writtenKey(IDC_RADIO_STATUS, "RADIO_BUTTON_ON")));
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
    ClearedDetails() { startRadio({network("Lab", 42U), network("Guest")}); }

    /// Runs `change`, then expects a refresh of the details to clear them all.
    void expectClearedBy(const test::Step& change) {
        run({[&](Dialog& dialog) {
            EXPECT_EQ(shown(dialog, IDC_SSID), "Lab");
            change(dialog);
            journal().clear();
            dialog.updateSelectedNetworkInformation();
            EXPECT_THAT(journal().entries({"text", "meter"}),
                        // The radio's state is shown all the same.
                        ElementsAre(writtenKey(IDC_RADIO_STATUS, "RADIO_BUTTON_ON"),
                                    written(IDC_BSS_TYPE, ""), written(IDC_SSID, ""),
                                    written(IDC_SECURITY, ""), written(IDC_CONNECTABLE, ""),
                                    written(IDC_CIPHER, ""), written(IDC_AUTH, ""),
                                    written(IDC_STRENGTH_TEXT, ""),
                                    written(IDC_STRENGTH_PERCENT, ""), "meter 0"));
        }});
    }
};

TEST_F(ClearedDetails, WhenTheListHasBecomeEmpty) {
    expectClearedBy([&](Dialog& dialog) {
        radio().setAccessPoints(0, {});
        dialog.populateAvailableNetworks();
    });
}

TEST_F(ClearedDetails, WhenNothingIsSelected) {
    expectClearedBy([](Dialog& dialog) { dialog.m_networkCombo.SetCurSel(-1); });
}

// --- Another choice ------------------------------------------------------------------------------

TEST_F(Details, AreReadInATraceScopeOfTheChoice) {
    run({[&](Dialog& dialog) {
        mrl::LogFactory::setPriority(0);
        journal().clear();
        choose(dialog, 0);
        mrl::LogFactory::setPriority(1);
        EXPECT_THAT(
            journal().entries({test::scopeOpened(""), std::string("log 1 ") + test::DIALOG_LOGGER}),
            ElementsAre(
                testing::StartsWith(test::scopeOpened("OnSelchangeComboNetwork()")),
                testing::EndsWith(" Sel Changed"),
                testing::StartsWith(test::scopeOpened("updateSelectedNetworkInformation()"))));
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
             EXPECT_THAT(journal().entries({written(IDC_CONNECTION_STATE, "")}),
                         testing::IsEmpty()); // no tick
             EXPECT_TRUE(test::timerRuns(dialog));
         }});
}

} // namespace
