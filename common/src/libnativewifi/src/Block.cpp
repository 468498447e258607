#include <nativewifi/Block.h>

#include <numeric>

namespace nativewifi {

Block bssListBlock(const std::vector<BssWithElements>& stations) {
    constexpr std::size_t FIRST = offsetof(WLAN_BSS_LIST, wlanBssEntries);
    std::size_t end = FIRST + stations.size() * sizeof(WLAN_BSS_ENTRY);
    Block block(std::accumulate(stations.begin(), stations.end(), end,
                                [](std::size_t sum, const BssWithElements& station) {
                                    return sum + station.elements.size();
                                }));
    place(block, offsetof(WLAN_BSS_LIST, dwTotalSize), static_cast<DWORD>(block.size()));
    place(block, offsetof(WLAN_BSS_LIST, dwNumberOfItems), static_cast<DWORD>(stations.size()));
    std::size_t offset = FIRST;
    for (const auto& [heard, elements] : stations) {
        WLAN_BSS_ENTRY entry = heard;
        entry.ulIeOffset = static_cast<ULONG>(end - offset);
        entry.ulIeSize = static_cast<ULONG>(elements.size());
        place(block, offset, entry);
        offset += sizeof entry;
        if (!elements.empty()) {
            std::memcpy(block.data() + end, elements.data(), elements.size());
            end += elements.size();
        }
    }
    return block;
}

} // namespace nativewifi
