// After an exception in the dialog a new one opens.
#include "DialogTest.h"

#include <MRLrAntenna.h>
#include <ScanNotification.h>

#include <mrl/AssertionFailure.h>

#include <stdexcept>

namespace {

using tesk5::TestResult;
using test::Dialog;
using test::network;
using test::shown;
using test::tick;
using testing::HasSubstr;

// Calls of the service that throw, by their number from now on; 0 for none.
int g_throwingCall = 0;

void countCall() {
    if (g_throwingCall > 0 && --g_throwingCall == 0) {
        throw std::runtime_error("the driver has broken down");
    }
}

class NewDialog : public test::DialogTest {
protected:
    NewDialog() {
        startRadio({network("Lab", 42U), network("Guest")});
        m_patched.emplace();
        (*m_patched)->WlanOpenHandle = [](DWORD version, PVOID reserved, DWORD* negotiated,
                                          HANDLE* handle) -> DWORD {
            if (g_inOpen) {
                countCall();
            }
            return test::PatchedApi::service().WlanOpenHandle(version, reserved, negotiated,
                                                              handle);
        };
        (*m_patched)->WlanGetAvailableNetworkList =
            [](HANDLE handle, const GUID* guid, DWORD flags, PVOID reserved,
               WLAN_AVAILABLE_NETWORK_LIST** list) -> DWORD {
            if (!g_inOpen) {
                countCall();
            }
            return test::PatchedApi::service().WlanGetAvailableNetworkList(handle, guid, flags,
                                                                           reserved, list);
        };
        g_inOpen = false;
        g_throwingCall = 0;
    }
    ~NewDialog() override { g_throwingCall = 0; }

    /// The n-th query of the networks throws.
    static void breakLook(int n) { g_throwingCall = n; }
    /// The n-th opening of a client handle throws.
    static void breakOpening(int n) {
        g_inOpen = true;
        g_throwingCall = n;
    }
    /// Number of dialogs that have set their caption.
    long opened() { return journal().count("text 0 " + localized("TITLE")); }

    static inline bool g_inOpen = false;

private:
    std::optional<test::PatchedApi> m_patched;
};

TEST_F(NewDialog, OpensAfterAnExceptionWhileTheDialogIsMade) {
    breakOpening(1);
    EXPECT_EQ(runTest({[](Dialog& dialog) { EXPECT_EQ(shown(dialog, IDC_SSID), "Lab"); }}),
              TestResult::COMPLETED());
    EXPECT_EQ(g_throwingCall, 0);
    EXPECT_EQ(opened(), 1);
}

TEST_F(NewDialog, OpensAfterAnExceptionWhileTheDialogOpens) {
    breakLook(1);
    EXPECT_EQ(runTest({[](Dialog& dialog) {
                  EXPECT_EQ(shown(dialog, IDC_SSID), "Lab");
                  test::press(dialog, VK_ESCAPE);
              }}),
              TestResult::USERABORTED());
    EXPECT_EQ(opened(), 2);
}

TEST_F(NewDialog, OpensAfterAnExceptionInATicksRefresh) {
    const Dialog* first = nullptr;
    EXPECT_EQ(runTest({[&](Dialog& dialog) {
                           first = &dialog;
                           radio().addFault({.function = "WlanScan", .code = ERROR_GEN_FAILURE});
                           breakLook(1);
                           tick(dialog);
                       },
                       [&](Dialog& dialog) {
                           EXPECT_EQ(opened(), 2);
                           EXPECT_EQ(g_scanCompleteContext.load(), &dialog);
                           EXPECT_EQ(shown(dialog, IDC_SSID), "Lab");
                           tick(dialog);
                       }}),
              TestResult::COMPLETED());
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(opened(), 2);
}

TEST_F(NewDialog, OpensAfterAnExceptionInTheRefreshOfANotification) {
    EXPECT_EQ(runTest({[&](Dialog& dialog) {
                           breakLook(1);
                           MRLRAntennaDlg::refreshNetworks(&dialog);
                       },
                       [&](Dialog& dialog) {
                           EXPECT_EQ(opened(), 2);
                           EXPECT_EQ(g_scanCompleteContext.load(), &dialog);
                       }}),
              TestResult::COMPLETED());
}

TEST_F(NewDialog, OpensAfterAnExceptionInACommandsHandler) {
    runTest({[&](Dialog& dialog) {
                 breakLook(1);
                 test::choose(dialog, 1);
             },
             [&](Dialog&) { EXPECT_EQ(opened(), 2); }});
}

TEST_F(NewDialog, OpensAfterEachOfSeveralExceptions) {
    constexpr int TIMES = 5;
    std::vector<test::Step> steps;
    for (int i = 0; i < TIMES; ++i) {
        steps.emplace_back([](Dialog& dialog) {
            breakLook(1);
            test::choose(dialog, 1);
        });
    }
    steps.emplace_back([](Dialog& dialog) { test::press(dialog, VK_ESCAPE); });
    EXPECT_EQ(runTest(std::move(steps)), TestResult::USERABORTED());
    EXPECT_EQ(opened(), TIMES + 1);
    EXPECT_EQ(radio().openHandles(), 0U); // each dialog has given its handle back
    // Two pauses of each dialog, and one before the first alone.
    EXPECT_EQ(journal().entries({"sleep 1000"}).size(), 1U + 2U * (TIMES + 1));
}

TEST_F(NewDialog, IsNeitherLoggedNorRaisedAsAnEvent) {
    runTest({[&](Dialog& dialog) {
        log().clear();
        breakLook(1);
        test::choose(dialog, 1);
        EXPECT_THAT(dialogLines(), testing::ElementsAre("Sel Changed"));
    }});
    EXPECT_THAT(raisedKeys(), testing::IsEmpty());
}

// The list of networks gets shorter while the details are read.
TEST_F(NewDialog, OpensWhenTheListShrinksWhileTheDetailsAreRead) {
    EXPECT_EQ(
        runTest(
            {[&](Dialog& dialog) {
                 radio().setAccessPoints(0, {network("Attic"), network("Zoo"), network("Cellar")});
                 radio().clearCalls();
                 radio().onCall([this](const radiosim::Call&) {
                     if (looks() == 2) { // the first of the measurement
                         radio().setAccessPoints(0, {network("Attic")});
                     }
                 });
                 test::choose(dialog, 0);
                 radio().onCall(nullptr);
             },
             [&](Dialog& dialog) {
                 EXPECT_EQ(opened(), 2);
                 EXPECT_EQ(shown(dialog, IDC_SSID), "Attic");
             }}),
        TestResult::COMPLETED());
    EXPECT_THAT(log().texts("mrl.assertion"),
                testing::ElementsAre(HasSubstr("MRLArrayCommon:277 assertion failed: "
                                               "index < size()")));
}

TEST_F(NewDialog, OpensAfterTheExceptionOfCodeSevenWhenTheListShrinks) {
    unsigned int code = 0;
    try {
        run({[&](Dialog& dialog) {
            radio().setAccessPoints(0, {network("Attic"), network("Zoo")});
            radio().clearCalls();
            radio().onCall([this](const radiosim::Call&) {
                if (looks() == 2) {
                    radio().setAccessPoints(0, {});
                }
            });
            test::choose(dialog, 0);
        }});
    } catch (const mrl::StructuredException& exception) {
        code = exception.code;
    }
    radio().onCall(nullptr);
    EXPECT_EQ(code, mrl::AssertionFailure::CODE);
    EXPECT_EQ(code, 7U);
}

} // namespace
