#include "Client.h"

#include <nativewifi/ChannelWidth.h>

namespace radiosim {
namespace {

class BssList : public WithEngine {};

DOT11_SSID ssidOf(const std::string& name) {
    DOT11_SSID ssid{};
    ssid.uSSIDLength = static_cast<ULONG>(name.size());
    std::copy(name.begin(), name.end(), ssid.ucSSID);
    return ssid;
}

TEST_F(BssList, HasOneRadioForANetworkThatSaysNothingOfThem) {
    show({{.ssid = "Lab", .signal = 60U}, {.ssid = "Other", .signal = 0U}});
    const std::vector<WLAN_BSS_ENTRY> entries = bssEntries();
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(ssidText(entries[0].dot11Ssid), "Lab");
    EXPECT_EQ(entries[0].uLinkQuality, 60U);
    EXPECT_EQ(entries[0].lRssi, -70);
    EXPECT_EQ(entries[0].dot11BssType, dot11_BSS_type_infrastructure);
    EXPECT_EQ(entries[0].ulChCenterFrequency, 2437000U);
    EXPECT_EQ(entries[1].lRssi, -100);
    EXPECT_NE(std::memcmp(entries[0].dot11Bssid, entries[1].dot11Bssid, 6), 0);
}

TEST_F(BssList, HasEveryRadioWithValuesOfItsOwn) {
    show({{.ssid = "Lab",
           .signal = 60U,
           .bss = {{{.bssid = {2, 0, 0, 0, 0, 1}, .linkQuality = 30U, .rssi = -81, .channel = 44},
                    {.bssid = {2, 0, 0, 0, 0, 2}, .channel = 14}}}}});
    const std::vector<WLAN_BSS_ENTRY> entries = bssEntries();
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].uLinkQuality, 30U);
    EXPECT_EQ(entries[0].lRssi, -81);
    EXPECT_EQ(entries[0].ulChCenterFrequency, 5220000U);
    EXPECT_EQ(entries[0].dot11Bssid[5], 1);
    EXPECT_EQ(entries[1].uLinkQuality, 60U);
    EXPECT_EQ(entries[1].ulChCenterFrequency, 2484000U);
    EXPECT_EQ(networks().at(0).uNumberOfBssids, 2U);
}

TEST_F(BssList, HasNothingOfANetworkWithoutRadios) {
    show({{.ssid = "Lab", .bss = std::vector<Bss>{}}});
    EXPECT_TRUE(bssEntries().empty());
    EXPECT_EQ(names(), std::vector<std::string>{"Lab"});
}

TEST_F(BssList, StatesItsSizeAndKeepsTheInformationElementsInside) {
    show({{.ssid = "Lab"}, {.hidden = true}});
    nativewifi::WlanMemory<WLAN_BSS_LIST> block;
    ASSERT_EQ(bssList(block), ERROR_SUCCESS);
    const auto* const first = reinterpret_cast<const unsigned char*>(block.get());
    for (DWORD i = 0; i < block->dwNumberOfItems; ++i) {
        const WLAN_BSS_ENTRY& entry = block->wlanBssEntries[i];
        const auto* const element =
            reinterpret_cast<const unsigned char*>(&entry) + entry.ulIeOffset;
        ASSERT_LE(element + entry.ulIeSize, first + block->dwTotalSize);
        EXPECT_EQ(element[0], 0) << "the element of the name";
        EXPECT_EQ(element[1], entry.dot11Ssid.uSSIDLength);
        EXPECT_EQ(std::string(element + 2, element + 2 + element[1]), ssidText(entry.dot11Ssid));
    }
    EXPECT_EQ(engine().liveBytes(), block->dwTotalSize);
}

// The elements of each entry, read.
class AnnouncedElements : public BssList {
protected:
    std::vector<nativewifi::Elements> announced() {
        EXPECT_EQ(bssList(m_block), ERROR_SUCCESS);
        std::vector<nativewifi::Elements> all;
        for (DWORD i = 0; m_block && i < m_block->dwNumberOfItems; ++i) {
            const WLAN_BSS_ENTRY& entry = m_block->wlanBssEntries[i];
            const auto* const begin =
                reinterpret_cast<const std::uint8_t*>(&entry) + entry.ulIeOffset;
            all.push_back(nativewifi::readElements({begin, entry.ulIeSize}));
        }
        return all;
    }

private:
    nativewifi::WlanMemory<WLAN_BSS_LIST> m_block;
};

TEST_F(AnnouncedElements, SayTheSecurityOfTheNetwork) {
    const std::pair<DOT11_AUTH_ALGORITHM, DOT11_CIPHER_ALGORITHM> kinds[] = {
        {DOT11_AUTH_ALGO_WPA, DOT11_CIPHER_ALGO_TKIP},
        {DOT11_AUTH_ALGO_WPA_PSK, DOT11_CIPHER_ALGO_TKIP},
        {DOT11_AUTH_ALGO_RSNA, DOT11_CIPHER_ALGO_CCMP},
        {DOT11_AUTH_ALGO_RSNA_PSK, DOT11_CIPHER_ALGO_CCMP},
        {DOT11_AUTH_ALGO_WPA3_SAE, DOT11_CIPHER_ALGO_GCMP},
        {DOT11_AUTH_ALGO_OWE, DOT11_CIPHER_ALGO_CCMP}};
    std::vector<AccessPoint> accessPoints;
    for (const auto& [auth, cipher] : kinds) {
        accessPoints.push_back({.ssid = "Lab",
                                .auth = static_cast<std::int32_t>(auth),
                                .cipher = static_cast<std::int32_t>(cipher)});
    }
    show(accessPoints);
    const std::vector<nativewifi::Elements> all = announced();
    ASSERT_EQ(all.size(), std::size(kinds));
    for (std::size_t i = 0; i < all.size(); ++i) {
        const nativewifi::Security security = nativewifi::securityOf(all[i], 0x11);
        EXPECT_EQ(security.authentication, kinds[i].first);
        EXPECT_EQ(security.cipher, kinds[i].second);
    }
}

TEST_F(AnnouncedElements, SayTheWidthOfTheChannel) {
    std::vector<Bss> radios;
    for (const std::uint32_t width : {20U, 40U, 80U, 160U, 320U}) {
        radios.push_back({.channel = 36, .width = width});
    }
    show({{.ssid = "Lab", .bss = radios}});
    const std::vector<nativewifi::Elements> all = announced();
    ASSERT_EQ(all.size(), radios.size());
    for (std::size_t i = 0; i < all.size(); ++i) {
        EXPECT_EQ(nativewifi::widthOf(all[i]), radios[i].width);
    }
}

TEST_F(AnnouncedElements, AreThoseOfTheScenarioWhereItHasSome) {
    show({{.ssid = "Lab", .bss = {{{.elements = {{48, 1, 7}}}}}}});
    const std::vector<nativewifi::Elements> all = announced();
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0].ssid.size(), 3U);
    ASSERT_EQ(all[0].rsn.size(), 1U);
    EXPECT_EQ(all[0].rsn[0], 7);
    EXPECT_TRUE(all[0].rates.empty());
}

TEST_F(BssList, HasOnlyTheNetworkThatIsAskedFor) {
    show({{.ssid = "Lab"},
          {.ssid = "Other"},
          {.ssid = "Lab", .secured = false},
          {.ssid = "Lab", .bssType = dot11_BSS_type_independent}});
    DOT11_SSID lab = ssidOf("Lab");
    nativewifi::WlanMemory<WLAN_BSS_LIST> block;
    ASSERT_EQ(bssList(block, &lab, dot11_BSS_type_infrastructure, TRUE), ERROR_SUCCESS);
    EXPECT_EQ(block->dwNumberOfItems, 1U);
    ASSERT_EQ(bssList(block, &lab, dot11_BSS_type_independent, TRUE), ERROR_SUCCESS);
    EXPECT_EQ(block->dwNumberOfItems, 1U);
    EXPECT_EQ(block->wlanBssEntries[0].dot11BssType, dot11_BSS_type_independent);
}

TEST_F(BssList, ShowsNetworksOfOneScanOnly) {
    show({{.ssid = "New", .visible = Visible::AFTER_SCAN}});
    EXPECT_TRUE(bssEntries().empty());
    scan();
    clock().sleep(std::chrono::seconds(4));
    EXPECT_EQ(bssEntries().size(), 1U);
}

} // namespace
} // namespace radiosim
