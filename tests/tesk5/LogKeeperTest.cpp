#include <run/LogKeeper.h>

#include <support/CapturedLog.h>

#include <mrl/LoggerStream.h>

#include <gmock/gmock.h>

namespace test {

namespace {

using mrl::LogFactory;
using tesk5::KeptLog;
using tesk5::LogKeeper;
using testing::ElementsAre;

void log(int priority, const std::string& text) {
    mrl::Logger& logger = LogFactory::createLogger("kept");
    mrl::LoggerStream(logger.admitting(priority), priority) << text;
}

TEST(LogKeeper, KeepsLinesWithoutAnotherSink) {
    const LogKeeper keeper;
    log(0, "trace");
    log(1, "one\n");
    const KeptLog kept = keeper.log();
    ASSERT_EQ(kept.first.size(), 1U);
    EXPECT_EQ(kept.first[0].logger, "kept");
    EXPECT_EQ(kept.first[0].priority, 1);
    EXPECT_EQ(kept.first[0].text, "one\\n");
}

TEST(LogKeeper, PassesOnWhatWasAdmittedBefore) {
    const CapturedLog captured(2);
    {
        const LogKeeper keeper;
        log(1, "ordinary");
        log(2, "admitted");
        EXPECT_EQ(keeper.log().first.size(), 2U);
    }
    EXPECT_EQ(LogFactory::getPriority(), 2);
    log(2, "later");
    EXPECT_THAT(captured.texts(), ElementsAre("admitted", "later"));
}

TEST(LogKeeper, GivesTheLogBackToTheSinkBefore) {
    const CapturedLog captured(2);
    const std::shared_ptr<mrl::LogSink> before = LogFactory::setSink(nullptr);
    LogFactory::setSink(before);
    { const LogKeeper keeper; }
    EXPECT_EQ(LogFactory::setSink(before), before);
}

TEST(LogKeeper, PassesRequestedTracesOnAndDoesNotKeepThem) {
    const CapturedLog captured(0);
    const LogKeeper keeper;
    log(0, "trace");
    EXPECT_THAT(captured.texts(), ElementsAre("trace"));
    EXPECT_TRUE(keeper.log().first.empty());
}

TEST(LogKeeper, OfALongLogKeepsTheBeginningAndTheEnd) {
    const LogKeeper keeper;
    constexpr std::size_t MORE = 3;
    constexpr std::size_t ALL = KeptLog::FIRST + KeptLog::LAST + MORE;
    for (std::size_t i = 0; i < ALL; ++i) {
        log(1, std::to_string(i));
    }
    const KeptLog kept = keeper.log();
    EXPECT_EQ(kept.first.size(), KeptLog::FIRST);
    EXPECT_EQ(kept.last.size(), KeptLog::LAST);
    EXPECT_EQ(kept.leftOut, MORE);
    EXPECT_EQ(kept.first.back().text, std::to_string(KeptLog::FIRST - 1));
    EXPECT_EQ(kept.last.front().text, std::to_string(KeptLog::FIRST + MORE));
    EXPECT_EQ(kept.last.back().text, std::to_string(ALL - 1));
}

TEST(LogKeeper, CutsALongLineBetweenCharacters) {
    const LogKeeper keeper;
    log(1, std::string(KeptLog::LONGEST_TEXT - 1, 'x') + "\xC3\xA5\xC3\xA4");
    EXPECT_EQ(keeper.log().first[0].text, std::string(KeptLog::LONGEST_TEXT - 1, 'x') + "...");
    const std::string longest(KeptLog::LONGEST_TEXT, 'x');
    log(1, longest);
    EXPECT_EQ(keeper.log().first[1].text, longest);
    log(1, longest + "x");
    EXPECT_EQ(keeper.log().first[2].text, longest + "...");
}

} // namespace

} // namespace test
