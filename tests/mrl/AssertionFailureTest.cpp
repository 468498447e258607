#include <mrl/AssertionFailure.h>

#include <support/CapturedLog.h>

#include <gmock/gmock.h>

namespace {

TEST(AssertionFailure, LogsHeaderLineAndCondition) {
    const test::CapturedLog captured;
    mrl::AssertionFailure::logAssert("SomeHeader", 42, "a < b");
    const auto lines = captured.lines();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].text, "SomeHeader:42 assertion failed: a < b");
    EXPECT_EQ(lines[0].logger, "mrl.assertion");
    EXPECT_EQ(lines[0].priority, 5);
}

TEST(AssertionFailure, IsSilentWhileLoggingIsOff) {
    const test::CapturedLog captured(6);
    mrl::AssertionFailure::logAssert("SomeHeader", 42, "a < b");
    EXPECT_THAT(captured.lines(), testing::IsEmpty());
}

} // namespace
