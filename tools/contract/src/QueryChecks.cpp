// WlanQueryInterface: which block comes for which opcode, and what a failure writes.
#include "Session.h"

using nativewifi::api;

namespace contract {

namespace {

constexpr GUID UNKNOWN{1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};

const char* what(const void* pointer, const void* before) {
    return pointer == nullptr ? "null" : pointer == before ? "untouched" : "written";
}

template <WLAN_INTF_OPCODE OPCODE, std::size_t SIZE>
Finding answersInSize(Session& session) {
    const auto answer = session.query<unsigned char>(OPCODE);
    if (!answer.succeeded()) {
        return notObservable({{"result", answer.result}});
    }
    return judge(answer.size == SIZE && answer.block,
                 {{"size", answer.size}, {"expected", SIZE}, {"block", bool(answer.block)}});
}

// A head and `SIZE` bytes for each item that the head counts.
template <WLAN_INTF_OPCODE OPCODE, std::size_t SIZE>
Finding answersInItems(Session& session) {
    const auto count = session.query<DWORD>(OPCODE);
    if (!count.succeeded()) {
        return notObservable({{"result", count.result}});
    }
    if (!count.has()) {
        return judge(false, {{"size", count.size}, {"block", bool(count.block)}});
    }
    // The structure's own size for one item, which some systems also give for none.
    constexpr std::size_t ONE = (sizeof(DWORD) + SIZE + 3) / 4 * 4;
    const std::size_t exact = sizeof(DWORD) + *count.block * SIZE;
    return judge(count.size == exact || count.size == ONE,
                 {{"size", count.size}, {"items", *count.block}});
}

Finding notConnectedIsInvalidState(Session& session) {
    const auto state = session.query<WLAN_INTERFACE_STATE>(wlan_intf_opcode_interface_state);
    if (!state.succeeded() || !state.has()) {
        return notObservable({{"result", state.result}});
    }
    if (*state.block != wlan_interface_state_disconnected) {
        return notObservable({{"state", static_cast<int>(*state.block)}});
    }
    const DWORD connection = session.resultOf(wlan_intf_opcode_current_connection);
    return judge(connection == ERROR_INVALID_STATE, {{"result", connection}});
}

Finding unknownInterfaceIsNotFound(Session& session) {
    DWORD size = 0;
    nativewifi::WlanMemory<void> block;
    const DWORD result =
        api().WlanQueryInterface(session.handle(), &UNKNOWN, wlan_intf_opcode_interface_state,
                                 nullptr, &size, out(block), nullptr);
    return judge(result == ERROR_NOT_FOUND, {{"result", result}});
}

// Each output of a failing call must be what it was, or null: the caller frees what is not null.
template <typename Block, typename Call>
Finding failureOutput(Call call) {
    int place = 0;
    auto* const before = reinterpret_cast<Block*>(&place);
    Block* block = before;
    const DWORD result = call(&block);
    return judge(result != ERROR_SUCCESS && (block == nullptr || block == before),
                 {{"result", result}, {"block", what(block, before)}});
}

Finding queryFailureOutput(Session& session) {
    int before = 0;
    PVOID block = &before;
    DWORD size = 77;
    const DWORD result =
        api().WlanQueryInterface(session.handle(), &UNKNOWN, wlan_intf_opcode_interface_state,
                                 nullptr, &size, &block, nullptr);
    return judge(result != ERROR_SUCCESS && (block == nullptr || block == &before),
                 {{"result", result}, {"block", what(block, &before)}, {"size", size}});
}

Finding enumFailureOutput(Session& session) {
    return failureOutput<WLAN_INTERFACE_INFO_LIST>([&](WLAN_INTERFACE_INFO_LIST** list) {
        int reserved = 0;
        return api().WlanEnumInterfaces(session.handle(), &reserved, list);
    });
}

Finding listFailureOutput(Session& session) {
    return failureOutput<WLAN_AVAILABLE_NETWORK_LIST>([&](WLAN_AVAILABLE_NETWORK_LIST** list) {
        return api().WlanGetAvailableNetworkList(session.handle(), &UNKNOWN, 0, nullptr, list);
    });
}

Finding bssFailureOutput(Session& session) {
    return failureOutput<WLAN_BSS_LIST>([&](WLAN_BSS_LIST** list) {
        return api().WlanGetNetworkBssList(session.handle(), &UNKNOWN, nullptr, dot11_BSS_type_any,
                                           FALSE, nullptr, list);
    });
}

} // namespace

std::vector<Check> queryChecks() {
    return {
        {"query.autoconf", "The answer to autoconf_enabled has 4 bytes.", Need::ADAPTER,
         Switches::NOTHING, &answersInSize<wlan_intf_opcode_autoconf_enabled, sizeof(BOOL)>},
        {"query.background-scan", "The answer to background_scan_enabled has 4 bytes.",
         Need::ADAPTER, Switches::NOTHING,
         &answersInSize<wlan_intf_opcode_background_scan_enabled, sizeof(BOOL)>},
        {"query.media-streaming", "The answer to media_streaming_mode has 4 bytes.", Need::ADAPTER,
         Switches::NOTHING, &answersInSize<wlan_intf_opcode_media_streaming_mode, sizeof(BOOL)>},
        {"query.radio-state", "The answer to radio_state has 772 bytes for any number of PHYs.",
         Need::ADAPTER, Switches::NOTHING,
         &answersInSize<wlan_intf_opcode_radio_state, sizeof(WLAN_RADIO_STATE)>},
        {"query.bss-type", "The answer to bss_type has 4 bytes.", Need::ADAPTER, Switches::NOTHING,
         &answersInSize<wlan_intf_opcode_bss_type, sizeof(DOT11_BSS_TYPE)>},
        {"query.interface-state", "The answer to interface_state has 4 bytes.", Need::ADAPTER,
         Switches::NOTHING,
         &answersInSize<wlan_intf_opcode_interface_state, sizeof(WLAN_INTERFACE_STATE)>},
        {"query.connection", "The answer to current_connection has 604 bytes.", Need::ADAPTER,
         Switches::NOTHING,
         &answersInSize<wlan_intf_opcode_current_connection, sizeof(WLAN_CONNECTION_ATTRIBUTES)>},
        {"query.channel", "The answer to channel_number has 4 bytes.", Need::ADAPTER,
         Switches::NOTHING, &answersInSize<wlan_intf_opcode_channel_number, sizeof(ULONG)>},
        {"query.rssi", "The answer to rssi has 4 bytes.", Need::ADAPTER, Switches::NOTHING,
         &answersInSize<wlan_intf_opcode_rssi, sizeof(LONG)>},
        {"query.statistics", "The answer to statistics has 368 bytes.", Need::ADAPTER,
         Switches::NOTHING, &answersInSize<wlan_intf_opcode_statistics, sizeof(WLAN_STATISTICS)>},
        {"query.infrastructure-pairs",
         "The list of infrastructure pairs has 4 bytes and 8 for each pair.", Need::ADAPTER,
         Switches::NOTHING,
         &answersInItems<wlan_intf_opcode_supported_infrastructure_auth_cipher_pairs,
                         sizeof(DOT11_AUTH_CIPHER_PAIR)>},
        {"query.ad-hoc-pairs", "The list of ad hoc pairs has 4 bytes and 8 for each pair.",
         Need::ADAPTER, Switches::NOTHING,
         &answersInItems<wlan_intf_opcode_supported_adhoc_auth_cipher_pairs,
                         sizeof(DOT11_AUTH_CIPHER_PAIR)>},
        {"query.countries", "The list of countries has 4 bytes and 3 for each, or 8 for one.",
         Need::ADAPTER, Switches::NOTHING,
         &answersInItems<wlan_intf_opcode_supported_country_or_region_string_list,
                         sizeof(DOT11_COUNTRY_OR_REGION_STRING)>},
        {"query.not-connected",
         "Without a connection, current_connection is refused with error 5023.", Need::ADAPTER,
         Switches::NOTHING, &notConnectedIsInvalidState},
        {"query.unknown-interface", "An interface that does not exist is refused with error 1168.",
         Need::CLIENT, Switches::NOTHING, &unknownInterfaceIsNotFound},
        {"query.failure-output",
         "A WlanQueryInterface that fails leaves the block untouched or makes it null.",
         Need::CLIENT, Switches::NOTHING, &queryFailureOutput},
        {"enum.failure-output",
         "A WlanEnumInterfaces that fails leaves the list untouched or makes it null.",
         Need::CLIENT, Switches::NOTHING, &enumFailureOutput},
        {"list.failure-output",
         "A WlanGetAvailableNetworkList that fails leaves the list untouched or makes it null.",
         Need::CLIENT, Switches::NOTHING, &listFailureOutput},
        {"bss.failure-output",
         "A WlanGetNetworkBssList that fails leaves the list untouched or makes it null.",
         Need::CLIENT, Switches::NOTHING, &bssFailureOutput},
    };
}

} // namespace contract
