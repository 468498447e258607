// What the dialog shows: its texts, the list of networks, the details of the selected one.
#include "mrlrantennaDlg.h"

#include "ModuleObjects.h"
#include "Observations.h"
#include "mrlrantennaDlgLog.h"

#include <tesk5/DiagModule.h>

#include <mrl/System.h>

using mrl::String;
using tesk5::DiagModule;

namespace {

constexpr unsigned int TEXT_PAUSE_MS = 1000;
constexpr unsigned int DETAILS_PAUSE_MS = 50;

// A name has at most 32 characters.
constexpr std::size_t ENTRY_SIZE = 80;

String entryText(const CComboBox& combo, int index) {
    wchar_t buffer[ENTRY_SIZE];
    buffer[0] = 0;
    combo.GetLBText(index, buffer);
    return String(buffer);
}

struct LabelText {
    int controlId;
    tesk5::LocalizedString* const* text;
};
// The label of the connected state, "Signal Quality:" in the template, shows the text of CIPHER;
// SIGNAL_QUALITY is shown nowhere.
constexpr LabelText labelsAfterAdapter[] = {
    {IDC_FINISH, &texts::finish},
    {IDC_INSTRUCTIONS, &texts::instructions1},
    {IDC_NETWORKS_LABEL, &texts::availableNetworks},
    {IDC_BSS_TYPE_LABEL, &texts::bssType},
};
constexpr LabelText labelsAfterSsid[] = {
    {IDC_SECURITY_LABEL, &texts::security},       {IDC_AUTH_LABEL, &texts::authentication},
    {IDC_CIPHER_LABEL, &texts::cipher},           {IDC_CONNECTABLE_LABEL, &texts::connectable},
    {IDC_STRENGTH_LABEL, &texts::signalStrength},
};

} // namespace

void MRLRAntennaDlg::setText(int controlId, const String& text) {
    SetDlgItemText(controlId, text.getUCS2Buffer());
}

void MRLRAntennaDlg::populateText() {
    const mrl::TraceLogger trace = dialogTrace("populateText()");
    mrl::System::mssleep(TEXT_PAUSE_MS);
    const auto setTexts = [this](const auto& labels) {
        for (const LabelText& label : labels) {
            setText(label.controlId, texts::get(*label.text));
        }
    };
    SetWindowText(texts::get(texts::title).getUCS2Buffer());
    setText(IDC_ADAPTER_LABEL, texts::get(texts::networkAdapter));
    const String description = m_wirelessDevice->getInterfaceDescription();
    dialogLog() << "The interface description: " << description;
    setText(IDC_ADAPTER_NAME, description);
    setTexts(labelsAfterAdapter);
    SetDlgItemText(IDC_SSID_LABEL, L"SSID"); // the same in every language
    setTexts(labelsAfterSsid);
    m_networkCombo.ResetContent();
}

void MRLRAntennaDlg::populateAvailableNetworks() {
    const mrl::TraceLogger trace = dialogTrace("populateAvailableNetworks()");
    if (DiagModule::checkForStop()) {
        return;
    }
    String previous;
    int selected = m_networkCombo.GetCurSel();
    const int entries = m_networkCombo.GetCount();
    if (selected == CB_ERR) {
        selected = 0;
    } else if (entries > 1) {
        // The only entry of a list was not chosen by the user.
        previous = entryText(m_networkCombo, selected);
    }
    m_networkCombo.ResetContent();
    if (DiagModule::checkForStop()) {
        return;
    }

    const mrl::Uint32 count = m_wirelessDevice->getNumVisibleNetworks();
    bool found = false;
    bool anyConnected = false;
    int connectedIndex = CB_ERR;
    for (mrl::Uint32 i = 0; i < count; ++i) {
        const VisibleNetwork network = m_wirelessDevice->m_visibleNetworks[i];
        const String ssid = network.getSsid();
        const int index = static_cast<int>(i);
        // A name that the previous one contains counts as the same network; the last one is taken.
        if (previous.find(ssid) != String::NOT_FOUND) {
            found = true;
            selected = index;
        }
        if (network.m_isConnected) {
            anyConnected = true;
            connectedIndex = index;
        }
        // By index: the order is the device's, whatever the control's sorted style.
        m_networkCombo.InsertString(index, ssid.getUCS2Buffer());
    }

    if (!previous.empty()) {
        m_networkCombo.SelectString(0, previous.getUCS2Buffer());
    } else {
        m_networkCombo.SetCurSel(selected);
    }
    if (!found) {
        m_networkCombo.SetCurSel(anyConnected ? connectedIndex : 0);
    }
}

void MRLRAntennaDlg::updateSelectedNetworkInformation() {
    const mrl::TraceLogger trace = dialogTrace("updateSelectedNetworkInformation()");
    mrl::System::mssleep(DETAILS_PAUSE_MS);
    const mrl::Uint32 count = m_wirelessDevice->getNumVisibleNetworks();
    if (DiagModule::checkForStop()) {
        return;
    }
    const int selected = m_networkCombo.GetCurSel();
    const int entries = m_networkCombo.GetCount();
    updateRadioState();
    if (selected == CB_ERR || entries < 1) {
        clearNetwork();
        return;
    }

    const String entry = entryText(m_networkCombo, selected);
    bool match = false;
    for (mrl::Uint32 i = 0; i < count && !match; ++i) {
        VisibleNetwork network = m_wirelessDevice->m_visibleNetworks[i];
        match = entry.find(network.getSsid()) != String::NOT_FOUND;
        if (match) {
            m_networkCombo.SetCurSel(selected);
        }
        // With the first entry selected, every network up to the first match is shown in turn, so
        // that the fields are not left empty when the selected network has just gone.
        if (selected != 0 && !match) {
            continue;
        }
        network.m_signalQuality = m_wirelessDevice->getSignalStrength(network);
        if (DiagModule::checkForStop()) {
            return;
        }
        showNetwork(network);
    }
}

void MRLRAntennaDlg::showNetwork(VisibleNetwork& network) {
    const mrl::Int32 strength = network.m_signalQuality;
    setText(IDC_BSS_TYPE, network.getBssType());
    setText(IDC_SSID, network.getSsid());
    setText(IDC_SECURITY, network.getSecurity());
    setText(IDC_CONNECTABLE, network.getConnectable());
    setText(IDC_CIPHER, network.getConnected()); // the label shows the text of CIPHER
    setText(IDC_AUTH, network.getAuthAlgorithm());
    setText(IDC_STRENGTH_TEXT, network.getSignalQualityText());
    setText(IDC_STRENGTH_PERCENT, percentText(strength));
    m_signalMeter.SetPos(strength);
    m_shown = Shown{.ssid = network.getSsid(), .percent = static_cast<mrl::Uint32>(strength)};
}

void MRLRAntennaDlg::clearNetwork() {
    for (const int controlId : {IDC_BSS_TYPE, IDC_SSID, IDC_SECURITY, IDC_CONNECTABLE, IDC_CIPHER,
                                IDC_AUTH, IDC_STRENGTH_TEXT, IDC_STRENGTH_PERCENT}) {
        setText(controlId, String());
    }
    m_signalMeter.SetPos(0);
    m_shown.reset();
}

void MRLRAntennaDlg::recordObservations() const {
    const mrl::MRLArray<VisibleNetwork>& networks = m_wirelessDevice->m_visibleNetworks;
    if (networks.size() == 0) {
        DiagModule::requestAdvice();
    }
    std::optional<mrl::Uint32> measured;
    for (mrl::Uint32 i = 0; m_shown && !measured && i < networks.size(); ++i) {
        if (networks[i].m_ssid == m_shown->ssid) {
            measured = i;
        }
    }
    recordNetworks(*m_wirelessDevice, measured);
    if (m_shown) {
        recordStrength(m_shown->percent, {});
    }
}

void MRLRAntennaDlg::OnSelchangeComboNetwork() {
    const mrl::TraceLogger trace = dialogTrace("OnSelchangeComboNetwork()");
    KillTimer(SIGNAL_TIMER_ID);
    dialogLog() << "Sel Changed";
    updateSelectedNetworkInformation();
    // A whole period from now: the details have just been read.
    SetTimer(SIGNAL_TIMER_ID, SIGNAL_TIMER_MS, nullptr);
}
