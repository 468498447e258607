// The two lists of networks, made of what was heard.
#include <Networks.h>

#include <Messages.h>

#include <support/Netlink.h>

#include <nativewifi/Ssid.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <numeric>
#include <span>
#include <string>

namespace nativewifi::linux_radio {
namespace {

using namespace test::netlink;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

constexpr std::uint64_t MS = 1'000'000;
constexpr std::uint64_t BOOT_TIME = 1'000'000 * MS;
constexpr std::uint32_t FRESH_MS = 15'000;
constexpr std::uint64_t NOW = 133'000'000'000'000'000; // in 2022
constexpr std::uint16_t ACCESS_POINT = 0x0001;
constexpr std::uint16_t AD_HOC = 0x0002;
constexpr std::uint16_t PRIVACY = 0x0010;

// The record of a message, so that these tests take the way of the bytes.
Bss heard(HeardBss bss) {
    if (bss.elements.empty()) {
        bss.elements = name("Lab");
    }
    return readBss(bssMessage(bss)).value_or(Bss{});
}

std::vector<WLAN_AVAILABLE_NETWORK> networksIn(const Block& block) {
    constexpr std::size_t FIRST = offsetof(WLAN_AVAILABLE_NETWORK_LIST, Network);
    DWORD count = 0;
    std::memcpy(&count, block.data(), sizeof count);
    EXPECT_EQ(block.size(), FIRST + count * sizeof(WLAN_AVAILABLE_NETWORK));
    std::vector<WLAN_AVAILABLE_NETWORK> networks(count);
    if (count > 0) {
        std::memcpy(networks.data(), block.data() + FIRST, block.size() - FIRST);
    }
    return networks;
}

// Of what is fresh.
std::vector<WLAN_AVAILABLE_NETWORK> networks(std::vector<Bss> all) {
    std::erase_if(all, [](const Bss& bss) { return !isFresh(bss, BOOT_TIME, FRESH_MS); });
    return networksIn(availableNetworkList(all));
}

struct Entry {
    WLAN_BSS_ENTRY entry;
    Bytes elements;
};

std::vector<Entry> entriesIn(const Block& block) {
    DWORD head[2];
    std::memcpy(head, block.data(), sizeof head);
    EXPECT_EQ(head[0], block.size()) << "the total size";
    std::vector<Entry> entries(head[1]);
    std::size_t offset = sizeof head;
    for (Entry& each : entries) {
        std::memcpy(&each.entry, block.data() + offset, sizeof each.entry);
        const std::span<const std::byte> elements =
            std::span(block).subspan(offset + each.entry.ulIeOffset, each.entry.ulIeSize);
        const auto* const first = reinterpret_cast<const std::uint8_t*>(elements.data());
        each.elements.assign(first, first + elements.size());
        offset += sizeof each.entry;
    }
    return entries;
}

std::vector<Entry> stations(const std::vector<Bss>& all) {
    return entriesIn(bssList(all, nullptr, dot11_BSS_type_any, false, BOOT_TIME, NOW));
}

std::vector<std::string> namesOf(const std::vector<WLAN_AVAILABLE_NETWORK>& list) {
    std::vector<std::string> names;
    names.reserve(list.size());
    for (const WLAN_AVAILABLE_NETWORK& network : list) {
        names.emplace_back(ssidBytes(network.dot11Ssid));
    }
    return names;
}

TEST(NetworkName, IsEmptyForAHiddenNetworkAndForAWrongLength) {
    const auto nameOf = [](const Bytes& elements) { return ssidOf(heard({.elements = elements})); };
    EXPECT_EQ(nameOf(name("Lab")), bytesOf("Lab"));
    EXPECT_EQ(nameOf(element(0, Bytes(32, 0xFF))).size(), 32U);
    EXPECT_EQ(nameOf(element(0, {0, 'a', 0})), Bytes({0, 'a', 0}));
    EXPECT_THAT(nameOf(element(0, {})), IsEmpty());
    EXPECT_THAT(nameOf(element(0, Bytes(8))), IsEmpty()) << "zeros";
    EXPECT_THAT(nameOf(element(0, Bytes(33, 'a'))), IsEmpty());
    EXPECT_THAT(nameOf(element(0, Bytes(255, 'a'))), IsEmpty());
    EXPECT_THAT(nameOf(rsn()), IsEmpty()) << "no element of the name";
}

TEST(NetworkLevel, IsTheDriversInDbmOrMadeOfItsPercent) {
    EXPECT_THAT(levelOf(heard({.signalMbm = -6000})), Optional(-60));
    EXPECT_THAT(levelOf(heard({.signalMbm = -6049})), Optional(-60));
    EXPECT_THAT(levelOf(heard({.signalMbm = -6050})), Optional(-61));
    EXPECT_THAT(levelOf(heard({.signalMbm = -100})), Optional(-1));
    EXPECT_THAT(levelOf(heard({.signalMbm = -6000, .signalPercent = 100})), Optional(-60));
    EXPECT_THAT(levelOf(heard({.signalMbm = std::nullopt, .signalPercent = 70})), Optional(-65));
    EXPECT_EQ(levelOf(heard({.signalMbm = std::nullopt})), std::nullopt);
}

TEST(NetworkType, FollowsTheCapability) {
    EXPECT_EQ(typeOf(heard({.capability = ACCESS_POINT})), dot11_BSS_type_infrastructure);
    EXPECT_EQ(typeOf(heard({.capability = AD_HOC})), dot11_BSS_type_independent);
    EXPECT_EQ(typeOf(heard({.frequencyMhz = 58320, .capability = 3})),
              dot11_BSS_type_infrastructure);
}

TEST(NetworkList, IsAHeadWithoutNetworks) {
    EXPECT_EQ(availableNetworkList({}), Block(8));
}

TEST(NetworkList, HasOneEntryForAllStationsOfANetwork) {
    const auto list = networks({
        heard({.bssid = {2, 0, 0, 0, 0, 1}, .signalMbm = -7000}),
        heard({.bssid = {2, 0, 0, 0, 0, 2}, .frequencyMhz = 5180, .signalMbm = -6200}),
        heard({.bssid = {2, 0, 0, 0, 0, 1}, .frequencyMhz = 2437, .signalMbm = -8000}),
    });
    ASSERT_EQ(list.size(), 1U);
    const WLAN_AVAILABLE_NETWORK& network = list[0];
    EXPECT_EQ(ssidBytes(network.dot11Ssid), "Lab");
    EXPECT_EQ(network.uNumberOfBssids, 2U) << "one was heard on two channels";
    EXPECT_EQ(network.wlanSignalQuality, 76U) << "of the strongest";
    EXPECT_EQ(network.dot11BssType, dot11_BSS_type_infrastructure);
    EXPECT_EQ(network.bNetworkConnectable, TRUE);
    EXPECT_EQ(network.wlanNotConnectableReason, 0U);
    EXPECT_EQ(network.bSecurityEnabled, FALSE);
    EXPECT_EQ(network.dot11DefaultAuthAlgorithm, DOT11_AUTH_ALGO_80211_OPEN);
    EXPECT_EQ(network.dot11DefaultCipherAlgorithm, DOT11_CIPHER_ALGO_NONE);
    EXPECT_EQ(network.dwFlags, 0U) << "neither connected nor a profile";
    EXPECT_EQ(network.strProfileName[0], 0);
}

TEST(NetworkList, HasAnEntryOfItsOwnForEachTypeAndSecurity) {
    const Bytes wpa2 = join({name("Lab"), rsn()});
    const Bytes wpa3 = join({name("Lab"), rsn({.authentications = {8}})});
    const auto list = networks({
        heard({.signalMbm = -5500}),
        heard({.signalMbm = -6000, .capability = PRIVACY | ACCESS_POINT}),
        heard({.signalMbm = -6500, .capability = AD_HOC}),
        heard({.signalMbm = -7000, .elements = wpa2}),
        heard({.signalMbm = -7500, .elements = wpa3}),
        heard({.signalMbm = -8000, .elements = name("Lab2")}),
        heard({.signalMbm = -9000, .elements = wpa2}),
    });
    ASSERT_THAT(namesOf(list), ElementsAre("Lab", "Lab", "Lab", "Lab", "Lab", "Lab2"));
    EXPECT_EQ(list[1].dot11DefaultCipherAlgorithm, DOT11_CIPHER_ALGO_WEP);
    EXPECT_EQ(list[1].bSecurityEnabled, TRUE);
    EXPECT_EQ(list[2].dot11BssType, dot11_BSS_type_independent);
    EXPECT_EQ(list[3].dot11DefaultAuthAlgorithm, DOT11_AUTH_ALGO_RSNA_PSK);
    EXPECT_EQ(list[3].dot11DefaultCipherAlgorithm, DOT11_CIPHER_ALGO_CCMP);
    EXPECT_EQ(list[4].dot11DefaultAuthAlgorithm, DOT11_AUTH_ALGO_WPA3_SAE);
}

TEST(NetworkList, SaysThatAnUnknownSecurityCannotBeJoined) {
    for (const Bytes& unknown : {rsn({.authentications = {77}}), rsn({.ciphers = {77}})}) {
        const auto list = networks({heard({.elements = unknown})});
        ASSERT_EQ(list.size(), 1U);
        EXPECT_EQ(list[0].bNetworkConnectable, FALSE);
        EXPECT_EQ(list[0].wlanNotConnectableReason, 0x20001U);
    }
}

TEST(NetworkList, BeginsWithTheConnectedOneAndGoesOnByQuality) {
    const auto list = networks({
        heard({.signalMbm = -8000, .elements = name("weak")}),
        heard({.signalMbm = -5000, .elements = name("strong")}),
        heard({.signalMbm = -9000,
               .status = NL80211_BSS_STATUS_ASSOCIATED,
               .elements = name("ours")}),
        heard({.signalMbm = -4000,
               .status = NL80211_BSS_STATUS_AUTHENTICATED,
               .elements = name("almost")}),
        heard({.signalMbm = -6000, .elements = name("b")}),
        heard({.signalMbm = -6000, .elements = name("a")}),
    });
    EXPECT_THAT(namesOf(list), ElementsAre("ours", "almost", "strong", "a", "b", "weak"));
    EXPECT_EQ(list[0].dwFlags, WLAN_AVAILABLE_NETWORK_CONNECTED);
    EXPECT_EQ(list[1].dwFlags, 0U);
}

TEST(NetworkList, IsTheSameForTheSameNetworksInAnotherOrder) {
    std::vector<Bss> all;
    for (const char* ssid : {"b", "a", "c"}) {
        for (const std::uint8_t number : Bytes{3, 1, 2}) {
            all.push_back(heard({.bssid = {2, 0, 0, 0, 0, number}, .elements = name(ssid)}));
        }
    }
    const Block first = availableNetworkList(all);
    std::ranges::reverse(all);
    EXPECT_EQ(availableNetworkList(all), first);
}

TEST(NetworkList, LeavesOutWhatWasNotHeardOfLately) {
    constexpr std::uint64_t OLD = BOOT_TIME - (FRESH_MS + 1) * MS;
    const auto list = networks({
        heard({.lastSeenNs = BOOT_TIME - FRESH_MS * MS, .elements = name("fresh")}),
        heard({.lastSeenNs = OLD, .elements = name("old")}),
        heard({.lastSeenNs = BOOT_TIME, .ageMs = 60'000, .elements = name("now")}),
        heard({.ageMs = FRESH_MS, .elements = name("by age")}),
        heard({.ageMs = FRESH_MS + 1, .elements = name("old by age")}),
        heard({.elements = name("no age")}),
        heard({.lastSeenNs = BOOT_TIME + 1, .elements = name("future")}),
        heard(
            {.lastSeenNs = OLD, .status = NL80211_BSS_STATUS_ASSOCIATED, .elements = name("ours")}),
        heard({.lastSeenNs = OLD,
               .status = NL80211_BSS_STATUS_AUTHENTICATED,
               .elements = name("not ours")}),
    });
    EXPECT_THAT(namesOf(list), ElementsAre("ours", "by age", "fresh", "future", "no age", "now"));
}

TEST(NetworkList, HasThePhyTypesOfAllStations) {
    const Bytes ht = element(45, Bytes(26));
    const Bytes ofdm = element(1, {0x8C, 0x6C});
    auto list = networks({
        heard({.bssid = {2, 0, 0, 0, 0, 1}, .elements = join({name("Lab"), ofdm, ht})}),
        heard({.bssid = {2, 0, 0, 0, 0, 2}, .elements = join({name("Lab"), ofdm})}),
        heard({.bssid = {2, 0, 0, 0, 0, 3}, .elements = join({name("Lab"), ofdm, ht})}),
    });
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list[0].uNumberOfPhyTypes, 2U);
    EXPECT_EQ(list[0].dot11PhyTypes[0], dot11_phy_type_erp);
    EXPECT_EQ(list[0].dot11PhyTypes[1], dot11_phy_type_ht);
    EXPECT_EQ(list[0].bMorePhyTypes, FALSE);
    const Bytes vht = element(191, {});
    const Bytes he = element(255, {35});
    const Bytes eht = element(255, {108});
    const struct {
        Bytes elements;
        std::uint32_t frequency;
    } nine[] = {{element(1, {2}), 2412},
                {element(1, {11}), 2412},
                {ofdm, 2412},
                {ofdm, 5180},
                {ht, 5180},
                {vht, 5180},
                {he, 5180},
                {eht, 5180},
                {{}, 58320}};
    std::vector<Bss> all;
    for (const auto& [elements, frequency] : nine) {
        all.push_back(
            heard({.frequencyMhz = frequency, .elements = join({name("Lab"), elements})}));
    }
    list = networks(all);
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list[0].uNumberOfPhyTypes, 8U);
    EXPECT_EQ(list[0].dot11PhyTypes[0], dot11_phy_type_dsss);
    EXPECT_EQ(list[0].dot11PhyTypes[7], dot11_phy_type_he);
    EXPECT_EQ(list[0].bMorePhyTypes, TRUE);
}

TEST(NetworkList, CutsTheQualityTo0And100) {
    const auto qualityOf = [](HeardBss bss) {
        return networks({heard(std::move(bss))}).at(0).wlanSignalQuality;
    };
    EXPECT_EQ(qualityOf({.signalMbm = -12000}), 0U);
    EXPECT_EQ(qualityOf({.signalMbm = -9900}), 2U);
    EXPECT_EQ(qualityOf({.signalMbm = -7500}), 50U);
    EXPECT_EQ(qualityOf({.signalMbm = -5000}), 100U);
    EXPECT_EQ(qualityOf({.signalMbm = -1000}), 100U);
    EXPECT_EQ(qualityOf({.signalMbm = std::nullopt}), 0U);
}

TEST(NetworkList, HoldsThousandsOfStations) {
    std::vector<Bss> all;
    for (unsigned i = 0; i < 5000; ++i) {
        all.push_back(heard({.bssid = {2, 0, 0, 0, static_cast<std::uint8_t>(i >> 8U),
                                       static_cast<std::uint8_t>(i)},
                             .elements = name(std::to_string(i % 1000))}));
    }
    const auto list = networks(all);
    ASSERT_EQ(list.size(), 1000U);
    EXPECT_TRUE(std::ranges::all_of(
        list, [](const WLAN_AVAILABLE_NETWORK& network) { return network.uNumberOfBssids == 5; }));
    EXPECT_EQ(stations(all).size(), 5000U);
}

TEST(StationList, IsAHeadOfItsSizeWithoutStations) {
    EXPECT_EQ(bssList({}, nullptr, dot11_BSS_type_any, false, BOOT_TIME, NOW).size(), 8U);
    EXPECT_THAT(stations({}), IsEmpty());
}

TEST(StationList, HasEachValueOfAStation) {
    const Bytes elements = join({name("Lab"), element(1, {0x8C, 0x18}), rsn()});
    const auto list = stations({heard({.bssid = {2, 1, 2, 3, 4, 5},
                                       .frequencyMhz = 5180,
                                       .signalMbm = -6150,
                                       .capability = PRIVACY | ACCESS_POINT,
                                       .beaconInterval = 200,
                                       .timestamp = 0x1122334455667788,
                                       .lastSeenNs = BOOT_TIME - 1500 * MS,
                                       .elements = elements})});
    ASSERT_EQ(list.size(), 1U);
    const WLAN_BSS_ENTRY& entry = list[0].entry;
    EXPECT_EQ(ssidBytes(entry.dot11Ssid), "Lab");
    EXPECT_EQ(entry.uPhyId, 0U);
    EXPECT_THAT(entry.dot11Bssid, ElementsAre(2, 1, 2, 3, 4, 5));
    EXPECT_EQ(entry.dot11BssType, dot11_BSS_type_infrastructure);
    EXPECT_EQ(entry.dot11BssPhyType, dot11_phy_type_ofdm);
    EXPECT_EQ(entry.lRssi, -62);
    EXPECT_EQ(entry.uLinkQuality, 76U);
    EXPECT_EQ(entry.bInRegDomain, 1);
    EXPECT_EQ(entry.usBeaconPeriod, 200);
    EXPECT_EQ(entry.ullTimestamp, 0x1122334455667788U);
    EXPECT_EQ(entry.ullHostTimestamp, NOW - 15'000'000) << "1.5 s ago";
    EXPECT_EQ(entry.usCapabilityInformation, PRIVACY | ACCESS_POINT);
    EXPECT_EQ(entry.ulChCenterFrequency, 5180000U);
    EXPECT_EQ(entry.wlanRateSet.uRateSetLength, 4U);
    EXPECT_EQ(entry.wlanRateSet.usRateSet[0], 0x800C);
    EXPECT_EQ(list[0].elements, elements);
}

TEST(StationList, HasTheElementsOfEachBehindAllEntries) {
    const auto list = stations({
        heard({.elements = name("first")}),
        heard({.elements = element(221, Bytes(255, 9))}),
        heard({.elements = join({name("third"), Bytes{1, 200, 3}})}),
    });
    ASSERT_EQ(list.size(), 3U);
    EXPECT_EQ(list[0].entry.ulIeOffset, 3 * sizeof(WLAN_BSS_ENTRY));
    EXPECT_EQ(list[0].elements, name("first"));
    EXPECT_EQ(list[1].elements.size(), 257U);
    EXPECT_EQ(list[2].elements, join({name("third"), Bytes{1, 200, 3}})) << "raw, as they came";
}

TEST(StationList, HasOldEntriesTooWithTheTimeWhenTheyWereHeard) {
    const auto list = stations({
        heard({.lastSeenNs = 0}),
        heard({.ageMs = 60'000}),
        heard({}),
        heard({.lastSeenNs = BOOT_TIME + MS}),
    });
    ASSERT_EQ(list.size(), 4U);
    EXPECT_EQ(list[0].entry.ullHostTimestamp, NOW - BOOT_TIME / 100);
    EXPECT_EQ(list[1].entry.ullHostTimestamp, NOW - 600'000'000);
    EXPECT_EQ(list[2].entry.ullHostTimestamp, NOW);
    EXPECT_EQ(list[3].entry.ullHostTimestamp, NOW);
}

TEST(StationList, GivesASilentDriverTheLeastLevel) {
    const auto list = stations({heard({.signalMbm = std::nullopt})});
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list[0].entry.lRssi, -100);
    EXPECT_EQ(list[0].entry.uLinkQuality, 0U);
}

TEST(StationList, HasOnlyTheNetworkThatIsAskedFor) {
    const std::vector<Bss> all = {
        heard({.bssid = {2, 0, 0, 0, 0, 1}}),
        heard({.bssid = {2, 0, 0, 0, 0, 2}, .elements = join({name("Lab"), rsn()})}),
        heard({.bssid = {2, 0, 0, 0, 0, 3}, .capability = AD_HOC}),
        heard({.bssid = {2, 0, 0, 0, 0, 4}, .elements = name("Lab2")}),
        heard({.bssid = {2, 0, 0, 0, 0, 5}, .elements = element(0, {})}),
    };
    const auto found = [&all](const char* ssid, DOT11_BSS_TYPE type, bool secured) {
        const DOT11_SSID wanted = toSsid(ssid);
        std::vector<int> numbers;
        for (const Entry& each : entriesIn(bssList(all, &wanted, type, secured, BOOT_TIME, NOW))) {
            numbers.push_back(each.entry.dot11Bssid[5]);
        }
        return numbers;
    };
    EXPECT_THAT(found("Lab", dot11_BSS_type_infrastructure, false), ElementsAre(1));
    EXPECT_THAT(found("Lab", dot11_BSS_type_infrastructure, true), ElementsAre(2));
    EXPECT_THAT(found("Lab", dot11_BSS_type_independent, false), ElementsAre(3));
    EXPECT_THAT(found("", dot11_BSS_type_infrastructure, false), ElementsAre(5));
    EXPECT_THAT(found("lab", dot11_BSS_type_infrastructure, false), IsEmpty());
    EXPECT_EQ(stations(all).size(), 5U);
}

} // namespace
} // namespace nativewifi::linux_radio
