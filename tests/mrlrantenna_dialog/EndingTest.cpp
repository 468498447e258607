// How the dialog ends, and which result the test then has.
#include "DialogTest.h"

#include <nativewifi/WlanTypes.h>

namespace {

using tesk5::TestResult;
using test::Dialog;
using test::DialogDriver;
using test::network;
using test::press;
using test::shown;
using test::timerRuns;
using testing::ElementsAre;
using testing::IsEmpty;

class EndOfTheDialog : public test::DialogTest {
protected:
    EndOfTheDialog() { startRadio({network("Lab", 42U)}); }

    static std::atomic<bool>& abortRequested() {
        return tesk5::RunContext::current().abortRequested;
    }
    static void pushButton(const Dialog& dialog, int controlId) {
        dialog.GetDlgItem(controlId)->SendMessage(BM_CLICK);
    }
};

TEST_F(EndOfTheDialog, FinishCompletesTheTest) {
    EXPECT_EQ(runTest({[](Dialog& dialog) { pushButton(dialog, IDC_FINISH); }}),
              TestResult::COMPLETED());
    EXPECT_TRUE(ended());
    EXPECT_TRUE(abortRequested());
}

TEST_F(EndOfTheDialog, TheCloseBoxCompletesTheTest) {
    EXPECT_EQ(runTest({[](Dialog& dialog) { dialog.SendMessage(WM_SYSCOMMAND, SC_CLOSE); }}),
              TestResult::COMPLETED());
    EXPECT_TRUE(ended());
    EXPECT_TRUE(abortRequested());
}

TEST_F(EndOfTheDialog, EscapeAbortsTheTest) {
    EXPECT_EQ(runTest({[](Dialog& dialog) { press(dialog, VK_ESCAPE); }}),
              TestResult::USERABORTED());
    EXPECT_TRUE(ended());
    EXPECT_FALSE(abortRequested());
}

TEST_F(EndOfTheDialog, EscapeAbortsTheTestFromTheFinishButtonToo) {
    EXPECT_EQ(runTest({[](Dialog& dialog) {
                  CWnd* const button = dialog.GetDlgItem(IDC_FINISH);
                  ::SetFocus(*button);
                  button->PostMessage(WM_KEYDOWN, VK_ESCAPE);
              }}),
              TestResult::USERABORTED());
    EXPECT_TRUE(ended());
}

TEST_F(EndOfTheDialog, EnterDoesNotEndIt) {
    EXPECT_EQ(run({[](Dialog& dialog) { press(dialog, VK_RETURN); },
                   [](Dialog& dialog) { EXPECT_TRUE(::IsWindowVisible(dialog)); }}),
              DialogDriver::LEFT_OPEN);
    EXPECT_FALSE(ended());
}

TEST_F(EndOfTheDialog, ResultsOfTheDialogAreOkAndCancel) {
    EXPECT_EQ(run({[](Dialog& dialog) { pushButton(dialog, IDC_FINISH); }}), IDOK);
    EXPECT_EQ(run({[](Dialog& dialog) { dialog.SendMessage(WM_CLOSE); }}), IDOK);
    EXPECT_EQ(run({[](Dialog& dialog) { press(dialog, VK_ESCAPE); }}), IDCANCEL);
}

TEST_F(EndOfTheDialog, AnyEndButCancelCompletesTheTest) {
    EXPECT_EQ(runTest({[](Dialog& dialog) { dialog.EndDialog(99); }}), TestResult::COMPLETED());
}

TEST_F(EndOfTheDialog, FinishStopsTheMeterFirst) {
    run({[&](Dialog& dialog) {
        EXPECT_EQ(test::strength(dialog), "Good 42% 42");
        EXPECT_TRUE(timerRuns(dialog));
        journal().clear();
        pushButton(dialog, IDC_FINISH);
        EXPECT_THAT(journal().entries({"meter", "text"}), ElementsAre("meter 0", "text 1041 0%"));
        EXPECT_EQ(test::strength(dialog), "Good 0% 0");
        EXPECT_FALSE(timerRuns(dialog));
    }});
    EXPECT_TRUE(ended());
}

// The Fail button is always hidden and disabled, but hosts may send its command.
TEST_F(EndOfTheDialog, FailStopsTheMeterAndLeavesTheDialogOpen) {
    run({[&](Dialog& dialog) {
             dialog.GetDlgItem(IDC_FINISH)->EnableWindow(FALSE);
             journal().clear();
             journal().onEntry = [&](const std::string& entry) {
                 if (entry == "meter 0") {
                     journal().note(timerRuns(dialog) ? "timer on" : "timer off");
                     journal().note(abortRequested() ? "abort requested" : "no abort");
                 }
             };
             dialog.SendMessage(WM_COMMAND, MAKEWPARAM(IDC_FAIL, BN_CLICKED),
                                reinterpret_cast<LPARAM>(dialog.GetDlgItem(IDC_FAIL)->m_hWnd));
             journal().onEntry = nullptr;
             EXPECT_THAT(journal().entries(), ElementsAre("meter 0", "timer off", "abort requested",
                                                          "text 1041 0%", "enable 1015"));
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

TEST_F(EndOfTheDialog, TheClientHandleIsGivenBack) {
    runTest({[&](Dialog&) { EXPECT_EQ(radio().openHandles(), 1U); }});
    EXPECT_EQ(radio().openHandles(), 0U);
}

TEST_F(EndOfTheDialog, TheTestHasATraceScopeOfItsOwn) {
    mrl::LogFactory::setPriority(0);
    runTest({});
    mrl::LogFactory::setPriority(1);
    EXPECT_THAT(logged(test::MODULE_LOGGER),
                ElementsAre("> Enter DiversityTest "
                            "(modules/src/windows/diag/mrlrantenna/MRLrAntenna.cpp:305)",
                            "< Enter DiversityTest"));
}

TEST_F(EndOfTheDialog, TheTestWaitsASecondBeforeItsDialog) {
    bool opened = false;
    journal().onEntry = [&](const std::string& entry) {
        if (!opened && entry.starts_with("icon")) {
            opened = true;
            EXPECT_THAT(clock().sleeps(), ElementsAre(1000, 1000));
        }
    };
    runTest({});
    EXPECT_TRUE(opened);
}

// --- Stop requests -------------------------------------------------------------------------------

TEST_F(EndOfTheDialog, AStopRequestBeforeItOpensAbortsTheTest) {
    tesk5::RunContext::current().stopRequest.raise();
    EXPECT_EQ(runTest({}), TestResult::USERABORTED());
    EXPECT_TRUE(ended());
    EXPECT_EQ(looks(), 1U); // the details look at the list before they ask whether to go on
}

TEST_F(EndOfTheDialog, AStopRequestAtTheEndOfOpeningAbortsTheTest) {
    journal().onEntry = [](const std::string& entry) {
        if (entry == "meter step 1") {
            tesk5::RunContext::current().stopRequest.raise();
        }
    };
    EXPECT_EQ(runTest({}), TestResult::USERABORTED());
    EXPECT_TRUE(ended());
}

TEST_F(EndOfTheDialog, AStopRequestIsSeenWhenTheDialogIsPainted) {
    EXPECT_EQ(runTest({[](Dialog& dialog) {
                          tesk5::RunContext::current().stopRequest.raise();
                          dialog.Invalidate();
                          dialog.UpdateWindow();
                          EXPECT_FALSE(dialog.ContinueModal());
                      }},
                      DialogDriver::Place::ON_SCREEN),
              TestResult::USERABORTED());
    EXPECT_TRUE(ended());
}

TEST_F(EndOfTheDialog, AStopRequestIsSeenAtATickWhichDoesNothingElse) {
    EXPECT_EQ(runTest({[&](Dialog& dialog) {
                  radio().clearCalls();
                  journal().clear();
                  tesk5::RunContext::current().stopRequest.raise();
                  test::tick(dialog);
                  EXPECT_FALSE(dialog.ContinueModal());
                  EXPECT_THAT(radio().callNames(), IsEmpty());
                  EXPECT_THAT(journal().entries(), IsEmpty());
              }}),
              TestResult::USERABORTED());
    EXPECT_TRUE(ended());
}

TEST_F(EndOfTheDialog, AStopRequestKeepsARefreshFromBeginning) {
    run({[&](Dialog& dialog) {
        journal().clear();
        radio().clearCalls();
        tesk5::RunContext::current().stopRequest.raise();
        dialog.populateAvailableNetworks();
        EXPECT_THAT(journal().entries(), IsEmpty());
        EXPECT_THAT(radio().callNames(), IsEmpty());
        EXPECT_THAT(test::entries(dialog), ElementsAre("Lab"));
        tesk5::RunContext::current().stopRequest.clear();
    }});
    EXPECT_FALSE(ended());
}

TEST_F(EndOfTheDialog, AStopRequestKeepsAnEmptiedListEmpty) {
    run({[&](Dialog& dialog) {
        radio().clearCalls();
        journal().onEntry = [](const std::string& entry) {
            if (entry == "list empty") {
                tesk5::RunContext::current().stopRequest.raise();
            }
        };
        dialog.populateAvailableNetworks();
        EXPECT_THAT(radio().callNames(), IsEmpty());
        EXPECT_THAT(test::entries(dialog), IsEmpty());
        tesk5::RunContext::current().stopRequest.clear();
    }});
    EXPECT_FALSE(ended());
}

TEST_F(EndOfTheDialog, AStopRequestDuringTheRefreshLeavesTheDetailsAsTheyAre) {
    run({[&](Dialog& dialog) {
        journal().clear();
        radio().clearCalls();
        radio().onCall([](const radiosim::Call& call) {
            if (call.function == "WlanGetAvailableNetworkList") {
                tesk5::RunContext::current().stopRequest.raise();
            }
        });
        dialog.updateSelectedNetworkInformation();
        EXPECT_EQ(radio().callCount("WlanQueryInterface"), 0U); // nor the radio's state
        EXPECT_THAT(journal().entries(), ElementsAre("sleep 50"));
        radio().onCall(nullptr);
        tesk5::RunContext::current().stopRequest.clear();
    }});
    EXPECT_FALSE(ended());
}

TEST_F(EndOfTheDialog, AStopRequestDuringTheMeasurementLeavesTheFieldsAsTheyAre) {
    run({[&](Dialog& dialog) {
        radio().setAccessPoints(0, {network("Attic", 90U), network("Lab", 90U)});
        journal().clear();
        radio().clearCalls();
        radio().onCall([this](const radiosim::Call&) {
            if (looks() == 4) { // the third of the measurement
                tesk5::RunContext::current().stopRequest.raise();
            }
        });
        dialog.updateSelectedNetworkInformation();
        EXPECT_EQ(looks(), 4U); // and not of the second network
        EXPECT_THAT(journal().entries({"text 1031", "text 1041", "meter"}), IsEmpty());
        EXPECT_EQ(shown(dialog, IDC_SSID), "Lab");
        radio().onCall(nullptr);
        tesk5::RunContext::current().stopRequest.clear();
    }});
    EXPECT_FALSE(ended());
}

} // namespace
