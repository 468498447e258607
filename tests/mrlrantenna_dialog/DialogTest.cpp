#include "DialogTest.h"

#include "TabletPcDouble.h"

#include <MRLrAntenna.h>

#include <support/WindowLooks.h>

#include <mrl/System.h>
#include <mrl/Unicode.h>

namespace test {

namespace {

HWND control(const Dialog& dialog, int controlId) {
    return ::GetDlgItem(dialog.m_hWnd, controlId);
}

// Whether the control is visible when its dialog is.
bool isShown(const Dialog& dialog, int controlId) {
    return (GetWindowLongPtrW(control(dialog, controlId), GWL_STYLE) & WS_VISIBLE) != 0;
}

struct Colours {
    COLORREF text;
    COLORREF background;
};

Colours colours(const Dialog& dialog, int controlId) {
    const HDC dc = CreateCompatibleDC(nullptr);
    SetTextColor(dc, RGB(1, 2, 3)); // none of the dialog's
    dialog.SendMessage(WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc),
                       reinterpret_cast<LPARAM>(control(dialog, controlId)));
    const Colours found{GetTextColor(dc), GetBkColor(dc)};
    DeleteDC(dc);
    return found;
}

class ExchangingDialog : public MRLRAntennaDlg {
public:
    using MRLRAntennaDlg::MRLRAntennaDlg;

protected:
    void DoDataExchange(CDataExchange* exchange) override {
        Journal::note(exchange->m_bSaveAndValidate ? "exchange read" : "exchange show");
        MRLRAntennaDlg::DoDataExchange(exchange);
    }
};

} // namespace

radiosim::AccessPoint network(const std::string& ssid, radiosim::Signal signal) {
    return {.ssid = ssid, .signal = std::move(signal)};
}

radiosim::AccessPoint connected(radiosim::AccessPoint network) {
    network.connected = true;
    return network;
}

std::vector<radiosim::AccessPoint> networks(const std::vector<std::string>& names) {
    std::vector<radiosim::AccessPoint> all;
    for (const std::string& name : names) {
        all.push_back(name.starts_with('*') ? connected(network(name.substr(1))) : network(name));
    }
    return all;
}

std::string written(int controlId, const std::string& text) {
    return "text " + std::to_string(controlId) + " " + text;
}

std::string shown(const Dialog& dialog, int controlId) {
    return mrl::toUtf8(textOf(controlId == 0 ? dialog.m_hWnd : control(dialog, controlId)));
}

std::vector<std::string> entries(const Dialog& dialog) {
    std::vector<std::string> texts;
    for (int i = 0; i < dialog.m_networkCombo.GetCount(); ++i) {
        wchar_t text[80] = {}; // a name has 32 characters at most
        dialog.m_networkCombo.GetLBText(i, text);
        texts.push_back(mrl::toUtf8(static_cast<const wchar_t*>(text)));
    }
    return texts;
}

std::string selected(const Dialog& dialog) {
    const int index = dialog.m_networkCombo.GetCurSel();
    return index == CB_ERR ? "none" : entries(dialog)[static_cast<std::size_t>(index)];
}

std::string strength(const Dialog& dialog) {
    return shown(dialog, IDC_STRENGTH_TEXT) + " " + shown(dialog, IDC_STRENGTH_PERCENT) + " " +
           std::to_string(dialog.m_signalMeter.SendMessage(PBM_GETPOS));
}

std::string picture(const Dialog& dialog) {
    const bool on = isShown(dialog, IDC_RADIO_ON_IMAGE);
    const bool off = isShown(dialog, IDC_RADIO_OFF_IMAGE);
    const BOOL onEnabled = ::IsWindowEnabled(control(dialog, IDC_RADIO_ON_IMAGE));
    const BOOL offEnabled = ::IsWindowEnabled(control(dialog, IDC_RADIO_OFF_IMAGE));
    std::string words = onEnabled != offEnabled ? "half greyed " : onEnabled ? "" : "greyed ";
    words += on && off ? "both" : on ? "on" : off ? "off" : "none";
    return words;
}

COLORREF colour(const Dialog& dialog, int controlId) {
    return colours(dialog, controlId).text;
}

COLORREF colourBehind(const Dialog& dialog, int controlId) {
    return colours(dialog, controlId).background;
}

bool timerRuns(const Dialog& dialog) {
    if (!::KillTimer(dialog.m_hWnd, Dialog::SIGNAL_TIMER_ID)) {
        return false;
    }
    ::SetTimer(dialog.m_hWnd, Dialog::SIGNAL_TIMER_ID, Dialog::SIGNAL_TIMER_MS, nullptr);
    return true;
}

void push(const Dialog& dialog, int controlId) {
    ::SendMessageW(control(dialog, controlId), BM_CLICK, 0, 0);
}

void choose(Dialog& dialog, int index) {
    dialog.m_networkCombo.SetCurSel(index);
    dialog.SendMessage(WM_COMMAND, MAKEWPARAM(IDC_NETWORK_COMBO, CBN_SELCHANGE),
                       reinterpret_cast<LPARAM>(dialog.m_networkCombo.m_hWnd));
}

void click(const Dialog& dialog, int controlId) {
    const HWND target = control(dialog, controlId);
    const LPARAM place = MAKELPARAM(5, 5);
    ::SendMessageW(target, WM_LBUTTONDOWN, MK_LBUTTON, place);
    ::SendMessageW(target, WM_LBUTTONUP, 0, place);
}

void tick(const Dialog& dialog, UINT_PTR timerId) {
    dialog.SendMessage(WM_TIMER, timerId);
}

void press(const Dialog& dialog, WPARAM key, int controlId) {
    const HWND target = control(dialog, controlId);
    ::SetFocus(target);
    ::PostMessageW(target, WM_KEYDOWN, key, 0);
}

std::filesystem::path shippedTree() {
    return mrl::System::executableFolder() / ".." / "shipped";
}

std::string scopeOpened(const std::string& name) {
    return std::string("log 0 ") + DIALOG_LOGGER + ": > " + name;
}

// The pictures are nowhere near the current folder: the log then names those that were looked for.
DialogTest::DialogTest() : m_folderBefore(std::filesystem::current_path()) {
    std::filesystem::current_path(m_folder.path());
    doubles::tabletPc = false;
    withdrawStop();
    tesk5::RunContext::current().abortRequested = false;
}

DialogTest::~DialogTest() {
    withdrawStop();
    std::filesystem::current_path(m_folderBefore);
}

INT_PTR DialogTest::run(std::vector<Step> steps, DialogDriver::Place place) {
    const DialogDriver driver(std::move(steps), place);
    const tesk5::DiagDevice card = device();
    ExchangingDialog dialog(card);
    const INT_PTR result = dialog.DoModal();
    m_ended = !driver.leftOpen();
    EXPECT_EQ(driver.stepsLeft(), 0U);
    return result;
}

tesk5::TestResult DialogTest::runTest(std::vector<Step> steps, DialogDriver::Place place) {
    const DialogDriver driver(std::move(steps), place);
    const tesk5::TestResult result = DiversityTest(device());
    m_ended = !driver.leftOpen();
    EXPECT_EQ(driver.stepsLeft(), 0U);
    return result;
}

std::vector<std::string> DialogTest::dialogLines() const {
    std::vector<std::string> lines;
    for (const std::string& line : logged(DIALOG_LOGGER)) {
        lines.push_back(line.substr(line.find(' ') + 1));
    }
    return lines;
}

} // namespace test
