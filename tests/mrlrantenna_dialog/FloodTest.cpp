// Floods of notifications from the threads of the service, at every stage of the dialog's life.
#include "DialogTest.h"

#include <mrlrantenna/AnnouncedScan.h>

#include <algorithm>
#include <chrono>
#include <iostream>
#include <thread>

namespace {

using tesk5::TestResult;
using test::AnnouncedScans;
using test::announceScan;
using test::Dialog;
using test::network;

constexpr int FLOOD = 10000;

class NotificationFlood : public test::DialogTest {
protected:
    NotificationFlood() { startRadio({network("Attic", 30U), network("Lab", 50U)}); }
};

// The figure that it prints is real time, from a click to its first call; it is not asserted, as
// the machine may be busy.
TEST_F(NotificationFlood, OfTenThousandInASecondLeavesEachClickAnswered) {
    using RealClock = std::chrono::steady_clock;
    constexpr std::size_t CLICKS = 40;
    std::vector<RealClock::time_point> clicks;
    std::vector<RealClock::time_point> answers;
    std::vector<test::Step> steps;
    std::thread service;
    steps.emplace_back([&](Dialog&) {
        radio().onCall([&](const radiosim::Call& call) {
            if (call.function == "WlanSetInterface") {
                answers.push_back(RealClock::now());
            }
        });
        journal().clear();
        service = std::thread([] {
            const RealClock::time_point start = RealClock::now();
            for (int i = 0; i < FLOOD; ++i) {
                std::this_thread::sleep_until(start + i * std::chrono::microseconds(100));
                announceScan();
            }
        });
    });
    for (std::size_t i = 0; i < CLICKS; ++i) {
        steps.emplace_back([&](Dialog& dialog) {
            EXPECT_EQ(answers.size(), clicks.size());
            clicks.push_back(RealClock::now());
            dialog.PostMessage(WM_COMMAND, MAKEWPARAM(IDC_RADIO_ON_IMAGE, STN_CLICKED));
        });
    }
    steps.emplace_back([&](Dialog&) {
        service.join();
        radio().onCall(nullptr);
    });
    runTest(std::move(steps));
    ASSERT_EQ(answers.size(), CLICKS);
    EXPECT_GT(journal().count("list empty"), 0);
    RealClock::duration slowest{0};
    for (std::size_t i = 0; i < CLICKS; ++i) {
        slowest = std::max(slowest, answers[i] - clicks[i]);
    }
    std::cout << "[ FLOOD    ] " << CLICKS << " clicks, the slowest answered after "
              << std::chrono::duration_cast<std::chrono::microseconds>(slowest).count() << " us; "
              << journal().count("list empty") << " refreshes\n";
}

TEST_F(NotificationFlood, LeavesRefreshesAndChoicesWhole) {
    std::optional<AnnouncedScans> flood;
    std::vector<test::Step> steps;
    steps.emplace_back([&](Dialog&) { flood.emplace(); });
    for (int i = 0; i < 10; ++i) {
        steps.emplace_back([&, i](Dialog& dialog) {
            EXPECT_THAT(test::entries(dialog), testing::ElementsAre("Attic", "Lab"));
            test::choose(dialog, i % 2);
            EXPECT_EQ(test::shown(dialog, IDC_SSID), i % 2 == 0 ? "Attic" : "Lab");
            EXPECT_EQ(dialog.m_signalMeter.SendMessage(PBM_GETPOS), i % 2 == 0 ? 30 : 50);
            test::tick(dialog);
        });
    }
    steps.emplace_back([](Dialog& dialog) { test::press(dialog, VK_ESCAPE); });
    EXPECT_EQ(runTest(std::move(steps)), TestResult::USERABORTED());
    EXPECT_TRUE(ended());
    EXPECT_EQ(journal().fromOtherThreads(), 0);
}

TEST_F(NotificationFlood, GoesOnWhileDialogsOpenAndEnd) {
    const AnnouncedScans flood;
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(runTest({[](Dialog& dialog) { test::press(dialog, VK_ESCAPE); }}),
                  TestResult::USERABORTED());
        EXPECT_EQ(runTest({[](Dialog& dialog) { dialog.PostMessage(WM_CLOSE); }}),
                  TestResult::COMPLETED());
    }
    EXPECT_EQ(radio().openHandles(), 0U);
    EXPECT_EQ(journal().fromOtherThreads(), 0);
}

} // namespace
