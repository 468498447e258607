#include <nativewifi/Guid.h>
#include <networkadapters/NetworkAdapters.h>

#include <mrl/SystemLibrary.h>
#include <mrl/Unicode.h>

// iphlpapi.h needs winsock2.h before it.
// clang-format off
#include <winsock2.h>
#include <iphlpapi.h>
// clang-format on

#include <cstddef>
#include <cstdio>
#include <map>
#include <memory>

namespace networkadapters {

namespace {

// The documentation recommends this much to begin with; the list can grow between two calls.
constexpr ULONG FIRST_SIZE = 15 * 1024;
constexpr int ATTEMPTS = 3;

// Mobile broadband interface types of the IP helper interface.
constexpr ULONG MOBILE_BROADBAND_GSM = 243;
constexpr ULONG MOBILE_BROADBAND_CDMA = 244;

bool isHardware(const IP_ADAPTER_ADDRESSES& adapter) {
    return adapter.IfType != IF_TYPE_SOFTWARE_LOOPBACK && adapter.IfType != IF_TYPE_TUNNEL;
}

// AdapterName is the GUID in braces.
GUID guidOf(const IP_ADAPTER_ADDRESSES& adapter) {
    mrl::String text(adapter.AdapterName);
    if (text.length() > 2) {
        text = text.subString(1, text.length() - 2);
    }
    return nativewifi::parseGuid(text.view()).value_or(GUID{});
}

std::string addressOf(const IP_ADAPTER_ADDRESSES& adapter) {
    std::string text;
    for (ULONG i = 0; i < adapter.PhysicalAddressLength; ++i) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x",
                      static_cast<unsigned>(adapter.PhysicalAddress[i]));
        text += (text.empty() ? "" : ":") + std::string(digits);
    }
    return text;
}

struct Driver {
    std::string name;
    std::string version;
};

// The drivers of network adapters by the names of their adapters, GUIDs in braces and lower case,
// from the registry: each adapter has a key there, "0000", "0001", ...
std::map<std::string, Driver> installedDrivers() {
    constexpr int MOST = 1000;
    const mrl::SystemLibrary library(L"advapi32.dll");
    const auto getValue = library.find<decltype(RegGetValueW)>("RegGetValueW");
    std::map<std::string, Driver> drivers;
    for (int number = 0; getValue != nullptr && number < MOST; ++number) {
        wchar_t key[128];
        std::swprintf(key, std::size(key),
                      L"SYSTEM\\CurrentControlSet\\Control\\Class\\"
                      L"{4d36e972-e325-11ce-bfc1-08002be10318}\\%04d",
                      number);
        const auto text = [&](const wchar_t* name) {
            wchar_t value[256]; // longer ones are none
            DWORD size = sizeof value;
            // ERROR_FILE_NOT_FOUND, ERROR_ACCESS_DENIED, ERROR_MORE_DATA
            return getValue(HKEY_LOCAL_MACHINE, key, name, RRF_RT_REG_SZ, nullptr, value, &size) ==
                           ERROR_SUCCESS
                       ? mrl::toUtf8(mrl::CharView(value))
                       : std::string();
        };
        const std::string adapter = text(L"NetCfgInstanceId");
        if (!adapter.empty()) {
            drivers[mrl::toUtf8(mrl::foldedCase(mrl::toUtf16(adapter)))] = {
                .name = text(L"DriverDesc"), .version = text(L"DriverVersion")};
        }
    }
    return drivers;
}

} // namespace

std::vector<NetworkAdapter> systemNetworkAdapters() {
    static const mrl::SystemLibrary library(L"iphlpapi.dll");
    const auto getAdapters = library.find<decltype(GetAdaptersAddresses)>("GetAdaptersAddresses");
    if (getAdapters == nullptr) {
        return {};
    }
    ULONG size = FIRST_SIZE;
    std::unique_ptr<std::byte[]> block;
    ULONG result = ERROR_BUFFER_OVERFLOW;
    for (int attempt = 0; attempt < ATTEMPTS && result == ERROR_BUFFER_OVERFLOW; ++attempt) {
        block = std::make_unique<std::byte[]>(size);
        // ERROR_ADDRESS_NOT_ASSOCIATED, ERROR_BUFFER_OVERFLOW, ERROR_INVALID_PARAMETER,
        // ERROR_NOT_ENOUGH_MEMORY, ERROR_NO_DATA
        result = getAdapters(AF_UNSPEC,
                             GAA_FLAG_SKIP_UNICAST | GAA_FLAG_SKIP_ANYCAST |
                                 GAA_FLAG_SKIP_MULTICAST | GAA_FLAG_SKIP_DNS_SERVER,
                             nullptr, reinterpret_cast<IP_ADAPTER_ADDRESSES*>(block.get()), &size);
    }
    std::vector<NetworkAdapter> adapters;
    if (result != ERROR_SUCCESS) {
        return adapters;
    }
    const std::map<std::string, Driver> drivers = installedDrivers();
    for (const auto* adapter = reinterpret_cast<const IP_ADAPTER_ADDRESSES*>(block.get());
         adapter != nullptr; adapter = adapter->Next) {
        if (isHardware(*adapter)) {
            const auto driver =
                drivers.find(mrl::toUtf8(mrl::foldedCase(mrl::toUtf16(adapter->AdapterName))));
            const bool known = driver != drivers.end();
            adapters.push_back({.name = mrl::String(adapter->Description),
                                .guid = guidOf(*adapter),
                                .mobileBroadband = adapter->IfType == MOBILE_BROADBAND_GSM ||
                                                   adapter->IfType == MOBILE_BROADBAND_CDMA,
                                .wireless = adapter->IfType == IF_TYPE_IEEE80211,
                                .driver = known ? driver->second.name : std::string(),
                                .version = known ? driver->second.version : std::string(),
                                .address = addressOf(*adapter)});
        }
    }
    return adapters;
}

} // namespace networkadapters
