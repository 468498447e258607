// The adapter, the service and the PC change between any two calls of the dialog: it stays open,
// shows the new state, and can be ended.
#include "FaultScene.h"

#include <mrlrantenna/Faults.h>

#include <chrono>

namespace {

using test::Dialog;
using test::Display;
using test::OFF;

constexpr double LONGEST_SECONDS = 20;

constexpr Display ALL_IS_WELL = {};
constexpr Display NOTHING_ANSWERS = {.list = "",
                                     .chosen = "none",
                                     .details = ":   0",
                                     .radio = "RADIO_STATE_UNKNOWN",
                                     .picture = "greyed off"};
constexpr Display SWITCHED_OFF = {.list = "",
                                  .chosen = "none",
                                  .details = ":   0",
                                  .radio = "HARDWARE_SWITCH_OFF",
                                  .picture = "greyed off"};

struct Happening {
    const char* name;
    void (*happens)(radiosim::Engine& radio);
    Display afterwards;
    /// Number of calls before which the device is not ready yet and recovers.
    std::size_t harmlessBefore;
};

// The call that makes the device ready: handle, GUID, registration.
constexpr std::size_t READY = 3;
// After that not every call is tested: each takes a dialog of its own.
constexpr std::size_t STRIDE = 3;

const Happening happenings[] = {
    {"AdapterIsUnplugged", [](radiosim::Engine& radio) { radio.removeInterface(0); },
     NOTHING_ANSWERS, 0},
    {"ServiceIsStopped", [](radiosim::Engine& radio) { radio.stopService(); }, NOTHING_ANSWERS, 0},
    {"ServiceIsRestarted",
     [](radiosim::Engine& radio) {
         radio.stopService();
         radio.startService();
     },
     NOTHING_ANSWERS, READY},
    {"RadioIsSwitchedOffOnTheCase", [](radiosim::Engine& radio) { radio.setRadio(0, 0, {}, OFF); },
     SWITCHED_OFF, 0},
    {"PcIsSuspended", [](radiosim::Engine&) { mrl::Clock::current().sleep(std::chrono::hours(9)); },
     ALL_IS_WELL, 0},
};

void PrintTo(const Happening& happening, std::ostream* out) {
    *out << happening.name;
}

class DialogComeAndGo : public test::DialogTest, public testing::WithParamInterface<Happening> {
protected:
    // Opens, ticks, refreshes, switches the radio off and on; `happens` runs right after the nth
    // call, never with 0. \return how many calls there were
    std::size_t runWith(std::size_t nth, const Display& afterwards) {
        startRadio(test::atticAndCellar());
        std::size_t number = 0;
        radio().onCall([&](const radiosim::Call&) {
            if (++number == nth) {
                GetParam().happens(radio());
            }
        });
        const mrl::Clock::Duration before = clock().now();
        const tesk5::TestResult result =
            runTest({[](Dialog& dialog) { test::tick(dialog); },
                     [](Dialog& dialog) { MRLRAntennaDlg::refreshNetworks(&dialog); },
                     [](Dialog& dialog) { test::click(dialog, IDC_RADIO_ON_IMAGE); },
                     [](Dialog& dialog) { test::click(dialog, IDC_RADIO_OFF_IMAGE); },
                     [&](Dialog& dialog) {
                         radio().onCall(nullptr);
                         // Notifications add or remove a call: then it happens at the end.
                         if (number < nth) {
                             GetParam().happens(radio());
                         }
                         radio().settle();
                         dialog.populateAvailableNetworks();
                         dialog.updateSelectedNetworkInformation();
                         // The adapter's name is from the time of the opening.
                         const std::string adapter = test::shown(dialog, IDC_ADAPTER_NAME);
                         Display expected = afterwards;
                         expected.adapter = adapter.c_str();
                         EXPECT_EQ(test::textOn(dialog), test::text(expected));
                         test::press(dialog, VK_ESCAPE);
                     }});
        radio().onCall(nullptr);
        EXPECT_EQ(result, tesk5::TestResult::USERABORTED());
        const std::chrono::duration<double> took = clock().now() - before;
        const double asleep = std::string(GetParam().name) == "PcIsSuspended" ? 9 * 3600.0 : 0.0;
        EXPECT_LE(took.count() - asleep, LONGEST_SECONDS);
        EXPECT_EQ(radio().openHandles(), 0U);
        test::expectDeliberateLeaksAlone(radio(), 0);
        return number;
    }
};

TEST_P(DialogComeAndGo, ChangesBetweenAnyTwoCallsAreShownAndDoNotEndTheDialog) {
    const Happening& happening = GetParam();
    const std::size_t calls = runWith(0, ALL_IS_WELL);
    for (std::size_t nth = 1; nth <= calls; nth += nth < READY ? 1 : STRIDE) {
        SCOPED_TRACE(nth);
        runWith(nth, nth < happening.harmlessBefore ? ALL_IS_WELL : happening.afterwards);
        test::countCombination();
        journal().clear();
        log().clear();
    }
}

INSTANTIATE_TEST_SUITE_P(Each, DialogComeAndGo, testing::ValuesIn(happenings),
                         [](const testing::TestParamInfo<Happening>& each) {
                             return std::string(each.param.name);
                         });

class ReturnOfTheRadio : public test::DialogTest {};

TEST_F(ReturnOfTheRadio, IsShownWithoutAClick) {
    startRadio({test::network("Lab", 42U)});
    runTest({[&](Dialog&) {
                 radio().setRadio(0, 0, {}, OFF);
                 radio().settle();
             },
             [&](Dialog& dialog) {
                 EXPECT_EQ(test::shown(dialog, IDC_RADIO_STATUS), localized("HARDWARE_SWITCH_OFF"));
                 EXPECT_THAT(test::entries(dialog), testing::IsEmpty());
                 radio().setRadio(0, 0, {}, test::ON);
                 radio().settle();
             },
             [&](Dialog& dialog) {
                 EXPECT_EQ(test::shown(dialog, IDC_RADIO_STATUS), localized("RADIO_BUTTON_ON"));
                 EXPECT_THAT(test::entries(dialog), testing::ElementsAre("Lab"));
                 EXPECT_EQ(test::picture(dialog), "on");
             }});
}

} // namespace
