// What a Linux radio does beyond the Native Wifi interface: opcodes of WlanQueryInterface and
// WlanSetInterface in the range that the interface leaves to vendors of adapters.
//
// Windows must not be asked for them: there a driver may use the same numbers for its own.
#pragma once

#include <nativewifi/WlanTypes.h>

namespace nativewifi {

constexpr std::size_t MAX_CHAINS = 8;

/// The level of each receive chain of one BSS, in dBm. A chain that is absent, or for which the
/// driver reports a number that stands for "none" (0 and above, -95, -110 and below), has no bit.
struct ChainLevels {
    DOT11_MAC_ADDRESS bssid;
    USHORT reserved;
    ULONG chains;              ///< a bit for each chain with a level; chain 0 is the lowest
    LONG levels[MAX_CHAINS];   ///< of the last frame; 0 without a bit
    ULONG averagedChains;      ///< a bit for each chain with an average
    LONG averages[MAX_CHAINS]; ///< the driver's moving averages; 0 without a bit
};

/// The levels of many, as many as the number says.
struct ChainLevelsList {
    DWORD dwNumberOfItems;
    ChainLevels items[1];
};

/// Answers ChainLevels of the current connection's access point.
/// Failure: ERROR_INVALID_STATE without a connection, ERROR_NOT_SUPPORTED when the driver reports
/// no chain.
/// Platform: NL80211_STA_INFO_CHAIN_SIGNAL, NL80211_STA_INFO_CHAIN_SIGNAL_AVG
constexpr auto wlan_intf_opcode_connection_chains = static_cast<WLAN_INTF_OPCODE>(0x30000001);

/// Answers a ChainLevelsList of the scan result: each BSS with at least one level, without
/// averages. Failure: ERROR_NOT_SUPPORTED when the driver reports no chain of any BSS. Platform:
/// NL80211_BSS_CHAIN_SIGNAL
constexpr auto wlan_intf_opcode_bss_chains = static_cast<WLAN_INTF_OPCODE>(0x30000002);

/// A scan of one channel.
struct ChannelScan {
    ULONG frequencyMhz; ///< the channel's centre, at 20 MHz
    DOT11_SSID ssid;    ///< of a directed probe; length 0 asks all networks
};

/// For WlanSetInterface, with a ChannelScan: starts the scan and returns at once, as WlanScan does.
/// Its end is notified in the same way.
/// Failure: as WlanScan; ERROR_INVALID_PARAMETER for a frequency that the radio cannot use or must
/// not use where it is
/// Platform: NL80211_CMD_TRIGGER_SCAN with NL80211_ATTR_SCAN_FREQUENCIES
constexpr auto wlan_intf_opcode_scan_channel = static_cast<WLAN_INTF_OPCODE>(0x30000003);

/// Answers a ULONG with a bit for each receive antenna in use; antenna 0 is the lowest, and chain n
/// is on antenna n.
/// Failure: ERROR_NOT_SUPPORTED when the driver does not report them
/// Platform: NL80211_ATTR_WIPHY_ANTENNA_RX, else NL80211_ATTR_WIPHY_ANTENNA_AVAIL_RX
constexpr auto wlan_intf_opcode_receive_antennas = static_cast<WLAN_INTF_OPCODE>(0x30000004);

static_assert(sizeof(ChainLevels) == 80);
static_assert(sizeof(ChannelScan) == 40);
static_assert(offsetof(ChainLevelsList, items) == 4);

} // namespace nativewifi
