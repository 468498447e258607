#include "Shown.h"

#include "Blocks.h"

#include <nativewifi/Api.h>
#include <nativewifi/Guid.h>
#include <nativewifi/Ssid.h>

#include <mrl/Unicode.h>

#include <algorithm>
#include <cstdio>

namespace capture {

namespace {

using mrl::Json;

struct Name {
    DWORD code;
    const char* name;
};

// From the table of functions: each documented error has the same name in every row.
constexpr Name resultNames[] = {
#define NATIVEWIFI_ERROR(code, meaning) {static_cast<DWORD>(code), #code},
#define CAPTURE_ERRORS(result, name, arguments, errors) errors
    NATIVEWIFI_WLAN_FUNCTIONS(CAPTURE_ERRORS) NATIVEWIFI_RPC_FUNCTIONS(CAPTURE_ERRORS)
#undef CAPTURE_ERRORS
#undef NATIVEWIFI_ERROR
};

#define CAPTURE_NAME(value)                                                                        \
    { static_cast<DWORD>(value), #value }
constexpr Name opcodeNames[] = {
    CAPTURE_NAME(wlan_intf_opcode_autoconf_enabled),
    CAPTURE_NAME(wlan_intf_opcode_background_scan_enabled),
    CAPTURE_NAME(wlan_intf_opcode_media_streaming_mode),
    CAPTURE_NAME(wlan_intf_opcode_radio_state),
    CAPTURE_NAME(wlan_intf_opcode_bss_type),
    CAPTURE_NAME(wlan_intf_opcode_interface_state),
    CAPTURE_NAME(wlan_intf_opcode_current_connection),
    CAPTURE_NAME(wlan_intf_opcode_channel_number),
    CAPTURE_NAME(wlan_intf_opcode_supported_infrastructure_auth_cipher_pairs),
    CAPTURE_NAME(wlan_intf_opcode_supported_adhoc_auth_cipher_pairs),
    CAPTURE_NAME(wlan_intf_opcode_supported_country_or_region_string_list),
    CAPTURE_NAME(wlan_intf_opcode_statistics),
    CAPTURE_NAME(wlan_intf_opcode_rssi),
};
constexpr Name stateNames[] = {
    CAPTURE_NAME(wlan_interface_state_not_ready),
    CAPTURE_NAME(wlan_interface_state_connected),
    CAPTURE_NAME(wlan_interface_state_ad_hoc_network_formed),
    CAPTURE_NAME(wlan_interface_state_disconnecting),
    CAPTURE_NAME(wlan_interface_state_disconnected),
    CAPTURE_NAME(wlan_interface_state_associating),
    CAPTURE_NAME(wlan_interface_state_discovering),
    CAPTURE_NAME(wlan_interface_state_authenticating),
};
constexpr Name radioNames[] = {
    CAPTURE_NAME(dot11_radio_state_unknown),
    CAPTURE_NAME(dot11_radio_state_on),
    CAPTURE_NAME(dot11_radio_state_off),
};
constexpr Name scanNames[] = {
    CAPTURE_NAME(wlan_notification_acm_scan_complete),
    CAPTURE_NAME(wlan_notification_acm_scan_fail),
};
#undef CAPTURE_NAME

// The name of the code, or the code itself.
template <std::size_t COUNT>
Json named(const Name (&names)[COUNT], DWORD code) {
    for (const Name& each : names) {
        if (each.code == code) {
            return each.name;
        }
    }
    return code;
}

template <std::size_t SIZE>
std::string fixed(const WCHAR (&text)[SIZE]) {
    return mrl::toUtf8(nativewifi::fixedText(text));
}

// The name as other programs show it: its bytes taken for UTF-8.
std::string ssid(const DOT11_SSID& name) {
    return std::string(nativewifi::ssidBytes(name));
}

std::string address(const DOT11_MAC_ADDRESS& bytes) {
    char text[18];
    std::snprintf(text, sizeof text, "%02x:%02x:%02x:%02x:%02x:%02x", bytes[0], bytes[1], bytes[2],
                  bytes[3], bytes[4], bytes[5]);
    return text;
}

Json shownItem(const WLAN_INTERFACE_INFO& info) {
    return {{"interface", mrl::toUtf8(nativewifi::guidText(info.InterfaceGuid).view())},
            {"description", fixed(info.strInterfaceDescription)},
            {"state", named(stateNames, static_cast<DWORD>(info.isState))}};
}

Json shownItem(const WLAN_AVAILABLE_NETWORK& network) {
    return {{"ssid", ssid(network.dot11Ssid)},
            {"profile", fixed(network.strProfileName)},
            {"quality", network.wlanSignalQuality},
            {"connected", (network.dwFlags & WLAN_AVAILABLE_NETWORK_CONNECTED) != 0}};
}

Json shownItem(const WLAN_BSS_ENTRY& entry) {
    return {{"ssid", ssid(entry.dot11Ssid)},
            {"bssid", address(entry.dot11Bssid)},
            {"quality", entry.uLinkQuality},
            {"rssi", entry.lRssi},
            {"frequency", entry.ulChCenterFrequency}};
}

template <typename Item>
Json shownList(const ListShape& shape, const Bytes& bytes) {
    Json list = Json::array();
    for (std::size_t i = 0; i < itemsIn(shape, bytes); ++i) {
        list.push_back(shownItem(structureAt<Item>(bytes, shape.begin + i * shape.item)));
    }
    return list;
}

Json shownList(const ListShape& shape, const Bytes& bytes) {
    switch (shape.item) {
    case sizeof(WLAN_INTERFACE_INFO):
        return shownList<WLAN_INTERFACE_INFO>(shape, bytes);
    case sizeof(WLAN_AVAILABLE_NETWORK):
        return shownList<WLAN_AVAILABLE_NETWORK>(shape, bytes);
    default:
        return shownList<WLAN_BSS_ENTRY>(shape, bytes);
    }
}

Json shownPhys(const Bytes& bytes) {
    const auto state = structureAt<WLAN_RADIO_STATE>(bytes, 0);
    Json phys = Json::array();
    for (DWORD i = 0; i < std::min<DWORD>(state.dwNumberOfPhys, WLAN_MAX_PHY_INDEX); ++i) {
        const WLAN_PHY_RADIO_STATE& phy = state.PhyRadioState[i];
        phys.push_back(
            {{"software", named(radioNames, static_cast<DWORD>(phy.dot11SoftwareRadioState))},
             {"hardware", named(radioNames, static_cast<DWORD>(phy.dot11HardwareRadioState))}});
    }
    return phys;
}

Json shownAnswer(DWORD opcode, const Bytes& bytes) {
    if (opcode == wlan_intf_opcode_radio_state && bytes.size() == sizeof(WLAN_RADIO_STATE)) {
        return {{"radio", shownPhys(bytes)}};
    }
    if (opcode == wlan_intf_opcode_current_connection &&
        bytes.size() == sizeof(WLAN_CONNECTION_ATTRIBUTES)) {
        const auto connection = structureAt<WLAN_CONNECTION_ATTRIBUTES>(bytes, 0);
        const WLAN_ASSOCIATION_ATTRIBUTES& association = connection.wlanAssociationAttributes;
        return {{"state", named(stateNames, static_cast<DWORD>(connection.isState))},
                {"profile", fixed(connection.strProfileName)},
                {"ssid", ssid(association.dot11Ssid)},
                {"bssid", address(association.dot11Bssid)},
                {"quality", association.wlanSignalQuality}};
    }
    if (bytes.size() == sizeof(DWORD)) {
        const auto value = structureAt<DWORD>(bytes, 0);
        return {{"value", opcode == wlan_intf_opcode_interface_state ? named(stateNames, value)
                                                                     : Json(value)}};
    }
    return Json::object();
}

} // namespace

Json shownResult(DWORD result) {
    if (result == ERROR_SUCCESS) {
        return "ERROR_SUCCESS";
    }
    const Json name = named(resultNames, result);
    return name.is_string() ? name : Json();
}

Json shownCall(const Call& call) {
    Json shown = Json::object();
    const auto opcode = call.request.arguments.find("opcode");
    const bool hasOpcode = opcode != call.request.arguments.end() && opcode->is_number_unsigned();
    const DWORD number = hasOpcode ? opcode->get<DWORD>() : 0;
    if (hasOpcode) {
        shown["opcode"] = named(opcodeNames, number);
    }
    if (!call.answer.block || !call.answer.block->bytes) {
        return shown;
    }
    if (const ListShape* shape = listShapeOf(call.request.function)) {
        shown["list"] = shownList(*shape, *call.answer.block->bytes);
    } else if (hasOpcode) {
        shown.update(shownAnswer(number, *call.answer.block->bytes));
    }
    return shown;
}

Json shownNotification(const Notification& notification) {
    if (notification.source != WLAN_NOTIFICATION_SOURCE_ACM) {
        return nullptr;
    }
    const Json name = named(scanNames, notification.code);
    return name.is_string() ? name : Json();
}

} // namespace capture
