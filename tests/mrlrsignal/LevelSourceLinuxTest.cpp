// Linux scans one channel alone, several times a second, while it knows the channel; and it knows
// whether a connection still hears its access point.
#include "Client.h"

#include <readings/LevelSource.h>

namespace readings {
namespace {

using namespace std::chrono_literals;

class ChannelScans : public radiosim::WithEngine {
protected:
    void lookFor(LevelSource& source, std::chrono::milliseconds time) {
        const mrl::Clock::Duration end = clock().now() + time;
        while (clock().now() < end) {
            source.look();
            after(100ms);
        }
    }

    std::size_t channelScans() { return engine().callCount("WlanSetInterface"); }
    std::size_t fullScans() { return engine().callCount("WlanScan"); }
};

TEST_F(ChannelScans, FollowTheFirstReading) {
    show({{.ssid = "Lab", .bss = {{{.rssi = -60, .heardEvery = 100ms, .channel = 36}}}}});
    LevelSource source(guid(), {.ssid = "Lab"});
    lookFor(source, 5s);
    EXPECT_EQ(fullScans(), 1U);
    EXPECT_GE(channelScans(), 20U);
    EXPECT_EQ(source.scans(), fullScans() + channelScans());
}

TEST_F(ChannelScans, EndWhenTheAccessPointIsNotHeardThereAnyMore) {
    show({{.ssid = "Lab",
           .bss = {{{.rssi = -60, .heardEvery = 100ms, .heardUntil = 1s, .channel = 36}}}}});
    LevelSource source(guid(), {.ssid = "Lab"});
    lookFor(source, 4s);
    engine().clearCalls();
    lookFor(source, 8s);
    EXPECT_EQ(channelScans(), 0U);
    EXPECT_EQ(fullScans(), 2U);
}

TEST_F(ChannelScans, DoNotStartWhileANameIsHeardOnTwoChannels) {
    show({{.ssid = "Lab",
           .bss = {{{.rssi = -60, .heardEvery = 100ms, .channel = 6},
                    {.rssi = -60, .heardEvery = 100ms, .channel = 36}}}}});
    LevelSource source(guid(), {.ssid = "Lab"});
    lookFor(source, 5s);
    EXPECT_EQ(channelScans(), 0U);
}

using Connections = ChannelScans;

TEST_F(Connections, GiveNoReadingOnceTheirAccessPointIsSilent) {
    start(
        {.interfaces = {{.connection = radiosim::Connection{.ssid = "Lab", .heardUntil = 2s},
                         .rssi = -61,
                         .accessPoints = {
                             {.ssid = "Lab",
                              .bss = {{{.rssi = -60, .heardEvery = 100ms, .heardUntil = 2s}}}}}}}});
    LevelSource source(guid(), {.ssid = "Lab"});
    for (int i = 0; i < 10; ++i) {
        after(200ms);
        EXPECT_EQ(source.look().readings.size(), 1U) << i;
    }
    EXPECT_EQ(source.scans(), 0U);
    for (int i = 0; i < 20; ++i) {
        after(200ms);
        EXPECT_TRUE(source.look().readings.empty()) << i;
    }
    EXPECT_GE(source.scans(), 1U) << "it may be heard on another channel";
}

TEST_F(Connections, LeaveTheReadingsToScansWhereTheirDriverCountsNoBeacons) {
    start({.interfaces = {{.connection = radiosim::Connection{.ssid = "Lab", .heardUntil = 100ms},
                           .rssi = -61,
                           .accessPoints = {
                               {.ssid = "Lab", .bss = {{{.rssi = -60, .heardEvery = 100ms}}}}}}}});
    LevelSource source(guid(), {.ssid = "Lab"});
    lookFor(source, 2s);
    after(100ms);
    const Look look = source.look();
    ASSERT_EQ(look.readings.size(), 1U);
    EXPECT_EQ(look.readings[0].source, Source::SCAN);
}

} // namespace
} // namespace readings
