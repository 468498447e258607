// The netlink socket on the running kernel: its own family "nlctrl" is there with and without
// radios, and knows each other family.
#include <CallError.h>
#include <NetlinkKernel.h>

#include <support/Netlink.h>
#include <support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <linux/genetlink.h>
#include <linux/rfkill.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <fstream>
#include <stdexcept>
#include <thread>

namespace nativewifi::linux_radio {
namespace {

using namespace test::netlink;

constexpr const char* FAMILY = "nlctrl";
constexpr std::chrono::seconds LIMIT{3};
constexpr std::chrono::seconds NO_TIME{0};

Bytes familyName(const char* family) {
    return text(CTRL_ATTR_FAMILY_NAME, family);
}

TEST(NetlinkTransport, AnswersARequest) {
    NetlinkTransport transport(FAMILY, LIMIT);
    int answers = 0;
    const Outcome outcome =
        transport.request(CTRL_CMD_GETFAMILY, familyName(FAMILY), [&](Attributes attributes) {
            ++answers;
            EXPECT_GT(attributes.size(), 20U);
        });
    EXPECT_EQ(outcome.error, 0);
    EXPECT_FALSE(outcome.interrupted);
    EXPECT_EQ(answers, 1);
}

TEST(NetlinkTransport, AnswersAListInManyMessages) {
    NetlinkTransport transport(FAMILY, LIMIT);
    int answers = 0;
    for (int i = 0; i < 2; ++i) {
        answers = 0;
        const Outcome outcome =
            transport.dump(CTRL_CMD_GETFAMILY, {}, [&](Attributes) { ++answers; });
        EXPECT_EQ(outcome.error, 0);
    }
    EXPECT_GT(answers, 1);
}

TEST(NetlinkTransport, GivesTheKernelsError) {
    NetlinkTransport transport(FAMILY, LIMIT);
    const auto ignore = [](Attributes) {};
    EXPECT_EQ(transport.request(CTRL_CMD_GETFAMILY, familyName("no-such-one"), ignore).error,
              ENOENT);
    EXPECT_EQ(transport.request(CTRL_CMD_GETFAMILY, {}, ignore).error, EINVAL);
    EXPECT_EQ(transport.request(99, {}, ignore).error, EOPNOTSUPP);
    EXPECT_EQ(transport.request(CTRL_CMD_GETFAMILY, familyName(FAMILY), ignore).error, 0);
}

TEST(NetlinkTransport, SaysThatTheKernelDoesNotHaveTheFamily) {
    NetlinkTransport transport("no-such-one", LIMIT);
    EXPECT_EQ(transport.connect(), ENOENT);
    EXPECT_EQ(transport.request(1, {}, [](Attributes) {}).error, ENOENT);
}

TEST(NetlinkTransport, WaitsForNoAnswerLongerThanItsLimit) {
    NetlinkTransport transport(FAMILY, NO_TIME);
    EXPECT_EQ(transport.connect(), ETIMEDOUT);
    EXPECT_EQ(transport.dump(CTRL_CMD_GETFAMILY, {}, [](Attributes) {}).error, ETIMEDOUT);
}

TEST(NetlinkTransport, TakesNoAnswerOfARequestThatWasGivenUp) {
    NetlinkTransport transport(FAMILY, LIMIT);
    int seen = 0;
    EXPECT_THROW(transport.dump(CTRL_CMD_GETFAMILY, {},
                                [&](Attributes) {
                                    ++seen;
                                    throw std::bad_alloc();
                                }),
                 std::bad_alloc);
    EXPECT_EQ(seen, 1);
    int answers = 0;
    const Outcome outcome =
        transport.request(CTRL_CMD_GETFAMILY, familyName(FAMILY), [&](Attributes) { ++answers; });
    EXPECT_EQ(outcome.error, 0);
    EXPECT_EQ(answers, 1);
}

TEST(NetlinkTransport, LeavesNoSocketBehind) {
    const auto count = [] {
        return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
    };
    const auto before = count();
    for (const char* const family : {FAMILY, "no-such-one"}) {
        NetlinkTransport transport(family, LIMIT);
        transport.dump(CTRL_CMD_GETFAMILY, {}, [](Attributes) {});
        const NetlinkAnnouncements announcements(family, "/none", LIMIT);
    }
    EXPECT_EQ(count(), before);
}

// --- announcements ---

struct SwitchCounter final : Announcements::Receiver {
    void onMessage(std::uint8_t /*command*/, Attributes /*attributes*/) override {}
    void onSwitch() override { ++switches; }
    void onLoss() override {}
    std::atomic<int> switches{0};
};

TEST(NetlinkAnnouncements, EndWhenTheyAreStopped) {
    NetlinkAnnouncements announcements(FAMILY, "/none", LIMIT);
    ASSERT_EQ(announcements.open({"notify"}), 0);
    std::atomic<bool> ended{false};
    std::thread thread([&] {
        SwitchCounter receiver;
        while (announcements.wait(receiver)) {
        }
        ended = true;
    });
    announcements.stop();
    announcements.stop();
    thread.join();
    EXPECT_TRUE(ended);
    SwitchCounter receiver;
    EXPECT_FALSE(announcements.wait(receiver)) << "from now on";
}

TEST(NetlinkAnnouncements, AreOfAGroupThatThereIs) {
    NetlinkAnnouncements announcements(FAMILY, "/none", LIMIT);
    EXPECT_EQ(announcements.open({"no-such-group"}), ENOENT);
    NetlinkAnnouncements others("no-such-one", "/none", LIMIT);
    EXPECT_EQ(others.open({"notify"}), ENOENT);
}

// How often a thread has been woken or has used its share of the processor.
std::string switchesOf(pid_t thread) {
    std::ifstream status("/proc/self/task/" + std::to_string(thread) + "/status");
    std::string all;
    for (std::string line; std::getline(status, line);) {
        all += line.find("ctxt_switches") != std::string::npos ? line : "";
    }
    return all;
}

TEST(NetlinkAnnouncements, AreWaitedForWithoutUsingTheProcessor) {
    constexpr std::chrono::milliseconds WHILE{200};
    constexpr int ATTEMPTS = 20;
    const test::TemporaryFolder folder;
    const std::string rfkill = folder.file("rfkill");
    ASSERT_EQ(mkfifo(rfkill.c_str(), 0600), 0);
    NetlinkAnnouncements announcements(FAMILY, rfkill, LIMIT);
    const int writer = ::open(rfkill.c_str(), O_WRONLY);
    ASSERT_EQ(announcements.open({"notify"}), 0);
    std::atomic<pid_t> id{0};
    std::thread thread([&] {
        id = static_cast<pid_t>(syscall(SYS_gettid));
        SwitchCounter receiver;
        while (announcements.wait(receiver)) {
        }
    });
    while (id == 0) {
        std::this_thread::yield();
    }
    // At first it may still be on its way to sleep.
    std::string before;
    std::string after;
    for (int attempt = 0; attempt < ATTEMPTS && (before.empty() || after != before); ++attempt) {
        before = switchesOf(id);
        std::this_thread::sleep_for(WHILE);
        after = switchesOf(id);
    }
    EXPECT_NE(before, "");
    EXPECT_EQ(after, before);
    announcements.stop();
    thread.join();
    ::close(writer);
}

TEST(NetlinkAnnouncements, SayThatASwitchWasUsedAndThatRfkillHasGone) {
    constexpr std::chrono::milliseconds WHILE{20}; // to wake again, if it did
    const test::TemporaryFolder folder;
    const std::string rfkill = folder.file("rfkill");
    ASSERT_EQ(mkfifo(rfkill.c_str(), 0600), 0);
    NetlinkAnnouncements announcements(FAMILY, rfkill, LIMIT);
    ASSERT_EQ(announcements.open({"notify"}), 0);
    const int writer = ::open(rfkill.c_str(), O_WRONLY);
    SwitchCounter receiver;
    std::thread thread([&] {
        while (announcements.wait(receiver)) {
        }
    });
    const rfkill_event events[2] = {};
    ASSERT_EQ(write(writer, events, sizeof events), static_cast<ssize_t>(sizeof events));
    const auto awaitSwitches = [&receiver](int count) {
        while (receiver.switches < count) {
            std::this_thread::yield();
        }
    };
    awaitSwitches(1);
    ::close(writer);
    awaitSwitches(2);
    std::this_thread::sleep_for(WHILE);
    announcements.stop();
    thread.join();
    EXPECT_EQ(receiver.switches, 2) << "once for what has come, and for the end of the device";
}

// --- the system ---

TEST(NetlinkKernel, SaysTheTimeSinceTheStartOfTheMachine) {
    NetlinkKernel kernel;
    const std::uint64_t first = kernel.bootTimeNs();
    EXPECT_GT(first, 0U);
    EXPECT_GE(kernel.bootTimeNs(), first);
    EXPECT_EQ(kernel.root(), "/");
}

TEST(NetlinkKernel, SetsUpNoInterfaceThatThereIsNot) {
    NetlinkKernel kernel;
    EXPECT_EQ(kernel.bringUp("no-such-one"), ENODEV);
    EXPECT_EQ(kernel.bringUp(std::string(100, 'x')), ENODEV);
}

// With or without radios in the machine.
TEST(NetlinkKernel, ConnectsToNl80211OrSaysThatItIsNotThere) {
    NetlinkKernel kernel;
    try {
        EXPECT_NE(kernel.connect(), nullptr);
        EXPECT_NE(kernel.listen(), nullptr);
    } catch (const CallError& error) {
        EXPECT_THAT(error.code(), testing::AnyOf(ERROR_SERVICE_NOT_ACTIVE, ERROR_ACCESS_DENIED));
    }
}

} // namespace
} // namespace nativewifi::linux_radio
