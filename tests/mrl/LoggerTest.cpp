#include <mrl/LoggerStream.h>
#include <mrl/TraceLogger.h>

#include <support/CapturedLog.h>
#include <support/VirtualClock.h>

#include <gmock/gmock.h>

#include <cstdlib>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

using mrl::LogFactory;
using mrl::Logger;
using mrl::LoggerStream;
using test::CapturedLog;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

// Loggers live as long as the process: each test uses names of its own.
Logger& logger(const std::string& name) {
    const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
    return LogFactory::createLogger(std::string(test->name()) + name);
}

void log(Logger& logger, int priority, const char* text) {
    LoggerStream(logger.admitting(priority), priority) << text;
}

TEST(LogFactory, OneNameIsOneLoggerAlsoAnOddOne) {
    for (const char* name : {"a.b", "a", "a.B", "", ".", "..", ".x", "x.", "x..y"}) {
        EXPECT_EQ(LogFactory::createLogger(name).name(), name);
        EXPECT_EQ(&LogFactory::createLogger(name), &LogFactory::createLogger(name));
    }
}

// The lines before the first setPriority() of a process: each test runs in a process of its own.
class EarlyLinesDeathTest : public testing::Test {
protected:
    using Matcher = testing::Matcher<const std::string&>;

    EarlyLinesDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

    static void logEarly() {
        test::VirtualClock clock;
        log(LogFactory::createLogger("early"), 0, "trace");
        clock.sleep(std::chrono::seconds(1));
        log(LogFactory::createLogger("early"), 1, "first");
        clock.sleep(std::chrono::seconds(1));
        log(LogFactory::createLogger("early"), 4, "second\n");
    }
    static void openLog(int threshold) {
        LogFactory::setSink(mrl::standardErrorLogSink());
        LogFactory::setPriority(threshold);
        const test::VirtualClock clock;
        log(LogFactory::createLogger("late"), 5, "late");
    }
    /// Expects these lines on standard error of a process that does `action`.
    template <typename Action>
    static void expectLog(Action action, const Matcher& lines) {
        EXPECT_EXIT(
            {
                action();
                std::exit(0);
            },
            testing::ExitedWithCode(0), lines);
    }
};

TEST_F(EarlyLinesDeathTest, AreWrittenInTheirOrderWithTheirTimesWhenTheLogOpens) {
    expectLog(
        [] {
            logEarly();
            openLog(0);
        },
        HasSubstr("2026-11-20T19:55:01.123Z 0 early: trace\n"
                  "2026-11-20T19:55:02.123Z 1 early: first\n"
                  "2026-11-20T19:55:03.123Z 4 early: second\\n\n"
                  "2026-11-20T19:55:01.123Z 5 late: late\n"));
}

TEST_F(EarlyLinesDeathTest, BelowTheThresholdOrOfARunWithoutALogAreDiscarded) {
    expectLog(
        [] {
            logEarly();
            openLog(2);
        },
        AllOf(Not(HasSubstr("trace")), Not(HasSubstr("first")), HasSubstr("second"),
              HasSubstr("late")));
    expectLog(
        [] {
            logEarly();
            LogFactory::setPriority(LogFactory::OFF);
            openLog(0);
        },
        AllOf(Not(HasSubstr("early")), HasSubstr("late")));
}

TEST_F(EarlyLinesDeathTest, AreKeptUpToALimit) {
    static_assert(LogFactory::MOST_KEPT_LINES == 100);
    expectLog(
        [] {
            for (int i = 1; i <= 101; ++i) {
                log(logger(""), 1, ("line " + std::to_string(i) + ".").c_str());
            }
            openLog(0);
        },
        AllOf(HasSubstr("line 1."), HasSubstr("line 100."), Not(HasSubstr("line 101."))));
}

TEST_F(EarlyLinesDeathTest, ASinkAloneDoesNotReceive) {
    expectLog(
        [] {
            LogFactory::setSink(mrl::standardErrorLogSink());
            logEarly();
        },
        Not(HasSubstr("early")));
}

TEST_F(EarlyLinesDeathTest, AScopeThatIsOpenWhenTheLogOpensClosesInIt) {
    const auto openInScope = [](int threshold) {
        const mrl::TraceLogger scope(&logger(""), "scope", "f", 1);
        openLog(threshold);
    };
    expectLog([&] { openInScope(0); }, AllOf(HasSubstr("> scope (f:1)"), HasSubstr("< scope")));
    expectLog([&] { openInScope(1); }, Not(HasSubstr("scope")));
}

TEST(Logger, WithoutASinkOrWithTheThresholdOffALineIsLost) {
    const CapturedLog captured(0);
    const auto sink = LogFactory::setSink(nullptr);
    EXPECT_NE(sink, nullptr);
    log(logger(""), 5, "lost");
    EXPECT_EQ(LogFactory::setSink(sink), nullptr) << "the one before";
    LogFactory::setPriority(LogFactory::OFF);
    log(logger(""), 1000, "lost");
    EXPECT_THAT(captured.texts(), IsEmpty());
}

TEST(Logger, ALineIsWrittenWhenBothThresholdAndPriorityAreAtMostItsOwn) {
    for (int threshold = 0; threshold <= 3; ++threshold) {
        for (int own = 0; own <= 3; ++own) {
            for (int priority = 0; priority <= 3; ++priority) {
                const CapturedLog captured(threshold);
                logger("").setPriority(own);
                log(logger(""), priority, "line");
                const bool expected = threshold <= priority && own <= priority;
                EXPECT_EQ(captured.lines().size(), expected ? 1U : 0U)
                    << "threshold " << threshold << ", logger " << own << ", line " << priority;
            }
        }
    }
}

TEST(Logger, ThePriorityComesFromTheNearestLoggerAboveThatHasOne) {
    Logger& leaf = logger(".b.c");
    EXPECT_EQ(leaf.getPriority(), 0);
    logger("").setPriority(1);
    EXPECT_EQ(leaf.getPriority(), 1);
    logger(".b").setPriority(7);
    EXPECT_EQ(leaf.getPriority(), 7);
    leaf.setPriority(3);
    EXPECT_EQ(leaf.getPriority(), 3);
    EXPECT_EQ(logger(".b").getPriority(), 7);
    leaf.clearPriority();
    EXPECT_EQ(leaf.getPriority(), 7);
    logger(".b").clearPriority();
    EXPECT_EQ(leaf.getPriority(), 1);
    EXPECT_EQ(logger("Longer").getPriority(), 0) << "a longer name without a dot";
    logger("").clearPriority();
    EXPECT_EQ(leaf.getPriority(), 0);
}

TEST(Logger, OneCallIsOneLine) {
    const CapturedLog captured;
    log(logger(""), 1, "first\nsecond\r\n\x1B[2Jthird \xE2\x80\xAE");
    EXPECT_THAT(captured.texts(), ElementsAre("first\\nsecond\\r\\n\\x1B[2Jthird \\u202E"));
}

TEST(Logger, AFailingSinkLosesTheLineAndNothingElse) {
    class FullDisk final : public mrl::LogSink {
        void write(const mrl::LogRecord&) override { throw std::runtime_error("disk full"); }
    };
    const CapturedLog captured;
    const auto working = LogFactory::setSink(std::make_shared<FullDisk>());
    EXPECT_NO_THROW(log(logger(""), 1, "lost"));
    LogFactory::setSink(working);
    log(logger(""), 1, "kept");
    EXPECT_THAT(captured.texts(), ElementsAre("kept"));
}

TEST(Logger, MayBeUsedByManyThreadsAtOnce) {
    constexpr int THREADS = 4;
    constexpr int LINES = 200;
    const CapturedLog captured;
    const std::string name = logger("").name();
    std::vector<std::thread> threads;
    threads.reserve(THREADS);
    for (int thread = 0; thread < THREADS; ++thread) {
        threads.emplace_back([&name, thread] {
            for (int line = 0; line < LINES; ++line) {
                Logger& own = LogFactory::createLogger(name + "." + std::to_string(line % 10));
                own.setPriority(line % 2);
                LoggerStream(own.admitting(1), 1) << thread << "/" << line;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    int next[THREADS] = {};
    for (const std::string& text : captured.texts()) {
        const int thread = std::stoi(text);
        ASSERT_EQ(text, std::to_string(thread) + "/" + std::to_string(next[thread]));
        ++next[thread];
    }
    EXPECT_THAT(next, testing::Each(LINES));
}

TEST(LoggerStream, JoinsPiecesOfEveryKindOfWhichNullTextsAddNothing) {
    const CapturedLog captured;
    const std::string_view view("view");
    LoggerStream(&logger(""), 1) << 245 << " " << mrl::String("M\xC3\xBCller") << " "
                                 << MRL_TEXT("utf-16") << static_cast<const mrl::Char*>(nullptr)
                                 << " " << view << " " << -1 << static_cast<const char*>(nullptr)
                                 << " " << 0xFFFFFFFFU << " " << 18446744073709551615ULL;
    EXPECT_THAT(captured.texts(), ElementsAre("245 M\xC3\xBCller utf-16 view -1 4294967295 "
                                              "18446744073709551615"));
}

TEST(LoggerStream, ALineNumberComesFirstWithABlankAndWithoutALoggerNothingIsWritten) {
    const CapturedLog captured;
    LoggerStream(&logger(""), 1, 245) << "text";
    LoggerStream(nullptr, 1, 246) << 1 << "text" << mrl::String("text");
    EXPECT_THAT(captured.texts(), ElementsAre("245 text"));
}

TEST(LoggerStream, IsWrittenWhenAnExceptionLeavesItsScope) {
    const CapturedLog captured;
    try {
        LoggerStream stream(&logger(""), 1);
        stream << "half";
        throw std::runtime_error("out");
    } catch (const std::runtime_error&) {
        EXPECT_THAT(captured.texts(), ElementsAre("half"));
    }
}

} // namespace
