#include <nativewifi/Handles.h>

#include <radiosim/Engine.h>

#include <support/VirtualClock.h>

#include <gtest/gtest.h>

#include <utility>

namespace nativewifi {
namespace {

class Owners : public testing::Test {
protected:
    static ClientHandle open() {
        ClientHandle handle;
        DWORD version = 0;
        EXPECT_EQ(api().WlanOpenHandle(2, nullptr, &version, out(handle)), ERROR_SUCCESS);
        return handle;
    }

    static void list(const ClientHandle& handle, WlanMemory<WLAN_INTERFACE_INFO_LIST>& block) {
        EXPECT_EQ(api().WlanEnumInterfaces(handle.get(), nullptr, out(block)), ERROR_SUCCESS);
    }

    radiosim::Engine& engine() { return m_engine; }

private:
    test::VirtualClock m_clock;
    radiosim::Engine m_engine;
};

TEST_F(Owners, CloseTheirHandleOnceAtTheirEndThoughItMoves) {
    {
        ClientHandle first = open();
        ClientHandle second = std::move(first);
        EXPECT_NE(second.get(), nullptr);
        ClientHandle third;
        third = std::move(second);
        EXPECT_EQ(engine().openHandles(), 1U);
    }
    EXPECT_EQ(engine().openHandles(), 0U);
    EXPECT_EQ(engine().callCount("WlanCloseHandle"), 1U);
}

TEST_F(Owners, CloseTheHandleThatAnotherReplaces) {
    ClientHandle handle = open();
    DWORD version = 0;
    api().WlanOpenHandle(2, nullptr, &version, out(handle));
    EXPECT_EQ(engine().openHandles(), 1U);
    handle.reset();
    handle.reset();
    EXPECT_EQ(handle.get(), nullptr);
    EXPECT_EQ(engine().callCount("WlanCloseHandle"), 2U);
}

TEST_F(Owners, FreeTheirBlockAtTheirEnd) {
    const ClientHandle handle = open();
    {
        WlanMemory<WLAN_INTERFACE_INFO_LIST> block;
        EXPECT_FALSE(block);
        list(handle, block);
        EXPECT_TRUE(block);
        EXPECT_EQ(block->dwNumberOfItems, 1U);
        EXPECT_EQ((*block).dwIndex, 0U);
        EXPECT_EQ(engine().liveBlocks(), 1U);
    }
    EXPECT_EQ(engine().liveBlocks(), 0U);
    EXPECT_EQ(engine().badFrees(), 0U);
}

TEST_F(Owners, FreeTheBlockThatAnotherReplaces) {
    const ClientHandle handle = open();
    WlanMemory<WLAN_INTERFACE_INFO_LIST> block;
    list(handle, block);
    list(handle, block);
    EXPECT_EQ(engine().liveBlocks(), 1U);
    WlanMemory<WLAN_INTERFACE_INFO_LIST> other = std::move(block);
    list(handle, block);
    other = std::move(block);
    block.reset(); // NOLINT(bugprone-use-after-move): it holds what the other owned
    EXPECT_EQ(engine().liveBlocks(), 1U);
    other.reset();
    EXPECT_EQ(engine().liveBlocks(), 0U);
    EXPECT_EQ(engine().badFrees(), 0U);
}

TEST_F(Owners, CallNothingWhenTheyOwnNothing) {
    {
        const ClientHandle handle;
        const WlanMemory<WLAN_BSS_LIST> block;
        const RpcText text;
    }
    EXPECT_TRUE(engine().calls().empty());
}

TEST_F(Owners, FreeTheirTextAtTheirEnd) {
    {
        RpcText text;
        const GUID guid{};
        ASSERT_EQ(api().UuidToStringW(&guid, out(text)), RPC_S_OK);
        EXPECT_EQ(engine().leaks().texts, 1U);
    }
    EXPECT_EQ(engine().leaks().texts, 0U);
}

} // namespace
} // namespace nativewifi
