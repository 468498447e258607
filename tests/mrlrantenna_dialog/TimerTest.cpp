// The timer's ticks, the connection's state, and the refresh at the end of a scan.
#include "DialogTest.h"

#include <mrlrantenna/AnnouncedScan.h>

#include <ScanNotification.h>

#include <MRLrAntenna.h>

#include <algorithm>
#include <thread>

namespace {

using test::announceScan;
using test::Dialog;
using test::entries;
using test::network;
using test::shown;
using test::tick;
using test::timerRuns;
using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr UINT_PTR OTHER_TIMER = 130;
constexpr int FLOOD = 1000;
constexpr int FLOODING_THREADS = 4;

std::vector<radiosim::AccessPoint> twoNetworks() {
    return {network("Guest", 20U), network("Lab", 42U)};
}

radiosim::Fault failing(const char* function) {
    return {.function = function, .code = ERROR_GEN_FAILURE};
}

// The call of the reading, and the call for the colour of the text, which is painted at once.
auto isConnectionQuery() {
    return AllOf(StartsWith("WlanQueryInterface "), HasSubstr("\"opcode\":7,"));
}

class Ticks : public test::DialogTest {
protected:
    Ticks() { startRadio(twoNetworks()); }

    /// What a tick writes, besides the connection's state.
    std::vector<std::string> refreshes() {
        return journal().entries({"list empty", "text 1031", "meter"});
    }
    std::string connectionEntry(const char* key) {
        return "text " + std::to_string(IDC_CONNECTION_STATE) + " " + localized(key);
    }
    /// Runs `step`. \return whether the timer still runs
    void runAndKeepTicking(test::Step step) {
        run({[&](Dialog& dialog) {
            radio().clearCalls();
            journal().clear();
            step(dialog);
            EXPECT_TRUE(timerRuns(dialog));
        }});
    }
};

TEST_F(Ticks, ReadTheConnection) {
    run({[&](Dialog& dialog) {
        EXPECT_EQ(shown(dialog, IDC_CONNECTION_STATE), "");
        tick(dialog);
        EXPECT_EQ(shown(dialog, IDC_CONNECTION_STATE), localized("ERROR_INVALID_STATE"));
        radio().setConnection(0, radiosim::Connection{.ssid = "Lab"});
        tick(dialog);
        EXPECT_EQ(shown(dialog, IDC_CONNECTION_STATE), localized("VALID_STATE"));
    }});
}

TEST_F(Ticks, LeaveTheRefreshToTheEndOfTheScanThatTheyStart) {
    runAndKeepTicking([&](Dialog& dialog) {
        tick(dialog);
        EXPECT_EQ(radio().callCount("WlanScan"), 1U);
        EXPECT_EQ(looks(), 0U);
        EXPECT_THAT(journal().entries(),
                    ElementsAre("sleep 100", connectionEntry("ERROR_INVALID_STATE")));
    });
}

TEST_F(Ticks, StartTheScanOnTheDialogsOwnHandleAndInterface) {
    runAndKeepTicking([&](Dialog& dialog) {
        tick(dialog);
        EXPECT_THAT(radio().callTexts(), Contains(AllOf(StartsWith("WlanScan {\"handle\":\"h1\""),
                                                        HasSubstr(radiosim::FIRST_INTERFACE))));
    });
}

TEST_F(Ticks, AreFollowedByARefreshWhenTheScanIsComplete) {
    runTest({[&](Dialog& dialog) {
                 tick(dialog);
                 radio().setAccessPoints(0, {network("Attic", 77U)});
             },
             [&](Dialog& dialog) {
                 EXPECT_THAT(entries(dialog), ElementsAre("Guest", "Lab"));
                 clock().sleep(std::chrono::seconds(4));
                 radio().settle();
             },
             [&](Dialog& dialog) {
                 EXPECT_THAT(entries(dialog), ElementsAre("Attic"));
                 EXPECT_EQ(test::strength(dialog), localized("VERY_GOOD") + " 77% 77");
             }});
}

TEST_F(Ticks, RefreshAtOnceWhenTheScanCannotBeStarted) {
    runAndKeepTicking([&](Dialog& dialog) {
        radio().addFault(failing("WlanScan"));
        tick(dialog);
        EXPECT_EQ(radio().callCount("WlanScan"), 1U);
        EXPECT_THAT(refreshes(), ElementsAre("list empty", "text 1031 Guest", "meter 20"));
    });
}

TEST_F(Ticks, RefreshAtOnceWithoutAScanWhenBackgroundScanningIsNotAnswered) {
    runAndKeepTicking([&](Dialog& dialog) {
        radio().addFault({.function = "WlanQueryInterface",
                          .opcode = wlan_intf_opcode_background_scan_enabled,
                          .code = ERROR_GEN_FAILURE});
        tick(dialog);
        EXPECT_EQ(radio().callCount("WlanScan"), 0U);
        EXPECT_THAT(refreshes(), ElementsAre("list empty", "text 1031 Guest", "meter 20"));
    });
}

TEST_F(Ticks, OfAnotherTimerReadTheConnectionAndNothingElse) {
    runAndKeepTicking([&](Dialog& dialog) {
        radio().addFault(failing("WlanScan"));
        tick(dialog, OTHER_TIMER);
        EXPECT_THAT(radio().callTexts(), Not(IsEmpty()));
        EXPECT_THAT(radio().callTexts(), Each(isConnectionQuery()));
        EXPECT_THAT(journal().entries(),
                    ElementsAre("sleep 100", connectionEntry("ERROR_INVALID_STATE")));
        tick(dialog); // for the fault's sake
    });
}

TEST_F(Ticks, ComeFromARunningTimer) {
    run({[&](Dialog& dialog) {
             dialog.SetTimer(Dialog::SIGNAL_TIMER_ID, 10, nullptr);
             journal().clear();
             Sleep(50);
         },
         [&](Dialog&) {
             EXPECT_THAT(journal().entries(), Contains(connectionEntry("ERROR_INVALID_STATE")));
         }});
}

TEST_F(Ticks, DoNotTouchTheMeterWhenTheConnectionIsLost) {
    runAndKeepTicking([&](Dialog& dialog) {
        const std::string before = test::strength(dialog);
        tick(dialog);
        EXPECT_EQ(test::strength(dialog), before);
    });
}

TEST_F(Ticks, TheConnectionsQualityIsTheOneReadOrZero) {
    run({[&](Dialog& dialog) {
        EXPECT_EQ(dialog.getSignalStrength(), 0U);
        radio().setConnection(0, radiosim::Connection{.ssid = "Lab", .quality = 67U});
        EXPECT_EQ(dialog.getSignalStrength(), 67U);
    }});
}

// The connection query throws.
TEST_F(Ticks, EndWithAnExceptionInTheReadingButTheTimerGoesOn) {
    run({[&](Dialog& dialog) {
             test::PatchedApi patched;
             patched->WlanQueryInterface = [](HANDLE, const GUID*, WLAN_INTF_OPCODE, PVOID, DWORD*,
                                              PVOID*, WLAN_OPCODE_VALUE_TYPE*) -> DWORD {
                 throw std::runtime_error("the driver has broken down");
             };
             radio().clearCalls();
             journal().clear();
             tick(dialog);
             EXPECT_THAT(radio().callNames(), IsEmpty());
             EXPECT_THAT(journal().entries(), IsEmpty());
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

TEST_F(ScanNotifications, FindTheSlotSetToTheDialog) {
    runTest({[](Dialog& dialog) {
        EXPECT_EQ(g_scanCompleteContext.load(), &dialog);
        EXPECT_EQ(g_scanCompleteHandler.load(), &MRLRAntennaDlg::refreshNetworks);
    }});
    EXPECT_NE(g_scanCompleteContext.load(), nullptr);
    EXPECT_EQ(g_scanCompleteHandler.load(), &MRLRAntennaDlg::refreshNetworks);
}

TEST_F(ScanNotifications, RefreshListAndDetails) {
    runTest({[&](Dialog&) {
                 radio().setAccessPoints(0, {network("Attic", 77U), network("Zoo")});
                 journal().clear();
                 announceScan();
                 EXPECT_THAT(journal().entries(), IsEmpty()); // when the dialog is next idle
             },
             [&](Dialog& dialog) {
                 EXPECT_THAT(entries(dialog), ElementsAre("Attic", "Zoo"));
                 EXPECT_THAT(refreshes(), ElementsAre("list empty", "text 1031 Attic", "meter 77"));
             }});
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

TEST_F(ScanNotifications, OfOtherCodesDoNothing) {
    runTest({[&](Dialog&) {
                 radio().clearCalls();
                 journal().clear();
                 announceScan(wlan_notification_acm_scan_complete + 1);
                 announceScan(wlan_notification_acm_scan_complete - 1);
             },
             [&](Dialog&) { EXPECT_THAT(refreshes(), IsEmpty()); }});
}

TEST_F(ScanNotifications, ForADialogThatIsGoneDoNothing) {
    runTest({});
    radio().clearCalls();
    journal().clear();
    announceScan();
    EXPECT_THAT(radio().callNames(), IsEmpty());
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

TEST_F(ScanNotifications, InAFloodBecomeOneRefresh) {
    runTest({[&](Dialog&) {
                 journal().clear();
                 std::vector<std::thread> services;
                 for (int i = 0; i < FLOODING_THREADS; ++i) {
                     services.emplace_back([] {
                         for (int n = 0; n < FLOOD / FLOODING_THREADS; ++n) {
                             announceScan();
                         }
                     });
                 }
                 for (std::thread& service : services) {
                     service.join(); // returns: no notification waits for the dialog
                 }
             },
             [&](Dialog&) { EXPECT_EQ(journal().count("list empty"), 1); },
             [&](Dialog& dialog) {
                 EXPECT_EQ(journal().count("list empty"), 1);
                 journal().clear();
                 announceScan();
                 EXPECT_TRUE(timerRuns(dialog));
             },
             [&](Dialog&) { EXPECT_EQ(journal().count("list empty"), 1); }});
}

TEST_F(ScanNotifications, OfTheServiceTouchListsAndControlsOnTheDialogsThreadOnly) {
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
             [&](Dialog&) {
                 EXPECT_EQ(journal().count("list empty"), 1);
                 EXPECT_GT(looks(), 0U);
                 EXPECT_EQ(journal().fromOtherThreads(), 0);
                 radio().onCall(nullptr);
             }});
}

// While the service floods it with notifications, the dialog still handles input.
TEST_F(ScanNotifications, InAFloodDoNotKeepTheDialogFromHandlingInput) {
    std::atomic<bool> over = false;
    std::thread service;
    EXPECT_EQ(runTest({[&](Dialog& dialog) {
                  service = std::thread([&over] {
                      while (!over) {
                          announceScan();
                      }
                  });
                  dialog.PostMessage(WM_CLOSE);
              }}),
              tesk5::TestResult::COMPLETED());
    over = true;
    service.join();
    EXPECT_TRUE(ended());
}

} // namespace
