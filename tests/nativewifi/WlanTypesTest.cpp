// Values that the declarations for other systems must share with the system's headers; the sizes
// are asserted where the types are declared.
#include <nativewifi/WlanTypes.h>

#include <gtest/gtest.h>

namespace {

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
    EXPECT_EQ(DOT11_AUTH_ALGO_WPA3, 8);
    EXPECT_EQ(DOT11_AUTH_ALGO_WPA3_SAE, 9);
    EXPECT_EQ(DOT11_AUTH_ALGO_OWE, 10);
    EXPECT_EQ(DOT11_AUTH_ALGO_WPA3_ENT, 11);
    EXPECT_EQ(static_cast<DWORD>(DOT11_AUTH_ALGO_IHV_START), 0x80000000U);
    EXPECT_EQ(DOT11_CIPHER_ALGO_GCMP, 8);
    EXPECT_EQ(DOT11_CIPHER_ALGO_GCMP_256, 9);
    EXPECT_EQ(DOT11_CIPHER_ALGO_CCMP_256, 10);
    EXPECT_EQ(dot11_phy_type_ofdm, 4);
    EXPECT_EQ(dot11_phy_type_vht, 8);
    EXPECT_EQ(dot11_phy_type_dmg, 9);
    EXPECT_EQ(dot11_phy_type_he, 10);
    EXPECT_EQ(dot11_phy_type_eht, 11);
    EXPECT_EQ(ERROR_NDIS_DOT11_POWER_STATE_INVALID, 0x80342002U);
    EXPECT_EQ(ERROR_INVALID_STATE, 5023);
    EXPECT_EQ(WLAN_AVAILABLE_NETWORK_CONNECTED, 1);
    EXPECT_EQ(WLAN_AVAILABLE_NETWORK_HAS_PROFILE, 2);
}

} // namespace
