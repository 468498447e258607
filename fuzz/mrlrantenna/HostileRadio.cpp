#include "HostileRadio.h"

#include <support/Require.h>
#include <support/SafeText.h>

#include <nativewifi/Guid.h>

#include <mrl/Unicode.h>

#include <cstring>

namespace fuzz {

namespace {

HostileRadio* g_radio = nullptr;
int g_client = 0; // its address is the client handle

constexpr std::uint32_t NETWORKS = 12;
constexpr std::uint32_t INTERFACES = 3;

// How many bytes the answer to a query has when it is right.
std::uint32_t rightSize(int opcode) {
    switch (opcode) {
    case wlan_intf_opcode_radio_state:
        return sizeof(WLAN_RADIO_STATE);
    case wlan_intf_opcode_current_connection:
        return sizeof(WLAN_CONNECTION_ATTRIBUTES);
    case 9:
    case 10:
        return 12;
    case 11:
        return 8;
    case 0x10000101:
        return 368;
    default:
        return 4;
    }
}

} // namespace

DWORD HostileRadio::answer() {
    // Mostly success, so that the code behind the first calls is reached.
    return m_input.number(0, 15) != 1
               ? ERROR_SUCCESS
               : m_input.number({ERROR_ACCESS_DENIED, ERROR_INVALID_HANDLE, ERROR_NOT_ENOUGH_MEMORY,
                                 ERROR_INVALID_PARAMETER, ERROR_INVALID_STATE,
                                 ERROR_NDIS_DOT11_POWER_STATE_INVALID});
}

void* HostileRadio::newBlock(std::size_t size, bool networkList) {
    void* memory = std::malloc(size); // exactly `size`: AddressSanitizer reports reads beyond it
    std::memset(memory, 0xA5, size);
    m_blocks.emplace(memory, Block{{memory, &std::free}, networkList});
    m_liveNetworkLists += networkList ? 1 : 0;
    return memory;
}

void HostileRadio::fill(DOT11_SSID& ssid) {
    m_input.fill(ssid.ucSSID);
    ssid.uSSIDLength = m_input.number({0, 1, 3, 32, 33, 0x80000000, 0xFFFFFFFF});
}

void HostileRadio::fill(WLAN_AVAILABLE_NETWORK& network) {
    fill(network.dot11Ssid);
    m_input.fill(network.strProfileName);
    network.dot11BssType = static_cast<DOT11_BSS_TYPE>(m_input.number({1, 2, 3}));
    network.uNumberOfBssids = m_input.number({0, 1});
    network.bNetworkConnectable = m_input.flag() ? TRUE : FALSE;
    network.wlanNotConnectableReason = m_input.number({0, 0x00010001});
    network.uNumberOfPhyTypes = m_input.number({1, 8, 9});
    network.wlanSignalQuality = m_input.number({0, 50, 100, 101});
    network.bSecurityEnabled = static_cast<BOOL>(m_input.number({0, 1}));
    network.dot11DefaultAuthAlgorithm = static_cast<DOT11_AUTH_ALGORITHM>(m_input.number({1, 7}));
    network.dwFlags = m_input.number({0, 1, 2, 3});
}

void HostileRadio::fill(WLAN_BSS_ENTRY& entry) {
    fill(entry.dot11Ssid);
    entry.uLinkQuality = m_input.number({0, 50, 100, 101});
    entry.wlanRateSet.uRateSetLength = m_input.number({0, 126, 0xFFFFFFFF});
    entry.ulIeOffset = m_input.number({0, sizeof(WLAN_BSS_ENTRY)});
    entry.ulIeSize = m_input.number({0});
}

void HostileRadio::fill(WLAN_INTERFACE_INFO& info) {
    info.InterfaceGuid = m_interface;
    info.InterfaceGuid.Data1 += m_input.number(0, 2); // this one or another
    m_input.fill(info.strInterfaceDescription);
    info.isState = static_cast<WLAN_INTERFACE_STATE>(m_input.number({1, 4}));
}

void HostileRadio::fill(WLAN_CONNECTION_ATTRIBUTES& attributes) {
    attributes.isState = static_cast<WLAN_INTERFACE_STATE>(m_input.number({1, 4}));
    m_input.fill(attributes.strProfileName);
    WLAN_ASSOCIATION_ATTRIBUTES& association = attributes.wlanAssociationAttributes;
    fill(association.dot11Ssid);
    association.wlanSignalQuality = m_input.number({0, 50, 100});
    association.ulRxRate = m_input.number({144400});
    association.ulTxRate = m_input.number({144400});
}

template <typename List, typename Item>
DWORD HostileRadio::answer(List** list, Item (List::*items)[1], DWORD List::*count,
                           std::uint32_t most) {
    if (const DWORD result = answer(); result != ERROR_SUCCESS) {
        return result;
    }
    *list = nullptr;
    if (m_input.number(0, 31) == 1) {
        return ERROR_SUCCESS;
    }
    const std::uint32_t room = m_input.number(0, most);
    const std::size_t head = sizeof(DWORD) * 2;
    constexpr bool isNetworkList = std::is_same_v<List, WLAN_AVAILABLE_NETWORK_LIST>;
    *list = static_cast<List*>(newBlock(head + room * sizeof(Item), isNetworkList));
    (*list)->*count = m_input.flag() ? m_input.number(0, room) : room;
    Item* const entries = (*list)->*items;
    for (std::uint32_t i = 0; i < room; ++i) {
        fill(entries[i]);
    }
    return ERROR_SUCCESS;
}

struct HostileRadio::Functions {
    static DWORD WlanOpenHandle(DWORD /*version*/, PVOID /*reserved*/, DWORD* negotiated,
                                HANDLE* handle) {
        const DWORD result = g_radio->answer();
        if (result == ERROR_SUCCESS) {
            *negotiated = g_radio->m_input.number(0, 7) != 1 ? 2 : g_radio->m_input.number({1});
            *handle = &g_client;
        }
        return result;
    }
    static DWORD WlanCloseHandle(HANDLE handle, PVOID /*reserved*/) {
        require(handle == &g_client, "a handle that is closed was opened");
        return g_radio->answer();
    }
    static DWORD WlanEnumInterfaces(HANDLE /*handle*/, PVOID /*reserved*/,
                                    WLAN_INTERFACE_INFO_LIST** list) {
        return g_radio->answer(list, &WLAN_INTERFACE_INFO_LIST::InterfaceInfo,
                               &WLAN_INTERFACE_INFO_LIST::dwNumberOfItems, INTERFACES);
    }
    static DWORD WlanQueryInterface(HANDLE /*handle*/, const GUID* /*interface*/,
                                    WLAN_INTF_OPCODE opcode, PVOID /*reserved*/, DWORD* size,
                                    PVOID* data, WLAN_OPCODE_VALUE_TYPE* /*type*/) {
        const DWORD result = g_radio->answer();
        if (result != ERROR_SUCCESS) {
            return result;
        }
        Input& input = g_radio->m_input;
        *size = input.number(0, 7) != 1 ? rightSize(opcode) : input.number(0, 1024);
        if (input.number(0, 31) == 1) {
            *data = nullptr;
            return result;
        }
        *data = g_radio->newBlock(*size);
        if (opcode == wlan_intf_opcode_current_connection && *size == rightSize(opcode)) {
            g_radio->fill(*static_cast<WLAN_CONNECTION_ATTRIBUTES*>(*data));
        } else {
            const std::string bytes = input.bytes(*size);
            std::memcpy(*data, bytes.data(), bytes.size());
        }
        return result;
    }
    static DWORD WlanSetInterface(HANDLE /*handle*/, const GUID* /*interface*/,
                                  WLAN_INTF_OPCODE /*opcode*/, DWORD /*size*/, const PVOID /*data*/,
                                  PVOID /*reserved*/) {
        return g_radio->answer();
    }
    static DWORD WlanRegisterNotification(HANDLE /*handle*/, DWORD /*source*/, BOOL /*ignore*/,
                                          WLAN_NOTIFICATION_CALLBACK callback, PVOID /*context*/,
                                          PVOID /*reserved*/, DWORD* /*previous*/) {
        const DWORD result = g_radio->answer();
        if (result == ERROR_SUCCESS) {
            g_radio->m_callback = callback;
        }
        return result;
    }
    static DWORD WlanGetAvailableNetworkList(HANDLE /*handle*/, const GUID* /*interface*/,
                                             DWORD /*flags*/, PVOID /*reserved*/,
                                             WLAN_AVAILABLE_NETWORK_LIST** list) {
        return g_radio->answer(list, &WLAN_AVAILABLE_NETWORK_LIST::Network,
                               &WLAN_AVAILABLE_NETWORK_LIST::dwNumberOfItems, NETWORKS);
    }
    static DWORD WlanReasonCodeToString(DWORD /*code*/, DWORD size, WCHAR* buffer,
                                        PVOID /*reserved*/) {
        const DWORD result = g_radio->answer();
        if (result == ERROR_SUCCESS) {
            WCHAR text[256];
            g_radio->m_input.fill(text);
            std::copy_n(text, std::min<std::size_t>(size, std::size(text)), buffer);
        }
        return result;
    }
    static void WlanFreeMemory(PVOID memory) {
        const auto known = g_radio->m_blocks.find(memory);
        require(known != g_radio->m_blocks.end(), "a block that is freed was handed out");
        g_radio->m_liveNetworkLists -= known->second.networkList ? 1 : 0;
        g_radio->m_blocks.erase(known);
    }
    static DWORD WlanScan(HANDLE /*handle*/, const GUID* /*interface*/, DOT11_SSID* /*ssid*/,
                          WLAN_RAW_DATA* /*element*/, PVOID /*reserved*/) {
        return g_radio->answer();
    }
    static DWORD WlanGetNetworkBssList(HANDLE /*handle*/, const GUID* /*interface*/,
                                       DOT11_SSID* /*ssid*/, DOT11_BSS_TYPE /*type*/,
                                       BOOL /*security*/, PVOID /*reserved*/,
                                       WLAN_BSS_LIST** list) {
        return g_radio->answer(list, &WLAN_BSS_LIST::wlanBssEntries,
                               &WLAN_BSS_LIST::dwNumberOfItems, NETWORKS);
    }
};

HostileRadio::HostileRadio(Input& input) : m_input(input), m_log(0) {
    g_radio = this;
    m_interface = *nativewifi::parseGuid(mrl::toUtf16(std::string_view(SYSTEM_NAME).substr(9, 36)));
    static_cast<nativewifi::RpcFunctions&>(m_table) = nativewifi::platformRpcFunctions();
#define HOSTILE_FUNCTION(result, name, arguments, errors) m_table.name = &Functions::name;
    NATIVEWIFI_WLAN_FUNCTIONS(HOSTILE_FUNCTION)
#undef HOSTILE_FUNCTION
    m_scope = std::make_unique<nativewifi::ScopedApi>(m_table);
}

HostileRadio::~HostileRadio() {
    m_scope.reset();
    g_radio = nullptr;
}

void HostileRadio::notify() {
    if (m_callback == nullptr) {
        return;
    }
    WLAN_NOTIFICATION_DATA data{};
    data.NotificationSource = m_input.number({WLAN_NOTIFICATION_SOURCE_ACM});
    data.NotificationCode = m_input.number({7, 8});
    data.dwDataSize = m_input.number();
    data.pData = nullptr; // whatever the size says: the module must not read it
    m_callback(&data, nullptr);
}

void HostileRadio::checkLog() const {
    for (const std::string& line : m_log.texts()) {
        requireNone(test::findUnsafe(line), "a line of the log");
    }
}

} // namespace fuzz
