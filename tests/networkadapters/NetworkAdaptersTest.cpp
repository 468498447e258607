#include <networkadapters/NetworkAdapters.h>

#include <gtest/gtest.h>

namespace test {

namespace {

#ifdef _WIN32

TEST(NetworkAdapters, HaveANameEach) {
    for (const networkadapters::NetworkAdapter& adapter : networkadapters::networkAdapters()) {
        EXPECT_FALSE(adapter.name.empty());
    }
}

#else

TEST(NetworkAdapters, AreNotListedOnOtherSystems) {
    EXPECT_TRUE(networkadapters::networkAdapters().empty());
}

#endif

} // namespace

} // namespace test
