#include <mrl/Clock.h>
#include <mrl/Stopwatch.h>
#include <mrl/System.h>

#include <support/VirtualClock.h>

#include <gmock/gmock.h>

namespace {

using mrl::Clock;
using testing::ElementsAre;
using namespace std::chrono_literals;

TEST(Clock, TheSystemsNeverDecreases) {
    Clock::Duration last = Clock::current().now();
    for (int i = 0; i < 1000; ++i) {
        const Clock::Duration next = Clock::current().now();
        ASSERT_GE(next, last);
        last = next;
    }
}

TEST(Clock, TheSystemsDateIsThatOfTheWallClockAndFollowsTheSteadyOne) {
    const auto apart = [](auto a, auto b) { return a > b ? a - b : b - a; };
    EXPECT_LT(apart(Clock::current().utcNow(), std::chrono::system_clock::now()), 1h);
    Clock::UtcTime last = Clock::current().utcNow();
    for (int i = 0; i < 1000; ++i) {
        const Clock::UtcTime next = Clock::current().utcNow();
        ASSERT_GE(next, last);
        last = next;
    }
}

TEST(SteadyDate, IsAsMuchLaterAsTheSteadyClock) {
    const Clock::UtcTime wall{std::chrono::sys_days(std::chrono::year(2024) / 2 / 29)};
    const mrl::SteadyDate date(wall, 100s);
    EXPECT_EQ(date.at(100s), wall);
    EXPECT_EQ(date.at(144s), wall + 44s);
}

TEST(UtcText, IsCutToMilliseconds) {
    using namespace std::chrono;
    const auto day = sys_days(year(2024) / February / 29);
    const auto at = [](auto time) {
        return mrl::utcText(time_point_cast<system_clock::duration>(time));
    };
    EXPECT_EQ(at(day + hours(1) + minutes(2) + seconds(3) + microseconds(4999)),
              "2024-02-29T01:02:03.004Z");
    EXPECT_EQ(at(sys_days(year(1969) / December / 31) + hours(23)), "1969-12-31T23:00:00.000Z");
}

#ifndef _WIN32
TEST(Clock, TheSystemsOffsetFollowsTheTimeZoneAndItsSummerTime) {
    using namespace std::chrono;
    setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
    tzset();
    EXPECT_EQ(Clock::current().utcOffset(sys_days(2026y / November / 20)), minutes(60));
    EXPECT_EQ(Clock::current().utcOffset(sys_days(2026y / July / 20)), minutes(120));
    setenv("TZ", "NST3:30", 1);
    tzset();
    EXPECT_EQ(Clock::current().utcOffset(sys_days(2026y / July / 20)), minutes(-210));
    unsetenv("TZ");
    tzset();
}
#endif

TEST(Clock, TheSystemsWaitEndsAtADeadlineThatHasPassed) {
    std::mutex mutex;
    std::condition_variable condition;
    std::unique_lock lock(mutex);
    Clock::current().waitUntil(lock, condition, Clock::current().now() - 1s);
    EXPECT_TRUE(lock.owns_lock());
}

TEST(Clock, AScopedClockReplacesTheClockWhileItLives) {
    Clock& system = Clock::current();
    {
        test::VirtualClock outer;
        EXPECT_EQ(&Clock::current(), &outer);
        {
            test::VirtualClock inner;
            EXPECT_EQ(&Clock::current(), &inner);
        }
        EXPECT_EQ(&Clock::current(), &outer);
    }
    EXPECT_EQ(&Clock::current(), &system);
}

TEST(UtcText, ComesBackAsItsTime) {
    for (const char* text : {"1970-01-01T00:00:00.000Z", "2026-11-20T19:55:01.123Z",
                             "2024-02-29T23:59:59.999Z", "2199-12-31T00:00:00.000Z"}) {
        const std::optional<Clock::UtcTime> time = mrl::parseUtc(text);
        ASSERT_TRUE(time) << text;
        EXPECT_EQ(mrl::utcText(*time), text);
    }
}

TEST(UtcText, OfNoTimeIsRefused) {
    for (const char* text :
         {"", "2026-11-20", "2026-11-20T19:55:01Z", "2026-11-20 19:55:01.123Z",
          "2026-11-20T19:55:01.12aZ", "2026-13-20T19:55:01.123Z", "2026-02-29T19:55:01.123Z",
          "2026-11-20T24:00:00.000Z", "2026-11-20T19:60:01.123Z", "2026-11-20T19:55:60.123Z",
          "1969-12-31T23:59:59.999Z", "2200-01-01T00:00:00.000Z", "2026-11-20T19:55:01.123Z "}) {
        EXPECT_FALSE(mrl::parseUtc(text)) << text;
    }
}

TEST(System, SleepsOnTheClockInUse) {
    test::VirtualClock clock;
    mrl::System::mssleep(100);
    mrl::System::mssleep(0);
    mrl::System::mssleep(4294967295U);
    EXPECT_THAT(clock.sleeps(), ElementsAre(100, 0, 4294967295LL));
}

TEST(Stopwatch, RunsFromItsConstruction) {
    const test::VirtualClock clock;
    mrl::System::mssleep(5000);
    const mrl::Stopwatch stopwatch;
    EXPECT_DOUBLE_EQ(stopwatch.getElapsed(), 0);
    mrl::System::mssleep(1500);
    EXPECT_DOUBLE_EQ(stopwatch.getElapsed(), 1.5);
    mrl::System::mssleep(28500);
    EXPECT_DOUBLE_EQ(stopwatch.getElapsed(), 30);
}

} // namespace
