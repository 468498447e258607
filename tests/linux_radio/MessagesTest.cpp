// What the kernel says, read from bytes: as it says it, and as it should not.
#include <Messages.h>

#include <support/Netlink.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace nativewifi::linux_radio {
namespace {

using namespace test::netlink;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

using Levels = std::vector<std::optional<std::int32_t>>;

Bytes bssOf(const Parts& parts) {
    return nested(NL80211_ATTR_BSS, parts);
}

// An entry with these parts besides the least that it must have.
Bss bssWith(const Parts& parts) {
    Parts all = {attribute(NL80211_BSS_BSSID, {2, 0, 0, 0, 0, 1}),
                 u32(NL80211_BSS_FREQUENCY, 2412)};
    all.insert(all.end(), parts.begin(), parts.end());
    const std::optional<Bss> bss = readBss(bssOf(all));
    EXPECT_TRUE(bss.has_value());
    return bss.value_or(Bss{});
}

// A record does not depend on the order of the attributes.
std::vector<Parts> bothOrders(Parts parts) {
    std::vector<Parts> orders = {parts};
    std::ranges::reverse(parts);
    orders.push_back(std::move(parts));
    return orders;
}

Bss withSignal(std::int32_t mbm) {
    return bssWith({s32(NL80211_BSS_SIGNAL_MBM, mbm)});
}

Station stationWith(const Parts& parts) {
    const Bytes bytes = join(
        {attribute(NL80211_ATTR_MAC, {2, 0, 0, 0, 0, 9}), nested(NL80211_ATTR_STA_INFO, parts)});
    const std::optional<Station> station = readStation(bytes);
    EXPECT_TRUE(station.has_value());
    return station.value_or(Station{});
}

TEST(BssMessage, HasEachValueOfTheScanResult) {
    for (const Parts& parts : bothOrders(bssParts({.bssid = {2, 1, 2, 3, 4, 5},
                              .frequencyMhz = 5180,
                              .signalMbm = -6150,
                              .signalPercent = 70,
                              .capability = 0x1411,
                              .beaconInterval = 200,
                              .timestamp = 0x1122334455667788,
                              .lastSeenNs = 0x99AABBCCDD,
                              .ageMs = 44,
                              .status = NL80211_BSS_STATUS_ASSOCIATED,
                              .chains = {-61, -70},
                              .elements = name("Lab")}))) {
        const std::optional<Bss> bss = readBss(bssOf(parts));
        ASSERT_TRUE(bss.has_value());
        EXPECT_THAT(bss->bssid, ElementsAre(2, 1, 2, 3, 4, 5));
        EXPECT_EQ(bss->frequencyMhz, 5180U);
        EXPECT_THAT(bss->signalMbm, Optional(-6150));
        EXPECT_THAT(bss->signalPercent, Optional(70));
        EXPECT_EQ(bss->capability, 0x1411);
        EXPECT_EQ(bss->beaconInterval, 200);
        EXPECT_EQ(bss->timestamp, 0x1122334455667788U);
        EXPECT_THAT(bss->lastSeenNs, Optional(0x99AABBCCDDU));
        EXPECT_THAT(bss->ageMs, Optional(44U));
        EXPECT_EQ(bss->status, BssStatus::ASSOCIATED);
        EXPECT_EQ(bss->chainsDbm, Levels({-61, -70}));
        EXPECT_EQ(bss->elements, name("Lab"));
    }
}

TEST(BssMessage, NeedsAnAddressAndAFrequency) {
    const Bytes address = attribute(NL80211_BSS_BSSID, {2, 0, 0, 0, 0, 1});
    const Bytes frequency = u32(NL80211_BSS_FREQUENCY, 2412);
    EXPECT_TRUE(readBss(bssOf({address, frequency})).has_value());
    EXPECT_FALSE(readBss(bssOf({address})).has_value());
    EXPECT_FALSE(readBss(bssOf({frequency})).has_value());
    EXPECT_FALSE(readBss(bssOf({address, u32(NL80211_BSS_FREQUENCY, 0)})).has_value());
    EXPECT_FALSE(
        readBss(bssOf({attribute(NL80211_BSS_BSSID, {2, 0, 0, 0, 0}), frequency})).has_value());
    EXPECT_FALSE(readBss(join({address, frequency})).has_value()) << "they lie in the entry";
    EXPECT_FALSE(readBss({}).has_value());
}

TEST(BssMessage, TakesTheBeaconsValuesWithoutAProbeResponse) {
    const Bss both = bssWith({u64(NL80211_BSS_TSF, 11), u64(NL80211_BSS_BEACON_TSF, 22),
                              attribute(NL80211_BSS_INFORMATION_ELEMENTS, name("probe")),
                              attribute(NL80211_BSS_BEACON_IES, name("beacon"))});
    EXPECT_EQ(both.timestamp, 11U);
    EXPECT_EQ(both.elements, name("probe"));
    const Bss beacon =
        bssWith({u64(NL80211_BSS_BEACON_TSF, 22), attribute(NL80211_BSS_INFORMATION_ELEMENTS, {}),
                 attribute(NL80211_BSS_BEACON_IES, name("beacon"))});
    EXPECT_EQ(beacon.timestamp, 22U);
    EXPECT_EQ(beacon.beaconInterval, 0);
    EXPECT_EQ(beacon.elements, name("beacon"));
}

TEST(BssMessage, LeavesOutLevelsThatCannotBe) {
    for (const std::int32_t level : {-100, -5000, -9500, -12799}) {
        EXPECT_THAT(withSignal(level).signalMbm, Optional(level));
    }
    for (const std::int32_t level : {0, -99, 1000, -12800, INT32_MIN, INT32_MAX}) {
        EXPECT_EQ(withSignal(level).signalMbm, std::nullopt) << level;
    }
    EXPECT_THAT(bssWith({u8(NL80211_BSS_SIGNAL_UNSPEC, 100)}).signalPercent, Optional(100));
    EXPECT_EQ(bssWith({u8(NL80211_BSS_SIGNAL_UNSPEC, 101)}).signalPercent, std::nullopt);
}

TEST(BssMessage, KnowsTheConnectedOne) {
    const auto status = [](std::uint32_t value) {
        return bssWith({u32(NL80211_BSS_STATUS, value)}).status;
    };
    EXPECT_EQ(bssWith({}).status, BssStatus::NONE);
    EXPECT_EQ(status(NL80211_BSS_STATUS_AUTHENTICATED), BssStatus::AUTHENTICATED);
    EXPECT_EQ(status(NL80211_BSS_STATUS_ASSOCIATED), BssStatus::ASSOCIATED);
    EXPECT_EQ(status(NL80211_BSS_STATUS_IBSS_JOINED), BssStatus::IBSS_JOINED);
    EXPECT_EQ(status(77), BssStatus::NONE);
}

TEST(BssMessage, SkipsValuesThatAreTooShort) {
    const Bss bss = bssWith({
        attribute(NL80211_BSS_TSF, {1, 2, 3, 4, 5, 6, 7}),
        attribute(NL80211_BSS_BEACON_INTERVAL, {1}),
        attribute(NL80211_BSS_CAPABILITY, {1}),
        attribute(NL80211_BSS_SIGNAL_MBM, {0x00, 0xF0, 0xFF}),
        attribute(NL80211_BSS_SIGNAL_UNSPEC, {}),
        attribute(NL80211_BSS_STATUS, {1, 0}),
        attribute(NL80211_BSS_SEEN_MS_AGO, {1, 0, 0}),
        attribute(NL80211_BSS_LAST_SEEN_BOOTTIME, {1, 0, 0, 0}),
        nested(NL80211_BSS_CHAIN_SIGNAL, {attribute(0, {})}),
    });
    EXPECT_EQ(bss.timestamp, 0U);
    EXPECT_EQ(bss.beaconInterval, 0);
    EXPECT_EQ(bss.capability, 0);
    EXPECT_EQ(bss.signalMbm, std::nullopt);
    EXPECT_EQ(bss.signalPercent, std::nullopt);
    EXPECT_EQ(bss.status, BssStatus::NONE);
    EXPECT_EQ(bss.ageMs, std::nullopt);
    EXPECT_EQ(bss.lastSeenNs, std::nullopt);
    EXPECT_THAT(bss.chainsDbm, IsEmpty());
}

TEST(BssMessage, SkipsUnknownAttributesAndTakesTheLastOfTwo) {
    const Bss bss = bssWith({attribute(500, Bytes(40)), u16(NL80211_BSS_CAPABILITY, 1),
                             u16(NL80211_BSS_CAPABILITY, 2)});
    EXPECT_EQ(bss.capability, 2);
}

TEST(BssMessage, CutAnywhereIsNoEntry) {
    const Bytes whole = bssMessage({.chains = {-60, -61}, .elements = name("Lab")});
    for (std::size_t size = 0; size < whole.size(); ++size) {
        // A copy of its own: AddressSanitizer sees a read behind it.
        const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_FALSE(readBss(cut).has_value()) << size;
    }
    EXPECT_TRUE(readBss(whole).has_value());
}

TEST(BssMessage, WhoseEntryIsCutHasWhatIsWhole) {
    const Bytes parts = join(bssParts({.chains = {-60, -61}, .elements = name("Lab")}));
    std::size_t entries = 0;
    for (std::size_t size = 0; size <= parts.size(); ++size) {
        const Bytes cut(parts.begin(), parts.begin() + static_cast<std::ptrdiff_t>(size));
        const std::optional<Bss> bss = readBss(attribute(NL80211_ATTR_BSS, cut));
        if (bss) {
            ++entries;
            EXPECT_EQ(bss->elements, name("Lab")) << "it stands before the frequency: " << size;
            EXPECT_EQ(bss->beaconInterval, 100);
        }
    }
    EXPECT_GT(entries, 10U);
}

TEST(BssMessage, EndsAtALengthThatDoesNotFit) {
    const Bytes address = attribute(NL80211_BSS_BSSID, {2, 0, 0, 0, 0, 1});
    const Bytes frequency = u32(NL80211_BSS_FREQUENCY, 2412);
    const Bytes capability = u16(NL80211_BSS_CAPABILITY, 1);
    for (const std::size_t lie : {0U, 1U, 3U, 100U, 0x7FFFU, 0xFFFFU}) {
        const std::optional<Bss> bss = readBss(
            bssOf({address, frequency, attributeOfLength(NL80211_BSS_BEACON_INTERVAL, lie, {1, 2}),
                   capability}));
        ASSERT_TRUE(bss.has_value()) << lie;
        EXPECT_EQ(bss->beaconInterval, 0) << lie;
        EXPECT_EQ(bss->capability, 0) << lie;
    }
}

TEST(BssMessage, ReadsAnEntryWhoseLastPaddingIsMissing) {
    Bytes parts =
        join({u32(NL80211_BSS_FREQUENCY, 2412), attribute(NL80211_BSS_BSSID, {2, 0, 0, 0, 0, 1})});
    parts.resize(parts.size() - 2);
    EXPECT_TRUE(readBss(attribute(NL80211_ATTR_BSS, parts)).has_value());
}

TEST(ChainLevels, AreSortedByChainNumberAndMayHaveGaps) {
    const Bss bss = bssWith({nested(NL80211_BSS_CHAIN_SIGNAL, {s8(3, -50), s8(1, -60)})});
    EXPECT_EQ(bss.chainsDbm, Levels({std::nullopt, -60, std::nullopt, -50}));
}

TEST(ChainLevels, AreAbsentWhereTheDriverReportsNone) {
    for (const int none : {0, 1, 127, -95, -110, -127, -128}) {
        EXPECT_EQ(chainLevel(static_cast<std::int8_t>(none)), std::nullopt) << none;
        EXPECT_EQ(bssWith({chains(NL80211_BSS_CHAIN_SIGNAL, {none, -40})}).chainsDbm,
                  Levels({std::nullopt, -40}));
    }
    for (const int level : {-1, -40, -94, -96, -109}) {
        EXPECT_THAT(chainLevel(static_cast<std::int8_t>(level)), Optional(level));
    }
}

TEST(ChainLevels, EndAtTheEighth) {
    const Bss bss =
        bssWith({nested(NL80211_BSS_CHAIN_SIGNAL, {s8(7, -50), s8(8, -51), s8(0x3FFF, -52)})});
    EXPECT_EQ(bss.chainsDbm.size(), 8U);
    EXPECT_THAT(bss.chainsDbm.back(), Optional(-50));
}

TEST(StationMessage, HasEachValueOfTheConnection) {
    for (const Parts& parts : bothOrders({
             s8(NL80211_STA_INFO_SIGNAL, -55),
             s8(NL80211_STA_INFO_SIGNAL_AVG, -57),
             chains(NL80211_STA_INFO_CHAIN_SIGNAL, {-58, -60}),
             chains(NL80211_STA_INFO_CHAIN_SIGNAL_AVG, {-59}),
             nested(NL80211_STA_INFO_RX_BITRATE, {u16(NL80211_RATE_INFO_BITRATE, 540)}),
             nested(NL80211_STA_INFO_TX_BITRATE, {u16(NL80211_RATE_INFO_BITRATE, 0xFFFF),
                                                  u32(NL80211_RATE_INFO_BITRATE32, 115294)}),
             u32(NL80211_STA_INFO_RX_PACKETS, 1001),
             u32(NL80211_STA_INFO_TX_PACKETS, 1002),
             u32(NL80211_STA_INFO_TX_RETRIES, 1003),
             u32(NL80211_STA_INFO_TX_FAILED, 1004),
             u64(NL80211_STA_INFO_RX_DROP_MISC, 0x100000005),
         })) {
        const Station station = stationWith(parts);
        EXPECT_THAT(station.address, ElementsAre(2, 0, 0, 0, 0, 9));
        EXPECT_THAT(station.signalDbm, Optional(-55));
        EXPECT_THAT(station.averageDbm, Optional(-57));
        EXPECT_EQ(station.chainsDbm, Levels({-58, -60}));
        EXPECT_EQ(station.averageChainsDbm, Levels(1, -59));
        EXPECT_THAT(station.receiveRate, Optional(540U));
        EXPECT_THAT(station.transmitRate, Optional(115294U)) << "the number that does not end";
        EXPECT_THAT(station.receivedPackets, Optional(1001U));
        EXPECT_THAT(station.transmittedPackets, Optional(1002U));
        EXPECT_THAT(station.transmitRetries, Optional(1003U));
        EXPECT_THAT(station.transmitFailures, Optional(1004U));
        EXPECT_THAT(station.receiveDrops, Optional(0x100000005U));
    }
}

TEST(StationMessage, LeavesOutWhatTheDriverDoesNotKnow) {
    const Station silent = stationWith({});
    EXPECT_EQ(silent.signalDbm, std::nullopt);
    EXPECT_EQ(silent.receiveRate, std::nullopt);
    EXPECT_EQ(silent.receivedPackets, std::nullopt);
    const Station zeros = stationWith({
        s8(NL80211_STA_INFO_SIGNAL, 0),
        s8(NL80211_STA_INFO_SIGNAL_AVG, -128),
        nested(NL80211_STA_INFO_RX_BITRATE, {u32(NL80211_RATE_INFO_BITRATE32, 0)}),
        nested(NL80211_STA_INFO_TX_BITRATE, {}),
    });
    EXPECT_EQ(zeros.signalDbm, std::nullopt);
    EXPECT_EQ(zeros.averageDbm, std::nullopt);
    EXPECT_EQ(zeros.receiveRate, std::nullopt);
    EXPECT_EQ(zeros.transmitRate, std::nullopt);
    EXPECT_THAT(stationWith({s8(NL80211_STA_INFO_SIGNAL, -95)}).signalDbm, Optional(-95))
        << "a level of the whole, not of a chain";
    EXPECT_FALSE(readStation(nested(NL80211_ATTR_STA_INFO, {})).has_value()) << "no address";
}

TEST(InterfaceMessage, HasEachValue) {
    for (const Parts& parts : bothOrders({
             u32(NL80211_ATTR_IFINDEX, 5),
             text(NL80211_ATTR_IFNAME, "wlan0"),
             u32(NL80211_ATTR_WIPHY, 2),
             u32(NL80211_ATTR_IFTYPE, NL80211_IFTYPE_STATION),
             attribute(NL80211_ATTR_MAC, {2, 0, 0, 0, 0, 7}),
             attribute(NL80211_ATTR_SSID, bytesOf("Office")),
             u32(NL80211_ATTR_WIPHY_FREQ, 2437),
         })) {
        const std::optional<Interface> interface = readInterface(join(parts));
        ASSERT_TRUE(interface.has_value());
        EXPECT_EQ(interface->index, 5U);
        EXPECT_EQ(interface->name, "wlan0");
        EXPECT_EQ(interface->wiphy, 2U);
        EXPECT_EQ(interface->type, std::uint32_t{NL80211_IFTYPE_STATION});
        EXPECT_THAT(interface->address, ElementsAre(2, 0, 0, 0, 0, 7));
        EXPECT_EQ(interface->ssid, bytesOf("Office"));
        EXPECT_THAT(interface->frequencyMhz, Optional(2437U));
    }
}

TEST(InterfaceMessage, NeedsAnIndexAWiphyAndAType) {
    const Bytes index = u32(NL80211_ATTR_IFINDEX, 5);
    const Bytes wiphy = u32(NL80211_ATTR_WIPHY, 0);
    const Bytes type = u32(NL80211_ATTR_IFTYPE, NL80211_IFTYPE_STATION);
    EXPECT_TRUE(readInterface(join({index, wiphy, type})).has_value());
    EXPECT_FALSE(readInterface(join({wiphy, type})).has_value()) << "a P2P device";
    EXPECT_FALSE(readInterface(join({index, type})).has_value());
    EXPECT_FALSE(readInterface(join({index, wiphy})).has_value());
}

TEST(InterfaceMessage, KeepsNamesAndAddressesOfTheirLengthsOnly) {
    const Parts least = {u32(NL80211_ATTR_IFINDEX, 5), u32(NL80211_ATTR_WIPHY, 0),
                         u32(NL80211_ATTR_IFTYPE, 2)};
    const auto with = [&least](const Bytes& part) {
        return readInterface(join({join(least), part})).value_or(Interface{});
    };
    EXPECT_EQ(with(attribute(NL80211_ATTR_MAC, Bytes(5, 1))).address, MacAddress{});
    EXPECT_EQ(with(attribute(NL80211_ATTR_MAC, Bytes(7, 1))).address[5], 1);
    EXPECT_EQ(with(attribute(NL80211_ATTR_SSID, Bytes(32, 'a'))).ssid.size(), 32U);
    EXPECT_THAT(with(attribute(NL80211_ATTR_SSID, Bytes(33, 'a'))).ssid, IsEmpty());
    EXPECT_EQ(with(attribute(NL80211_ATTR_IFNAME, bytesOf("wlan0"))).name, "wlan0")
        << "without its terminator";
    EXPECT_EQ(with(attribute(NL80211_ATTR_IFNAME, {'w', 0, 'x'})).name, "w");
}

Bytes frequency(std::uint32_t mhz, const Parts& flags = {}) {
    return nested(0, {u32(NL80211_FREQUENCY_ATTR_FREQ, mhz), join(flags)});
}

Bytes band(const Parts& frequencies) {
    return nested(NL80211_ATTR_WIPHY_BANDS,
                  {nested(0, {nested(NL80211_BAND_ATTR_RATES, {frequency(11)}),
                              nested(NL80211_BAND_ATTR_FREQS, frequencies)})});
}

TEST(WiphyMessages, AreJoinedByTheirIndex) {
    std::vector<Wiphy> wiphys;
    const Parts messages = {
        u32(NL80211_ATTR_WIPHY, 1),
        join({u32(NL80211_ATTR_WIPHY, 1), text(NL80211_ATTR_WIPHY_NAME, "phy1")}),
        join({u32(NL80211_ATTR_WIPHY, 1),
              band({frequency(2412), frequency(2417, {flag(NL80211_FREQUENCY_ATTR_DISABLED)})})}),
        join({u32(NL80211_ATTR_WIPHY, 1),
              band({frequency(5180, {flag(NL80211_FREQUENCY_ATTR_NO_IR)}), frequency(0)}),
              u32(NL80211_ATTR_WIPHY_ANTENNA_AVAIL_RX, 3), u32(NL80211_ATTR_WIPHY_ANTENNA_RX, 1)}),
        join({u32(NL80211_ATTR_WIPHY, 0), text(NL80211_ATTR_WIPHY_NAME, "phy0")}),
        u32(NL80211_ATTR_WIPHY, 1),
    };
    for (const Bytes& message : messages) {
        std::optional<Wiphy> part = readWiphy(message);
        ASSERT_TRUE(part.has_value());
        merge(wiphys, *part);
    }
    ASSERT_EQ(wiphys.size(), 2U);
    const Wiphy& wiphy = wiphys[0];
    EXPECT_EQ(wiphy.index, 1U);
    EXPECT_EQ(wiphy.name, "phy1");
    EXPECT_THAT(wiphy.receiveAntennas, Optional(1U));
    EXPECT_THAT(wiphy.availableReceiveAntennas, Optional(3U));
    ASSERT_EQ(wiphy.channels.size(), 3U) << "not that without a frequency";
    EXPECT_EQ(wiphy.channels[0].frequencyMhz, 2412U);
    EXPECT_FALSE(wiphy.channels[0].disabled);
    EXPECT_FALSE(wiphy.channels[0].noInitiatedRadiation);
    EXPECT_TRUE(wiphy.channels[1].disabled);
    EXPECT_EQ(wiphy.channels[2].frequencyMhz, 5180U);
    EXPECT_TRUE(wiphy.channels[2].noInitiatedRadiation);
    EXPECT_EQ(wiphys[1].name, "phy0");
    const std::optional<Wiphy> bands =
        readWiphy(join({u32(NL80211_ATTR_WIPHY, 2), band({frequency(2412)})}));
    ASSERT_TRUE(bands.has_value());
    EXPECT_EQ(bands->receiveAntennas, std::nullopt);
    EXPECT_EQ(bands->availableReceiveAntennas, std::nullopt);
    EXPECT_FALSE(readWiphy(text(NL80211_ATTR_WIPHY_NAME, "phy0")).has_value());
}

TEST(EventMessage, IsOfTheKindOfItsCommand) {
    using Kind = Event::Kind;
    const struct {
        std::uint8_t command;
        Kind kind;
    } rows[] = {
        {NL80211_CMD_TRIGGER_SCAN, Kind::SCAN_STARTED},
        {NL80211_CMD_NEW_SCAN_RESULTS, Kind::SCAN_COMPLETED},
        {NL80211_CMD_SCAN_ABORTED, Kind::SCAN_ABORTED},
        {NL80211_CMD_CONNECT, Kind::CONNECTED},
        {NL80211_CMD_ROAM, Kind::CONNECTED},
        {NL80211_CMD_JOIN_IBSS, Kind::CONNECTED},
        {NL80211_CMD_DISCONNECT, Kind::DISCONNECTED},
        {NL80211_CMD_NEW_INTERFACE, Kind::INTERFACE_ADDED},
        {NL80211_CMD_DEL_INTERFACE, Kind::INTERFACE_REMOVED},
        {NL80211_CMD_NEW_WIPHY, Kind::OTHER},
        {0, Kind::OTHER},
        {255, Kind::OTHER},
    };
    for (const auto& [command, kind] : rows) {
        EXPECT_EQ(readEvent(command, {}).kind, kind) << int{command};
    }
}

TEST(EventMessage, SaysWhereItHappenedAndHowItEnded) {
    const Event event =
        readEvent(NL80211_CMD_CONNECT, join({
                                           u32(NL80211_ATTR_WIPHY, 1),
                                           u32(NL80211_ATTR_IFINDEX, 5),
                                           attribute(NL80211_ATTR_MAC, {2, 0, 0, 0, 0, 3}),
                                           u16(NL80211_ATTR_STATUS_CODE, 17),
                                       }));
    EXPECT_THAT(event.wiphy, Optional(1U));
    EXPECT_THAT(event.interface, Optional(5U));
    EXPECT_THAT(event.statusCode, Optional(17));
    EXPECT_THAT(event.bssid, ElementsAre(2, 0, 0, 0, 0, 3));
    EXPECT_THAT(event.ssid, IsEmpty());
    EXPECT_EQ(readEvent(NL80211_CMD_CONNECT, {}).statusCode, std::nullopt);
}

TEST(EventMessage, NamesTheNetworkThatWasJoined) {
    const auto nameIn = [](const Parts& parts) {
        return readEvent(NL80211_CMD_CONNECT, join(parts)).ssid;
    };
    const Bytes request = attribute(NL80211_ATTR_REQ_IE, join({name("Lab"), rsn()}));
    EXPECT_EQ(nameIn({request}), bytesOf("Lab"));
    EXPECT_EQ(nameIn({request, attribute(NL80211_ATTR_SSID, bytesOf("Other"))}), bytesOf("Other"));
    EXPECT_THAT(nameIn({attribute(NL80211_ATTR_REQ_IE, name(std::string(33, 'a')))}), IsEmpty());
    EXPECT_THAT(nameIn({}), IsEmpty());
    const Bytes office = attribute(NL80211_ATTR_SSID, bytesOf("Office"));
    EXPECT_EQ(readEvent(NL80211_CMD_CONNECT, office).bssid, MacAddress{});
}

} // namespace
} // namespace nativewifi::linux_radio
