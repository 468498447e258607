#include <readings/ScanRequest.h>

#include <nativewifi/Api.h>

namespace readings {

// Drivers must end a scan within 4 s; most refuse or ignore requests that come faster.
mrl::Clock::Duration scanInterval(std::uint32_t /*mhz*/) {
    return std::chrono::seconds(4);
}

mrl::Clock::Duration longestScan() {
    return std::chrono::seconds(4);
}

DWORD requestScan(HANDLE client, const GUID& interfaceGuid, std::uint32_t /*mhz*/) {
    return nativewifi::api().WlanScan(client, &interfaceGuid, nullptr, nullptr, nullptr);
}

} // namespace readings
