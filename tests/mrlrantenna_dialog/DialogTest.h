// What the tests of the dialog start from: a simulated radio, a virtual clock, a journal of the
// controls, and ways to run the dialog, to act on it and to read what it shows.
#pragma once

#include <afxwin.h>

#include "ControlJournal.h"
#include "DialogDriver.h"

#include <mrlrantenna/DeviceTest.h>

#include <support/TemporaryFolder.h>

#include <tesk5/RunContext.h>
#include <tesk5/TestResult.h>

namespace test {

inline constexpr const char* DIALOG_LOGGER = "mrlrantenna.mrlrantennaDlg";

/// An access point of this name and strength.
radiosim::AccessPoint network(const std::string& ssid, radiosim::Signal signal = 50U);
/// One that the interface is connected to, as far as the list of networks says.
radiosim::AccessPoint connected(radiosim::AccessPoint network);

/// Access points of these names; the interface is connected to one after "*".
std::vector<radiosim::AccessPoint> networks(const std::vector<std::string>& names);

/// The journal's entry for a text that a control gets.
std::string written(int controlId, const std::string& text);

// What the dialog shows.

/// The text of a control; of the dialog itself for 0.
std::string shown(const Dialog& dialog, int controlId);
std::vector<std::string> entries(const Dialog& dialog);
/// The selected entry, or "none".
std::string selected(const Dialog& dialog);
/// Strength in words, percent and meter: "Good 50% 50".
std::string strength(const Dialog& dialog);
/// The picture that is shown: "on", "off", "both" or "none"; "greyed" in front when it is disabled.
std::string picture(const Dialog& dialog);
/// The text colour that the dialog sets for a control.
COLORREF colour(const Dialog& dialog, int controlId);
/// The colour behind a control's text.
COLORREF colourBehind(const Dialog& dialog, int controlId);
/// Whether the timer is armed. Restarts its period if it is.
bool timerRuns(const Dialog& dialog);

// What a user does.

/// Pushes a button, whether it can be seen or not.
void push(const Dialog& dialog, int controlId);
/// Selects an entry of the list of networks.
void choose(Dialog& dialog, int index);
/// Clicks with the left button on a control that has SS_NOTIFY.
void click(const Dialog& dialog, int controlId);
/// A tick of the timer.
void tick(const Dialog& dialog, UINT_PTR timerId = Dialog::SIGNAL_TIMER_ID);
/// Presses a key in a control, for the loop to handle.
void press(const Dialog& dialog, WPARAM key, int controlId = IDC_NETWORK_COMBO);

/// A folder with the resources as they are shipped: the pictures and the texts of all languages.
std::filesystem::path shippedTree();

/// What the dialog notes as it opens a trace scope, up to the scope's name.
std::string scopeOpened(const std::string& name);

class DialogTest : public ModuleTest {
protected:
    DialogTest();
    ~DialogTest() override;

    /// Runs a dialog without the test function; its exchanges of data are in the journal, as
    /// "exchange show" and "exchange read". \return what DoModal() returns
    INT_PTR run(std::vector<Step> steps,
                DialogDriver::Place place = DialogDriver::Place::OFF_SCREEN);
    /// Runs the test function, which makes the dialogs.
    tesk5::TestResult runTest(std::vector<Step> steps,
                              DialogDriver::Place place = DialogDriver::Place::OFF_SCREEN);
    /// Whether the steps ended the last dialog.
    bool ended() const { return m_ended; }

    ControlJournal& journal() { return m_journal; }
    /// The lines that the dialog logged, without their numbers.
    std::vector<std::string> dialogLines() const;
    /// How often the list of networks was asked for.
    std::size_t looks() { return radio().callCount("WlanGetAvailableNetworkList"); }

    static void requestStop() { tesk5::RunContext::current().stopRequest.raise(); }
    static void withdrawStop() { tesk5::RunContext::current().stopRequest.clear(); }

    static std::string localized(const char* key) { return tesk5::translation(key).utf8(); }
    /// written() with the text of a key.
    static std::string writtenKey(int controlId, const char* key) {
        return written(controlId, localized(key));
    }

private:
    ControlJournal m_journal;
    TemporaryFolder m_folder;
    std::filesystem::path m_folderBefore;
    bool m_ended = false;
};

} // namespace test
