// The list of networks and that of their stations, without a scan.
#include "Session.h"

#include <mrl/Stopwatch.h>

#include <algorithm>

namespace contract {

namespace {

constexpr double AT_ONCE_SECONDS = 1;

Finding listAnswersAtOnce(Session& session) {
    const mrl::Stopwatch watch;
    nativewifi::WlanMemory<WLAN_AVAILABLE_NETWORK_LIST> list;
    const DWORD result = session.networks(out(list));
    const double seconds = watch.getElapsed();
    if (result != ERROR_SUCCESS) {
        return notObservable({{"result", result}});
    }
    return judge(seconds < AT_ONCE_SECONDS, {{"seconds", seconds}});
}

Finding listIsPlausible(Session& session) {
    nativewifi::WlanMemory<WLAN_AVAILABLE_NETWORK_LIST> list;
    const DWORD result = session.networks(out(list));
    if (result != ERROR_SUCCESS) {
        return notObservable({{"result", result}});
    }
    if (!list) {
        return judge(false, {{"list", nullptr}});
    }
    const WLAN_AVAILABLE_NETWORK* const networks = list->Network;
    const auto wrong = std::count_if(
        networks, networks + list->dwNumberOfItems, [](const WLAN_AVAILABLE_NETWORK& network) {
            return network.dot11Ssid.uSSIDLength > DOT11_SSID_MAX_LENGTH ||
                   network.wlanSignalQuality > 100 ||
                   network.uNumberOfPhyTypes > WLAN_MAX_PHY_TYPE_NUMBER;
        });
    return judge(wrong == 0, {{"networks", list->dwNumberOfItems}, {"wrong", wrong}});
}

Finding bssListHasItsSize(Session& session) {
    nativewifi::WlanMemory<WLAN_BSS_LIST> list;
    const DWORD result = session.stations(out(list));
    if (result != ERROR_SUCCESS) {
        return notObservable({{"result", result}});
    }
    if (!list) {
        return judge(false, {{"list", nullptr}});
    }
    const std::size_t least =
        offsetof(WLAN_BSS_LIST, wlanBssEntries) + list->dwNumberOfItems * sizeof(WLAN_BSS_ENTRY);
    return judge(list->dwTotalSize >= least,
                 {{"totalSize", list->dwTotalSize}, {"entries", list->dwNumberOfItems}});
}

// 24H2: these functions are refused without access to the location, and the level is not.
Finding locationDenied(Session& session) {
    nativewifi::WlanMemory<WLAN_AVAILABLE_NETWORK_LIST> list;
    const DWORD networks = session.networks(out(list));
    if (networks != ERROR_ACCESS_DENIED) {
        return notObservable({{"networks", networks}});
    }
    nativewifi::WlanMemory<WLAN_BSS_LIST> bssList;
    const DWORD stations = session.stations(out(bssList));
    const DWORD scan = session.scan(); // refused, so that nothing is switched
    const DWORD connection = session.resultOf(wlan_intf_opcode_current_connection);
    const DWORD rssi = session.resultOf(wlan_intf_opcode_rssi);
    const bool connectionIsRefused =
        connection == ERROR_ACCESS_DENIED || connection == ERROR_INVALID_STATE;
    return judge(stations == ERROR_ACCESS_DENIED && scan == ERROR_ACCESS_DENIED &&
                     connectionIsRefused && rssi != ERROR_ACCESS_DENIED,
                 {{"networks", networks},
                  {"stations", stations},
                  {"scan", scan},
                  {"connection", connection},
                  {"rssi", rssi}});
}

} // namespace

std::vector<Check> listChecks() {
    return {
        {"list.at-once", "WlanGetAvailableNetworkList returns within a second and does not scan.",
         Need::ADAPTER, Switches::NOTHING, &listAnswersAtOnce},
        {"list.values",
         "Names have at most 32 bytes, signals are 0 to 100 %, and PHY types are at most 8.",
         Need::ADAPTER, Switches::NOTHING, &listIsPlausible},
        {"bss.size", "The size in a BSS list covers its entries of 360 bytes.", Need::ADAPTER,
         Switches::NOTHING, &bssListHasItsSize},
        {"location.denied",
         "Without access to the location, the lists, the scan and the connection return error 5; "
         "the level is still given.",
         Need::ADAPTER, Switches::NOTHING, &locationDenied},
    };
}

} // namespace contract
