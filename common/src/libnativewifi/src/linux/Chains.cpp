#include "Chains.h"

#include <nativewifi/LinuxRadio.h>

#include <algorithm>

namespace nativewifi::linux_radio {

namespace {

using Levels = std::vector<std::optional<std::int32_t>>;

// Returns the bits of those that are there.
ULONG copyLevels(const Levels& from, LONG (&to)[MAX_CHAINS]) {
    ULONG present = 0;
    for (std::size_t chain = 0; chain < std::min(from.size(), MAX_CHAINS); ++chain) {
        if (from[chain]) {
            to[chain] = *from[chain];
            present |= 1U << chain;
        }
    }
    return present;
}

ChainLevels levelsOf(const MacAddress& bssid, const Levels& last, const Levels& averages) {
    ChainLevels levels{};
    std::copy(bssid.begin(), bssid.end(), levels.bssid);
    levels.chains = copyLevels(last, levels.levels);
    levels.averagedChains = copyLevels(averages, levels.averages);
    return levels;
}

} // namespace

Block connectionChains(const Station& accessPoint) {
    const ChainLevels levels =
        levelsOf(accessPoint.address, accessPoint.chainsDbm, accessPoint.averageChainsDbm);
    return levels.chains == 0 && levels.averagedChains == 0 ? Block() : blockOf(levels);
}

Block bssChains(const std::vector<Bss>& heard) {
    std::vector<ChainLevels> all;
    for (const Bss& bss : heard) {
        const ChainLevels levels = levelsOf(bss.bssid, bss.chainsDbm, {});
        if (levels.chains != 0) {
            all.push_back(levels);
        }
    }
    return all.empty() ? Block()
                       : listBlock(offsetof(ChainLevelsList, dwNumberOfItems),
                                   offsetof(ChainLevelsList, items), all);
}

} // namespace nativewifi::linux_radio
