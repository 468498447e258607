// The hook for the end of a scan.
#include "AnnouncedScan.h"
#include "DeviceTest.h"

#include <ScanNotification.h>

#include <mrl/System.h>

#include <thread>

namespace {

using test::announceScan;
using testing::IsEmpty;

// The slot is the process's: each test leaves it as it found it.
class ScanNotification : public test::DeviceTest {
protected:
    ScanNotification() {
        g_scanCompleteHandler = nullptr;
        g_scanCompleteContext = nullptr;
    }
    ~ScanNotification() override {
        g_scanCompleteHandler = nullptr;
        g_scanCompleteContext = nullptr;
    }

    struct Dialog {
        int refreshes = 0;
        std::thread::id thread = {};
    };

    void hook() {
        g_scanCompleteContext = &m_dialog;
        g_scanCompleteHandler = &refresh;
    }
    static void refresh(void* context) {
        auto& dialog = *static_cast<Dialog*>(context);
        ++dialog.refreshes;
        dialog.thread = std::this_thread::get_id();
    }

    Dialog m_dialog;
};

TEST_F(ScanNotification, IgnoresEveryOtherCode) {
    hook();
    for (const DWORD code : {0U, 1U, 6U, 8U, 9U, 10U, 0x107U, 0x70000U, 0x80000007U, 0xFFFFFFFFU}) {
        announceScan(code);
        EXPECT_EQ(m_dialog.refreshes, 0) << code;
    }
}

TEST_F(ScanNotification, TakesCodeSevenFromEverySource) {
    hook();
    int expected = 0;
    for (const DWORD source : {0U, 0x04U, 0x08U, 0x10U, 0x20U, 0x40U, 0x80U, 0xFFFFU}) {
        announceScan(7, source);
        EXPECT_EQ(m_dialog.refreshes, ++expected) << source;
    }
}

TEST_F(ScanNotification, DoesNothingUntilBothHandlerAndContextAreSet) {
    announceScan(7);
    g_scanCompleteContext = &m_dialog;
    announceScan(7);
    EXPECT_EQ(m_dialog.refreshes, 0);

    static int calls = 0;
    calls = 0;
    g_scanCompleteContext = nullptr;
    g_scanCompleteHandler = [](void* /*context*/) { ++calls; };
    announceScan(7);
    EXPECT_EQ(calls, 0);
}

TEST_F(ScanNotification, LogsAndTracesNothing) {
    hook();
    EXPECT_THAT(scopesOf([] { announceScan(7); }), IsEmpty());
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(ScanNotification, ReachesTheHandlerOnAThreadOfTheServiceUntilTheDeviceEnds) {
    hook();
    open();
    radio().notify(WLAN_NOTIFICATION_SOURCE_ACM, 7);
    radio().settle();
    EXPECT_EQ(m_dialog.refreshes, 1);
    EXPECT_NE(m_dialog.thread, std::this_thread::get_id());

    radio().notify(WLAN_NOTIFICATION_SOURCE_ACM, 8);
    radio().notify(WLAN_NOTIFICATION_SOURCE_MSM, 7);
    radio().settle();
    EXPECT_EQ(m_dialog.refreshes, 2);

    close();
    radio().notify(WLAN_NOTIFICATION_SOURCE_ACM, 7);
    radio().settle();
    EXPECT_EQ(m_dialog.refreshes, 2);
}

TEST_F(ScanNotification, ComesAtTheEndOfAScanOnTheDevicesHandle) {
    hook();
    const WirelessDevice& device = open();
    ASSERT_EQ(nativewifi::api().WlanScan(device.m_clientHandle, &device.m_interfaceGuid, nullptr,
                                         nullptr, nullptr),
              ERROR_SUCCESS);
    radio().settle();
    EXPECT_EQ(m_dialog.refreshes, 0);
    mrl::System::mssleep(4000);
    radio().settle();
    EXPECT_EQ(m_dialog.refreshes, 1);
}

} // namespace
