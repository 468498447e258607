// The timer's ticks, the connection's state, and the refresh at the end of a scan.
#include "DialogTest.h"

#include <mrlrantenna/AnnouncedScan.h>

#include <MRLrAntenna.h>
#include <ScanNotification.h>

#include <thread>

namespace {

using test::announceScan;
using test::Dialog;
using test::entries;
using test::network;
using test::shown;
using test::tick;
using test::timerRuns;
using test::written;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr UINT_PTR OTHER_TIMER = 130;
constexpr int FLOOD = 10000;

class Ticks : public test::DialogTest {
protected:
    Ticks() { startRadio({network("Guest", 20U), network("Lab", 42U)}); }

    /// What a refresh writes.
    std::vector<std::string> refreshes() {
        return journal().entries({"list empty", written(IDC_SSID, ""), "meter"});
    }
    auto areOfAReadingAlone() {
        return ElementsAre("exchange read", "pause 100 ms",
                           writtenKey(IDC_CONNECTION_STATE, "ERROR_INVALID_STATE"));
    }
    /// Runs `step` in a dialog whose timer still runs afterwards.
    void runAndKeepTicking(const test::Step& step) {
        run({[&](Dialog& dialog) {
            radio().clearCalls();
            journal().clear();
            step(dialog);
            EXPECT_TRUE(timerRuns(dialog));
        }});
    }
};

TEST_F(Ticks, ReadTheConnectionsStateAndQuality) {
    run({[&](Dialog& dialog) {
        EXPECT_EQ(shown(dialog, IDC_CONNECTION_STATE), "");
        tick(dialog);
        EXPECT_EQ(shown(dialog, IDC_CONNECTION_STATE), localized("ERROR_INVALID_STATE"));
        EXPECT_EQ(dialog.getSignalStrength(), 0U);
        radio().setConnection(0, radiosim::Connection{.ssid = "Lab", .quality = 67U});
        tick(dialog);
        EXPECT_EQ(shown(dialog, IDC_CONNECTION_STATE), localized("VALID_STATE"));
        EXPECT_EQ(dialog.getSignalStrength(), 67U);
    }});
}

TEST_F(Ticks, ReadTheConnectionInATraceScopeOfTheirOwnThenPause) {
    run({[&](Dialog& dialog) {
        mrl::LogFactory::setPriority(0);
        journal().clear();
        tick(dialog);
        mrl::LogFactory::setPriority(1);
        std::vector<std::string> steps =
            journal().entries({test::scopeOpened(""), "call WlanQueryInterface", "pause"});
        ASSERT_GE(steps.size(), 3U);
        steps.resize(3);
        EXPECT_THAT(steps, ElementsAre(StartsWith(test::scopeOpened("getSignalStrength()")),
                                       StartsWith("call WlanQueryInterface"), "pause 100 ms"));
    }});
}

TEST_F(Ticks, LeaveTheRefreshToTheEndOfTheScanThatTheyStart) {
    runAndKeepTicking([&](Dialog& dialog) {
        tick(dialog);
        EXPECT_THAT(radio().callTexts(),
                    testing::Contains(AllOf(StartsWith("WlanScan {\"handle\":\"h1\""),
                                            HasSubstr(radiosim::FIRST_INTERFACE))));
        EXPECT_EQ(looks(), 0U);
        EXPECT_THAT(journal().entries(), areOfAReadingAlone());
    });
}

TEST_F(Ticks, AreFollowedByARefreshWhenTheScanIsCompleteAndTheDialogIdle) {
    runTest({[&](Dialog& dialog) {
                 tick(dialog);
                 radio().setAccessPoints(0, {network("Attic", 77U)});
             },
             [&](Dialog& dialog) {
                 EXPECT_THAT(entries(dialog), ElementsAre("Guest", "Lab"));
                 clock().sleep(std::chrono::seconds(4));
                 journal().clear();
                 radio().settle();
                 EXPECT_THAT(journal().entries(), IsEmpty());
             },
             [&](Dialog& dialog) {
                 EXPECT_THAT(entries(dialog), ElementsAre("Attic"));
                 EXPECT_THAT(refreshes(),
                             ElementsAre("list empty", written(IDC_SSID, "Attic"), "meter 77"));
             }});
}

TEST_F(Ticks, RefreshAtOnceWhenNoScanIsStarted) {
    runAndKeepTicking([&](Dialog& dialog) {
        for (const char* failing : {"WlanScan", "WlanQueryInterface"}) {
            // The query is whether there are scans in the background.
            radio().addFault({.function = failing,
                              .nth = 1,
                              .opcode = failing == std::string("WlanScan")
                                            ? std::optional<std::uint32_t>()
                                            : wlan_intf_opcode_background_scan_enabled,
                              .code = ERROR_GEN_FAILURE});
            journal().clear();
            tick(dialog);
            EXPECT_EQ(radio().callCount("WlanScan"), 1U); // the one that failed
            EXPECT_THAT(refreshes(),
                        ElementsAre("list empty", written(IDC_SSID, "Guest"), "meter 20"));
        }
    });
}

TEST_F(Ticks, OfAnotherTimerReadTheConnectionAndNothingElse) {
    runAndKeepTicking([&](Dialog& dialog) {
        tick(dialog, OTHER_TIMER);
        // One for the reading, others for the colour of the text.
        EXPECT_THAT(radio().callTexts(), testing::Not(IsEmpty()));
        EXPECT_THAT(radio().callTexts(), testing::Each(AllOf(StartsWith("WlanQueryInterface "),
                                                             HasSubstr("\"opcode\":7,"))));
        EXPECT_THAT(journal().entries(), areOfAReadingAlone());
    });
}

// The connection query throws.
TEST_F(Ticks, EndWithAnExceptionInTheReadingButTheTimerGoesOn) {
    run({[&](Dialog& dialog) {
             test::PatchedApi patched;
             patched->WlanQueryInterface = [](HANDLE, const GUID*, WLAN_INTF_OPCODE, PVOID, DWORD*,
                                              PVOID*, WLAN_OPCODE_VALUE_TYPE*) -> DWORD {
                 throw std::runtime_error("the driver has broken down");
             };
             journal().clear();
             tick(dialog);
             EXPECT_THAT(journal().entries({""}), ElementsAre("exchange read"));
             EXPECT_TRUE(timerRuns(dialog));
         },
         [&](Dialog& dialog) {
             tick(dialog);
             EXPECT_EQ(radio().callCount("WlanScan"), 1U);
         }});
    EXPECT_FALSE(ended());
}

// --- Notifications -------------------------------------------------------------------------------

class ScanNotifications : public Ticks {};

TEST_F(ScanNotifications, FindTheSlotSetToTheLastDialog) {
    const Dialog* last = nullptr;
    runTest({[&](Dialog& dialog) {
        last = &dialog;
        EXPECT_EQ(g_scanCompleteContext.load(), &dialog);
    }});
    EXPECT_EQ(g_scanCompleteContext.load(), last);
    EXPECT_EQ(g_scanCompleteHandler.load(), &MRLRAntennaDlg::refreshNetworks);
}

// A loop that has nothing to do sleeps until a message comes.
TEST_F(ScanNotifications, WakeADialogThatIsIdle) {
    runTest({[](Dialog& dialog) {
        announceScan();
        bool woken = false;
        MSG message{};
        while (::PeekMessageW(&message, dialog.m_hWnd, 0, 0, PM_REMOVE)) {
            woken = woken || message.message == WM_NULL;
            ::DispatchMessageW(&message);
        }
        EXPECT_TRUE(woken);
    }});
}

TEST_F(ScanNotifications, ForADialogThatIsGoneDoNothing) {
    runTest({});
    journal().clear();
    announceScan();
    EXPECT_THAT(journal().entries({""}), IsEmpty());
    // Nor is it kept for the next dialog, even one that lies at the same address.
    std::size_t atOpening = 0;
    runTest(
        {[&](Dialog&) { atOpening = looks(); }, [&](Dialog&) { EXPECT_EQ(looks(), atOpening); }});
}

TEST_F(ScanNotifications, ForAnotherDialogThanTheOpenOneDoNothing) {
    run({[&](Dialog&) {
             journal().clear();
             int other = 0;
             MRLRAntennaDlg::refreshNetworks(&other);
             MRLRAntennaDlg::refreshNetworks(nullptr);
         },
         [&](Dialog&) { EXPECT_THAT(refreshes(), IsEmpty()); }});
}

TEST_F(ScanNotifications, OfTheServiceBecomeOneRefreshOnTheDialogsThread) {
    const std::thread::id own = std::this_thread::get_id();
    runTest({[&](Dialog&) {
                 journal().clear();
                 radio().clearCalls();
                 radio().onCall([own](const radiosim::Call& call) {
                     EXPECT_EQ(std::this_thread::get_id(), own) << call.function;
                 });
                 for (int i = 0; i < FLOOD; ++i) {
                     radio().notify(WLAN_NOTIFICATION_SOURCE_ACM,
                                    wlan_notification_acm_scan_complete);
                 }
                 radio().settle();
             },
             [&](Dialog&) { EXPECT_EQ(journal().count("list empty"), 1); },
             [&](Dialog&) {
                 EXPECT_EQ(journal().count("list empty"), 1);
                 EXPECT_GT(looks(), 0U);
                 EXPECT_EQ(journal().fromOtherThreads(), 0);
                 radio().onCall(nullptr);
                 announceScan();
             },
             [&](Dialog&) { EXPECT_EQ(journal().count("list empty"), 2); }});
}

} // namespace
