// The blocks of the opcodes that only a Linux radio answers.
#include <Chains.h>

#include <support/Items.h>

#include <nativewifi/LinuxRadio.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

namespace nativewifi::linux_radio {
namespace {

using test::itemAt;
using testing::ElementsAre;

TEST(ConnectionChains, HaveABitForEachLevelThatIsThere) {
    Station accessPoint;
    accessPoint.address = {2, 0, 0, 0, 0, 9};
    accessPoint.chainsDbm = {std::nullopt, -60, -70};
    accessPoint.averageChainsDbm = {-59};
    const Block block = connectionChains(accessPoint);
    ASSERT_EQ(block.size(), sizeof(ChainLevels));
    const auto levels = itemAt<ChainLevels>(block, 0);
    EXPECT_THAT(levels.bssid, ElementsAre(2, 0, 0, 0, 0, 9));
    EXPECT_EQ(levels.chains, 0b110U);
    EXPECT_THAT(levels.levels, ElementsAre(0, -60, -70, 0, 0, 0, 0, 0));
    EXPECT_EQ(levels.averagedChains, 0b1U);
    EXPECT_THAT(levels.averages, ElementsAre(-59, 0, 0, 0, 0, 0, 0, 0));
}

TEST(ConnectionChains, AreNoBlockWithoutALevel) {
    Station accessPoint;
    EXPECT_TRUE(connectionChains(accessPoint).empty());
    accessPoint.chainsDbm = {std::nullopt};
    EXPECT_TRUE(connectionChains(accessPoint).empty());
    accessPoint.averageChainsDbm = {-59};
    EXPECT_EQ(connectionChains(accessPoint).size(), sizeof(ChainLevels));
}

TEST(ConnectionChains, EndWithTheLastThatHasAPlace) {
    Station accessPoint;
    accessPoint.chainsDbm.assign(MAX_CHAINS + 1, -60);
    EXPECT_EQ(itemAt<ChainLevels>(connectionChains(accessPoint), 0).chains, 0xFFU);
}

TEST(BssChains, ListTheStationsWithALevel) {
    std::vector<Bss> heard(3);
    heard[0].bssid = {2, 0, 0, 0, 0, 1};
    heard[0].chainsDbm = {-50, -55};
    heard[1].chainsDbm = {std::nullopt};
    heard[2].bssid = {2, 0, 0, 0, 0, 3};
    heard[2].chainsDbm = {std::nullopt, -65};
    const Block block = bssChains(heard);
    constexpr std::size_t FIRST = offsetof(ChainLevelsList, items);
    ASSERT_EQ(block.size(), FIRST + 2 * sizeof(ChainLevels));
    EXPECT_EQ(itemAt<DWORD>(block, 0), 2U);
    EXPECT_EQ(itemAt<ChainLevels>(block, FIRST).chains, 0b11U);
    const auto second = itemAt<ChainLevels>(block, FIRST + sizeof(ChainLevels));
    EXPECT_EQ(second.bssid[5], 3);
    EXPECT_EQ(second.chains, 0b10U);
    EXPECT_EQ(second.levels[1], -65);
    EXPECT_EQ(second.averagedChains, 0U);
    EXPECT_TRUE(bssChains({}).empty());
}

} // namespace
} // namespace nativewifi::linux_radio
