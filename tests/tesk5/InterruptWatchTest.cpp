#include <run/InterruptWatch.h>

#ifdef _WIN32
#include <run/InterruptWatchWin32.h>
#endif

#include <mrl/OutputStream.h>

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <csignal>
#include <future>

#ifndef _WIN32
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace test {

namespace {

using tesk5::InterruptWatch;
using tesk5::StopRequest;

// Ctrl+C as the system delivers it.
void interrupt() {
#ifdef _WIN32
    constexpr unsigned long CTRL_C = 0;
    tesk5::onConsoleEvent(CTRL_C);
#else
    std::raise(SIGINT);
#endif
}

struct Stopping : testing::Test {
    StopRequest m_request;
};

TEST_F(Stopping, IsRequestedByAnInterruptDuringAWatchWhichReportsItOnce) {
    std::atomic<int> reports = 0;
    {
        std::promise<void> reported;
        const InterruptWatch watch(m_request, [&] {
            ++reports;
            reported.set_value();
        });
        EXPECT_FALSE(m_request.raised());
        interrupt();
        EXPECT_TRUE(m_request.raised());
        reported.get_future().wait();
    }
    EXPECT_EQ(reports, 1);
}

using StoppingDeathTest = Stopping;

TEST_F(StoppingDeathTest, EndsTheProcessAtTheSecondInterrupt) {
    EXPECT_EXIT(
        {
            const InterruptWatch watch(m_request);
            interrupt();
            interrupt();
        },
        testing::ExitedWithCode(6), "");
}

TEST_F(StoppingDeathTest, WritesItsLastWordsAtTheSecondInterruptAlone) {
    EXPECT_EXIT(
        {
            const InterruptWatch watch(m_request, {}, {.errors = "That is all.\n"});
            interrupt();
            std::fputs("Still here. ", stderr);
            std::fflush(stderr);
            interrupt();
        },
        testing::ExitedWithCode(6), "Still here. That is all.");
}

TEST_F(Stopping, IsWatchedForAgainByTheNextWatch) {
    for (int i = 0; i < 3; ++i) {
        m_request.clear();
        const InterruptWatch watch(m_request);
        interrupt();
        EXPECT_TRUE(m_request.raised());
    }
}

TEST_F(Stopping, IsNotReportedByTheWatchAfterTheOneThatItCameIn) {
    {
        const InterruptWatch first(m_request);
        interrupt();
    }
    std::promise<void> reported;
    const InterruptWatch second(m_request, [&reported] { reported.set_value(); });
    constexpr std::chrono::milliseconds CHANCE(20);
    EXPECT_EQ(reported.get_future().wait_for(CHANCE), std::future_status::timeout);
}

TEST_F(Stopping, IsRequestedOfTheFirstWatchAlone) {
    StopRequest other;
    const InterruptWatch first(m_request);
    {
        const InterruptWatch second(other);
        interrupt();
    }
    EXPECT_TRUE(m_request.raised());
    EXPECT_FALSE(other.raised());
}

#ifndef _WIN32

TEST_F(StoppingDeathTest, SaysThatItsLastWordsBegin) {
    // In memory that the process of the death test shares with this one.
    void* const memory = mmap(nullptr, sizeof(std::atomic<bool>), PROT_READ | PROT_WRITE,
                              MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(memory, MAP_FAILED);
    const std::shared_ptr<std::atomic<bool>> begun(
        new (memory) std::atomic<bool>(false),
        [](std::atomic<bool>* flag) { munmap(flag, sizeof *flag); });
    EXPECT_EXIT(
        {
            const InterruptWatch watch(m_request, {}, {.begun = begun});
            interrupt();
            std::fputs(*begun ? "too early" : "in time", stderr);
            interrupt();
        },
        testing::ExitedWithCode(6), "in time");
    EXPECT_TRUE(*begun);
}

TEST_F(StoppingDeathTest, WritesTheWordsForTheOutputFirst) {
    EXPECT_EXIT(
        {
            dup2(STDERR_FILENO, STDOUT_FILENO);
            const InterruptWatch watch(m_request, {},
                                       {.output = "To output. ", .errors = "To errors.\n"});
            interrupt();
            interrupt();
        },
        testing::ExitedWithCode(6), "To output. To errors.");
}

TEST_F(Stopping, LetsSystemCallsGoOn) {
    const InterruptWatch watch(m_request);
    struct sigaction installed = {};
    ASSERT_EQ(sigaction(SIGINT, nullptr, &installed), 0);
    EXPECT_NE(installed.sa_flags & SA_RESTART, 0);
}

// Standard output becomes a pipe that takes nothing: it is full, or it has no reader.
void blockOutput(bool full) {
    int ends[2] = {};
    ASSERT_EQ(pipe(ends), 0);
    if (full) {
        const std::array<char, 4096> text{};
        fcntl(ends[1], F_SETFL, O_NONBLOCK);
        while (write(ends[1], text.data(), text.size()) > 0) {
        }
        fcntl(ends[1], F_SETFL, 0);
    } else {
        close(ends[0]);
    }
    dup2(ends[1], STDOUT_FILENO);
}

TEST_F(StoppingDeathTest, LosesLastWordsThatTheirStreamDoesNotTake) {
    for (const bool full : {false, true}) {
        EXPECT_EXIT(
            {
                blockOutput(full);
                const InterruptWatch watch(m_request, {},
                                           {.output = "Lost.\n", .errors = "That is all.\n"});
                interrupt();
                interrupt();
            },
            testing::ExitedWithCode(6), "That is all.")
            << (full ? "full" : "without a reader");
    }
}

#else

TEST_F(StoppingDeathTest, SaysThatItsLastWordsBegin) {
    const auto begun = std::make_shared<std::atomic<bool>>(false);
    // Standard error of the program, which tells whether the words had begun.
    class Told final : public mrl::OutputStream::Receiver {
    public:
        explicit Told(const std::atomic<bool>& begun) : m_begun(begun) {}
        void write(std::string_view utf8) override {
            std::fprintf(stderr, "%.*s %s.\n", static_cast<int>(utf8.size()), utf8.data(),
                         m_begun ? "begun" : "not begun");
            std::fflush(stderr);
        }

    private:
        const std::atomic<bool>& m_begun;
    };
    EXPECT_EXIT(
        {
            Told told(*begun);
            mrl::cerr.redirect(&told);
            const InterruptWatch watch(m_request, {}, {.begun = begun, .errors = "Last words:"});
            interrupt();
            mrl::cerr << "First:";
            interrupt();
        },
        testing::ExitedWithCode(6), "First: not begun.\nLast words: begun.");
}

TEST_F(StoppingDeathTest, EndsTheProcessWhenTheConsoleClosesOrWindowsEnds) {
    // CTRL_CLOSE_EVENT, CTRL_LOGOFF_EVENT, CTRL_SHUTDOWN_EVENT
    for (const unsigned long event : {2UL, 5UL, 6UL}) {
        EXPECT_EXIT(
            {
                const InterruptWatch watch(m_request);
                tesk5::onConsoleEvent(event);
            },
            testing::ExitedWithCode(6), "");
    }
}

#endif

TEST_F(Stopping, LeavesInterruptsToTheSystemWithoutAWatch) {
    int reports = 0;
    {
        const InterruptWatch watch(m_request, [&reports] { ++reports; });
    }
#ifdef _WIN32
    EXPECT_FALSE(tesk5::onConsoleEvent(0));
#else
    EXPECT_EQ(std::signal(SIGINT, SIG_DFL), SIG_DFL);
#endif
    EXPECT_FALSE(m_request.raised());
    EXPECT_EQ(reports, 0);
}

} // namespace

} // namespace test
