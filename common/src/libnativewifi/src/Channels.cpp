#include <nativewifi/Channels.h>

namespace nativewifi {

namespace {

struct Range {
    std::uint32_t first; // MHz
    std::uint32_t last;
    std::uint32_t base; // of the channel numbers, which are 5 MHz apart
    std::optional<Band> band;
};

constexpr Range ranges[] = {
    {2412, 2472, 2407, Band::GHZ_2_4}, {2484, 2484, 2414, Band::GHZ_2_4}, // channel 14
    {4910, 4980, 4000, Band::GHZ_5},   {5000, 5895, 5000, Band::GHZ_5},
    {5935, 5935, 5925, Band::GHZ_6}, // channel 2, apart from its others
    {5955, 7115, 5950, Band::GHZ_6},
};

const Range* rangeOf(std::uint32_t mhz) {
    for (const Range& range : ranges) {
        if (mhz >= range.first && mhz <= range.last) {
            return &range;
        }
    }
    return nullptr;
}

} // namespace

ULONG channelOf(std::uint32_t mhz) {
    const Range* const range = rangeOf(mhz);
    return range == nullptr ? 0 : (mhz - range->base) / 5;
}

std::optional<Band> bandOf(std::uint32_t mhz) {
    const Range* const range = rangeOf(mhz);
    return range == nullptr ? std::nullopt : range->band;
}

} // namespace nativewifi
