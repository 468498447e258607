// The memory blocks that the functions of the interface hand out, made as bytes: one structure, or
// a list of items behind its head.
#pragma once

#include <nativewifi/WlanTypes.h>

#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

namespace nativewifi {

/// Exactly as long as what is in it.
using Block = std::vector<std::byte>;

/// Writes `item` at `offset` of `block`, which must have the room.
template <typename Item>
void place(Block& block, std::size_t offset, const Item& item) {
    std::memcpy(block.data() + offset, &item, sizeof item);
}

/// One structure or number.
template <typename Item>
Block blockOf(const Item& item) {
    Block block(sizeof item);
    place(block, 0, item);
    return block;
}

/// A list: a head of `first` bytes with the number of items at `countOffset`, then the items.
template <typename Item>
Block listBlock(std::size_t countOffset, std::size_t first, const std::vector<Item>& items) {
    Block block(first + items.size() * sizeof(Item));
    place(block, countOffset, static_cast<DWORD>(items.size()));
    if (!items.empty()) {
        std::memcpy(block.data() + first, items.data(), items.size() * sizeof(Item));
    }
    return block;
}

/// An entry of a BSS list and its information elements. The elements are not owned.
struct BssWithElements {
    WLAN_BSS_ENTRY entry;
    std::span<const std::uint8_t> elements;
};

/// The block of WlanGetNetworkBssList: the entries, and behind all of them the elements of each.
/// Sets `ulIeOffset`, which counts from the entry, and `ulIeSize`.
Block bssListBlock(const std::vector<BssWithElements>& stations);

} // namespace nativewifi
