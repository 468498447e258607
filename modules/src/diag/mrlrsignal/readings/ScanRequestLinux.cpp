#include <readings/ScanRequest.h>

#include <nativewifi/Api.h>
#include <nativewifi/LinuxRadio.h>

namespace readings {

// All channels take some seconds, one takes about 140 ms.
mrl::Clock::Duration scanInterval(std::uint32_t mhz) {
    return mhz == 0 ? std::chrono::milliseconds(4000) : std::chrono::milliseconds(200);
}

// The channels of three bands, of which many are only listened to.
mrl::Clock::Duration longestScan() {
    return std::chrono::seconds(15);
}

DWORD requestScan(HANDLE client, const GUID& interfaceGuid, std::uint32_t mhz) {
    if (mhz == 0) {
        return nativewifi::api().WlanScan(client, &interfaceGuid, nullptr, nullptr, nullptr);
    }
    nativewifi::ChannelScan request{};
    request.frequencyMhz = mhz;
    return nativewifi::api().WlanSetInterface(client, &interfaceGuid,
                                              nativewifi::wlan_intf_opcode_scan_channel,
                                              sizeof request, &request, nullptr);
}

} // namespace readings
