// The types and constants of the Native Wifi client interface.
//
// On Windows they are the system headers' own. Elsewhere they are declared here as documented, with
// types of the same width, as far as this project uses them. Both are held against the same sizes.
#pragma once

#include <cstddef>

#ifdef _WIN32

// wlanapi.h needs windows.h before it.
// clang-format off
#include <windows.h>
#include <wlanapi.h>
#include <rpc.h>
// clang-format on

#else

#include <cstdint>

using BYTE = std::uint8_t;
using UCHAR = std::uint8_t;
using BOOLEAN = std::uint8_t;
using USHORT = std::uint16_t;
using WCHAR = char16_t;
using BOOL = std::int32_t;
using LONG = std::int32_t;
using DWORD = std::uint32_t;
using ULONG = std::uint32_t;
using ULONGLONG = std::uint64_t;
using PVOID = void*;
using HANDLE = void*;
using RPC_STATUS = LONG;

#define WINAPI
#define CALLBACK

constexpr BOOL FALSE = 0;
constexpr BOOL TRUE = 1;

struct GUID {
    DWORD Data1;
    USHORT Data2;
    USHORT Data3;
    UCHAR Data4[8];
};

constexpr DWORD ERROR_SUCCESS = 0;
constexpr DWORD ERROR_FILE_NOT_FOUND = 2;
constexpr DWORD ERROR_ACCESS_DENIED = 5;
constexpr DWORD ERROR_INVALID_HANDLE = 6;
constexpr DWORD ERROR_NOT_ENOUGH_MEMORY = 8;
constexpr DWORD ERROR_BAD_CONFIGURATION = 1610;
constexpr DWORD ERROR_NOT_SUPPORTED = 50;
constexpr DWORD ERROR_INVALID_PARAMETER = 87;
constexpr DWORD ERROR_BUSY = 170;
constexpr DWORD ERROR_MOD_NOT_FOUND = 126;
constexpr DWORD ERROR_PROC_NOT_FOUND = 127;
constexpr DWORD ERROR_NOT_FOUND = 1168;
constexpr DWORD ERROR_TIMEOUT = 1460;
constexpr DWORD ERROR_SERVICE_NOT_ACTIVE = 1062;
constexpr DWORD ERROR_REMOTE_SESSION_LIMIT_EXCEEDED = 1220;
constexpr DWORD ERROR_GEN_FAILURE = 31;
constexpr DWORD ERROR_INVALID_STATE = 5023;
constexpr RPC_STATUS RPC_S_OK = 0;
constexpr RPC_STATUS RPC_S_OUT_OF_MEMORY = 14;
constexpr RPC_STATUS RPC_S_INVALID_STRING_UUID = 1705;

using WLAN_REASON_CODE = DWORD;
using WLAN_SIGNAL_QUALITY = ULONG;
using DOT11_MAC_ADDRESS = UCHAR[6];
using DOT11_COUNTRY_OR_REGION_STRING = UCHAR[3];

constexpr ULONG DOT11_SSID_MAX_LENGTH = 32;
constexpr DWORD WLAN_MAX_NAME_LENGTH = 256;
constexpr DWORD WLAN_MAX_PHY_TYPE_NUMBER = 8;
constexpr DWORD WLAN_MAX_PHY_INDEX = 64;
constexpr DWORD DOT11_RATE_SET_MAX_LENGTH = 126;

constexpr DWORD WLAN_NOTIFICATION_SOURCE_NONE = 0;
constexpr DWORD WLAN_NOTIFICATION_SOURCE_ONEX = 0x4;
constexpr DWORD WLAN_NOTIFICATION_SOURCE_ACM = 0x8;
constexpr DWORD WLAN_NOTIFICATION_SOURCE_MSM = 0x10;
constexpr DWORD WLAN_NOTIFICATION_SOURCE_SECURITY = 0x20;
constexpr DWORD WLAN_NOTIFICATION_SOURCE_IHV = 0x40;
constexpr DWORD WLAN_NOTIFICATION_SOURCE_HNWK = 0x80;
constexpr DWORD WLAN_NOTIFICATION_SOURCE_ALL = 0xFFFF;

// Unscoped with a fixed width: the values come from a driver and need not be among the names.
enum WLAN_NOTIFICATION_ACM : std::int32_t {
    wlan_notification_acm_scan_complete = 7,
    wlan_notification_acm_scan_fail = 8,
};

enum DOT11_RADIO_STATE : std::int32_t {
    dot11_radio_state_unknown = 0,
    dot11_radio_state_on = 1,
    dot11_radio_state_off = 2,
};

enum DOT11_BSS_TYPE : std::int32_t {
    dot11_BSS_type_infrastructure = 1,
    dot11_BSS_type_independent = 2,
    dot11_BSS_type_any = 3,
};

enum DOT11_PHY_TYPE : std::int32_t {
    dot11_phy_type_unknown = 0,
    dot11_phy_type_dsss = 2,
    dot11_phy_type_ofdm = 4,
    dot11_phy_type_hrdsss = 5,
    dot11_phy_type_erp = 6,
    dot11_phy_type_ht = 7,
};

enum DOT11_AUTH_ALGORITHM : std::int32_t {
    DOT11_AUTH_ALGO_80211_OPEN = 1,
    DOT11_AUTH_ALGO_80211_SHARED_KEY = 2,
    DOT11_AUTH_ALGO_WPA = 3,
    DOT11_AUTH_ALGO_WPA_PSK = 4,
    DOT11_AUTH_ALGO_WPA_NONE = 5,
    DOT11_AUTH_ALGO_RSNA = 6,
    DOT11_AUTH_ALGO_RSNA_PSK = 7,
    DOT11_AUTH_ALGO_IHV_START = static_cast<std::int32_t>(0x80000000),
};

enum DOT11_CIPHER_ALGORITHM : std::int32_t {
    DOT11_CIPHER_ALGO_NONE = 0x00,
    DOT11_CIPHER_ALGO_WEP40 = 0x01,
    DOT11_CIPHER_ALGO_TKIP = 0x02,
    DOT11_CIPHER_ALGO_CCMP = 0x04,
    DOT11_CIPHER_ALGO_WEP104 = 0x05,
    DOT11_CIPHER_ALGO_WEP = 0x101,
    DOT11_CIPHER_ALGO_IHV_START = static_cast<std::int32_t>(0x80000000),
};

enum WLAN_INTERFACE_STATE : std::int32_t {
    wlan_interface_state_not_ready = 0,
    wlan_interface_state_connected = 1,
    wlan_interface_state_ad_hoc_network_formed = 2,
    wlan_interface_state_disconnecting = 3,
    wlan_interface_state_disconnected = 4,
    wlan_interface_state_associating = 5,
    wlan_interface_state_discovering = 6,
    wlan_interface_state_authenticating = 7,
};

enum WLAN_CONNECTION_MODE : std::int32_t {
    wlan_connection_mode_profile = 0,
};

enum WLAN_OPCODE_VALUE_TYPE : std::int32_t {
    wlan_opcode_value_type_query_only = 0,
};

enum WLAN_INTF_OPCODE : std::int32_t {
    wlan_intf_opcode_autoconf_enabled = 1,
    wlan_intf_opcode_background_scan_enabled = 2,
    wlan_intf_opcode_media_streaming_mode = 3,
    wlan_intf_opcode_radio_state = 4,
    wlan_intf_opcode_bss_type = 5,
    wlan_intf_opcode_interface_state = 6,
    wlan_intf_opcode_current_connection = 7,
    wlan_intf_opcode_channel_number = 8,
    wlan_intf_opcode_supported_infrastructure_auth_cipher_pairs = 9,
    wlan_intf_opcode_supported_adhoc_auth_cipher_pairs = 10,
    wlan_intf_opcode_supported_country_or_region_string_list = 11,
    wlan_intf_opcode_current_operation_mode = 12,
    wlan_intf_opcode_statistics = 0x10000101,
    wlan_intf_opcode_rssi = 0x10000102,
};

struct DOT11_SSID {
    ULONG uSSIDLength;
    UCHAR ucSSID[DOT11_SSID_MAX_LENGTH];
};

struct DOT11_AUTH_CIPHER_PAIR {
    DOT11_AUTH_ALGORITHM AuthAlgoId;
    DOT11_CIPHER_ALGORITHM CipherAlgoId;
};

struct WLAN_AUTH_CIPHER_PAIR_LIST {
    DWORD dwNumberOfItems;
    DOT11_AUTH_CIPHER_PAIR pAuthCipherPairList[1];
};

struct WLAN_COUNTRY_OR_REGION_STRING_LIST {
    DWORD dwNumberOfItems;
    DOT11_COUNTRY_OR_REGION_STRING pCountryOrRegionStringList[1];
};

struct WLAN_ASSOCIATION_ATTRIBUTES {
    DOT11_SSID dot11Ssid;
    DOT11_BSS_TYPE dot11BssType;
    DOT11_MAC_ADDRESS dot11Bssid;
    DOT11_PHY_TYPE dot11PhyType;
    ULONG uDot11PhyIndex;
    WLAN_SIGNAL_QUALITY wlanSignalQuality;
    ULONG ulRxRate;
    ULONG ulTxRate;
};

struct WLAN_SECURITY_ATTRIBUTES {
    BOOL bSecurityEnabled;
    BOOL bOneXEnabled;
    DOT11_AUTH_ALGORITHM dot11AuthAlgorithm;
    DOT11_CIPHER_ALGORITHM dot11CipherAlgorithm;
};

struct WLAN_CONNECTION_ATTRIBUTES {
    WLAN_INTERFACE_STATE isState;
    WLAN_CONNECTION_MODE wlanConnectionMode;
    WCHAR strProfileName[WLAN_MAX_NAME_LENGTH];
    WLAN_ASSOCIATION_ATTRIBUTES wlanAssociationAttributes;
    WLAN_SECURITY_ATTRIBUTES wlanSecurityAttributes;
};

struct WLAN_AVAILABLE_NETWORK {
    WCHAR strProfileName[WLAN_MAX_NAME_LENGTH];
    DOT11_SSID dot11Ssid;
    DOT11_BSS_TYPE dot11BssType;
    ULONG uNumberOfBssids;
    BOOL bNetworkConnectable;
    WLAN_REASON_CODE wlanNotConnectableReason;
    ULONG uNumberOfPhyTypes;
    DOT11_PHY_TYPE dot11PhyTypes[WLAN_MAX_PHY_TYPE_NUMBER];
    BOOL bMorePhyTypes;
    WLAN_SIGNAL_QUALITY wlanSignalQuality;
    BOOL bSecurityEnabled;
    DOT11_AUTH_ALGORITHM dot11DefaultAuthAlgorithm;
    DOT11_CIPHER_ALGORITHM dot11DefaultCipherAlgorithm;
    DWORD dwFlags;
    DWORD dwReserved;
};

struct WLAN_AVAILABLE_NETWORK_LIST {
    DWORD dwNumberOfItems;
    DWORD dwIndex;
    WLAN_AVAILABLE_NETWORK Network[1];
};

struct WLAN_INTERFACE_INFO {
    GUID InterfaceGuid;
    WCHAR strInterfaceDescription[WLAN_MAX_NAME_LENGTH];
    WLAN_INTERFACE_STATE isState;
};

struct WLAN_INTERFACE_INFO_LIST {
    DWORD dwNumberOfItems;
    DWORD dwIndex;
    WLAN_INTERFACE_INFO InterfaceInfo[1];
};

struct WLAN_RATE_SET {
    ULONG uRateSetLength;
    USHORT usRateSet[DOT11_RATE_SET_MAX_LENGTH];
};

struct WLAN_BSS_ENTRY {
    DOT11_SSID dot11Ssid;
    ULONG uPhyId;
    DOT11_MAC_ADDRESS dot11Bssid;
    DOT11_BSS_TYPE dot11BssType;
    DOT11_PHY_TYPE dot11BssPhyType;
    LONG lRssi;
    ULONG uLinkQuality;
    BOOLEAN bInRegDomain;
    USHORT usBeaconPeriod;
    ULONGLONG ullTimestamp;
    ULONGLONG ullHostTimestamp;
    USHORT usCapabilityInformation;
    ULONG ulChCenterFrequency;
    WLAN_RATE_SET wlanRateSet;
    ULONG ulIeOffset;
    ULONG ulIeSize;
};

struct WLAN_BSS_LIST {
    DWORD dwTotalSize;
    DWORD dwNumberOfItems;
    WLAN_BSS_ENTRY wlanBssEntries[1];
};

struct WLAN_PHY_RADIO_STATE {
    DWORD dwPhyIndex;
    DOT11_RADIO_STATE dot11SoftwareRadioState;
    DOT11_RADIO_STATE dot11HardwareRadioState;
};

struct WLAN_RADIO_STATE {
    DWORD dwNumberOfPhys;
    WLAN_PHY_RADIO_STATE PhyRadioState[WLAN_MAX_PHY_INDEX];
};

struct WLAN_MAC_FRAME_STATISTICS {
    ULONGLONG ullTransmittedFrameCount;
    ULONGLONG ullReceivedFrameCount;
    ULONGLONG ullWEPExcludedCount;
    ULONGLONG ullTKIPLocalMICFailures;
    ULONGLONG ullTKIPReplays;
    ULONGLONG ullTKIPICVErrorCount;
    ULONGLONG ullCCMPReplays;
    ULONGLONG ullCCMPDecryptErrors;
    ULONGLONG ullWEPUndecryptableCount;
    ULONGLONG ullWEPICVErrorCount;
    ULONGLONG ullDecryptSuccessCount;
    ULONGLONG ullDecryptFailureCount;
};

struct WLAN_PHY_FRAME_STATISTICS {
    ULONGLONG ullTransmittedFrameCount;
    ULONGLONG ullMulticastTransmittedFrameCount;
    ULONGLONG ullFailedCount;
    ULONGLONG ullRetryCount;
    ULONGLONG ullMultipleRetryCount;
    ULONGLONG ullMaxTXLifetimeExceededCount;
    ULONGLONG ullTransmittedFragmentCount;
    ULONGLONG ullRTSSuccessCount;
    ULONGLONG ullRTSFailureCount;
    ULONGLONG ullACKFailureCount;
    ULONGLONG ullReceivedFrameCount;
    ULONGLONG ullMulticastReceivedFrameCount;
    ULONGLONG ullPromiscuousReceivedFrameCount;
    ULONGLONG ullMaxRXLifetimeExceededCount;
    ULONGLONG ullFrameDuplicateCount;
    ULONGLONG ullReceivedFragmentCount;
    ULONGLONG ullPromiscuousReceivedFragmentCount;
    ULONGLONG ullFCSErrorCount;
};

struct WLAN_STATISTICS {
    ULONGLONG ullFourWayHandshakeFailures;
    ULONGLONG ullTKIPCounterMeasuresInvoked;
    ULONGLONG ullReserved;
    WLAN_MAC_FRAME_STATISTICS MacUcastCounters;
    WLAN_MAC_FRAME_STATISTICS MacMcastCounters;
    DWORD dwNumberOfPhys;
    WLAN_PHY_FRAME_STATISTICS PhyCounters[1];
};

struct WLAN_RAW_DATA {
    DWORD dwDataSize;
    BYTE DataBlob[1];
};

struct WLAN_NOTIFICATION_DATA {
    DWORD NotificationSource;
    DWORD NotificationCode;
    GUID InterfaceGuid;
    DWORD dwDataSize;
    PVOID pData;
};

struct WLAN_CONNECTION_NOTIFICATION_DATA {
    WLAN_CONNECTION_MODE wlanConnectionMode;
    WCHAR strProfileName[WLAN_MAX_NAME_LENGTH];
    DOT11_SSID dot11Ssid;
    DOT11_BSS_TYPE dot11BssType;
    BOOL bSecurityEnabled;
    WLAN_REASON_CODE wlanReasonCode;
    DWORD dwFlags;
    WCHAR strProfileXml[1];
};

using WLAN_NOTIFICATION_CALLBACK = void (*)(WLAN_NOTIFICATION_DATA*, PVOID);

#endif

// Cross-compilers' headers lack these.
#ifdef _WIN32
#ifndef L2_NOTIFICATION_SOURCE_ALL
#define L2_NOTIFICATION_SOURCE_ALL 0xFFFF
#endif
#endif
#ifndef WLAN_AVAILABLE_NETWORK_CONNECTED
constexpr DWORD WLAN_AVAILABLE_NETWORK_CONNECTED = 0x1;
#endif
#ifndef WLAN_AVAILABLE_NETWORK_HAS_PROFILE
constexpr DWORD WLAN_AVAILABLE_NETWORK_HAS_PROFILE = 0x2;
#endif
#ifndef ERROR_NDIS_DOT11_POWER_STATE_INVALID
constexpr DWORD ERROR_NDIS_DOT11_POWER_STATE_INVALID = 0x80342002;
#endif

// Values that the interface has gained since; older headers of cross-compilers lack them, and an
// enumeration of a system header cannot be extended.
constexpr auto DOT11_AUTH_ALGO_WPA3 = static_cast<DOT11_AUTH_ALGORITHM>(8); // Enterprise, 192 bits
constexpr auto DOT11_AUTH_ALGO_WPA3_SAE = static_cast<DOT11_AUTH_ALGORITHM>(9);
constexpr auto DOT11_AUTH_ALGO_OWE = static_cast<DOT11_AUTH_ALGORITHM>(10);
constexpr auto DOT11_AUTH_ALGO_WPA3_ENT = static_cast<DOT11_AUTH_ALGORITHM>(11);
constexpr auto DOT11_CIPHER_ALGO_BIP = static_cast<DOT11_CIPHER_ALGORITHM>(0x06);
constexpr auto DOT11_CIPHER_ALGO_GCMP = static_cast<DOT11_CIPHER_ALGORITHM>(0x08);
constexpr auto DOT11_CIPHER_ALGO_GCMP_256 = static_cast<DOT11_CIPHER_ALGORITHM>(0x09);
constexpr auto DOT11_CIPHER_ALGO_CCMP_256 = static_cast<DOT11_CIPHER_ALGORITHM>(0x0a);
constexpr auto dot11_phy_type_vht = static_cast<DOT11_PHY_TYPE>(8);
constexpr auto dot11_phy_type_dmg = static_cast<DOT11_PHY_TYPE>(9);
constexpr auto dot11_phy_type_he = static_cast<DOT11_PHY_TYPE>(10);
constexpr auto dot11_phy_type_eht = static_cast<DOT11_PHY_TYPE>(11);

// Since Windows 11 24H2: the quality of the connection, link by link.
constexpr auto wlan_intf_opcode_realtime_connection_quality = static_cast<WLAN_INTF_OPCODE>(19);

struct WLAN_REALTIME_CONNECTION_QUALITY_LINK_INFO {
    UCHAR ucLinkID;
    ULONG ulChannelCenterFrequencyMhz; ///< documented in kHz, named in MHz: systems differ
    ULONG ulBandwidth;
    LONG lRssi; ///< dBm
    WLAN_RATE_SET wlanRateSet;
};

struct WLAN_REALTIME_CONNECTION_QUALITY {
    DOT11_PHY_TYPE dot11PhyType;
    ULONG ulLinkQuality; ///< percent
    ULONG ulRxRate;      ///< kbit/s
    ULONG ulTxRate;      ///< kbit/s
    BOOL bIsMLOConnection;
    ULONG ulNumLinks;
    WLAN_REALTIME_CONNECTION_QUALITY_LINK_INFO linksInfo[1];
};

static_assert(sizeof(GUID) == 16);
static_assert(sizeof(DOT11_SSID) == 36);
static_assert(sizeof(WLAN_AVAILABLE_NETWORK) == 628);
static_assert(sizeof(WLAN_BSS_ENTRY) == 360);
static_assert(sizeof(WLAN_INTERFACE_INFO) == 532);
static_assert(sizeof(WLAN_ASSOCIATION_ATTRIBUTES) == 68);
static_assert(sizeof(WLAN_CONNECTION_ATTRIBUTES) == 604);
static_assert(sizeof(WLAN_RADIO_STATE) == 772);
static_assert(sizeof(WLAN_PHY_RADIO_STATE) == 12);
static_assert(sizeof(WLAN_STATISTICS) == 368);
static_assert(sizeof(WLAN_NOTIFICATION_DATA) == 40);
static_assert(sizeof(WLAN_CONNECTION_NOTIFICATION_DATA) == 572);
static_assert(sizeof(WLAN_REALTIME_CONNECTION_QUALITY_LINK_INFO) == 272);
static_assert(sizeof(WLAN_REALTIME_CONNECTION_QUALITY) == 296);
static_assert(offsetof(WLAN_AVAILABLE_NETWORK, dot11Ssid) == 512);
static_assert(offsetof(WLAN_AVAILABLE_NETWORK, dot11BssType) == 548);
static_assert(offsetof(WLAN_AVAILABLE_NETWORK, wlanSignalQuality) == 604);
static_assert(offsetof(WLAN_AVAILABLE_NETWORK, dwFlags) == 620);
static_assert(offsetof(WLAN_AVAILABLE_NETWORK_LIST, Network) == 8);
static_assert(offsetof(WLAN_BSS_ENTRY, dot11Bssid) == 40);
static_assert(offsetof(WLAN_BSS_ENTRY, uLinkQuality) == 60);
static_assert(offsetof(WLAN_BSS_ENTRY, wlanRateSet) == 96);
static_assert(offsetof(WLAN_BSS_LIST, wlanBssEntries) == 8);
static_assert(offsetof(WLAN_INTERFACE_INFO, isState) == 528);
static_assert(offsetof(WLAN_INTERFACE_INFO_LIST, InterfaceInfo) == 8);
static_assert(offsetof(WLAN_ASSOCIATION_ATTRIBUTES, dot11Bssid) == 40);
static_assert(offsetof(WLAN_ASSOCIATION_ATTRIBUTES, wlanSignalQuality) == 56);
static_assert(offsetof(WLAN_CONNECTION_ATTRIBUTES, wlanAssociationAttributes) == 520);
static_assert(offsetof(WLAN_RADIO_STATE, PhyRadioState) == 4);
static_assert(offsetof(WLAN_NOTIFICATION_DATA, InterfaceGuid) == 8);
static_assert(offsetof(WLAN_NOTIFICATION_DATA, pData) == 32);
static_assert(offsetof(WLAN_STATISTICS, PhyCounters) == 224);
static_assert(offsetof(WLAN_REALTIME_CONNECTION_QUALITY, linksInfo) == 24);
