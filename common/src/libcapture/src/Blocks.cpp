#include "Blocks.h"

#include <algorithm>

namespace capture {

namespace {

constexpr ListShape shapes[] = {
    {"WlanEnumInterfaces", offsetof(WLAN_INTERFACE_INFO_LIST, dwNumberOfItems),
     offsetof(WLAN_INTERFACE_INFO_LIST, InterfaceInfo), sizeof(WLAN_INTERFACE_INFO)},
    {"WlanGetAvailableNetworkList", offsetof(WLAN_AVAILABLE_NETWORK_LIST, dwNumberOfItems),
     offsetof(WLAN_AVAILABLE_NETWORK_LIST, Network), sizeof(WLAN_AVAILABLE_NETWORK)},
    {"WlanGetNetworkBssList", offsetof(WLAN_BSS_LIST, dwNumberOfItems),
     offsetof(WLAN_BSS_LIST, wlanBssEntries), sizeof(WLAN_BSS_ENTRY)},
};

DWORD numberAt(const void* block, std::size_t offset) {
    DWORD number = 0;
    std::memcpy(&number, static_cast<const unsigned char*>(block) + offset, sizeof number);
    return number;
}

bool isBssList(const ListShape& shape) {
    return shape.item == sizeof(WLAN_BSS_ENTRY);
}

} // namespace

const ListShape* listShapeOf(std::string_view function) {
    const auto* const found =
        std::find_if(std::begin(shapes), std::end(shapes),
                     [function](const ListShape& shape) { return function == shape.function; });
    return found == std::end(shapes) ? nullptr : found;
}

Bytes listAt(const ListShape& shape, const void* block) {
    std::size_t size = shape.begin + shape.item * std::size_t{numberAt(block, shape.countOffset)};
    if (isBssList(shape)) {
        // Behind the entries are the information elements, which the total size counts.
        size = std::max<std::size_t>(size, numberAt(block, offsetof(WLAN_BSS_LIST, dwTotalSize)));
    }
    size = std::min(size, LARGEST_BLOCK);
    const auto* const bytes = static_cast<const unsigned char*>(block);
    return {bytes, bytes + size};
}

std::string mistakeIn(const ListShape& shape, const Bytes& bytes) {
    if (bytes.size() < shape.begin) {
        return "the block is too short for the head of a list";
    }
    const DWORD count = numberAt(bytes.data(), shape.countOffset);
    const std::size_t room = (bytes.size() - shape.begin) / shape.item;
    if (count > room) {
        return "the block states " + std::to_string(count) + " items and has room for " +
               std::to_string(room);
    }
    return {};
}

std::size_t itemsIn(const ListShape& shape, const Bytes& bytes) {
    if (bytes.size() < shape.begin) {
        return 0;
    }
    return std::min<std::size_t>(numberAt(bytes.data(), shape.countOffset),
                                 (bytes.size() - shape.begin) / shape.item);
}

} // namespace capture
