// What a block of bytes has at a place.
#pragma once

#include <nativewifi/Block.h>

#include <gtest/gtest.h>

#include <cstring>

namespace test {

/// The item at `offset`; zeroes and a failure when the block is too short for it.
template <typename Item>
Item itemAt(const nativewifi::Block& block, std::size_t offset) {
    Item item{};
    EXPECT_LE(offset + sizeof item, block.size());
    if (offset + sizeof item <= block.size()) {
        std::memcpy(&item, block.data() + offset, sizeof item);
    }
    return item;
}

} // namespace test
