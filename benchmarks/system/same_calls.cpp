// The platform work of a verification run, and nothing else: OLE started, the same calls in
// the same order, the same pauses, the same blocks kept. processes.py compares the calls with the
// simulator's record of the executable's.
//   same_calls run      an access point that the first scan shows
//   same_calls start    the same without the pauses
//   same_calls search   an access point that never shows
#include <nativewifi/Api.h>

// iphlpapi.h needs winsock2.h before it.
// clang-format off
#include <winsock2.h>
#include <iphlpapi.h>
// clang-format on

#include <ole2.h>

#include <cstdlib>
#include <string_view>

namespace {

constexpr DWORD POLL_MS = 100;
constexpr DWORD SCAN_MS = 7000;
constexpr DWORD SEARCH_MS = 30000;
constexpr ULONG FIRST_SIZE = 15 * 1024;
constexpr DWORD REASON_SIZE = 256;

bool g_sleeps = true;

void pause(DWORD milliseconds) {
    if (g_sleeps) {
        Sleep(milliseconds);
    }
}

template <typename Function>
Function* find(HMODULE library, const char* name) {
    return reinterpret_cast<Function*>(reinterpret_cast<void (*)()>(GetProcAddress(library, name)));
}

HMODULE load(const wchar_t* name) {
    return LoadLibraryExW(name, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
}

void CALLBACK ignore(WLAN_NOTIFICATION_DATA*, void*) {}

// The client functions, found as the executable finds them.
struct Wifi : nativewifi::WlanFunctions {
    Wifi() {
        const HMODULE library = load(L"wlanapi.dll");
#define FIND(result, name, arguments, errors) name = find<result WINAPI arguments>(library, #name);
        NATIVEWIFI_WLAN_FUNCTIONS(FIND)
#undef FIND
    }
};

// The list of network adapters, then that of wireless ones.
void listDevices(const Wifi& wifi) {
    const HMODULE library = load(L"iphlpapi.dll");
    const auto getAdapters = find<decltype(GetAdaptersAddresses)>(library, "GetAdaptersAddresses");
    void* const adapters = std::malloc(FIRST_SIZE);
    ULONG size = FIRST_SIZE;
    getAdapters(AF_UNSPEC,
                GAA_FLAG_SKIP_UNICAST | GAA_FLAG_SKIP_ANYCAST | GAA_FLAG_SKIP_MULTICAST |
                    GAA_FLAG_SKIP_DNS_SERVER,
                nullptr, static_cast<IP_ADAPTER_ADDRESSES*>(adapters), &size);
    std::free(adapters);

    HANDLE client = nullptr;
    DWORD version = 0;
    WLAN_INTERFACE_INFO_LIST* interfaces = nullptr;
    wifi.WlanOpenHandle(2, nullptr, &version, &client);
    wifi.WlanEnumInterfaces(client, nullptr, &interfaces);
    wifi.WlanCloseHandle(client, nullptr);
    wifi.WlanFreeMemory(interfaces);
}

void askForRadio(const Wifi& wifi, HANDLE client, const GUID& guid) {
    DWORD size = 0;
    PVOID kept = nullptr;
    wifi.WlanQueryInterface(client, &guid, wlan_intf_opcode_radio_state, nullptr, &size, &kept,
                            nullptr);
}

void scan(const Wifi& wifi, const GUID& guid) {
    HANDLE kept = nullptr;
    DWORD version = 0;
    WLAN_INTERFACE_INFO_LIST* interfaces = nullptr;
    WLAN_BSS_LIST* heard = nullptr;
    wifi.WlanOpenHandle(1, nullptr, &version, &kept);
    wifi.WlanEnumInterfaces(kept, nullptr, &interfaces);
    wifi.WlanScan(kept, &guid, nullptr, nullptr, nullptr);
    pause(SCAN_MS);
    wifi.WlanGetNetworkBssList(kept, &guid, nullptr, dot11_BSS_type_any, FALSE, nullptr, &heard);
}

void poll(const Wifi& wifi, HANDLE client, const GUID& guid) {
    WLAN_AVAILABLE_NETWORK_LIST* list = nullptr;
    wifi.WlanGetAvailableNetworkList(client, &guid, 0, nullptr, &list);
    for (DWORD i = 0; i < list->dwNumberOfItems; ++i) {
        const WLAN_AVAILABLE_NETWORK& network = list->Network[i];
        if (network.dot11Ssid.uSSIDLength != 0 && network.bNetworkConnectable == FALSE) {
            WCHAR reason[REASON_SIZE];
            wifi.WlanReasonCodeToString(network.wlanNotConnectableReason, REASON_SIZE, reason,
                                        nullptr);
        }
    }
    wifi.WlanFreeMemory(list);
    askForRadio(wifi, client, guid);
}

GUID interfaceGuid() {
    const auto fromText =
        find<RPC_STATUS WINAPI(const wchar_t*, GUID*)>(load(L"rpcrt4.dll"), "UuidFromStringW");
    GUID guid{};
    fromText(L"8C2F6B1E-4D37-4A59-9E0B-5F6A7D3C1B20", &guid);
    return guid;
}

} // namespace

int main(int argc, char** argv) {
    const std::string_view mode = argc > 1 ? argv[1] : "run";
    const bool inVain = mode == "search";
    g_sleeps = mode != "start";

    OleInitialize(nullptr);
    const Wifi wifi;
    listDevices(wifi);

    HANDLE client = nullptr;
    DWORD version = 0;
    wifi.WlanOpenHandle(2, nullptr, &version, &client);
    const GUID guid = interfaceGuid();
    wifi.WlanRegisterNotification(client, WLAN_NOTIFICATION_SOURCE_ALL, TRUE, &ignore, nullptr,
                                  nullptr, nullptr);
    askForRadio(wifi, client, guid);
    scan(wifi, guid);
    if (inVain) {
        scan(wifi, guid);
    }
    const ULONGLONG begun = GetTickCount64();
    poll(wifi, client, guid);
    while (inVain && GetTickCount64() - begun < SEARCH_MS) {
        pause(POLL_MS);
        poll(wifi, client, guid);
    }
    wifi.WlanCloseHandle(client, nullptr);
    return 0;
}
