// The list of networks: what is in it, and what is selected after a refresh.
#include "DialogTest.h"

namespace {

using test::connected;
using test::Dialog;
using test::entries;
using test::network;
using test::selected;
using testing::ElementsAre;
using testing::IsEmpty;

using AccessPoints = std::vector<radiosim::AccessPoint>;

class NetworkList : public test::DialogTest {
protected:
    /// Opens the dialog on `before`, selects entry `index`, refreshes on `after`.
    /// \return the entry that is selected then
    std::string afterRefresh(AccessPoints before, int index, AccessPoints after) {
        startRadio(std::move(before));
        std::string result;
        run({[&](Dialog& dialog) {
            dialog.m_networkCombo.SetCurSel(index);
            radio().setAccessPoints(0, std::move(after));
            dialog.populateAvailableNetworks();
            result = selected(dialog);
        }});
        return result;
    }
};

TEST_F(NetworkList, KeepsTheOrderOfTheCardThoughTheListIsSorted) {
    startRadio({network("Zoo"), network("Lab-5G"), network("Lab"), network("Attic")});
    run({[&](Dialog& dialog) {
        EXPECT_THAT(entries(dialog), ElementsAre("Zoo", "Lab-5G", "Lab", "Attic"));
    }});
}

TEST_F(NetworkList, ShowsDuplicatesOnce) {
    startRadio({network("Lab"), network("Lab"), network("Guest"), network("Lab")});
    run({[&](Dialog& dialog) { EXPECT_THAT(entries(dialog), ElementsAre("Lab", "Guest")); }});
}

TEST_F(NetworkList, HoldsFortyNetworks) {
    AccessPoints many;
    std::vector<std::string> names;
    for (int i = 10; i < 50; ++i) {
        names.push_back("Floor " + std::to_string(i));
        many.push_back(network(names.back()));
    }
    many[37] = connected(many[37]);
    startRadio(many);
    run({[&](Dialog& dialog) {
        EXPECT_EQ(entries(dialog), names);
        EXPECT_EQ(selected(dialog), "Floor 47");
    }});
}

TEST_F(NetworkList, IsEmptyWithNothingSelectedWhereThereAreNoNetworks) {
    startRadio(AccessPoints{});
    run({[&](Dialog& dialog) {
        EXPECT_THAT(entries(dialog), IsEmpty());
        EXPECT_EQ(selected(dialog), "none");
    }});
}

TEST_F(NetworkList, OpensOnTheFirstEntryWithoutAConnection) {
    startRadio({network("Guest"), network("Lab")});
    run({[&](Dialog& dialog) { EXPECT_EQ(selected(dialog), "Guest"); }});
}

TEST_F(NetworkList, OpensOnTheLastConnectedNetwork) {
    startRadio(
        {network("Guest"), connected(network("Lab")), connected(network("Attic")), network("Zoo")});
    run({[&](Dialog& dialog) { EXPECT_EQ(selected(dialog), "Attic"); }});
}

TEST_F(NetworkList, KeepsTheSelectedNetworkWhereverItMovesTo) {
    EXPECT_EQ(afterRefresh({network("Guest"), network("Lab")}, 1,
                           {network("Lab"), network("Guest"), connected(network("Zoo"))}),
              "Lab");
    EXPECT_EQ(afterRefresh({network("Lab"), network("Guest")}, 0,
                           {network("Guest"), network("Zoo"), network("Lab")}),
              "Lab");
}

TEST_F(NetworkList, TakesTheNextEntryThatBeginsLikeTheSelectedOne) {
    EXPECT_EQ(afterRefresh({network("Guest"), network("Lab")}, 1,
                           {network("Guest"), network("Lab-5G"), network("Lab")}),
              "Lab-5G");
}

// The search begins after the first entry and ignores letter case.
TEST_F(NetworkList, TakesTheFirstEntryLastOfAllThatBeginAlike) {
    EXPECT_EQ(afterRefresh({network("LAB"), network("Guest")}, 0,
                           {network("LAB"), network("Guest"), network("lab2")}),
              "lab2");
    EXPECT_EQ(
        afterRefresh({network("LAB"), network("Guest")}, 0, {network("LAB"), network("Guest")}),
        "LAB");
}

// "Lab" occurs in "Lab-5G", so that counts as found; but no entry begins with it.
TEST_F(NetworkList, SelectsNothingWhenOnlyAPartOfTheNameIsLeft) {
    EXPECT_EQ(afterRefresh({network("Guest"), network("Lab-5G"), network("Lab")}, 1,
                           {connected(network("Guest")), network("Lab")}),
              "none");
    EXPECT_EQ(afterRefresh({network("Guest"), network("lab2"), network("lab")}, 1,
                           {network("Guest"), network("lab")}),
              "none");
}

TEST_F(NetworkList, FallsBackToTheConnectedNetworkWhenTheSelectedOneIsGone) {
    EXPECT_EQ(afterRefresh({network("Guest"), network("Lab")}, 1,
                           {network("Guest"), network("Attic"), connected(network("Zoo"))}),
              "Zoo");
}

TEST_F(NetworkList, FallsBackToTheFirstEntryWhenNothingIsConnectedEither) {
    EXPECT_EQ(
        afterRefresh({network("Guest"), network("Lab")}, 1, {network("Attic"), network("Zoo")}),
        "Attic");
}

// A name that begins like the selected one is selected at first, but it is not that network.
TEST_F(NetworkList, PrefersTheFallBackToALongerName) {
    EXPECT_EQ(afterRefresh({network("Guest"), network("Lab")}, 1,
                           {network("Attic"), network("Zoo"), network("Lab-5G")}),
              "Attic");
    EXPECT_EQ(afterRefresh({network("Guest"), network("Lab")}, 1,
                           {network("Attic"), connected(network("Zoo")), network("Lab-5G")}),
              "Zoo");
}

TEST_F(NetworkList, ForgetsTheOneEntryThatItHeld) {
    EXPECT_EQ(afterRefresh({network("Lab")}, 0, {network("Guest"), network("Lab")}), "Guest");
    EXPECT_EQ(afterRefresh({network("Lab")}, 0,
                           {network("Guest"), network("Lab"), connected(network("Zoo"))}),
              "Zoo");
}

TEST_F(NetworkList, SelectsTheConnectedNetworkWhenNothingWasSelected) {
    EXPECT_EQ(afterRefresh({network("Guest"), network("Lab")}, -1,
                           {network("Guest"), connected(network("Lab"))}),
              "Lab");
}

TEST_F(NetworkList, IsRefilledStepByStep) {
    startRadio({network("Guest"), network("Lab")});
    run({[&](Dialog& dialog) {
        dialog.m_networkCombo.SetCurSel(1);
        journal().clear();
        dialog.populateAvailableNetworks();
        EXPECT_THAT(journal().entries({"list"}),
                    ElementsAre("list empty", "list insert 0 Guest", "list insert 1 Lab",
                                "list find 0 Lab"));
        radio().setAccessPoints(0, {network("Attic"), network("Zoo")});
        journal().clear();
        dialog.populateAvailableNetworks();
        EXPECT_THAT(journal().entries({"list"}),
                    ElementsAre("list empty", "list insert 0 Attic", "list insert 1 Zoo",
                                "list find 0 Lab", "list select 0"));
    }});
}

TEST_F(NetworkList, AsksTheCardOnceForEachRefresh) {
    startRadio({network("Guest"), network("Lab")});
    run({[&](Dialog& dialog) {
        radio().clearCalls();
        dialog.populateAvailableNetworks();
        EXPECT_EQ(looks(), 1U);
    }});
}

} // namespace
