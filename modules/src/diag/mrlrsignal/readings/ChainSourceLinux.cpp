#include <readings/ChainSource.h>

#include <readings/Query.h>

#include <nativewifi/LinuxRadio.h>

namespace readings {

namespace {

using nativewifi::MAX_CHAINS;

// The last frame's; of a driver that has averages alone, these.
ChainLevels levelsIn(const nativewifi::ChainLevels& block, ULONG masked) {
    ChainLevels levels;
    for (std::size_t chain = 0; chain < MAX_CHAINS; ++chain) {
        const ULONG bit = 1U << chain;
        const bool last = (block.chains & bit) != 0;
        const bool any = last || (block.averagedChains & bit) != 0;
        if (any && (masked & bit) == 0) {
            levels.resize(chain + 1);
            levels[chain] = last ? block.levels[chain] : block.averages[chain];
        }
    }
    return levels;
}

} // namespace

bool ChainSource::isKnownToSystem() {
    return true;
}

ChainLevels ChainSource::levelsOf(const Reading& reading) {
    if (openClient(m_client) != ERROR_SUCCESS) {
        return {};
    }
    const ULONG masked = ~antennas().value_or(~ULONG{0});
    if (reading.source != Source::SCAN) {
        const auto levels = query<nativewifi::ChainLevels>(
            m_client.get(), m_guid, nativewifi::wlan_intf_opcode_connection_chains);
        return levels ? levelsIn(*levels, masked) : ChainLevels();
    }
    const auto list = query<nativewifi::ChainLevelsList>(m_client.get(), m_guid,
                                                         nativewifi::wlan_intf_opcode_bss_chains);
    for (DWORD i = 0; list && i < list->dwNumberOfItems; ++i) {
        const nativewifi::ChainLevels& levels = list->items[i];
        if (bssidOf(levels.bssid) == reading.bssid) {
            return levelsIn(levels, masked);
        }
    }
    return {};
}

std::optional<ULONG> ChainSource::antennas() {
    if (openClient(m_client) != ERROR_SUCCESS) {
        return std::nullopt;
    }
    const auto mask =
        query<ULONG>(m_client.get(), m_guid, nativewifi::wlan_intf_opcode_receive_antennas);
    return mask && *mask != 0 ? std::optional(*mask) : std::nullopt;
}

} // namespace readings
