#include <readings/Query.h>
#include <readings/ReceivedFrames.h>

namespace readings {

std::optional<ULONGLONG> receivedFrames(HANDLE client, const GUID& interfaceGuid) {
    const auto statistics = query<WLAN_STATISTICS>(
        client, interfaceGuid, wlan_intf_opcode_statistics, offsetof(WLAN_STATISTICS, PhyCounters));
    // A driver that counts nothing has 0.
    return statistics && statistics->MacUcastCounters.ullReceivedFrameCount != 0
               ? std::optional(statistics->MacUcastCounters.ullReceivedFrameCount)
               : std::nullopt;
}

} // namespace readings
