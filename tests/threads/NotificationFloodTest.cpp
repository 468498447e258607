// Notifications from the threads of the service while the device is refreshed and measured, while
// the dialog ends, and while a second run goes on.
#include <mrlrantenna/AnnouncedScan.h>
#include <mrlrantenna/DeviceTest.h>
#include <mrlrantenna/VerificationRun.h>

#include <PostedRefresh.h>
#include <ScanNotification.h>

#include <tesk5/RunContext.h>

#include <atomic>
#include <thread>

namespace {

using test::AnnouncedScans;
using testing::ElementsAre;

constexpr int REFRESHES = 30;
constexpr int DIALOGS = 50;

// Stands for the dialog: its place in memory, its window, and what it does when it is idle.
class Screen {
public:
    explicit Screen(const tesk5::DiagDevice& card) : m_device(card) {
        g_scanCompleteContext = this;
        g_scanCompleteHandler = [](void* context) {
            PostedRefresh::instance().post(static_cast<MRLRAntennaDlg*>(context));
        };
        PostedRefresh::instance().open(dialog(), &m_window);
    }
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;
    ~Screen() { PostedRefresh::instance().close(dialog()); }

    // Waits for a posted refresh and does it. \return the names listed
    std::vector<std::string> refresh() {
        while (!PostedRefresh::instance().takePending(dialog())) {
            std::this_thread::yield();
        }
        std::vector<std::string> names;
        const mrl::Uint32 count = m_device.getNumVisibleNetworks();
        for (mrl::Uint32 i = 0; i < count; ++i) {
            names.emplace_back(m_device.m_visibleNetworks[i].m_ssid.getUTF8String().c_str());
        }
        return names;
    }
    // What a choice in the list does.
    mrl::Int32 measure(mrl::Uint32 index) {
        return m_device.getSignalStrength(VisibleNetwork(m_device.m_visibleNetworks[index]));
    }
    void close() { PostedRefresh::instance().close(dialog()); }
    bool hasPendingRefresh() { return PostedRefresh::instance().takePending(dialog()); }

    MRLRAntennaDlg* dialog() { return reinterpret_cast<MRLRAntennaDlg*>(this); }
    WirelessDevice& device() { return m_device; }
    long messages() const { return m_window.emptyMessages; }

private:
    doubles::Window m_window;
    WirelessDevice m_device;
};

class NotificationFlood : public test::VerificationRun {
protected:
    NotificationFlood() {
        tesk5::RunContext::current().stopRequest.clear();
        startRadio({{.ssid = "Attic", .signal = 30U}, {.ssid = "Lab", .signal = 50U}});
    }
    ~NotificationFlood() override {
        g_scanCompleteHandler = nullptr;
        g_scanCompleteContext = nullptr;
        tesk5::RunContext::current().stopRequest.clear();
    }
};

TEST_F(NotificationFlood, LeavesEveryRefreshWhole) {
    Screen screen(device());
    const AnnouncedScans flood(&radio());
    for (int i = 0; i < REFRESHES; ++i) {
        EXPECT_THAT(screen.refresh(), ElementsAre("Attic", "Lab"));
    }
}

TEST_F(NotificationFlood, LeavesTheMeasurementOfASelectionWhole) {
    Screen screen(device());
    const AnnouncedScans flood(&radio());
    screen.refresh();
    for (int i = 0; i < REFRESHES; ++i) {
        EXPECT_EQ(screen.measure(0), 30);
        EXPECT_EQ(screen.measure(1), 50);
    }
}

TEST_F(NotificationFlood, WakesTheDialogOnceForEachRefresh) {
    Screen screen(device());
    const AnnouncedScans flood(&radio());
    for (int i = 1; i <= REFRESHES; ++i) {
        flood.goOn();
        EXPECT_EQ(screen.messages(), i);
        screen.refresh();
        flood.goOn();
    }
}

TEST_F(NotificationFlood, LeavesNothingForADialogThatHasEnded) {
    const AnnouncedScans flood(&radio());
    for (int i = 0; i < DIALOGS; ++i) {
        // On the heap, where the next may get the address of the one before.
        const auto screen = std::make_unique<Screen>(device());
        EXPECT_THAT(screen->refresh(), ElementsAre("Attic", "Lab"));
        screen->close();
        const long messages = screen->messages();
        flood.goOn();
        EXPECT_FALSE(screen->hasPendingRefresh());
        EXPECT_EQ(screen->messages(), messages);
    }
    EXPECT_EQ(radio().openHandles(), 0U);
}

// The slot keeps pointing at the dialog of the run before.
TEST_F(NotificationFlood, DoesNotReachASecondRun) {
    startScene();
    { const Screen gone(device()); }
    const AnnouncedScans flood(&radio());
    EXPECT_EQ(verify(), tesk5::TestResult::PASS());
}

TEST_F(NotificationFlood, MayComeWhileTheRadioChanges) {
    Screen screen(device());
    const AnnouncedScans flood(&radio());
    std::atomic<bool> over = false;
    std::thread room([&] {
        while (!over) {
            radio().setAccessPoints(0, {{.ssid = "Lab", .signal = 50U}});
            radio().setRadio(0, 0, {}, 2);
            radio().setRadio(0, 0, {}, 1);
            radio().setAccessPoints(0, {{.ssid = "Attic", .signal = 30U}, {.ssid = "Lab"}});
        }
    });
    for (int i = 0; i < REFRESHES; ++i) {
        EXPECT_LE(screen.refresh().size(), 2U);
        screen.device().isRadioEnabled(0);
    }
    over = true;
    room.join();
    radio().clearFaults();
}

TEST_F(NotificationFlood, MayComeWhileAStopIsRequested) {
    Screen screen(device());
    const AnnouncedScans flood(&radio());
    std::thread person([&flood] {
        flood.goOn();
        tesk5::RunContext::current().stopRequest.raise();
    });
    do {
        screen.refresh();
    } while (!tesk5::RunContext::current().stopRequest.raised());
    person.join();
    EXPECT_TRUE(tesk5::RunContext::current().stopRequest.raised());
}

} // namespace
