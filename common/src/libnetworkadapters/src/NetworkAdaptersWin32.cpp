#include <nativewifi/Guid.h>
#include <networkadapters/NetworkAdapters.h>

#include <mrl/SystemLibrary.h>

// iphlpapi.h needs winsock2.h before it.
// clang-format off
#include <winsock2.h>
#include <iphlpapi.h>
// clang-format on

#include <cstddef>
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
    for (const auto* adapter = reinterpret_cast<const IP_ADAPTER_ADDRESSES*>(block.get());
         adapter != nullptr; adapter = adapter->Next) {
        if (isHardware(*adapter)) {
            adapters.push_back({mrl::String(adapter->Description), guidOf(*adapter),
                                adapter->IfType == MOBILE_BROADBAND_GSM ||
                                    adapter->IfType == MOBILE_BROADBAND_CDMA});
        }
    }
    return adapters;
}

} // namespace networkadapters
