#include "Client.h"

namespace radiosim {
namespace {

using namespace std::chrono_literals;
using Names = std::vector<std::string>;

class NetworkList : public WithEngine {};

TEST_F(NetworkList, KeepsTheOrderAndTheDuplicatesOfTheScenario) {
    show({{.ssid = "Lab-5G"}, {.ssid = "Lab", .profile = "Lab"}, {.ssid = "Lab"}});
    EXPECT_EQ(names(), (Names{"Lab-5G", "Lab", "Lab"}));
}

TEST_F(NetworkList, ShowsWhatTheScenarioSaysOfANetwork) {
    show({{.ssid = "Lab",
           .signal = 61U,
           .profile = "Labör",
           .secured = true,
           .auth = DOT11_AUTH_ALGO_WPA_PSK,
           .cipher = DOT11_CIPHER_ALGO_TKIP,
           .bssType = dot11_BSS_type_independent,
           .connectable = false,
           .reason = 0x28002,
           .phyTypes = {4, 7},
           .bssidCount = 3}});
    const WLAN_AVAILABLE_NETWORK network = networks().at(0);
    EXPECT_EQ(mrl::toUtf8(network.strProfileName), "Labör");
    EXPECT_EQ(ssidText(network.dot11Ssid), "Lab");
    EXPECT_EQ(network.dot11BssType, dot11_BSS_type_independent);
    EXPECT_EQ(network.uNumberOfBssids, 3U);
    EXPECT_EQ(network.bNetworkConnectable, FALSE);
    EXPECT_EQ(network.wlanNotConnectableReason, 0x28002U);
    EXPECT_EQ(network.uNumberOfPhyTypes, 2U);
    EXPECT_EQ(network.dot11PhyTypes[1], dot11_phy_type_ht);
    EXPECT_EQ(network.bMorePhyTypes, FALSE);
    EXPECT_EQ(network.wlanSignalQuality, 61U);
    EXPECT_EQ(network.bSecurityEnabled, TRUE);
    EXPECT_EQ(network.dot11DefaultAuthAlgorithm, DOT11_AUTH_ALGO_WPA_PSK);
    EXPECT_EQ(network.dot11DefaultCipherAlgorithm, DOT11_CIPHER_ALGO_TKIP);
    EXPECT_EQ(network.dwFlags, WLAN_AVAILABLE_NETWORK_HAS_PROFILE);
    EXPECT_EQ(network.dwReserved, 0U);
}

TEST_F(NetworkList, SaysWhenThereAreMorePhyTypesThanFit) {
    show({{.ssid = "Lab", .phyTypes = std::vector<std::int32_t>(9, 7)}});
    EXPECT_EQ(networks().at(0).uNumberOfPhyTypes, 8U);
    EXPECT_EQ(networks().at(0).bMorePhyTypes, TRUE);
}

TEST_F(NetworkList, HasNoNameForAHiddenNetwork) {
    show({{.ssid = "Secret", .hidden = true}, {.hidden = true}});
    EXPECT_EQ(names(), (Names{"", ""}));
}

TEST_F(NetworkList, MarksTheEntryThatTheInterfaceIsConnectedTo) {
    start({.interfaces = {{.connection = Connection{.ssid = "Lab"},
                           .accessPoints = {{.ssid = "Lab"},
                                            {.ssid = "Lab", .profile = "Lab"},
                                            {.ssid = "Other", .profile = "Other"}}}}});
    EXPECT_EQ(networks().at(0).dwFlags, 0U);
    EXPECT_EQ(networks().at(1).dwFlags,
              WLAN_AVAILABLE_NETWORK_CONNECTED | WLAN_AVAILABLE_NETWORK_HAS_PROFILE);
    EXPECT_EQ(networks().at(2).dwFlags, WLAN_AVAILABLE_NETWORK_HAS_PROFILE);
}

TEST_F(NetworkList, MarksAsConnectedWhatTheScenarioMarks) {
    show({{.ssid = "Lab", .connected = true}, {.ssid = "Other"}});
    EXPECT_EQ(networks().at(0).dwFlags, WLAN_AVAILABLE_NETWORK_CONNECTED);
    EXPECT_EQ(networks().at(1).dwFlags, 0U);
}

TEST_F(NetworkList, FollowsTheSignalOverTime) {
    show({{.ssid = "Lab", .signal = Signal::Series{.values = {70, 71}, .step = 100ms}}});
    EXPECT_EQ(qualities(), std::vector<ULONG>{70});
    clock().sleep(100ms);
    EXPECT_EQ(qualities(), std::vector<ULONG>{71});
}

TEST_F(NetworkList, ShowsNetworksBeforeAndAfterAScan) {
    show({{.ssid = "Always"},
          {.ssid = "New", .visible = Visible::AFTER_SCAN},
          {.ssid = "Stale", .visible = Visible::BEFORE_SCAN}});
    EXPECT_EQ(names(), (Names{"Always", "Stale"}));
    ASSERT_EQ(scan(), ERROR_SUCCESS);
    clock().sleep(3999ms);
    EXPECT_EQ(names(), (Names{"Always", "Stale"})) << "the scan still runs";
    clock().sleep(1ms);
    EXPECT_EQ(names(), (Names{"Always", "New"}));
}

TEST_F(NetworkList, ShowsANetworkAfterTheSecondScan) {
    show({{.ssid = "Late", .visible = Visible::AFTER_SCAN, .scans = 2}});
    scan();
    clock().sleep(4s);
    EXPECT_TRUE(names().empty());
    scan();
    clock().sleep(4s);
    EXPECT_EQ(names(), Names{"Late"});
}

TEST_F(NetworkList, ServesTwoCallersWithOneScanWhileItRuns) {
    show({{.ssid = "Late", .visible = Visible::AFTER_SCAN, .scans = 2}});
    EXPECT_EQ(scan(), ERROR_SUCCESS);
    clock().sleep(1s);
    EXPECT_EQ(scan(), ERROR_SUCCESS);
    clock().sleep(10s);
    EXPECT_TRUE(names().empty());
}

TEST_F(NetworkList, StaysStaleAfterAScanThatFails) {
    start({.interfaces = {{.scanEnd = ScanEnd::FAIL,
                           .accessPoints = {{.ssid = "New", .visible = Visible::AFTER_SCAN}}}}});
    scan();
    clock().sleep(10s);
    EXPECT_TRUE(names().empty());
}

TEST_F(NetworkList, ShowsANetworkFromOneTimeToAnother) {
    show({{.ssid = "Visitor", .from = 100ms, .to = 200ms}});
    EXPECT_TRUE(names().empty());
    clock().sleep(100ms);
    EXPECT_EQ(names(), Names{"Visitor"});
    clock().sleep(100ms);
    EXPECT_TRUE(names().empty());
}

TEST_F(NetworkList, LeavesOutWhatIsInTheBssListAlone) {
    show({{.ssid = "Lab", .inNetworkList = false}, {.ssid = "Other"}});
    EXPECT_EQ(names(), Names{"Other"});
    EXPECT_EQ(bssEntries().size(), 2U);
}

TEST_F(NetworkList, FollowsAChangeWhileItRuns) {
    show({{.ssid = "Before"}});
    engine().setAccessPoints(0, {{.ssid = "After"}});
    EXPECT_EQ(names(), Names{"After"});
}

TEST_F(NetworkList, FailsWhenEveryRadioIsOff) {
    start({.interfaces = {
               {.phys = {{.software = 2}, {.hardware = 2}}, .accessPoints = {{.ssid = "Lab"}}}}});
    nativewifi::WlanMemory<WLAN_AVAILABLE_NETWORK_LIST> block;
    EXPECT_EQ(list(block), ERROR_NDIS_DOT11_POWER_STATE_INVALID);
    EXPECT_FALSE(block);
    nativewifi::WlanMemory<WLAN_BSS_LIST> bss;
    EXPECT_EQ(bssList(bss), ERROR_NDIS_DOT11_POWER_STATE_INVALID);
    EXPECT_EQ(scan(), ERROR_NDIS_DOT11_POWER_STATE_INVALID);
}

TEST_F(NetworkList, StaysWhileOneRadioIsOnOrOfUnknownState) {
    for (const std::vector<Phy>& phys : {std::vector<Phy>{{.software = 2}, {}},
                                         std::vector<Phy>{{.software = 0, .hardware = 0}}}) {
        start({.interfaces = {{.phys = phys, .accessPoints = {{.ssid = "Lab"}}}}});
        EXPECT_EQ(names(), Names{"Lab"});
    }
}

} // namespace
} // namespace radiosim
