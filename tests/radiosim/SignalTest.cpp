#include <radiosim/Signal.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>

namespace radiosim {
namespace {

using Milliseconds = Signal::Milliseconds;

TEST(Signal, ChangesFromValueToValueAtEachStepAndKeepsTheLast) {
    const Signal signal = Signal::Series{.values = {70, 71, 73}, .step = Milliseconds(100)};
    EXPECT_EQ(signal.at(Milliseconds(0)), 70U);
    EXPECT_EQ(signal.at(Milliseconds(99)), 70U);
    EXPECT_EQ(signal.at(Milliseconds(100)), 71U);
    EXPECT_EQ(signal.at(Milliseconds(250)), 73U);
    EXPECT_EQ(signal.at(Milliseconds(10000)), 73U);
}

TEST(Signal, BeginsAgainWhenTheValuesRepeat) {
    const Signal signal =
        Signal::Series{.values = {80, 0}, .step = Milliseconds(100), .repeat = true};
    EXPECT_EQ(signal.at(Milliseconds(100)), 0U);
    EXPECT_EQ(signal.at(Milliseconds(200)), 80U);
    EXPECT_EQ(signal.at(Milliseconds(300)), 0U);
}

TEST(Signal, TakesTimesBeforeTheStartForTheStart) {
    const Signal signal = Signal::Series{.values = {7, 8}};
    EXPECT_EQ(signal.at(Milliseconds(-5000)), 7U);
}

TEST(Signal, WalksInsideItsBoundsAndNoFurtherAStepThanAllowed) {
    const Signal signal = Signal::Walk{
        .start = 70, .min = 62, .max = 78, .step = 3, .interval = Milliseconds(100), .seed = 7};
    std::set<std::uint32_t> seen;
    std::uint32_t before = signal.at(Milliseconds(0));
    EXPECT_EQ(before, 70U);
    for (int step = 1; step < 1000; ++step) {
        const std::uint32_t value = signal.at(Milliseconds(100 * step));
        ASSERT_GE(value, 62U);
        ASSERT_LE(value, 78U);
        ASSERT_LE(std::abs(static_cast<int>(value) - static_cast<int>(before)), 3);
        seen.insert(value);
        before = value;
    }
    EXPECT_EQ(seen.size(), 17U) << "a walk of that length comes everywhere";
}

TEST(Signal, WalksTheSameWayFromTheSameSeedOnEveryPlatformAndAnotherFromAnother) {
    const auto path = [](std::uint32_t seed) {
        const Signal signal = Signal::Walk{.start = 50, .step = 5, .seed = seed};
        std::vector<std::uint32_t> values(8);
        for (std::size_t second = 0; second < values.size(); ++second) {
            values[second] = signal.at(std::chrono::seconds(second));
        }
        return values;
    };
    EXPECT_EQ(path(1), (std::vector<std::uint32_t>{50, 54, 55, 52, 48, 49, 44, 41}));
    EXPECT_NE(path(1), path(2));
}

TEST(Signal, WalksOnAfterAYear) {
    const Signal signal = Signal::Walk{.min = 20, .max = 30, .interval = Milliseconds(1)};
    const std::uint32_t value = signal.at(std::chrono::hours(24 * 365));
    EXPECT_GE(value, 20U);
    EXPECT_LE(value, 30U);
}

} // namespace
} // namespace radiosim
