#include "Machine.h"

#include <nativewifi/Guid.h>
#include <nativewifi/Handles.h>
#include <nativewifi/Ssid.h>

#include <mrl/SystemLibrary.h>
#include <mrl/Unicode.h>

#include <string>

using nativewifi::api;

namespace contract {

namespace {

// Where the system keeps the drivers of network adapters, a key of four digits for each adapter.
constexpr const wchar_t* ADAPTER_CLASS =
    L"SYSTEM\\CurrentControlSet\\Control\\Class\\{4d36e972-e325-11ce-bfc1-08002be10318}";

std::string systemVersion() {
    static const mrl::SystemLibrary library(L"ntdll.dll");
    const auto getVersion = library.find<LONG WINAPI(OSVERSIONINFOW*)>("RtlGetVersion");
    OSVERSIONINFOW version{};
    version.dwOSVersionInfoSize = sizeof version;
    if (getVersion == nullptr || getVersion(&version) != 0) {
        return {};
    }
    return std::to_string(version.dwMajorVersion) + '.' + std::to_string(version.dwMinorVersion) +
           '.' + std::to_string(version.dwBuildNumber);
}

// Empty when there is none.
std::wstring value(const std::wstring& key, const wchar_t* name) {
    wchar_t text[256];
    DWORD size = sizeof text;
    // ERROR_FILE_NOT_FOUND, ERROR_MORE_DATA, ERROR_UNSUPPORTED_TYPE
    return RegGetValueW(HKEY_LOCAL_MACHINE, key.c_str(), name, RRF_RT_REG_SZ, nullptr, text,
                        &size) == ERROR_SUCCESS
               ? text
               : std::wstring();
}

void addDriver(mrl::Json& adapter, const GUID& guid) {
    constexpr int MOST_ADAPTERS = 1000;
    const std::wstring braced = L"{" + std::wstring(nativewifi::guidText(guid).view()) + L"}";
    for (int i = 0; i < MOST_ADAPTERS; ++i) {
        const std::wstring number = std::to_wstring(i);
        const std::wstring key =
            std::wstring(ADAPTER_CLASS) + L'\\' + std::wstring(4 - number.size(), L'0') + number;
        if (!mrl::equalNoCase(value(key, L"NetCfgInstanceId"), braced)) {
            continue;
        }
        for (const auto& [name, member] : {std::pair{L"ProviderName", "driverProvider"},
                                           std::pair{L"DriverVersion", "driverVersion"},
                                           std::pair{L"DriverDate", "driverDate"}}) {
            if (const std::wstring text = value(key, name); !text.empty()) {
                adapter[member] = mrl::toUtf8(text);
            }
        }
        return;
    }
}

} // namespace

mrl::Json machine() {
    mrl::Json interfaces = mrl::Json::array();
    nativewifi::ClientHandle handle;
    DWORD version = 0;
    nativewifi::WlanMemory<WLAN_INTERFACE_INFO_LIST> list;
    if (api().WlanOpenHandle(2, nullptr, &version, out(handle)) == ERROR_SUCCESS &&
        api().WlanEnumInterfaces(handle.get(), nullptr, out(list)) == ERROR_SUCCESS && list) {
        for (DWORD i = 0; i < list->dwNumberOfItems; ++i) {
            const WLAN_INTERFACE_INFO& info = list->InterfaceInfo[i];
            mrl::Json adapter;
            adapter["description"] =
                mrl::toUtf8(nativewifi::fixedText(info.strInterfaceDescription));
            adapter["state"] = static_cast<int>(info.isState);
            addDriver(adapter, info.InterfaceGuid);
            interfaces.push_back(std::move(adapter));
        }
    }
    return {{"system", systemVersion()}, {"interfaces", interfaces}};
}

} // namespace contract
