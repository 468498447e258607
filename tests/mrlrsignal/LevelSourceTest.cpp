// What counts as a reading, on the simulated radio and the virtual clock.
#include "Client.h"

#include <readings/LevelSource.h>
#include <readings/ScanRequest.h>

namespace readings {
namespace {

using namespace std::chrono_literals;
using radiosim::AccessPoint;
using radiosim::Connection;
using radiosim::Level;

const std::vector<std::uint8_t> LAB_ADDRESS{2, 0, 0, 0, 1, 0};
constexpr Bssid LAB{2, 0, 0, 0, 1, 0};
constexpr Bssid LAB_5{2, 0, 0, 0, 1, 1};

// Heard every 100 ms.
AccessPoint lab(Level level) {
    return {.ssid = "Lab", .bss = {{{.bssid = LAB_ADDRESS, .rssi = level, .heardEvery = 100ms}}}};
}

class LevelSources : public radiosim::WithEngine {
protected:
    // Looks for `time`, at the source's own rhythm.
    std::vector<Reading> readingsIn(LevelSource& source, std::chrono::milliseconds time) {
        std::vector<Reading> all;
        const mrl::Clock::Duration end = clock().now() + time;
        while (clock().now() < end) {
            Look look = source.look();
            std::ranges::move(look.readings, std::back_inserter(all));
            after(std::chrono::duration_cast<std::chrono::milliseconds>(source.pause()));
        }
        return all;
    }

    static LevelSource sourceOf(Target target) { return {guid(), std::move(target)}; }

    void connectedTo(Connection connection, Level level,
                     std::vector<AccessPoint> accessPoints = {lab(-70)}) {
        start({.interfaces = {{.connection = std::move(connection),
                               .rssi = level,
                               .accessPoints = std::move(accessPoints)}}});
    }
};

TEST_F(LevelSources, TakeNothingFromTheFirstLookAtAList) {
    show({lab(-60)});
    LevelSource source = sourceOf({.ssid = "Lab"});
    const Look look = source.look();
    EXPECT_TRUE(look.listed);
    EXPECT_TRUE(look.readings.empty());
    EXPECT_EQ(source.dropped().unchanged, 1U);
}

TEST_F(LevelSources, TakeAnEntryThatWasHeardAgain) {
    show({lab(-60)});
    LevelSource source = sourceOf({.ssid = "Lab"});
    source.look();
    after(100ms);
    const Look look = source.look();
    ASSERT_EQ(look.readings.size(), 1U);
    EXPECT_EQ(look.readings[0].dbm, -60);
    EXPECT_EQ(look.readings[0].source, Source::SCAN);
    EXPECT_EQ(look.readings[0].bssid, LAB);
    EXPECT_EQ(look.readings[0].ssid, "Lab");
    EXPECT_EQ(look.readings[0].mhz, 2437U);
    EXPECT_EQ(look.readings[0].at, 100ms);
}

TEST_F(LevelSources, TakeAnEntryThatCameToTheList) {
    AccessPoint late = lab(-60);
    late.from = 300ms;
    show({late});
    LevelSource source = sourceOf({.ssid = "Lab"});
    EXPECT_FALSE(source.look().listed);
    after(400ms);
    EXPECT_EQ(source.look().readings.size(), 1U);
    EXPECT_TRUE(source.look().readings.empty());
}

TEST_F(LevelSources, TakeAnEntryOnceOnly) {
    show({lab(-60)});
    LevelSource source = sourceOf({.ssid = "Lab"});
    source.look();
    after(100ms);
    source.look();
    after(50ms);
    EXPECT_TRUE(source.look().readings.empty());
    EXPECT_EQ(source.dropped().unchanged, 2U);
}

TEST_F(LevelSources, TakeATimestampThatJittersForTheSame) {
    AccessPoint jittering = lab(-60);
    jittering.bss->front().heardEvery = 5ms;
    show({jittering});
    LevelSource source = sourceOf({.ssid = "Lab"});
    source.look();
    for (int i = 0; i < 3; ++i) {
        after(5ms);
        EXPECT_TRUE(source.look().readings.empty());
    }
    after(5ms);
    EXPECT_EQ(source.look().readings.size(), 1U);
}

TEST_F(LevelSources, TakeNothingOfAnAccessPointThatIsGoneAndStillListed) {
    AccessPoint gone = lab(-60);
    gone.bss->front().heardUntil = 1s;
    show({gone});
    LevelSource source = sourceOf({.ssid = "Lab"});
    EXPECT_FALSE(readingsIn(source, 1100ms).empty());
    EXPECT_TRUE(source.look().listed);
    EXPECT_TRUE(readingsIn(source, 20s).empty());
}

TEST_F(LevelSources, TakeNothingOfTwoEntriesOfOneAddressThatStandStill) {
    AccessPoint named = lab(-60);
    named.bss->front().heardUntil = 1s;
    AccessPoint nameless = named;
    nameless.ssid = "";
    nameless.bss->front().heardUntil = 500ms;
    show({named, nameless});
    LevelSource source = sourceOf({.bssid = LAB});
    EXPECT_FALSE(readingsIn(source, 1100ms).empty());
    EXPECT_TRUE(readingsIn(source, 5s).empty());
}

TEST_F(LevelSources, DropLevelsThatAreNone) {
    for (const int level : {0, 20, -120, -128}) {
        show({lab(level)});
        LevelSource source = sourceOf({.ssid = "Lab"});
        EXPECT_TRUE(readingsIn(source, 500ms).empty()) << level;
        EXPECT_EQ(source.dropped().outOfRange, 4U) << level;
    }
    for (const int level : {-1, -119}) {
        show({lab(level)});
        LevelSource source = sourceOf({.ssid = "Lab"});
        EXPECT_FALSE(readingsIn(source, 500ms).empty()) << level;
    }
}

TEST_F(LevelSources, TakeTheTargetAlone) {
    AccessPoint networks = lab(-60);
    networks.bss->push_back(
        {.bssid = {2, 0, 0, 0, 1, 1}, .rssi = -70, .heardEvery = 100ms, .channel = 36});
    show({networks, {.ssid = "Other"}});
    struct {
        Target target;
        LONG level;
    } const targets[] = {{{.bssid = LAB}, -60},
                         {{.bssid = LAB_5}, -70},
                         {{.ssid = "Lab", .band = nativewifi::Band::GHZ_2_4}, -60},
                         {{.ssid = "Lab", .band = nativewifi::Band::GHZ_5}, -70}};
    for (const auto& [target, level] : targets) {
        LevelSource source = sourceOf(target);
        const std::vector<Reading> readings = readingsIn(source, 500ms);
        ASSERT_EQ(readings.size(), 4U) << level;
        for (const Reading& reading : readings) {
            EXPECT_EQ(reading.dbm, level);
        }
    }
    LevelSource both = sourceOf({.ssid = "Lab"});
    EXPECT_EQ(readingsIn(both, 500ms).size(), 8U);
}

TEST_F(LevelSources, KnowHiddenNetworksByTheirAddress) {
    AccessPoint hidden = lab(-60);
    hidden.hidden = true;
    show({hidden});
    LevelSource source = sourceOf({.bssid = LAB});
    EXPECT_FALSE(readingsIn(source, 500ms).empty());
}

TEST_F(LevelSources, AskTheConnectionWhenItIsToTheTarget) {
    connectedTo({.ssid = "Lab"}, -48);
    LevelSource source = sourceOf({.ssid = "Lab"});
    const std::vector<Reading> readings = readingsIn(source, 1s);
    ASSERT_EQ(readings.size(), 5U);
    EXPECT_EQ(readings[0].dbm, -48);
    EXPECT_EQ(readings[0].source, Source::CONNECTION);
    EXPECT_EQ(readings[0].bssid, LAB);
    EXPECT_EQ(source.scans(), 0U);
    EXPECT_EQ(engine().callCount("WlanGetNetworkBssList"), 0U);
}

TEST_F(LevelSources, AskTheLinkWhereTheSystemKnowsIt) {
    for (const bool inKhz : {false, true}) {
        connectedTo({.ssid = "Lab", .channel = 36, .links = true, .linkFrequencyInKhz = inKhz},
                    -48);
        LevelSource source = sourceOf({.ssid = "Lab", .band = nativewifi::Band::GHZ_5});
        const Look look = source.look();
        ASSERT_EQ(look.readings.size(), 1U);
        EXPECT_EQ(look.readings[0].source, Source::LINK);
        EXPECT_EQ(look.readings[0].mhz, 5180U);
    }
}

// Connected on channel 6 at -48 dBm and on channel 36 at -62 dBm, to a device with both radios.
Connection twoLinks() {
    return {.ssid = "Lab", .links = true, .otherLinks = {{.channel = 36, .rssi = -62}}};
}
AccessPoint bothRadios() {
    AccessPoint device = lab(-70);
    device.bss->push_back(
        {.bssid = {2, 0, 0, 0, 1, 1}, .rssi = -80, .heardEvery = 100ms, .channel = 36});
    return device;
}

TEST_F(LevelSources, AskTheLinkOfSeveralThatIsToTheTarget) {
    connectedTo(twoLinks(), -48, {bothRadios()});
    struct {
        Target target;
        LONG dbm;
        std::uint32_t mhz;
    } const rows[] = {{{.bssid = LAB}, -48, 2437},
                      {{.ssid = "Lab", .bssid = LAB_5}, -62, 5180},
                      {{.ssid = "Lab", .band = nativewifi::Band::GHZ_2_4}, -48, 2437},
                      {{.ssid = "Lab", .band = nativewifi::Band::GHZ_5}, -62, 5180}};
    for (const auto& [target, dbm, mhz] : rows) {
        LevelSource source = sourceOf(target);
        const Look look = source.look();
        ASSERT_EQ(look.readings.size(), 1U) << dbm;
        EXPECT_EQ(look.readings[0].source, Source::LINK);
        EXPECT_EQ(look.readings[0].dbm, dbm);
        EXPECT_EQ(look.readings[0].mhz, mhz);
        EXPECT_EQ(source.scans(), 0U);
    }
}

TEST_F(LevelSources, AskTheConnectionWhereItsLinksCannotBeToldApart) {
    connectedTo(twoLinks(), -48, {bothRadios()});
    LevelSource any = sourceOf({.ssid = "Lab"});
    ASSERT_EQ(any.look().readings.size(), 1U);
    EXPECT_EQ(any.look().readings[0].source, Source::CONNECTION);
    // A neighbour of the same name on the link's channel could be the one that is connected.
    AccessPoint crowd = bothRadios();
    crowd.bss->push_back(
        {.bssid = {2, 0, 0, 0, 1, 2}, .rssi = -50, .heardEvery = 100ms, .channel = 36});
    connectedTo(twoLinks(), -48, {crowd});
    LevelSource one = sourceOf({.bssid = LAB_5});
    const std::vector<Reading> readings = readingsIn(one, 500ms);
    ASSERT_FALSE(readings.empty());
    EXPECT_EQ(readings[0].source, Source::SCAN);
    EXPECT_EQ(readings[0].dbm, -80);
}

TEST_F(LevelSources, LeaveAConnectionToAnotherNetworkAlone) {
    connectedTo({.ssid = "Office"}, -48,
                {lab(-70), {.ssid = "Office", .bss = {{{.bssid = {2, 0, 0, 0, 9, 9}}}}}});
    LevelSource source = sourceOf({.ssid = "Lab"});
    const std::vector<Reading> readings = readingsIn(source, 500ms);
    ASSERT_FALSE(readings.empty());
    EXPECT_EQ(readings[0].dbm, -70);
    EXPECT_EQ(readings[0].source, Source::SCAN);
}

TEST_F(LevelSources, LeaveAConnectionOfAnUnknownBandToTheList) {
    connectedTo({.ssid = "Lab"}, -48);
    LevelSource source = sourceOf({.ssid = "Lab", .band = nativewifi::Band::GHZ_2_4});
    const std::vector<Reading> readings = readingsIn(source, 500ms);
    ASSERT_FALSE(readings.empty());
    EXPECT_EQ(readings[0].source, Source::SCAN);
}

TEST_F(LevelSources, DropTheLevelThatAConnectionDoesNotHave) {
    connectedTo({.ssid = "Lab"}, 0);
    LevelSource source = sourceOf({.ssid = "Lab"});
    const Look look = source.look();
    EXPECT_TRUE(look.listed);
    EXPECT_TRUE(look.readings.empty());
    EXPECT_EQ(source.dropped().outOfRange, 1U);
}

TEST_F(LevelSources, FollowAConnectionThatEnds) {
    connectedTo({.ssid = "Lab"}, -48);
    LevelSource source = sourceOf({.ssid = "Lab"});
    source.look();
    engine().setConnection(0, std::nullopt);
    const std::vector<Reading> readings = readingsIn(source, 500ms);
    ASSERT_FALSE(readings.empty());
    EXPECT_EQ(readings[0].dbm, -70);
}

TEST_F(LevelSources, ScanAllChannelsEveryFourSecondsUntilTheTargetIsHeard) {
    show({});
    LevelSource source = sourceOf({.ssid = "Lab"});
    readingsIn(source, 12s);
    EXPECT_EQ(source.scans(), 3U);
    EXPECT_EQ(engine().callCount("WlanScan"), 3U);
}

TEST_F(LevelSources, SayThatTheRadioIsOff) {
    start({.interfaces = {{.phys = {{.software = 2}}, .accessPoints = {lab(-60)}}}});
    LevelSource source = sourceOf({.ssid = "Lab"});
    const Look look = source.look();
    EXPECT_EQ(look.error, ERROR_NDIS_DOT11_POWER_STATE_INVALID);
    EXPECT_EQ(look.scanError, ERROR_NDIS_DOT11_POWER_STATE_INVALID);
    EXPECT_EQ(source.scans(), 0U);
}

TEST_F(LevelSources, SayThatScansAreDenied) {
    show({lab(-60)});
    engine().addFault({.function = "WlanScan", .code = ERROR_ACCESS_DENIED});
    LevelSource source = sourceOf({.ssid = "Lab"});
    const Look look = source.look();
    EXPECT_EQ(look.scanError, ERROR_ACCESS_DENIED);
    EXPECT_EQ(look.error, ERROR_SUCCESS);
}

TEST_F(LevelSources, SayThatTheServiceIsStoppedAndFindItAgain) {
    show({lab(-60)});
    LevelSource source = sourceOf({.ssid = "Lab"});
    engine().addFault({.function = "WlanOpenHandle", .nth = 1, .code = ERROR_SERVICE_NOT_ACTIVE});
    EXPECT_EQ(source.look().error, ERROR_SERVICE_NOT_ACTIVE);
    EXPECT_EQ(source.look().error, ERROR_SUCCESS);
}

TEST_F(LevelSources, FindTheServiceAgainThatWasRestarted) {
    show({lab(-60)});
    LevelSource source = sourceOf({.ssid = "Lab"});
    source.look();
    engine().stopService();
    EXPECT_EQ(source.look().error, ERROR_SERVICE_NOT_ACTIVE);
    engine().startService();
    EXPECT_FALSE(readingsIn(source, 500ms).empty());
}

TEST_F(LevelSources, TakeEverythingOfTheListWithoutATarget) {
    connectedTo({.ssid = "Lab"}, -48,
                {lab(-70),
                 {.ssid = "Other", .bss = {{{.bssid = {2, 0, 0, 0, 9, 9}, .heardEvery = 100ms}}}}});
    LevelSource source = sourceOf({});
    source.look();
    after(100ms);
    const Look look = source.look();
    ASSERT_EQ(look.readings.size(), 2U);
    EXPECT_EQ(look.readings[0].source, Source::SCAN);
    EXPECT_EQ(look.readings[1].ssid, "Other");
    EXPECT_EQ(source.scanEvery(), scanInterval(0));
}

TEST_F(LevelSources, TakeTheConnectionWithoutATargetWhereTheListIsDenied) {
    connectedTo({.ssid = "Lab"}, -48);
    engine().addFault({.function = "WlanGetNetworkBssList", .code = ERROR_ACCESS_DENIED});
    LevelSource source = sourceOf({});
    const Look look = source.look();
    ASSERT_EQ(look.readings.size(), 1U);
    EXPECT_EQ(look.readings[0].dbm, -48);
    EXPECT_EQ(look.error, ERROR_ACCESS_DENIED);
}

TEST_F(LevelSources, SayHowOftenTheyScan) {
    connectedTo({.ssid = "Lab"}, -48);
    LevelSource source = sourceOf({.ssid = "Lab"});
    source.look();
    EXPECT_FALSE(source.scanEvery());
    engine().setConnection(0, std::nullopt);
    source.look();
    EXPECT_EQ(source.scanEvery(), scanInterval(0));
}

TEST_F(LevelSources, LeaveNothingBehind) {
    connectedTo({.ssid = "Lab", .links = true}, -48);
    {
        LevelSource source = sourceOf({.ssid = "Lab"});
        source.look();
        engine().setConnection(0, std::nullopt);
        readingsIn(source, 5s);
    }
    EXPECT_EQ(engine().openHandles(), 1U) << "the fixture's own";
    EXPECT_EQ(engine().liveBlocks(), 0U);
}

} // namespace
} // namespace readings
