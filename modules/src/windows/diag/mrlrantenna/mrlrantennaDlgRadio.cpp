// What keeps the dialog live: the timer, the connection's state, and the radio with its picture.
#include "mrlrantennaDlg.h"

#include "ModuleObjects.h"
#include "mrlrantennaDlgLog.h"

#include <nativewifi/Api.h>

#include <tesk5/DiagModule.h>

#include <mrl/System.h>

using tesk5::DiagModule;

namespace {

constexpr unsigned int CONNECTION_PAUSE_MS = 100;

constexpr COLORREF BLACK = RGB(0, 0, 0);
constexpr COLORREF BLUE = RGB(0, 0, 255);
constexpr COLORREF RED = RGB(255, 0, 0);
constexpr COLORREF WHITE = RGB(255, 255, 255);

bool isDark(COLORREF colour) {
    return 299 * GetRValue(colour) + 587 * GetGValue(colour) + 114 * GetBValue(colour) < 128 * 1000;
}

// The colours mean something and are the same in every theme. They are readable on a light ground:
// on that of a dark theme, the text stands on white.
void setTextColour(CDC& dc, COLORREF colour) {
    dc.SetTextColor(colour);
    if (isDark(dc.GetBkColor())) {
        dc.SetBkColor(WHITE);
    }
}

// How a radio state is shown: by the first row whose flag it has, or by the last row when it could
// not be read.
struct RadioDisplay {
    RadioStateFlags flag;
    tesk5::LocalizedString* const* text;
    bool on;      // which picture
    bool enabled; // whether a click can do anything
    bool usable;  // the status text's colour
};
constexpr RadioDisplay radioDisplays[] = {
    {HARDWARE_OFF, &texts::hardwareSwitchOff, false, false, false},
    {SOFTWARE_OFF, &texts::radioButtonOff, false, true, true},
    {SOFTWARE_ON, &texts::radioButtonOn, true, true, true},
    {RADIO_STATE_NONE, &texts::radioStateUnknown, false, false, false},
};

const RadioDisplay& displayOf(RadioStateFlags flags) {
    const RadioDisplay* display = radioDisplays;
    while (display->flag != RADIO_STATE_NONE && (flags & display->flag) == 0) {
        ++display;
    }
    return *display;
}

} // namespace

void MRLRAntennaDlg::startWirelessProgress() {
    const mrl::TraceLogger trace = dialogTrace("startWirelessProgress()");
    UpdateData(TRUE);
    UpdateData(TRUE);
    GetDlgItem(IDC_FINISH)->EnableWindow(TRUE);
    SetTimer(SIGNAL_TIMER_ID, SIGNAL_TIMER_MS, nullptr);
}

void MRLRAntennaDlg::OnTimer(UINT_PTR nIDEvent) {
    if (DiagModule::checkForStop()) {
        OnCancel();
        return;
    }
    try {
        UpdateData(TRUE);
        getSignalStrength(); // shows the connection's state
    } catch (...) {
        return; // this tick only; the timer goes on
    }
    if (nIDEvent != SIGNAL_TIMER_ID) {
        return;
    }
    if (m_wirelessDevice->isScanEnabled() &&
        nativewifi::api().WlanScan(m_wirelessDevice->m_clientHandle,
                                   &m_wirelessDevice->m_interfaceGuid, nullptr, nullptr,
                                   nullptr) == ERROR_SUCCESS) {
        return; // the end of the scan asks for the refresh
    }
    populateAvailableNetworks();
    updateSelectedNetworkInformation();
}

unsigned int MRLRAntennaDlg::getSignalStrength() {
    const mrl::TraceLogger trace = dialogTrace("getSignalStrength()");
    const bool connected = m_wirelessDevice->getSigTransReceieveRate();
    mrl::System::mssleep(CONNECTION_PAUSE_MS);
    setText(IDC_CONNECTION_STATE,
            texts::get(connected ? texts::validState : texts::errorInvalidState));
    return connected ? m_wirelessDevice->m_signalQuality : 0;
}

HBRUSH MRLRAntennaDlg::OnCtlColor(CDC* pDC, CWnd* pWnd, UINT nCtlColor) {
    const HBRUSH brush = CWnd::OnCtlColor(pDC, pWnd, nCtlColor);
    switch (pWnd->GetDlgCtrlID()) {
    case IDC_CONNECTION_STATE:
        // Read again: the colour must not lag behind the connection until the next tick.
        setTextColour(*pDC, m_wirelessDevice->getSigTransReceieveRate() ? BLUE : RED);
        break;
    case IDC_RADIO_STATUS:
        setTextColour(*pDC, m_radioUsable ? BLACK : RED);
        break;
    default:
        break;
    }
    return brush;
}

bool MRLRAntennaDlg::keyboardIsOnPicture() const {
    const CWnd* const focus = GetFocus();
    return focus != nullptr && (focus == &m_radioOnImage || focus == &m_radioOffImage);
}

void MRLRAntennaDlg::showRadioPicture() {
    const bool passesFocusOn = keyboardIsOnPicture(); // hiding the picture takes it away
    m_radioOnImage.ShowWindow(m_radioOn ? SW_SHOW : SW_HIDE);
    m_radioOffImage.ShowWindow(m_radioOn ? SW_HIDE : SW_SHOW);
    if (passesFocusOn) {
        (m_radioOn ? m_radioOnImage : m_radioOffImage).SetFocus();
    }
}

void MRLRAntennaDlg::updateRadioState() {
    const RadioDisplay& display = displayOf(m_wirelessDevice->getRadioState(lastPhy()));
    m_radioUsable = display.usable;
    setText(IDC_RADIO_STATUS, texts::get(*display.text));
    if (display.on != m_radioOn) {
        m_radioOn = display.on;
        showRadioPicture();
    }
    if ((m_radioOnImage.IsWindowEnabled() != FALSE) != display.enabled) {
        const bool passesFocusOn = keyboardIsOnPicture(); // disabling the picture takes it away
        m_radioOnImage.EnableWindow(display.enabled ? TRUE : FALSE);
        m_radioOffImage.EnableWindow(display.enabled ? TRUE : FALSE);
        if (passesFocusOn) {
            m_networkCombo.SetFocus();
        }
    }
}

void MRLRAntennaDlg::OnRadioImageClicked() {
    bool target = m_wirelessDevice->isRadioEnabled(lastPhy());
    if (target == m_radioOn) {
        target = !target;
        // The number of PHYs has just been read afresh: a card may come back with another one.
        if (!m_wirelessDevice->setRadioState(static_cast<mrl::Uint32>(lastPhy()), target)) {
            return;
        }
    }
    // Otherwise the radio was switched elsewhere, and the click only updates the picture.
    m_radioOn = target;
    showRadioPicture();
    updateRadioState();
}
