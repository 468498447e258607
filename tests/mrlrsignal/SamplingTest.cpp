// One measurement, on the simulated radio and the virtual clock.
#include "Client.h"

#include <readings/Sampling.h>

#include <cmath>

namespace readings {
namespace {

using namespace std::chrono_literals;
using radiosim::AccessPoint;
using radiosim::Bss;
using radiosim::Level;

Bss radio(std::uint8_t number, Level level) {
    return {.bssid = {2, 0, 0, 0, 1, number}, .rssi = level, .heardEvery = 100ms};
}

class Measurements : public radiosim::WithEngine {
protected:
    Sampling measured(const SamplingPlan& plan = {}, Target target = {.ssid = "Lab"}) {
        LevelSource source(guid(), std::move(target));
        return measure(source, plan, nullptr, nullptr);
    }

    Sampling ofLab(std::vector<Bss> radios, const SamplingPlan& plan = {},
                   Target target = {.ssid = "Lab"}) {
        show({{.ssid = "Lab", .bss = std::move(radios)}});
        return measured(plan, std::move(target));
    }
};

TEST_F(Measurements, TakeAsManySamplesAsPlanned) {
    // Two limits around the level: nothing is decided early.
    const Sampling sampling =
        ofLab({radio(0, -60)}, {.samples = 20, .limits = {.failing = -60, .guardBand = 1}});
    EXPECT_FALSE(sampling.none);
    EXPECT_EQ(sampling.sampled.samples.size(), 20U);
    EXPECT_EQ(sampling.sampled.level, -60);
    EXPECT_FALSE(sampling.sampled.early);
    EXPECT_NEAR(sampling.seconds, 2.0, 0.2);
}

TEST_F(Measurements, EndEarlyFarFromEveryLimit) {
    const Sampling sampling =
        ofLab({radio(0, Level::Shape{.start = -50, .deviation = 1})},
              {.samples = 200, .limits = {.warning = -60, .failing = -70, .guardBand = 2}});
    EXPECT_FALSE(sampling.none);
    EXPECT_TRUE(sampling.sampled.early);
    EXPECT_LT(sampling.sampled.samples.size(), 40U);
    EXPECT_EQ(statistics::rate(sampling.sampled.level, {.failing = -70}), statistics::Rating::PASS);
}

TEST_F(Measurements, AddTheOffsetToEachReading) {
    const Sampling sampling = ofLab({radio(0, -60)}, {.offset = 2.5});
    EXPECT_DOUBLE_EQ(sampling.sampled.level, -57.5);
    EXPECT_DOUBLE_EQ(sampling.sampled.samples.at(0).level, -57.5);
    EXPECT_EQ(sampling.sampled.samples.at(0).reading.dbm, -60);
    EXPECT_DOUBLE_EQ(sampling.candidates.at(0).level, -60);
}

TEST_F(Measurements, FindADrift) {
    const Sampling sampling =
        ofLab({radio(0, Level::Shape{.start = -60, .driftPerSecond = -2, .deviation = 0.5})},
              {.samples = 50, .limits = {.failing = -65}});
    EXPECT_NEAR(sampling.sampled.trend.change, -10, 2);
    EXPECT_LT(sampling.sampled.trend.pValue, 0.001);
}

TEST_F(Measurements, FindAStepInTheSpread) {
    const Sampling sampling =
        ofLab({radio(0, Level::Shape{.start = -60, .steps = {{.at = 1s, .by = -12}}})},
              {.samples = 20, .limits = {.failing = -66}});
    EXPECT_EQ(sampling.sampled.samples.size(), 20U);
    EXPECT_DOUBLE_EQ(sampling.sampled.spread.interquartileRange, 12);
}

TEST_F(Measurements, WidenTheIntervalOfReadingsThatAreAlike) {
    const SamplingPlan plan{.samples = 100, .limits = {.failing = -60}};
    const Sampling free = ofLab({radio(0, Level::Shape{.start = -60, .deviation = 4})}, plan);
    const Sampling carried =
        ofLab({radio(0, Level::Shape{.start = -60, .deviation = 4, .carried = 0.9})}, plan);
    EXPECT_GT(free.sampled.effective, 2 * carried.sampled.effective);
    EXPECT_LT(free.sampled.interval.high - free.sampled.interval.low,
              carried.sampled.interval.high - carried.sampled.interval.low);
}

TEST_F(Measurements, CountWhatIsNoReading) {
    const Sampling sampling = ofLab({Bss{.rssi = -60, .heardEvery = 1s}}, {.samples = 5});
    EXPECT_FALSE(sampling.none);
    EXPECT_GT(sampling.dropped.unchanged, 40U);
}

TEST_F(Measurements, OfANameWithTwoLevelsNameTheCandidates) {
    const Sampling sampling = ofLab({radio(0, -60), radio(1, -75)});
    EXPECT_EQ(sampling.none, NoLevel::AMBIGUOUS);
    ASSERT_EQ(sampling.candidates.size(), 2U);
    EXPECT_EQ(sampling.candidates[0].level, -60);
    EXPECT_EQ(sampling.candidates[0].bssid, (Bssid{2, 0, 0, 0, 1, 0}));
    EXPECT_EQ(sampling.candidates[1].level, -75);
    EXPECT_LT(sampling.seconds, 2);
}

TEST_F(Measurements, OfANameWithOneLevelTakeTheStrongest) {
    const Sampling sampling = ofLab({radio(0, -61), radio(1, -58)});
    EXPECT_FALSE(sampling.none);
    EXPECT_EQ(sampling.sampled.level, -58);
}

TEST_F(Measurements, OfAnAddressAreNotAmbiguous) {
    const Sampling sampling =
        ofLab({radio(0, -60), radio(1, -75)}, {}, {.bssid = Bssid{2, 0, 0, 0, 1, 1}});
    EXPECT_FALSE(sampling.none);
    EXPECT_EQ(sampling.sampled.level, -75);
}

TEST_F(Measurements, OfWhatIsNotThereSayThatItWasNotSeen) {
    const Sampling sampling = ofLab({radio(0, -60)}, {.longest = 7s}, {.ssid = "Other"});
    EXPECT_EQ(sampling.none, NoLevel::NOT_SEEN);
    EXPECT_GE(sampling.seconds, 7);
    EXPECT_EQ(sampling.scans, 2U);
}

TEST_F(Measurements, OfAnAccessPointThatIsGoneSayThatOnlyItsOldEntryIsThere) {
    Bss gone = radio(0, -60);
    gone.heardUntil = 0ms;
    const Sampling sampling = ofLab({gone}, {.longest = 8s});
    EXPECT_EQ(sampling.none, NoLevel::ONLY_OLD);
    EXPECT_TRUE(sampling.sampled.samples.empty());
}

TEST_F(Measurements, WithFourReadingsHaveTooFew) {
    Bss gone = radio(0, -60);
    gone.heardUntil = 400ms;
    const Sampling sampling = ofLab({gone}, {.longest = 8s});
    EXPECT_EQ(sampling.none, NoLevel::TOO_FEW);
    EXPECT_EQ(sampling.sampled.samples.size(), 4U);
}

TEST_F(Measurements, WithFiveReadingsHaveALevel) {
    Bss gone = radio(0, -60);
    gone.heardUntil = 500ms;
    const Sampling sampling = ofLab({gone}, {.longest = 8s});
    EXPECT_FALSE(sampling.none);
    EXPECT_EQ(sampling.sampled.samples.size(), 5U);
}

TEST_F(Measurements, OfADriverWithoutLevelsSaySo) {
    EXPECT_EQ(ofLab({radio(0, 0)}, {.longest = 5s}).none, NoLevel::NO_LEVELS);
}

TEST_F(Measurements, WithTheRadioOffSaySo) {
    start({.interfaces = {{.phys = {{.hardware = 2}},
                           .accessPoints = {{.ssid = "Lab", .bss = {{{radio(0, -60)}}}}}}}});
    const Sampling sampling = measured({.longest = 5s});
    EXPECT_EQ(sampling.none, NoLevel::RADIO_OFF);
    EXPECT_EQ(sampling.error, ERROR_NDIS_DOT11_POWER_STATE_INVALID);
}

TEST_F(Measurements, WithoutAccessToTheListSaySo) {
    show({{.ssid = "Lab", .bss = {{radio(0, -60)}}}});
    engine().addFault({.function = "WlanGetNetworkBssList", .code = ERROR_ACCESS_DENIED});
    EXPECT_EQ(measured({.longest = 5s}).none, NoLevel::DENIED);
}

TEST_F(Measurements, WithoutTheRightToScanUseWhatIsHeardAllTheSame) {
    show({{.ssid = "Lab", .bss = {{radio(0, -60)}}}});
    engine().addFault({.function = "WlanScan", .code = ERROR_ACCESS_DENIED});
    engine().addFault({.function = "WlanSetInterface", .code = ERROR_ACCESS_DENIED});
    EXPECT_FALSE(measured({.longest = 5s}).none);
    engine().clearFaults();
}

TEST_F(Measurements, WithoutTheRightToScanAndNothingHeardSaySo) {
    Bss gone = radio(0, -60);
    gone.heardUntil = 0ms;
    show({{.ssid = "Lab", .bss = {{gone}}}});
    engine().addFault({.function = "WlanScan", .code = ERROR_ACCESS_DENIED});
    EXPECT_EQ(measured({.longest = 5s}).none, NoLevel::DENIED);
}

TEST_F(Measurements, WithoutAServiceSaySo) {
    show({});
    engine().stopService();
    const Sampling sampling = measured({.longest = 5s});
    EXPECT_EQ(sampling.none, NoLevel::NO_SERVICE);
    EXPECT_EQ(sampling.error, ERROR_SERVICE_NOT_ACTIVE);
}

TEST_F(Measurements, OfAnAdapterThatIsGoneSayThatTheListFails) {
    show({{.ssid = "Lab", .bss = {{radio(0, -60)}}}});
    engine().removeInterface(0);
    EXPECT_EQ(measured({.longest = 5s}).none, NoLevel::FAILED);
}

TEST_F(Measurements, EndWhenAsked) {
    show({{.ssid = "Lab", .bss = {{radio(0, -60)}}}});
    LevelSource source(guid(), {.ssid = "Lab"});
    int looks = 0;
    const Sampling sampling = measure(source, {}, nullptr, [&looks] { return ++looks == 4; });
    EXPECT_EQ(sampling.none, NoLevel::INTERRUPTED);
    EXPECT_EQ(sampling.sampled.samples.size(), 2U);
}

TEST_F(Measurements, TellOfEachSampleAsItComes) {
    show({{.ssid = "Lab", .bss = {{radio(0, -60)}}}});
    LevelSource source(guid(), {.ssid = "Lab"});
    std::vector<double> seconds;
    measure(
        source, {.samples = 5}, [&seconds](const Sample& s) { seconds.push_back(s.seconds); },
        nullptr);
    ASSERT_EQ(seconds.size(), 5U);
    EXPECT_NEAR(seconds.front(), 0.1, 1e-9);
    EXPECT_NEAR(seconds.back(), 0.5, 1e-9);
}

} // namespace
} // namespace readings
