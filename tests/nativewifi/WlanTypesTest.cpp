// Sizes and values that the declarations for other systems must share with the system's headers.
#include <nativewifi/WlanTypes.h>

#include <gtest/gtest.h>

namespace {

TEST(WlanTypes, HaveTheSizesOfX64) {
    EXPECT_EQ(sizeof(GUID), 16U);
    EXPECT_EQ(sizeof(DOT11_SSID), 36U);
    EXPECT_EQ(sizeof(WLAN_AVAILABLE_NETWORK), 628U);
    EXPECT_EQ(sizeof(WLAN_BSS_ENTRY), 360U);
    EXPECT_EQ(sizeof(WLAN_INTERFACE_INFO), 532U);
    EXPECT_EQ(sizeof(WLAN_ASSOCIATION_ATTRIBUTES), 68U);
    EXPECT_EQ(sizeof(WLAN_CONNECTION_ATTRIBUTES), 604U);
    EXPECT_EQ(sizeof(WLAN_RADIO_STATE), 772U);
    EXPECT_EQ(sizeof(WLAN_PHY_RADIO_STATE), 12U);
    EXPECT_EQ(sizeof(WLAN_STATISTICS), 368U);
    EXPECT_EQ(sizeof(WLAN_NOTIFICATION_DATA), 40U);
    EXPECT_EQ(sizeof(WLAN_AUTH_CIPHER_PAIR_LIST), 12U);
    EXPECT_EQ(sizeof(WLAN_COUNTRY_OR_REGION_STRING_LIST), 8U);
}

TEST(WlanTypes, BeginTheirListsWhereTheHeaderDoes) {
    EXPECT_EQ(offsetof(WLAN_INTERFACE_INFO_LIST, InterfaceInfo), 8U);
    EXPECT_EQ(offsetof(WLAN_AVAILABLE_NETWORK_LIST, Network), 8U);
    EXPECT_EQ(offsetof(WLAN_BSS_LIST, wlanBssEntries), 8U);
    EXPECT_EQ(offsetof(WLAN_RADIO_STATE, PhyRadioState), 4U);
    EXPECT_EQ(offsetof(WLAN_AUTH_CIPHER_PAIR_LIST, pAuthCipherPairList), 4U);
    EXPECT_EQ(offsetof(WLAN_STATISTICS, PhyCounters), 224U);
}

TEST(WlanTypes, HaveTheDocumentedValues) {
    EXPECT_EQ(wlan_intf_opcode_autoconf_enabled, 1);
    EXPECT_EQ(wlan_intf_opcode_current_connection, 7);
    EXPECT_EQ(wlan_intf_opcode_supported_country_or_region_string_list, 11);
    EXPECT_EQ(wlan_intf_opcode_statistics, 0x10000101);
    EXPECT_EQ(wlan_intf_opcode_rssi, 0x10000102);
    EXPECT_EQ(wlan_notification_acm_scan_complete, 7);
    EXPECT_EQ(wlan_notification_acm_scan_fail, 8);
    EXPECT_EQ(WLAN_NOTIFICATION_SOURCE_ACM, 8);
    EXPECT_EQ(WLAN_NOTIFICATION_SOURCE_MSM, 0x10);
    EXPECT_EQ(WLAN_NOTIFICATION_SOURCE_ALL, 0xFFFF);
    EXPECT_EQ(DOT11_CIPHER_ALGO_WEP, 0x101);
    EXPECT_EQ(ERROR_NDIS_DOT11_POWER_STATE_INVALID, 0x80342002U);
    EXPECT_EQ(ERROR_INVALID_STATE, 5023);
    EXPECT_EQ(WLAN_AVAILABLE_NETWORK_CONNECTED, 1);
    EXPECT_EQ(WLAN_AVAILABLE_NETWORK_HAS_PROFILE, 2);
}

} // namespace
