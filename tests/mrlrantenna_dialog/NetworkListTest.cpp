// The list of networks: what is in it, and what is selected after a refresh.
#include "DialogTest.h"

namespace {

using test::Dialog;
using test::entries;
using test::network;
using test::selected;
using testing::ElementsAre;

class NetworkList : public test::DialogTest {};

TEST_F(NetworkList, KeepsTheOrderOfTheCardThoughTheListIsSorted) {
    startRadio(test::networks({"Zoo", "Lab-5G", "Lab", "Attic"}));
    run({[&](Dialog& dialog) {
        EXPECT_THAT(entries(dialog), ElementsAre("Zoo", "Lab-5G", "Lab", "Attic"));
    }});
}

TEST_F(NetworkList, OpensOnTheFirstEntryOrOnTheLastConnectedNetwork) {
    startRadio(test::networks({"Guest", "Lab"}));
    run({[&](Dialog& dialog) { EXPECT_EQ(selected(dialog), "Guest"); }});
    startRadio(test::networks({"Guest", "*Lab", "*Attic", "Zoo"}));
    run({[&](Dialog& dialog) { EXPECT_EQ(selected(dialog), "Attic"); }});
}

// --- The selection after a refresh ---------------------------------------------------------------

// The list before, the entry of it that is selected, and the list of the refresh.
struct Refresh {
    const char* name;
    std::vector<std::string> before;
    int index;
    std::vector<std::string> after;
    const char* selected;
};

void PrintTo(const Refresh& refresh, std::ostream* out) {
    *out << refresh.name;
}

class SelectionAfterARefresh : public NetworkList, public testing::WithParamInterface<Refresh> {};

TEST_P(SelectionAfterARefresh, FollowsTheNamesAndTheConnection) {
    const Refresh& refresh = GetParam();
    startRadio(test::networks(refresh.before));
    run({[&](Dialog& dialog) {
        dialog.m_networkCombo.SetCurSel(refresh.index);
        radio().setAccessPoints(0, test::networks(refresh.after));
        dialog.populateAvailableNetworks();
        EXPECT_EQ(selected(dialog), refresh.selected);
    }});
}

const Refresh refreshes[] = {
    {"KeepsTheSameName", {"Guest", "Lab"}, 1, {"Lab", "Guest", "*Zoo"}, "Lab"},
    {"KeepsTheSameNameFromTheFirstEntry", {"Lab", "Guest"}, 0, {"Guest", "Zoo", "Lab"}, "Lab"},
    {"TakesTheNextThatBeginsAlike", {"Guest", "Lab"}, 1, {"Guest", "Lab-5G", "Lab"}, "Lab-5G"},
    // The search begins after the first entry and ignores letter case.
    {"TakesTheFirstEntryLast", {"LAB", "Guest"}, 0, {"LAB", "Guest", "lab2"}, "lab2"},
    {"TakesTheFirstEntryInTheEnd", {"LAB", "Guest"}, 0, {"LAB", "Guest"}, "LAB"},
    // "Lab" occurs in "Lab-5G", so that counts as found; but no entry begins with it.
    {"IsNoneWhereAPartOfTheNameIsLeft", {"Guest", "Lab-5G", "Lab"}, 1, {"*Guest", "Lab"}, "none"},
    {"IsNoneWhereLettersDiffer", {"Guest", "lab2", "lab"}, 1, {"Guest", "lab"}, "none"},
    {"FallsBackToTheConnection", {"Guest", "Lab"}, 1, {"Guest", "Attic", "*Zoo"}, "Zoo"},
    {"FallsBackToTheFirstEntry", {"Guest", "Lab"}, 1, {"Attic", "Zoo"}, "Attic"},
    // A name that begins like the selected one is selected at first, but it is not that network.
    {"PrefersTheFirstEntryToALongerName", {"Guest", "Lab"}, 1, {"Attic", "Zoo", "Lab-5G"}, "Attic"},
    {"PrefersTheConnectionToALongerName", {"Guest", "Lab"}, 1, {"Attic", "*Zoo", "Lab-5G"}, "Zoo"},
    {"ForgetsAnOnlyEntry", {"Lab"}, 0, {"Guest", "Lab"}, "Guest"},
    {"ForgetsAnOnlyEntryForTheConnection", {"Lab"}, 0, {"Guest", "Lab", "*Zoo"}, "Zoo"},
    {"IsTheConnectionWhereNothingWasSelected", {"Guest", "Lab"}, -1, {"Guest", "*Lab"}, "Lab"},
};
INSTANTIATE_TEST_SUITE_P(Lists, SelectionAfterARefresh, testing::ValuesIn(refreshes),
                         [](const auto& refresh) { return std::string(refresh.param.name); });

TEST_F(NetworkList, IsRefilledStepByStepOfOneLookAtTheCard) {
    startRadio({network("Guest"), network("Lab")});
    run({[&](Dialog& dialog) {
        dialog.m_networkCombo.SetCurSel(1);
        radio().clearCalls();
        journal().clear();
        dialog.populateAvailableNetworks();
        EXPECT_EQ(looks(), 1U);
        EXPECT_THAT(journal().entries(),
                    ElementsAre("count entries", "list empty", "list insert 0 Guest",
                                "list insert 1 Lab", "list find 0 Lab"));
        radio().setAccessPoints(0, {network("Attic"), network("Zoo")});
        journal().clear();
        dialog.populateAvailableNetworks();
        EXPECT_THAT(journal().entries({"list"}),
                    ElementsAre("list empty", "list insert 0 Attic", "list insert 1 Zoo",
                                "list find 0 Lab", "list select 0"));
    }});
}

} // namespace
