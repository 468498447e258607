// The live line on a simulated terminal.
#include "FrameworkTest.h"

#include <console/Console.h>
#include <console/LiveLine.h>

#include <mrl/Unicode.h>

#include <future>

namespace test {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using tesk5::LiveLine;

class TheLiveLine : public FrameworkTest {
protected:
    // What a person sees of the output, which moves the cursor back.
    std::string shown() const {
        std::u32string seen;
        std::size_t column = 0;
        for (const char32_t c : mrl::toUtf32(output())) {
            if (c == '\r') {
                column = 0;
            } else if (c == '\b') {
                --column;
            } else {
                seen.resize(std::max(seen.size(), column + 1), U' ');
                seen[column++] = c;
            }
        }
        return mrl::toUtf8(seen.substr(0, seen.find_last_not_of(U' ') + 1));
    }

    LiveLine line{mrl::cout, 80};
};

TEST_F(TheLiveLine, ShowsActivityElapsedTimeAndLongestTime) {
    EXPECT_EQ(output(), "");
    line.begin();
    EXPECT_EQ(shown(), "  Running: 0\u00A0s so far");
    clock().sleep(seconds(1));
    line.tell("Scanning", 45);
    EXPECT_EQ(shown(), "  Scanning: 1\u00A0s so far, at most 45\u00A0s more");
    clock().sleep(milliseconds(7500));
    line.draw();
    EXPECT_EQ(shown(), "  Scanning: 8\u00A0s so far, at most 38\u00A0s more");
    clock().sleep(seconds(60));
    line.draw();
    EXPECT_EQ(shown(), "  Scanning: 68\u00A0s so far, at most 0\u00A0s more") << "and never less";
    line.tell("Searching", std::nullopt);
    EXPECT_EQ(shown(), "  Searching: 68\u00A0s so far");
}

TEST_F(TheLiveLine, LeavesNothingBehindAtItsEnd) {
    line.begin();
    line.tell("A long tale of what is going on", 10);
    line.tell("Short", 10);
    EXPECT_EQ(shown(), "  Short: 0\u00A0s so far, at most 10\u00A0s more");
    mrl::cout << "^C";
    line.end();
    EXPECT_EQ(shown(), "");
    line.draw();
    EXPECT_EQ(shown(), "") << "it is over";
    { LiveLine(mrl::cout, 80).begin(); }
    EXPECT_EQ(shown(), "");
    EXPECT_EQ(output().back(), '\r') << "the next line begins at the left";
}

TEST_F(TheLiveLine, MakesRoomForPermanentLines) {
    line.begin();
    std::string meanwhile;
    line.yieldTo([&] { meanwhile = shown(); });
    EXPECT_EQ(meanwhile, "");
    EXPECT_EQ(shown(), "  Running: 0\u00A0s so far");
}

TEST_F(TheLiveLine, IsNotWrittenBehindLastWords) {
    tesk5::Console console(tesk5::RunContext::current(), {.live = true});
    const tesk5::Test* const test = registerTest("A", TestResult::PASS());
    const DiagDevice card("Card 1", DeviceCapability::Wireless());
    console.onTestStart({test, &card});
    const tesk5::LastWords words = console.lastWords();
    ASSERT_TRUE(words.begun);
    *words.begun = true;
    forgetOutput();
    console.onProgress({"SCAN", "Scanning", 45});
    console.onStopRequest();
    console.onTestBroken({test, &card}, "");
    EXPECT_EQ(output(), "");
}

TEST_F(TheLiveLine, LeavesTheLastColumnFreeAndRoomForTheEchoOfAnInterrupt) {
    LiveLine narrow(mrl::cout, 12);
    narrow.begin();
    narrow.tell("Scanning for networks", 45);
    EXPECT_EQ(shown(), "  Scanni…") << "eight columns and the ellipsis";
}

TEST_F(TheLiveLine, ShowsNoControlCharactersOfNames) {
    line.begin();
    line.tell("\x1b[2JLab\r", 1);
    EXPECT_THAT(output(), Not(HasSubstr("\x1b")));
    EXPECT_EQ(shown(), "  \\x1B[2JLab\\r: 0\u00A0s so far, at most 1\u00A0s more");
}

TEST(ATicker, TicksUntilItIsDestroyed) {
    std::atomic<int> ticks = 0;
    {
        std::promise<void> threeTimes;
        const tesk5::Ticker ticker(milliseconds(1), [&] {
            if (++ticks == 3) {
                threeTimes.set_value();
            }
        });
        threeTimes.get_future().wait();
    }
    const int atEnd = ticks;
    EXPECT_GE(atEnd, 3);
    std::this_thread::yield();
    EXPECT_EQ(ticks, atEnd);
}

using AStopRequest = FrameworkTest;

TEST_F(AStopRequest, IsAnsweredWithTheLongestTimeOfTheCurrentTestIfItIsKnown) {
    tesk5::Console console(tesk5::RunContext::current(), {});
    const auto answer = [&] {
        forgetOutput();
        console.onStopRequest();
        return errors();
    };
    const std::string unknown = "example: stopping: the run ends after the current test; Ctrl+C "
                                "once more ends the program at once, without a report\n";
    EXPECT_EQ(answer(), unknown);
    console.onProgress({"SCAN", "Scanning", 45});
    clock().sleep(milliseconds(14500));
    EXPECT_EQ(answer(),
              "example: stopping: the current test ends within 31\u00A0s, then the run; Ctrl+C "
              "once more ends the program at once, without a report\n");
    clock().sleep(seconds(60));
    EXPECT_EQ(answer(), unknown) << "the test has exceeded its time";
    console.onProgress({"SCAN", "Scanning", 45});
    const tesk5::Test* const next = registerTest("B", TestResult::PASS());
    const DiagDevice card("Card 1", DeviceCapability::Wireless());
    console.onTestStart({next, &card});
    EXPECT_EQ(answer(), unknown) << "the time was that of the test before";
    EXPECT_EQ(output(), "");
}

using Verdicts = FrameworkTest;

TEST_F(Verdicts, OfSuccessfulRunsAreNotPrintedWhenQuiet) {
    registerTest("A", TestResult::PASS());
    registerTest("B", TestResult::COMPLETED());
    EXPECT_EQ(start({"run", "--quiet"}), 0);
    EXPECT_EQ(output(), "");
    EXPECT_EQ(errors(), "");
}

TEST_F(Verdicts, OfUnsuccessfulRunsArePrintedAlsoWhenQuiet) {
    registerTest("A", TestResult::PASS());
    registerTest("B", [](const DiagDevice&) {
        DiagModule::warning(DiagModule::createEvent("PLAIN"), "", 1);
        return TestResult::WARN();
    });
    EXPECT_EQ(start({"run", "--quiet"}), 1);
    EXPECT_EQ(output(), "B on Card 1\n  warning: Something happened.\n  WARN after 0.0\u00A0s\n");
}

TEST_F(Verdicts, AreColouredWhenAskedForAndElseInATerminalOnly) {
    registerTest("A", TestResult::PASS());
    registerTest("B", TestResult::WARN());
    registerTest("C", TestResult::FAIL());
    start({"run", "--color", "always"});
    EXPECT_THAT(output(), HasSubstr("  \x1b[32mPASS\x1b[0m after 0.0\u00A0s\n"));
    EXPECT_THAT(output(), HasSubstr("  \x1b[33mWARN\x1b[0m after 0.0\u00A0s\n"));
    EXPECT_THAT(output(), HasSubstr("  \x1b[31mFAIL\x1b[0m after 0.0\u00A0s\n"));
    forgetOutput();
    start({"run", "--color=never"});
    EXPECT_EQ(output().find('\x1b'), std::string::npos);
}

} // namespace

} // namespace test
