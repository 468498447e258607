// The client handle, the queries and the radio of a wireless interface.
#include "WirelessDevice.h"

#include "ModuleObjects.h"
#include "ScanNotification.h"
#include "WirelessDeviceLog.h"

#include <nativewifi/Guid.h>
#include <nativewifi/Handles.h>
#include <nativewifi/Ssid.h>

#include <cstdint>

using mrl::String;
using nativewifi::api;

namespace {

constexpr const char* VIRTUAL_NAME = "VirtualDeviceSystemName";

String systemNameOf(const tesk5::DiagDevice& device) {
    const char* const property = WirelessDevice::systemNameProperty(device);
    if (property == VIRTUAL_NAME) {
        deviceLog() << "Found the VirtualDeviceSystemName property, so using that as the device "
                       "system name.";
    }
    return device.property(property).value().mrlString();
}

struct ErrorSentence {
    DWORD error;
    const char* sentence;
};
constexpr ErrorSentence queryErrors[] = {
    {ERROR_INVALID_PARAMETER,
     "Client Handle is NULL or invalid, Interface Guid is NULL, Reserved is not NULL, pointer of "
     "pointer to Data is NULL, or Data Size is NULL."},
    {ERROR_INVALID_HANDLE, "The handle to Client Handle was not found in the handle table."},
    {ERROR_INVALID_STATE,
     "The Op Code is set to wlan_intf_opcode_current_connection and the client is not currently "
     "connected to a network"},
    {ERROR_NOT_ENOUGH_MEMORY, "Failed to allocate memory for the query results."},
    {ERROR_ACCESS_DENIED, "The user does not have sufficient permissions to query the parameters"},
};

const char* queryErrorSentence(DWORD error) {
    for (const ErrorSentence& entry : queryErrors) {
        if (entry.error == error) {
            return entry.sentence;
        }
    }
    return "Unknown error code";
}

// What to expect of an opcode's answer and where to keep it. The sizes are exact: a list is taken
// only when it has one item.
struct QueryRule {
    WLAN_INTF_OPCODE opcode;
    DWORD size;
    void (*keep)(WirelessDevice& device, PVOID block);
};

template <BOOL WirelessDevice::*FIELD>
void keepWhetherAnswered(WirelessDevice& device, PVOID block) {
    device.*FIELD = block != nullptr ? TRUE : FALSE;
}
template <auto FIELD>
void keepBlock(WirelessDevice& device, PVOID block) {
    using Block = std::remove_reference_t<decltype(device.*FIELD)>;
    device.*FIELD = static_cast<Block>(block);
}
template <auto FIELD>
void keepLowAddressBits(WirelessDevice& device, PVOID block) {
    using Number = std::remove_reference_t<decltype(device.*FIELD)>;
    device.*FIELD = static_cast<Number>(reinterpret_cast<std::uintptr_t>(block));
}
void keepInterfaceState(WirelessDevice& device, PVOID block) {
    keepBlock<&WirelessDevice::m_interfaceStateData>(device, block);
    if (block != nullptr) {
        device.getInterfaceStateString(*device.m_interfaceStateData);
    }
}

static_assert(sizeof(WLAN_AUTH_CIPHER_PAIR_LIST) == 12);
static_assert(sizeof(WLAN_COUNTRY_OR_REGION_STRING_LIST) == 8);

const QueryRule queryRules[] = {
    {wlan_intf_opcode_autoconf_enabled, sizeof(BOOL),
     &keepWhetherAnswered<&WirelessDevice::m_autoconfEnabled>},
    {wlan_intf_opcode_background_scan_enabled, sizeof(BOOL),
     &keepWhetherAnswered<&WirelessDevice::m_backgroundScanEnabled>},
    {wlan_intf_opcode_media_streaming_mode, sizeof(BOOL),
     &keepWhetherAnswered<&WirelessDevice::m_mediaStreamingMode>},
    {wlan_intf_opcode_radio_state, sizeof(WLAN_RADIO_STATE),
     &keepBlock<&WirelessDevice::m_radioStateData>},
    {wlan_intf_opcode_bss_type, sizeof(DOT11_BSS_TYPE), &keepBlock<&WirelessDevice::m_bssTypeData>},
    {wlan_intf_opcode_interface_state, sizeof(WLAN_INTERFACE_STATE), &keepInterfaceState},
    {wlan_intf_opcode_current_connection, sizeof(WLAN_CONNECTION_ATTRIBUTES),
     &keepBlock<&WirelessDevice::m_connectionAttributes>},
    {wlan_intf_opcode_channel_number, sizeof(ULONG),
     &keepLowAddressBits<&WirelessDevice::m_channelNumber>},
    {wlan_intf_opcode_supported_infrastructure_auth_cipher_pairs,
     sizeof(WLAN_AUTH_CIPHER_PAIR_LIST), &keepBlock<&WirelessDevice::m_infrastructureCipherPairs>},
    {wlan_intf_opcode_supported_adhoc_auth_cipher_pairs, sizeof(WLAN_AUTH_CIPHER_PAIR_LIST),
     &keepBlock<&WirelessDevice::m_adhocCipherPairs>},
    {wlan_intf_opcode_supported_country_or_region_string_list,
     sizeof(WLAN_COUNTRY_OR_REGION_STRING_LIST),
     &keepBlock<&WirelessDevice::m_countryOrRegionList>},
    {wlan_intf_opcode_statistics, sizeof(WLAN_STATISTICS),
     &keepBlock<&WirelessDevice::m_statistics>},
    {wlan_intf_opcode_rssi, sizeof(LONG), &keepLowAddressBits<&WirelessDevice::m_rssi>},
};

struct StateWords {
    WLAN_INTERFACE_STATE state;
    const mrl::Char* words;
};
constexpr StateWords stateWords[] = {
    {wlan_interface_state_not_ready, MRL_TEXT("\"not ready\"")},
    {wlan_interface_state_connected, MRL_TEXT("\"connected\"")},
    {wlan_interface_state_ad_hoc_network_formed, MRL_TEXT("\"ad hoc network formed\"")},
    {wlan_interface_state_disconnecting, MRL_TEXT("\"disconnecting\"")},
    {wlan_interface_state_disconnected, MRL_TEXT("\"disconnected\"")},
    {wlan_interface_state_associating, MRL_TEXT("\"associating\"")},
    {wlan_interface_state_discovering, MRL_TEXT("\"discovering\"")},
    {wlan_interface_state_authenticating, MRL_TEXT("\"authenticating\"")},
};

// The words given out last. No code reads them.
constinit std::atomic<const mrl::Char*> g_lastInterfaceStateText{nullptr};

// An algorithm's words: its name in the standard, or a localized text.
struct AlgorithmWords {
    DOT11_AUTH_ALGORITHM algorithm;
    const mrl::Char* name;
    tesk5::LocalizedString* const* text;
};
constexpr AlgorithmWords algorithmWords[] = {
    {DOT11_AUTH_ALGO_80211_OPEN, nullptr, &texts::authenticationOpen},
    {DOT11_AUTH_ALGO_80211_SHARED_KEY, nullptr, &texts::authenticationSharedKey},
    {DOT11_AUTH_ALGO_WPA, MRL_TEXT("WPA"), nullptr},
    {DOT11_AUTH_ALGO_WPA_PSK, MRL_TEXT("WPA PSK"), nullptr},
    {DOT11_AUTH_ALGO_WPA_NONE, MRL_TEXT("WPA none"), nullptr},
    {DOT11_AUTH_ALGO_RSNA, MRL_TEXT("RSNA"), nullptr},
    {DOT11_AUTH_ALGO_RSNA_PSK, MRL_TEXT("RSNA PSK"), nullptr},
};

} // namespace

WirelessDevice::WirelessDevice(const tesk5::DiagDevice& device)
    : m_device(device), m_deviceSystemName(systemNameOf(device)),
      m_interfaceGuidText(nativewifi::guidTextOf(m_deviceSystemName)) {
    refreshRadio();
}

WirelessDevice::~WirelessDevice() {
    closeHandle();
}

const char* WirelessDevice::systemNameProperty(const tesk5::DiagDevice& device) {
    return device.property(VIRTUAL_NAME).exists() ? VIRTUAL_NAME : "DeviceSystemName";
}

bool WirelessDevice::initialize() {
    if (m_initialized) {
        return true;
    }
    const mrl::TraceLogger trace = deviceTrace("initialize()");
    if (!openHandle() || !isAPIVersionSupported()) {
        return false;
    }
    if (api().UuidFromStringW(m_interfaceGuidText.getUCS2Buffer(), &m_interfaceGuid) != RPC_S_OK) {
        return false;
    }
    return api().WlanRegisterNotification(m_clientHandle, WLAN_NOTIFICATION_SOURCE_ALL, TRUE,
                                          &scanNotificationCallback, nullptr, nullptr,
                                          nullptr) == ERROR_SUCCESS;
}

bool WirelessDevice::openHandle() {
    const mrl::TraceLogger trace = deviceTrace("openHandle()");
    closeHandle();
    m_handleOpen = api().WlanOpenHandle(nativewifi::CLIENT_VERSION, nullptr, &m_negotiatedVersion,
                                        &m_clientHandle) == ERROR_SUCCESS;
    return m_handleOpen;
}

bool WirelessDevice::isAPIVersionSupported() {
    const mrl::TraceLogger trace = deviceTrace("isAPIVersionSupported()");
    if (m_negotiatedVersion == nativewifi::CLIENT_VERSION) {
        return true;
    }
    deviceLog() << "The WLAN API version is not supported";
    return false;
}

void WirelessDevice::closeHandle() {
    const mrl::TraceLogger trace = deviceTrace("closeHandle()");
    if (m_clientHandle != nullptr) {
        api().WlanCloseHandle(m_clientHandle, nullptr);
    }
    m_clientHandle = nullptr;
    m_handleOpen = false;
}

bool WirelessDevice::queryWirelessLanInterface(const WLAN_INTF_OPCODE& opcode) {
    const mrl::TraceLogger trace = deviceTrace("queryWirelessLanInterface()");
    m_initialized = initialize();
    if (!m_initialized) {
        return false;
    }
    DWORD size = 0;
    PVOID block = nullptr;
    const DWORD result = api().WlanQueryInterface(m_clientHandle, &m_interfaceGuid, opcode, nullptr,
                                                  &size, &block, nullptr);
    if (result != ERROR_SUCCESS) {
        deviceLog() << queryErrorSentence(result);
        if (result == ERROR_INVALID_STATE) {
            m_errorText = texts::get(texts::errorInvalidState);
        }
        return false;
    }
    for (const QueryRule& rule : queryRules) {
        if (rule.opcode == opcode) {
            if (size != rule.size) {
                return false;
            }
            rule.keep(*this, block);
            break;
        }
    }
    return true;
}

bool WirelessDevice::queryNamed(WLAN_INTF_OPCODE opcode, const char* paddedName) {
    if (queryWirelessLanInterface(opcode)) {
        return true;
    }
    deviceLog() << "The queryWirelessLanInterface call with OPCODE " << paddedName << "failed";
    return false;
}

// Each name carries its own number of blanks before "failed": log readers compare these lines.

bool WirelessDevice::populateRadioState() {
    const mrl::TraceLogger trace = deviceTrace("populateRadioState()");
    return queryNamed(wlan_intf_opcode_radio_state, "wlan_intf_opcode_radio_state  ");
}

bool WirelessDevice::populateWLANConnectionAtrributes() {
    const mrl::TraceLogger trace = deviceTrace("populateWLANConnectionAtrributes()");
    return queryNamed(wlan_intf_opcode_current_connection,
                      "wlan_intf_opcode_current_connection    ");
}

bool WirelessDevice::isScanEnabled() {
    const mrl::TraceLogger trace = deviceTrace("isScanEnabled()");
    return queryNamed(wlan_intf_opcode_background_scan_enabled,
                      "wlan_intf_opcode_background_scan_enabled ") &&
           m_backgroundScanEnabled != FALSE;
}

bool WirelessDevice::refreshRadio() {
    if (!populateRadioState() || m_radioStateData == nullptr) {
        return false;
    }
    m_radio.update(*m_radioStateData);
    return true;
}

RadioStateFlags WirelessDevice::getRadioState(mrl::Int32 phyIndex) {
    const mrl::TraceLogger trace = deviceTrace("getRadioState()");
    return refreshRadio() ? m_radio.flags(phyIndex) : RADIO_STATE_NONE;
}

bool WirelessDevice::isRadioEnabled(mrl::Int32 phyIndex) {
    const mrl::TraceLogger trace = deviceTrace("isRadioEnabled()");
    return refreshRadio() && m_radio.isOn(phyIndex);
}

bool WirelessDevice::setRadioState(mrl::Uint32 phyIndex, bool enable) {
    const mrl::TraceLogger trace = deviceTrace("setRadioState()");
    m_initialized = initialize();
    if (!m_initialized) {
        return false;
    }
    WLAN_PHY_RADIO_STATE state{phyIndex, enable ? dot11_radio_state_on : dot11_radio_state_off,
                               dot11_radio_state_unknown};
    m_lastSetResult =
        api().WlanSetInterface(m_clientHandle, &m_interfaceGuid, wlan_intf_opcode_radio_state,
                               sizeof state, &state, nullptr);
    if (m_lastSetResult == ERROR_SUCCESS) {
        return true;
    }
    // One wording whatever the code, which is in m_lastSetResult.
    deviceLog() << "WlanSetInterface returned ERROR_INVALID_STATE when setting "
                   "wlan_intf_opcode_radio_state. The radio "
                << static_cast<mrl::Int32>(phyIndex) << " could not be enabled or disabled";
    return false;
}

bool WirelessDevice::enumerateInterfaces() {
    const mrl::TraceLogger trace = deviceTrace("enumerateInterfaces()");
    if (!initialize()) {
        return false;
    }
    // Never freed, as the blocks of queries are not.
    WLAN_INTERFACE_INFO_LIST* interfaces = nullptr;
    if (api().WlanEnumInterfaces(m_clientHandle, nullptr, &interfaces) != ERROR_SUCCESS ||
        interfaces == nullptr) {
        return false;
    }
    deviceLog() << "There are " << interfaces->dwNumberOfItems << " interfaces in the system.";
    for (DWORD i = 0; i < interfaces->dwNumberOfItems; ++i) {
        const WLAN_INTERFACE_INFO& listed = interfaces->InterfaceInfo[i];
        const mrl::CharView description = nativewifi::fixedText(listed.strInterfaceDescription);
        deviceLog() << "Interface : " << i;
        nativewifi::RpcText guid;
        if (api().UuidToStringW(&listed.InterfaceGuid, out(guid)) == RPC_S_OK) {
            deviceLog() << "GUID: " << guid.get();
        }
        if (nativewifi::sameGuid(listed.InterfaceGuid, m_interfaceGuid)) {
            m_interfaceDescription = String(description);
            deviceLog() << "Interface Description: " << description;
        } else {
            deviceLog() << "Interface Description -NOT USED-: " << description;
        }
        // getInterfaceStateString() sets m_connected: it follows the interfaces only while logging
        // is on.
        if (deviceLogger() != nullptr) {
            deviceLog() << "State: " << getInterfaceStateString(listed.isState);
        }
    }
    return true;
}

String WirelessDevice::getInterfaceDescription() {
    const mrl::TraceLogger trace = deviceTrace("getInterfaceDescription()");
    enumerateInterfaces();
    return m_interfaceDescription;
}

const mrl::Char* WirelessDevice::getInterfaceStateString(WLAN_INTERFACE_STATE state) {
    const mrl::TraceLogger trace = deviceTrace("getInterfaceStateString()");
    const mrl::Char* words = MRL_TEXT("invalid interface state");
    for (const StateWords& entry : stateWords) {
        if (entry.state == state) {
            words = entry.words;
        }
    }
    if (state == wlan_interface_state_connected) {
        m_connected = true;
    } else if (state == wlan_interface_state_disconnected) {
        m_connected = false;
    }
    g_lastInterfaceStateText = words;
    return words;
}

String WirelessDevice::getAuthAlgoString(DOT11_AUTH_ALGORITHM algorithm) {
    const mrl::TraceLogger trace = deviceTrace("getAuthAlgoString()");
    static String text;
    text.clear();
    for (const AlgorithmWords& entry : algorithmWords) {
        if (entry.algorithm == algorithm) {
            text = entry.name != nullptr ? String(entry.name) : texts::get(*entry.text);
            return text;
        }
    }
    text = texts::get(texts::unknownAuthenticationAlgorithm);
    return text;
}
