// How the dialog ends, and which result the test then has.
#include "DialogTest.h"

#include <libUikit/GdiResourceManager.h>

#include <nativewifi/WlanTypes.h>

namespace {

using tesk5::TestResult;
using test::Dialog;
using test::DialogDriver;
using test::network;
using test::press;
using test::timerRuns;
using test::written;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class EndOfTheDialog : public test::DialogTest {
protected:
    EndOfTheDialog() { startRadio({network("Lab", 42U)}); }

    static std::atomic<bool>& abortRequested() {
        return tesk5::RunContext::current().abortRequested;
    }
    /// Requests a stop when the window gets the message of `entry`.
    void requestStopAt(const std::string& entry) {
        journal().onEntry = [entry](const std::string& noted, HWND) {
            if (noted == entry) {
                requestStop();
            }
        };
    }
    /// All that a part of a refresh still does where `request` requests a stop, or at the nth look
    /// at the list of networks; the dialog stays open.
    std::vector<std::string> doneBy(void (Dialog::*part)(), const std::function<void()>& request,
                                    std::optional<std::size_t> atLook = {}) {
        std::vector<std::string> done;
        run({[&](Dialog& dialog) {
            radio().setAccessPoints(0, {network("Attic", 90U), network("Lab", 90U)});
            radio().clearCalls();
            radio().onCall([&](const radiosim::Call& call) {
                if (call.function != "WlanFreeMemory") {
                    test::Journal::note(call.function);
                }
                if (looks() == atLook) {
                    requestStop();
                }
            });
            journal().clear();
            request();
            (dialog.*part)();
            done = journal().entries();
            radio().onCall(nullptr);
            withdrawStop();
        }});
        EXPECT_FALSE(ended());
        return done;
    }
};

TEST_F(EndOfTheDialog, RecordsTheNetworksAndTheStrengthThatWasShownLast) {
    startRadio({network("Attic", 90U), network("Lab", 42U)});
    runTest({[](Dialog& dialog) {
        test::choose(dialog, 1);
        test::push(dialog, IDC_FINISH);
    }});
    ASSERT_EQ(surveys().size(), 1U);
    const std::vector<tesk5::Survey::Entry>& entries = surveys()[0].entries;
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].name, "Attic");
    EXPECT_EQ(entries[0].value, 90U);
    EXPECT_FALSE(entries[0].measured);
    EXPECT_EQ(entries[1].name, "Lab");
    EXPECT_TRUE(entries[1].measured);
    ASSERT_EQ(measurements().size(), 1U);
    EXPECT_EQ(measurements()[0].name, "DetectedSignalStrength");
    EXPECT_EQ(measurements()[0].value, 42U);
    EXPECT_THAT(measurements()[0].limits, IsEmpty());
    EXPECT_FALSE(adviceRequested());
}

TEST_F(EndOfTheDialog, RecordsThatTheFirstNetworkWasMeasured) {
    startRadio({network("Attic", 90U), network("Lab", 42U)});
    runTest({[](Dialog& dialog) { test::push(dialog, IDC_FINISH); }});
    ASSERT_EQ(surveys().size(), 1U);
    EXPECT_TRUE(surveys()[0].entries[0].measured);
    EXPECT_FALSE(surveys()[0].entries[1].measured);
}

TEST_F(EndOfTheDialog, RecordsTheStrengthOfANetworkThatHasGone) {
    startRadio({network("Attic", 90U), network("Lab", 42U)});
    runTest({[&](Dialog& dialog) {
        test::choose(dialog, 1);
        radio().setAccessPoints(0, {network("Zoo", 10U), network("Guest", 20U)});
        test::choose(dialog, 1); // whose details stay
        test::push(dialog, IDC_FINISH);
    }});
    ASSERT_EQ(surveys().size(), 1U);
    EXPECT_EQ(surveys()[0].entries.size(), 2U);
    EXPECT_THAT(surveys()[0].entries,
                testing::Each(testing::Field(&tesk5::Survey::Entry::measured, false)));
    ASSERT_EQ(measurements().size(), 1U);
    EXPECT_EQ(measurements()[0].value, 42U);
}

TEST_F(EndOfTheDialog, RecordsNoStrengthWhenTheDetailsWereClearedLast) {
    runTest({[&](Dialog& dialog) {
        radio().setAccessPoints(0, {});
        dialog.populateAvailableNetworks();
        dialog.updateSelectedNetworkInformation();
        test::push(dialog, IDC_FINISH);
    }});
    EXPECT_THAT(measurements(), IsEmpty());
}

TEST_F(EndOfTheDialog, RequestsAdviceWhenThereWasNoNetwork) {
    startRadio(std::vector<radiosim::AccessPoint>());
    EXPECT_EQ(runTest({[](Dialog& dialog) { test::push(dialog, IDC_FINISH); }}),
              TestResult::COMPLETED());
    EXPECT_TRUE(adviceRequested());
    ASSERT_EQ(surveys().size(), 1U);
    EXPECT_THAT(surveys()[0].entries, IsEmpty());
    EXPECT_THAT(measurements(), IsEmpty());
}

struct End {
    const char* by;
    void (*act)(Dialog& dialog);
    bool completes;
    bool requestsAbort;
};

class EndsOfTheDialog : public EndOfTheDialog, public testing::WithParamInterface<End> {};

TEST_P(EndsOfTheDialog, DecideTheResult) {
    EXPECT_EQ(runTest({GetParam().act}),
              GetParam().completes ? TestResult::COMPLETED() : TestResult::USERABORTED());
    EXPECT_TRUE(ended());
    EXPECT_EQ(abortRequested(), GetParam().requestsAbort);
}

constexpr End ends[] = {
    {.by = "Finish",
     .act = [](Dialog& dialog) { test::push(dialog, IDC_FINISH); },
     .completes = true,
     .requestsAbort = true},
    {.by = "CloseBox",
     .act = [](Dialog& dialog) { dialog.SendMessage(WM_SYSCOMMAND, SC_CLOSE); },
     .completes = true,
     .requestsAbort = true},
    {.by = "Escape",
     .act = [](Dialog& dialog) { press(dialog, VK_ESCAPE); },
     .completes = false,
     .requestsAbort = false},
    {.by = "AnyOtherResult",
     .act = [](Dialog& dialog) { dialog.EndDialog(99); },
     .completes = true,
     .requestsAbort = false},
};
INSTANTIATE_TEST_SUITE_P(By, EndsOfTheDialog, testing::ValuesIn(ends),
                         [](const auto& end) { return std::string(end.param.by); });

TEST_F(EndOfTheDialog, EnterDoesNotEndIt) {
    EXPECT_EQ(run({[](Dialog& dialog) { press(dialog, VK_RETURN); },
                   [](Dialog& dialog) { EXPECT_TRUE(::IsWindowVisible(dialog)); }}),
              DialogDriver::LEFT_OPEN);
    EXPECT_FALSE(ended());
}

// The Fail button is always hidden and disabled, but hosts may send its command; Finish begins with
// the same steps.
TEST_F(EndOfTheDialog, FailStopsTheMeterAndLeavesTheDialogOpen) {
    run({[&](Dialog& dialog) {
             EXPECT_TRUE(timerRuns(dialog));
             dialog.GetDlgItem(IDC_FINISH)->EnableWindow(FALSE);
             journal().clear();
             journal().onEntry = [&](const std::string& entry, HWND) {
                 if (entry == "meter 0") {
                     test::Journal::note(timerRuns(dialog) ? "timer on" : "timer off");
                     test::Journal::note(abortRequested() ? "abort requested" : "no abort");
                 }
             };
             dialog.SendMessage(WM_COMMAND, MAKEWPARAM(IDC_FAIL, BN_CLICKED),
                                reinterpret_cast<LPARAM>(dialog.GetDlgItem(IDC_FAIL)->m_hWnd));
             journal().onEntry = nullptr;
             EXPECT_THAT(journal().entries(),
                         ElementsAre("meter 0", "timer off", "abort requested",
                                     written(IDC_STRENGTH_PERCENT, "0%"), "exchange read",
                                     "exchange read", "enable " + std::to_string(IDC_FINISH)));
         },
         [](Dialog& dialog) { EXPECT_FALSE(timerRuns(dialog)); }});
    EXPECT_FALSE(ended());
}

TEST_F(EndOfTheDialog, EndingItByTheOkCommandKillsTheTimerToo) {
    EXPECT_EQ(run({[](Dialog& dialog) {
                  EXPECT_TRUE(timerRuns(dialog));
                  dialog.SendMessage(WM_COMMAND, IDOK);
                  EXPECT_FALSE(timerRuns(dialog));
              }}),
              IDOK);
    EXPECT_FALSE(abortRequested());
}

TEST_F(EndOfTheDialog, TheTestHasATraceScopeOfItsOwn) {
    mrl::LogFactory::setPriority(0);
    runTest({});
    mrl::LogFactory::setPriority(1);
    EXPECT_THAT(logged(test::MODULE_LOGGER),
                ElementsAre("> Enter DiversityTest "
                            "(modules/src/windows/diag/mrlrantenna/MRLrAntenna.cpp:305)",
                            "< Enter DiversityTest"));
    const std::string line = std::string("log 0 ") + test::MODULE_LOGGER + ": ";
    const std::vector<std::string> steps = journal().entries({line, "pause", "opens"});
    ASSERT_FALSE(steps.empty());
    EXPECT_THAT(steps.front(), StartsWith(line)) << "the pause belongs to the scope";
}

TEST_F(EndOfTheDialog, TheTestHasAManagerOfFontsWhileTheDialogIsThere) {
    const auto fontsAreShared = [] {
        LOGFONTW properties{};
        properties.lfHeight = -11;
        return GdiResourceManager::font(properties) == GdiResourceManager::font(properties);
    };
    runTest({[&](Dialog&) { EXPECT_TRUE(fontsAreShared()); }});
    EXPECT_FALSE(fontsAreShared());
}

TEST_F(EndOfTheDialog, TheTestWaitsASecondBeforeItsDialog) {
    runTest({});
    EXPECT_THAT(journal().entries({"pause 1000 ms", "opens"}),
                ElementsAre("pause 1000 ms", "opens", "pause 1000 ms", "pause 1000 ms"));
}

// --- Stop requests -------------------------------------------------------------------------------

TEST_F(EndOfTheDialog, AStopRequestBeforeItOpensAbortsTheTest) {
    requestStop();
    EXPECT_EQ(runTest({}), TestResult::USERABORTED());
    EXPECT_TRUE(ended());
    EXPECT_EQ(looks(), 1U); // the details look at the list before they ask whether to go on
}

TEST_F(EndOfTheDialog, AStopRequestAtTheEndOfOpeningAbortsTheTest) {
    requestStopAt("meter step 1");
    EXPECT_EQ(runTest({}), TestResult::USERABORTED());
    EXPECT_TRUE(ended());
}

TEST_F(EndOfTheDialog, AStopRequestIsSeenWhenTheDialogIsPaintedAndNothingIsDrawn) {
    EXPECT_EQ(runTest({[](Dialog& dialog) {
                          requestStop();
                          dialog.Invalidate();
                          dialog.UpdateWindow();
                          EXPECT_FALSE(dialog.ContinueModal());
                          EXPECT_TRUE(::GetUpdateRect(dialog.m_hWnd, nullptr, FALSE));
                      }},
                      DialogDriver::Place::ON_SCREEN),
              TestResult::USERABORTED());
    EXPECT_TRUE(ended());
}

TEST_F(EndOfTheDialog, AStopRequestIsSeenAtATickWhichDoesNothingElse) {
    EXPECT_EQ(runTest({[&](Dialog& dialog) {
                  journal().clear();
                  requestStop();
                  test::tick(dialog);
                  EXPECT_FALSE(dialog.ContinueModal());
                  EXPECT_THAT(journal().entries({""}), IsEmpty());
              }}),
              TestResult::USERABORTED());
    EXPECT_TRUE(ended());
}

TEST_F(EndOfTheDialog, AStopRequestKeepsARefreshFromBeginning) {
    EXPECT_THAT(doneBy(&Dialog::populateAvailableNetworks, [] { requestStop(); }), IsEmpty());
}

TEST_F(EndOfTheDialog, AStopRequestKeepsAnEmptiedListEmpty) {
    EXPECT_THAT(doneBy(&Dialog::populateAvailableNetworks, [this] { requestStopAt("list empty"); }),
                ElementsAre("count entries", "list empty"));
}

TEST_F(EndOfTheDialog, AStopRequestDuringTheRefreshLeavesTheDetailsAsTheyAre) {
    EXPECT_THAT(doneBy(
                    &Dialog::updateSelectedNetworkInformation, [] {}, 1),
                ElementsAre("pause 50 ms", "WlanGetAvailableNetworkList"));
}

TEST_F(EndOfTheDialog, AStopRequestDuringTheMeasurementLeavesTheFieldsAsTheyAre) {
    constexpr const char* LOOK = "WlanGetAvailableNetworkList";
    // The three looks of the first network's measurement, and none of the second's.
    EXPECT_THAT(doneBy(
                    &Dialog::updateSelectedNetworkInformation, [] {}, 4),
                ElementsAre("pause 50 ms", LOOK, "count entries", "WlanQueryInterface",
                            writtenKey(IDC_RADIO_STATUS, "RADIO_BUTTON_ON"), LOOK, "pause 100 ms",
                            LOOK, "pause 100 ms", LOOK, "pause 100 ms"));
}

} // namespace
