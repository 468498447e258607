#include <mrl/LoggerStream.h>
#include <mrl/TraceLogger.h>

#include <support/CapturedLog.h>

#include <gmock/gmock.h>

#include <stdexcept>

namespace {

using mrl::LogFactory;
using mrl::Logger;
using mrl::LoggerStream;
using mrl::TraceLogger;
using test::CapturedLog;
using testing::ElementsAre;
using testing::IsEmpty;

Logger& logger() {
    return LogFactory::createLogger("mrlrnetwork.WirelessDevice");
}

TEST(TraceLogger, WritesOpeningAndClosingLineAtPriorityZero) {
    const CapturedLog captured(0);
    {
        const TraceLogger scope(&logger(), "getRadioState()", "modules/WirelessDevice.cpp", 118);
        LoggerStream(logger().admitting(1), 1) << "inside";
    }
    const auto lines = captured.lines();
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0].text, "> getRadioState() (modules/WirelessDevice.cpp:118)");
    EXPECT_EQ(lines[0].priority, 0);
    EXPECT_EQ(lines[0].logger, "mrlrnetwork.WirelessDevice");
    EXPECT_EQ(lines[1].text, "inside");
    EXPECT_EQ(lines[2].text, "< getRadioState()");
    EXPECT_EQ(lines[2].priority, 0);
}

TEST(TraceLogger, ScopesCloseInnermostFirstAlsoWhenAnExceptionLeavesThem) {
    const CapturedLog captured(0);
    EXPECT_THROW(
        {
            const TraceLogger outer(&logger(), "outer", "f", 1);
            const TraceLogger inner(&logger(), "inner", "f", 2);
            throw std::runtime_error("out");
        },
        std::runtime_error);
    EXPECT_THAT(captured.texts(),
                ElementsAre("> outer (f:1)", "> inner (f:2)", "< inner", "< outer"));
}

TEST(TraceLogger, TheLoggersOwnPriorityHidesScopesAndWithoutALoggerThereAreNone) {
    const CapturedLog captured(0);
    logger().setPriority(1);
    { const TraceLogger scope(&logger(), "scope", "f", 1); }
    logger().clearPriority();
    { const TraceLogger scope(nullptr, "scope", "f", 1); }
    EXPECT_THAT(captured.texts(), IsEmpty());
}

TEST(TraceLogger, AScopeThatDidNotOpenDoesNotClose) {
    const CapturedLog captured(1);
    {
        const TraceLogger scope(&logger(), "scope", "f", 1);
        LogFactory::setPriority(0);
    }
    EXPECT_THAT(captured.texts(), IsEmpty());
}

TEST(TraceLogger, AThresholdThatIsRaisedInsideHidesTheClosingLine) {
    const CapturedLog captured(0);
    {
        const TraceLogger scope(&logger(), "scope", "f", 1);
        LogFactory::setPriority(1);
    }
    EXPECT_THAT(captured.texts(), ElementsAre("> scope (f:1)"));
}

} // namespace
