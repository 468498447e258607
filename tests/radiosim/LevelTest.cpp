#include "Client.h"

#include <radiosim/Level.h>

#include <nativewifi/LinuxRadio.h>

#include <cmath>
#include <numeric>

namespace radiosim {
namespace {

using namespace std::chrono_literals;

std::vector<double> values(const Level& level, std::size_t count) {
    std::vector<double> all;
    for (std::size_t i = 0; i < count; ++i) {
        all.push_back(level.at(100ms * static_cast<int>(i)));
    }
    return all;
}

double mean(const std::vector<double>& values) {
    return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

// Of neighbours, `lag` apart.
double correlation(std::vector<double> values, std::size_t lag) {
    const double middle = mean(values);
    for (double& value : values) {
        value -= middle;
    }
    return std::inner_product(values.begin() + static_cast<std::ptrdiff_t>(lag), values.end(),
                              values.begin(), 0.0) /
           std::inner_product(values.begin(), values.end(), values.begin(), 0.0);
}

double deviation(const std::vector<double>& values) {
    const double middle = mean(values);
    double sum = 0;
    for (const double value : values) {
        sum += (value - middle) * (value - middle);
    }
    return std::sqrt(sum / static_cast<double>(values.size()));
}

TEST(Levels, OfOneNumberStay) {
    EXPECT_EQ(Level(-57).at(0ms), -57);
    EXPECT_EQ(Level(-57).at(90s), -57);
}

TEST(Levels, DriftAndStep) {
    const Level level(Level::Shape{
        .start = -60, .driftPerSecond = -0.5, .every = 100ms, .steps = {{.at = 10s, .by = -20}}});
    EXPECT_EQ(level.at(-1s), -60);
    EXPECT_EQ(level.at(4s), -62);
    EXPECT_EQ(level.at(9900ms), -65);
    EXPECT_EQ(level.at(10s), -85);
}

TEST(Levels, StayForAWhile) {
    const Level level(Level::Shape{.start = -60, .driftPerSecond = -10, .every = 1s});
    EXPECT_EQ(level.at(999ms), -60);
    EXPECT_EQ(level.at(1000ms), -70);
}

TEST(Levels, HaveTheSpreadOfTheirNoise) {
    const std::vector<double> noisy = values(Level::Shape{.start = -60, .deviation = 3}, 4000);
    EXPECT_NEAR(mean(noisy), -60, 0.2);
    EXPECT_NEAR(deviation(noisy), 3, 0.2);
    EXPECT_NEAR(correlation(noisy, 1), 0, 0.05);
}

TEST(Levels, CarryTheirNoiseOn) {
    const std::vector<double> noisy =
        values(Level::Shape{.start = -60, .deviation = 3, .carried = 0.8}, 8000);
    EXPECT_NEAR(deviation(noisy), 3, 0.3);
    EXPECT_NEAR(correlation(noisy, 1), 0.8, 0.05);
    EXPECT_NEAR(correlation(noisy, 3), 0.8 * 0.8 * 0.8, 0.08);
}

TEST(Levels, WithTheSameSeedAreTheSame) {
    const Level::Shape shape{.start = -60, .deviation = 3, .carried = 0.5, .seed = 7};
    EXPECT_EQ(values(shape, 50), values(shape, 50));
    Level::Shape other = shape;
    other.seed = 8;
    EXPECT_NE(values(shape, 50), values(other, 50));
}

class HeardRadios : public WithEngine {};

TEST_F(HeardRadios, StandStillUntilTheyAreHeardAgain) {
    show({{.ssid = "Lab",
           .bss = {
               {{.rssi = Level::Shape{.start = -60, .driftPerSecond = -1}, .heardEvery = 5s}}}}});
    clock().sleep(4s);
    EXPECT_EQ(bssEntries().at(0).lRssi, -60);
    EXPECT_EQ(bssEntries().at(0).ullHostTimestamp, 0U);
    clock().sleep(2s);
    EXPECT_EQ(bssEntries().at(0).lRssi, -65);
    EXPECT_EQ(bssEntries().at(0).ullHostTimestamp, 50'000'000U);
}

TEST_F(HeardRadios, StayListedWithTheirLastLevelWhenTheyAreGone) {
    show({{.ssid = "Lab",
           .bss = {
               {{.rssi = Level::Shape{.start = -60, .driftPerSecond = -1}, .heardUntil = 3s}}}}});
    clock().sleep(20s);
    EXPECT_EQ(bssEntries().at(0).lRssi, -63);
    EXPECT_EQ(bssEntries().at(0).ullHostTimestamp, 30'000'000U);
}

WLAN_REALTIME_CONNECTION_QUALITY realtimeQuality(const std::vector<unsigned char>& bytes) {
    WLAN_REALTIME_CONNECTION_QUALITY quality{};
    EXPECT_EQ(bytes.size(), sizeof quality);
    std::memcpy(&quality, bytes.data(), std::min(bytes.size(), sizeof quality));
    return quality;
}

TEST_F(HeardRadios, TellTheQualityOfEachLinkWhereTheSystemKnowsIt) {
    std::vector<unsigned char> bytes;
    start({.interfaces = {{.connection = Connection{.ssid = "Lab", .channel = 36}}}});
    EXPECT_EQ(query(wlan_intf_opcode_realtime_connection_quality, bytes), ERROR_INVALID_PARAMETER);
    start({.interfaces = {{.connection = Connection{.ssid = "Lab", .channel = 36, .links = true},
                           .rssi = -48}}});
    ASSERT_EQ(query(wlan_intf_opcode_realtime_connection_quality, bytes), ERROR_SUCCESS);
    const WLAN_REALTIME_CONNECTION_QUALITY quality = realtimeQuality(bytes);
    ASSERT_EQ(quality.ulNumLinks, 1U);
    EXPECT_EQ(quality.linksInfo[0].lRssi, -48);
    EXPECT_EQ(quality.linksInfo[0].ulChannelCenterFrequencyMhz, 5180U);
}

TEST_F(HeardRadios, GiveTheFrequencyOfALinkInEitherUnit) {
    std::vector<unsigned char> bytes;
    start({.interfaces = {
               {.connection = Connection{
                    .ssid = "Lab", .channel = 36, .links = true, .linkFrequencyInKhz = true}}}});
    ASSERT_EQ(query(wlan_intf_opcode_realtime_connection_quality, bytes), ERROR_SUCCESS);
    EXPECT_EQ(realtimeQuality(bytes).linksInfo[0].ulChannelCenterFrequencyMhz, 5180000U);
}

TEST_F(HeardRadios, HaveChainsWhereTheDriverReportsThem) {
    const std::vector<AccessPoint> networks{
        {.ssid = "Lab", .bss = {{{.rssi = -60, .chains = {0, std::nullopt, -18}}}}},
        {.ssid = "Other"}};
    start({.interfaces = {
               {.connection = Connection{.ssid = "Lab"}, .rssi = -50, .accessPoints = networks}}});
    const auto connection =
        queried<nativewifi::ChainLevels>(nativewifi::wlan_intf_opcode_connection_chains);
    EXPECT_EQ(connection.chains, 0b101U);
    EXPECT_EQ(connection.levels[0], -50);
    EXPECT_EQ(connection.levels[2], -68);
    EXPECT_EQ(connection.averagedChains, 0b101U);
    const auto heard =
        queried<nativewifi::ChainLevelsList>(nativewifi::wlan_intf_opcode_bss_chains);
    ASSERT_EQ(heard.dwNumberOfItems, 1U);
    EXPECT_EQ(heard.items[0].levels[2], -78);
    EXPECT_EQ(std::memcmp(heard.items[0].bssid, bssEntries().at(0).dot11Bssid, 6), 0);
}

TEST_F(HeardRadios, HaveNoChainsWhereItDoesNot) {
    start({.interfaces = {
               {.connection = Connection{.ssid = "Lab"}, .accessPoints = {{.ssid = "Lab"}}}}});
    std::vector<unsigned char> bytes;
    EXPECT_EQ(query(nativewifi::wlan_intf_opcode_connection_chains, bytes), ERROR_NOT_SUPPORTED);
    EXPECT_EQ(query(nativewifi::wlan_intf_opcode_bss_chains, bytes), ERROR_NOT_SUPPORTED);
    EXPECT_EQ(query(nativewifi::wlan_intf_opcode_receive_antennas, bytes), ERROR_NOT_SUPPORTED);
}

} // namespace
} // namespace radiosim
