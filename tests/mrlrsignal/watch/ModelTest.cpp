// What readings and keys make of the live view's numbers.
#include "WatchTest.h"

namespace watch {
namespace {

using testing::ElementsAre;

std::vector<readings::Bssid> addressesOf(const std::vector<ListedRadio>& list) {
    std::vector<readings::Bssid> addresses;
    addresses.reserve(list.size());
    for (const ListedRadio& radio : list) {
        addresses.push_back(radio.bssid);
    }
    return addresses;
}

TEST(Track, KeepsTheLastMinuteAndTheBestOfAll) {
    Track track;
    track.add(reading(0s, -40));
    for (int second = 1; second <= 90; ++second) {
        track.add(reading(std::chrono::seconds(second), -60));
    }
    EXPECT_EQ(track.best(), -40);
    EXPECT_EQ(track.last()->at, 90s);
    std::size_t levels = 0;
    for (const auto& level : track.history(90s, 60)) {
        levels += level ? 1 : 0;
    }
    EXPECT_EQ(levels, 60U);
    track.restartBest();
    EXPECT_FALSE(track.best());
    track.add(reading(91s, -65));
    EXPECT_EQ(track.best(), -65);
}

TEST(Track, HasTheMedianAndTheSpreadOfTenSeconds) {
    Track track;
    EXPECT_FALSE(track.recent(0s));
    track.add(reading(0s, -90));
    for (const LONG level : {-50, -52, -54, -56, -58}) {
        track.add(reading(5s, level));
    }
    const std::optional<Recent> recent = track.recent(11s);
    ASSERT_TRUE(recent);
    EXPECT_EQ(recent->median, -54);
    EXPECT_EQ(recent->interquartileRange, 4);
    EXPECT_EQ(recent->readings, 5U);
    EXPECT_FALSE(track.recent(15s));
}

TEST(Track, CountsReadingsPerSecond) {
    Track track;
    EXPECT_EQ(track.rate(0s), 0);
    for (int i = 0; i <= 20; ++i) {
        track.add(reading(200ms * i, -50));
    }
    EXPECT_DOUBLE_EQ(track.rate(4s), 5);
    EXPECT_DOUBLE_EQ(track.rate(10100ms), 2);
    EXPECT_EQ(track.rate(20s), 0);
}

TEST(Track, HasTheMedianOfEachSpanAndGapsBetween) {
    Track track;
    track.add(reading(0s, -50));
    track.add(reading(1s, -60));
    track.add(reading(1500ms, -70));
    track.add(reading(3s, -80));
    EXPECT_THAT(track.history(3500ms, 60), testing::Contains(std::optional(-65.0)).Times(1));
    const std::vector<std::optional<double>> history = track.history(3500ms, 60);
    EXPECT_EQ(history[56], -50);
    EXPECT_EQ(history[57], -65);
    EXPECT_FALSE(history[58]);
    EXPECT_EQ(history[59], -80);
    EXPECT_FALSE(history[0]);
    // A level keeps its span while time goes on within the newest one.
    EXPECT_EQ(track.history(3999ms, 60), history);
}

TEST(WatchModel, FollowsTheTargetAlone) {
    Model model("Adapter", readings::Target{.ssid = "Lab"});
    EXPECT_EQ(model.followed(), nullptr);
    model.take({reading(1s, -40, LAB_5, "Other"), reading(1s, -60)}, 1s);
    ASSERT_NE(model.followed(), nullptr);
    EXPECT_EQ(model.followed()->last()->bssid, LAB);
    EXPECT_EQ(model.candidates(), 1U);
}

TEST(WatchModel, FollowsTheStrongestOfSeveralAndChangesForMoreThanThreeDecibels) {
    Model model("Adapter", readings::Target{.ssid = "Lab"});
    model.take({reading(1s, -60), reading(1s, -57, LAB_5)}, 1s);
    EXPECT_EQ(model.candidates(), 2U);
    EXPECT_EQ(model.followed()->last()->bssid, LAB);
    model.take({reading(2s, -53, LAB_5), reading(2s, -53, LAB_5)}, 2s);
    EXPECT_EQ(model.followed()->last()->bssid, LAB_5);
    model.take({reading(3s, -51), reading(3s, -51)}, 3s);
    EXPECT_EQ(model.followed()->last()->bssid, LAB_5);
}

TEST(WatchModel, FollowsAnotherWhenOneFallsSilent) {
    Model model("Adapter", readings::Target{.ssid = "Lab"});
    model.take({reading(1s, -40)}, 1s);
    model.take({reading(11s, -80, LAB_5)}, 11s);
    EXPECT_EQ(model.followed()->last()->bssid, LAB);
    model.take({reading(12s, -80, LAB_5)}, 12s);
    EXPECT_EQ(model.followed()->last()->bssid, LAB_5);
}

TEST(WatchModel, FollowsTheConnectionWhereverItRoams) {
    Model model("Adapter", readings::Target{.ssid = "Lab"});
    readings::Reading connected = reading(1s, -70);
    connected.source = readings::Source::CONNECTION;
    model.take({reading(1s, -40, LAB_5), connected}, 1s);
    EXPECT_EQ(model.followed()->last()->bssid, LAB);
    connected.bssid = LAB_5;
    connected.at = 2s;
    model.take({connected}, 2s);
    EXPECT_EQ(model.followed()->last()->bssid, LAB_5);
}

TEST(WatchModel, KeepsARadioThatIsWatchedAndForgetsOthersAfterAMinute) {
    Model model("Adapter", readings::Target{.bssid = LAB});
    model.take({reading(0s, -50), reading(0s, -60, LAB_5)}, 0s);
    model.take({}, 61s);
    ASSERT_NE(model.followed(), nullptr);
    EXPECT_THAT(addressesOf(model.list(61s)), ElementsAre(LAB));
}

TEST(WatchModel, TakesTheMedianForReference) {
    Model model("Adapter", readings::Target{.bssid = LAB});
    model.setReference(0s);
    EXPECT_FALSE(model.reference());
    for (const LONG level : {-50, -52, -70}) {
        model.take({reading(1s, level)}, 1s);
    }
    model.setReference(2s);
    EXPECT_EQ(model.reference(), -52);
    model.dropReference();
    EXPECT_FALSE(model.reference());
    model.setReference(2s);
    model.watch({.bssid = LAB_5});
    EXPECT_FALSE(model.reference());
}

TEST(WatchModel, ListsTheStrongestFirstAndMovesTheMarkWithItsRadio) {
    Model model("Adapter", std::nullopt);
    EXPECT_FALSE(model.marked());
    EXPECT_FALSE(model.markedTarget());
    model.take({reading(1s, -60), reading(1s, -50, LAB_5)}, 1s);
    EXPECT_THAT(addressesOf(model.list(1s)), ElementsAre(LAB_5, LAB));
    EXPECT_EQ(model.marked(), LAB_5);
    model.moveMark(1, 1s);
    EXPECT_EQ(model.marked(), LAB);
    model.moveMark(1000, 1s);
    EXPECT_EQ(model.marked(), LAB);
    model.take({reading(13s, -40)}, 13s);
    EXPECT_THAT(addressesOf(model.list(13s)), ElementsAre(LAB, LAB_5));
    EXPECT_EQ(model.marked(), LAB);
    EXPECT_EQ(model.markedTarget()->bssid, LAB);
    model.moveMark(-1000, 13s);
    EXPECT_EQ(model.marked(), LAB);
    model.moveMark(2, 13s);
    EXPECT_EQ(model.marked(), LAB_5);
}

TEST(WatchModel, MarksTheStrongestWhenTheMarkedOneIsGone) {
    Model model("Adapter", std::nullopt);
    model.take({reading(0s, -40), reading(30s, -60, LAB_5)}, 30s);
    EXPECT_EQ(model.marked(), LAB);
    model.take({}, 61s);
    EXPECT_EQ(model.marked(), LAB_5);
}

TEST(WatchModel, ComesBackToTheListWithTheMarkOnWhatItWatched) {
    Model model("Adapter", readings::Target{.bssid = LAB});
    model.take({reading(1s, -60), reading(1s, -50, LAB_5)}, 1s);
    model.listAll();
    EXPECT_FALSE(model.target());
    EXPECT_EQ(model.followed(), nullptr);
    EXPECT_EQ(model.marked(), LAB);
}

} // namespace
} // namespace watch
