#include <tesk5/DiagModule.h>
#include <tesk5/StopRequest.h>

#include <gtest/gtest.h>

#include <csignal>
#include <future>

namespace test {

namespace {

using tesk5::InterruptWatch;
using tesk5::StopRequest;

struct Stopping : testing::Test {
    Stopping() { StopRequest::clear(); }
    ~Stopping() override { StopRequest::clear(); }
};

TEST_F(Stopping, IsWhatCheckForStopTells) {
    EXPECT_FALSE(tesk5::DiagModule::checkForStop());
    StopRequest::raise();
    EXPECT_TRUE(tesk5::DiagModule::checkForStop());
    StopRequest::clear();
    EXPECT_FALSE(tesk5::DiagModule::checkForStop());
}

TEST_F(Stopping, IsNotWhatRequestAbortAsksFor) {
    tesk5::DiagModule::requestAbort();
    EXPECT_FALSE(tesk5::DiagModule::checkForStop());
}

TEST_F(Stopping, IsAskedForByAnInterruptDuringAWatchAndToldOnce) {
    std::atomic<int> told = 0;
    {
        std::promise<void> toldOnce;
        const InterruptWatch watch([&] {
            ++told;
            toldOnce.set_value();
        });
        EXPECT_FALSE(StopRequest::raised());
        std::raise(SIGINT);
        EXPECT_TRUE(StopRequest::raised());
        toldOnce.get_future().wait();
    }
    EXPECT_EQ(told, 1);
}

using StoppingDeathTest = Stopping;

TEST_F(StoppingDeathTest, EndsTheProcessAtTheSecondInterrupt) {
    EXPECT_EXIT(
        {
            const InterruptWatch watch;
            std::raise(SIGINT);
            std::raise(SIGINT);
        },
        testing::ExitedWithCode(6), "");
}

TEST_F(Stopping, IsNotWatchedForAnyMoreAfterwards) {
    int told = 0;
    {
        const InterruptWatch watch([&told] { ++told; });
    }
    EXPECT_EQ(std::signal(SIGINT, SIG_DFL), SIG_DFL);
    EXPECT_EQ(told, 0);
}

TEST_F(Stopping, IsWatchedForAgainByTheNextWatch) {
    for (int i = 0; i < 3; ++i) {
        StopRequest::clear();
        const InterruptWatch watch;
        std::raise(SIGINT);
        EXPECT_TRUE(StopRequest::raised());
    }
}

} // namespace

} // namespace test
