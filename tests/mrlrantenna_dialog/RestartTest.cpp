// After an exception in the dialog a new one opens.
#include "DialogTest.h"

#include <MRLrAntenna.h>
#include <ScanNotification.h>

#include <stdexcept>
#include <utility>

namespace {

using tesk5::TestResult;
using test::Dialog;
using test::network;
using test::shown;
using testing::ElementsAre;

// Which functions of the service throw at their next call.
bool g_openThrows = false;
bool g_listThrows = false;

void throwIf(bool& isDue) {
    if (std::exchange(isDue, false)) {
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
            throwIf(g_openThrows);
            return test::PatchedApi::service().WlanOpenHandle(version, reserved, negotiated,
                                                              handle);
        };
        (*m_patched)->WlanGetAvailableNetworkList =
            [](HANDLE handle, const GUID* guid, DWORD flags, PVOID reserved,
               WLAN_AVAILABLE_NETWORK_LIST** list) -> DWORD {
            throwIf(g_listThrows);
            return test::PatchedApi::service().WlanGetAvailableNetworkList(handle, guid, flags,
                                                                           reserved, list);
        };
    }
    ~NewDialog() override { g_openThrows = g_listThrows = false; }

    /// Number of dialogs that have set their caption.
    long opened() { return journal().count(writtenKey(0, "TITLE")); }

private:
    std::optional<test::PatchedApi> m_patched;
};

TEST_F(NewDialog, OpensAfterAnExceptionWhileTheDialogIsMade) {
    g_openThrows = true;
    EXPECT_EQ(runTest({[](Dialog& dialog) { EXPECT_EQ(shown(dialog, IDC_SSID), "Lab"); }}),
              TestResult::COMPLETED());
    EXPECT_FALSE(g_openThrows);
    EXPECT_EQ(opened(), 1);
}

TEST_F(NewDialog, OpensAfterAnExceptionWhileTheDialogOpens) {
    g_listThrows = true;
    EXPECT_EQ(runTest({[](Dialog& dialog) {
                  EXPECT_EQ(shown(dialog, IDC_SSID), "Lab");
                  test::press(dialog, VK_ESCAPE);
              }}),
              TestResult::USERABORTED());
    EXPECT_EQ(opened(), 2);
}

// In the order of a run: at ticks, in the refresh of a notification, in the handler of a command.
TEST_F(NewDialog, OpensAfterEachOfSeveralExceptions) {
    const test::Step acts[] = {
        [this](Dialog& dialog) {
            radio().addFault({.function = "WlanScan", .code = ERROR_GEN_FAILURE});
            test::tick(dialog);
        },
        [](Dialog& dialog) { MRLRAntennaDlg::refreshNetworks(&dialog); },
        [](Dialog& dialog) { test::choose(dialog, 1); },
        [](Dialog& dialog) { test::choose(dialog, 0); },
    };
    std::vector<test::Step> steps;
    long dialogs = 0;
    for (const test::Step& act : acts) {
        steps.emplace_back([&](Dialog& dialog) {
            EXPECT_EQ(opened(), ++dialogs);
            EXPECT_EQ(g_scanCompleteContext.load(), &dialog);
            EXPECT_EQ(shown(dialog, IDC_SSID), "Lab");
            g_listThrows = true;
            act(dialog);
        });
    }
    steps.emplace_back([](Dialog& dialog) { test::press(dialog, VK_ESCAPE); });
    EXPECT_EQ(runTest(std::move(steps)), TestResult::USERABORTED());
    EXPECT_EQ(opened(), dialogs + 1);
    EXPECT_EQ(radio().openHandles(), 0U); // each dialog has given its handle back
    // Two pauses of each dialog, and one before the first alone.
    EXPECT_EQ(journal().count("pause 1000 ms"), 1 + 2 * opened());
}

TEST_F(NewDialog, IsNeitherLoggedNorRaisedAsAnEvent) {
    runTest({[&](Dialog& dialog) {
        log().clear();
        g_listThrows = true;
        test::choose(dialog, 1);
        EXPECT_THAT(dialogLines(), ElementsAre("Sel Changed"));
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
                ElementsAre(testing::HasSubstr("MRLArrayCommon:277 assertion failed: "
                                               "index < size()")));
}

} // namespace
