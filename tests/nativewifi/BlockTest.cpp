// Blocks made as bytes, and the scale of levels in them.
#include <nativewifi/Block.h>
#include <nativewifi/LinkQuality.h>

#include <support/Items.h>

#include <gtest/gtest.h>

namespace nativewifi {
namespace {

using test::itemAt;

TEST(Block, HasTheBytesOfAStructure) {
    const GUID guid{1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};
    const Block block = blockOf(guid);
    ASSERT_EQ(block.size(), sizeof guid);
    EXPECT_EQ(std::memcmp(block.data(), &guid, sizeof guid), 0);
}

TEST(Block, OfAListHasItsCountAndTheItemsBehindTheHead) {
    const Block block = listBlock<std::uint16_t>(4, 10, {7, 8, 9});
    EXPECT_EQ(block.size(), 16U);
    EXPECT_EQ(itemAt<DWORD>(block, 4), 3U);
    EXPECT_EQ(itemAt<std::uint16_t>(block, 14), 9);
    EXPECT_EQ(itemAt<DWORD>(block, 0), 0U) << "the rest of the head";
    EXPECT_EQ(listBlock<std::uint16_t>(4, 10, {}), Block(10));
}

TEST(Block, OfABssListHasEachStationsElementsBehindAllEntries) {
    const std::vector<std::uint8_t> first = {1, 2, 3};
    const std::vector<std::uint8_t> third = {9};
    std::vector<BssWithElements> stations(3);
    stations[0] = {WLAN_BSS_ENTRY{}, first};
    stations[2] = {WLAN_BSS_ENTRY{}, third};
    stations[2].entry.lRssi = -60;
    const Block block = bssListBlock(stations);
    constexpr std::size_t FIRST = offsetof(WLAN_BSS_LIST, wlanBssEntries);
    constexpr std::size_t ENTRY = sizeof(WLAN_BSS_ENTRY);
    ASSERT_EQ(block.size(), FIRST + 3 * ENTRY + 4);
    EXPECT_EQ(itemAt<DWORD>(block, offsetof(WLAN_BSS_LIST, dwTotalSize)), block.size());
    EXPECT_EQ(itemAt<DWORD>(block, offsetof(WLAN_BSS_LIST, dwNumberOfItems)), 3U);
    const auto one = itemAt<WLAN_BSS_ENTRY>(block, FIRST);
    EXPECT_EQ(one.ulIeOffset, 3 * ENTRY);
    EXPECT_EQ(one.ulIeSize, 3U);
    EXPECT_EQ(itemAt<std::uint8_t>(block, FIRST + one.ulIeOffset + 2), 3);
    EXPECT_EQ(itemAt<WLAN_BSS_ENTRY>(block, FIRST + ENTRY).ulIeSize, 0U);
    const auto last = itemAt<WLAN_BSS_ENTRY>(block, FIRST + 2 * ENTRY);
    EXPECT_EQ(last.lRssi, -60);
    EXPECT_EQ(last.ulIeOffset, ENTRY + 3);
    EXPECT_EQ(itemAt<std::uint8_t>(block, FIRST + 2 * ENTRY + last.ulIeOffset), 9);
}

TEST(LinkQuality, IsLinearBetweenItsEnds) {
    EXPECT_EQ(linkQuality(-101), 0U);
    EXPECT_EQ(linkQuality(-100), 0U);
    EXPECT_EQ(linkQuality(-99), 2U);
    EXPECT_EQ(linkQuality(-51), 98U);
    EXPECT_EQ(linkQuality(-50), 100U);
    EXPECT_EQ(linkQuality(0), 100U);
    EXPECT_EQ(levelOfQuality(0), -100);
    EXPECT_EQ(levelOfQuality(61), -70);
    EXPECT_EQ(levelOfQuality(100), -50);
    EXPECT_EQ(levelOfQuality(0xFFFFFFFF), -50);
}

} // namespace
} // namespace nativewifi
