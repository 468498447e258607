// Many dialogs in a row: each frees all that it allocates, except the answers that the module keeps
// on purpose.
#include <mrlrantenna_dialog/DialogTest.h>

#include "HeapAccount.h"
#include "Soak.h"

#include <mrlrantenna/Faults.h>

#include <GuiObjects.h>

#include <mrl/Clock.h>

namespace {

using dialogprobe::GuiObjects;
using test::Dialog;
using test::HeapUse;
using test::heapUse;
using test::Owner;

constexpr long USUAL_DIALOGS = 12;
// After these, everything that is made on first use exists.
constexpr long WARMING_UP = 4;

class DialogSoak : public test::DialogTest {
protected:
    DialogSoak() { startRadio(radiosim::Scenario::builtIn()); }

    void runOne() {
        const tesk5::TestRecorder events;
        EXPECT_EQ(runTest({[](Dialog& dialog) { test::tick(dialog); },
                           [](Dialog& dialog) { MRLRAntennaDlg::refreshNetworks(&dialog); },
                           [](Dialog& dialog) { test::choose(dialog, 1); },
                           [](Dialog& dialog) { test::click(dialog, IDC_RADIO_ON_IMAGE); },
                           [](Dialog& dialog) { test::click(dialog, IDC_RADIO_OFF_IMAGE); },
                           [](Dialog& dialog) { test::press(dialog, VK_ESCAPE); }}),
                  tesk5::TestResult::USERABORTED());
        mrl::Clock::current().sleep(std::chrono::seconds(10));
        radio().settle();
    }
    /// Discards what the test doubles have recorded in a round, and frees the temporary window
    /// objects, which a message loop frees only when it becomes idle.
    void forget() {
        CWnd::DeleteTempMap();
        radio().clearCalls();
        log().clear();
        clock().forgetSleeps();
        journal().clear();
    }
};

TEST_F(DialogSoak, GivesBackEveryByteWindowAndDrawingObject) {
    const long dialogs = test::soakLength("SOAK_DIALOGS", USUAL_DIALOGS);
    ASSERT_GT(dialogs, WARMING_UP);
    const test::SeparateAccounts accounts;
    HeapUse module;
    GuiObjects gui;
    for (long i = 1; i <= dialogs; ++i) {
        runOne();
        forget();
        if (i == WARMING_UP) {
            module = heapUse(Owner::MODULE);
            gui = dialogprobe::guiObjectsOf(GetCurrentProcessId());
        }
    }
    const GuiObjects now = dialogprobe::guiObjectsOf(GetCurrentProcessId());
    EXPECT_EQ(heapUse(Owner::MODULE), module)
        << "bytes: " << module.bytes << ", then " << heapUse(Owner::MODULE).bytes
        << "; blocks: " << module.blocks << ", then " << heapUse(Owner::MODULE).blocks;
    EXPECT_EQ(now.gdi, gui.gdi);
    EXPECT_EQ(now.user, gui.user);
    test::expectDeliberateLeaksAlone(radio(), 0);
    test::report(std::to_string(dialogs) + " dialogs: the module's heap grew by " +
                 std::to_string(heapUse(Owner::MODULE).bytes - module.bytes) +
                 " bytes; drawing objects " + std::to_string(gui.gdi) + " and " +
                 std::to_string(now.gdi) + ", windows " + std::to_string(gui.user) + " and " +
                 std::to_string(now.user) + "; kept are " + std::to_string(radio().leaks().blocks) +
                 " answers of " + std::to_string(radio().leaks().bytes) + " bytes");
}

} // namespace
