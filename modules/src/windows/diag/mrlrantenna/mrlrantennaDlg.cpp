// The dialog's life: how it opens, what it answers to, how it ends.
#include "mrlrantennaDlg.h"

#include "ModuleObjects.h"
#include "PostedRefresh.h"
#include "TabletPc.h"
#include "mrlrantennaDlgLog.h"

#include <tesk5/DiagModule.h>

#include <mrl/System.h>

#include <afxpriv.h>

#include <cwchar>

using tesk5::DiagModule;

namespace {

constexpr unsigned int OPENING_PAUSE_MS = 1000;

// Relative: found beside the executable.
constexpr const char* RADIO_ON_PICTURE = "resources/mrlrantenna/signal_enabled.png";
constexpr const char* RADIO_OFF_PICTURE = "resources/mrlrantenna/signal_disabled.png";

constexpr DWORD SYSTEM_MESSAGE_SIZE = 1025;
constexpr std::size_t FALLBACK_MESSAGE_LENGTH = 1023;

// The system's words for a result code, or else the code itself.
mrl::String systemMessage(DWORD code) {
    wchar_t buffer[SYSTEM_MESSAGE_SIZE] = {};
    // ERROR_MR_MID_NOT_FOUND, ERROR_RESOURCE_LANG_NOT_FOUND
    if (FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code,
                       GetUserDefaultLangID(), buffer, SYSTEM_MESSAGE_SIZE, nullptr) == 0) {
        std::swprintf(buffer, FALLBACK_MESSAGE_LENGTH + 1, L"Error code: %d",
                      static_cast<int>(code));
    }
    return mrl::String(buffer);
}

} // namespace

mrl::Logger* dialogLogger(int priority) {
    static mrl::Logger& logger = mrl::LogFactory::createLogger("mrlrantenna.mrlrantennaDlg");
    return logger.admitting(priority);
}

BEGIN_MESSAGE_MAP(MRLRAntennaDlg, CDialog)
ON_WM_PAINT()
ON_WM_TIMER()
ON_WM_QUERYDRAGICON()
ON_WM_HSCROLL()
ON_WM_CTLCOLOR()
ON_WM_CLOSE()
ON_BN_CLICKED(IDC_FINISH, &MRLRAntennaDlg::OnFinish)
ON_BN_CLICKED(IDC_FAIL, &MRLRAntennaDlg::OnFail)
ON_CBN_SELCHANGE(IDC_NETWORK_COMBO, &MRLRAntennaDlg::OnSelchangeComboNetwork)
ON_STN_CLICKED(IDC_RADIO_ON_IMAGE, &MRLRAntennaDlg::OnRadioImageClicked)
ON_STN_CLICKED(IDC_RADIO_OFF_IMAGE, &MRLRAntennaDlg::OnRadioImageClicked)
ON_MESSAGE(WM_KICKIDLE, &MRLRAntennaDlg::OnKickIdle)
END_MESSAGE_MAP()

MRLRAntennaDlg::MRLRAntennaDlg(const tesk5::DiagDevice& device, CWnd* parent)
    : CDialog(IDD, parent), m_wirelessDevice(new WirelessDevice(device)), m_diagDevice(&device),
      m_hIcon(AfxGetApp()->LoadIcon(IDR_MAINFRAME)) {}

MRLRAntennaDlg::~MRLRAntennaDlg() {
    PostedRefresh::instance().close(this);
    delete m_toolTip;
    delete m_wirelessDevice;
}

void MRLRAntennaDlg::refreshNetworks(void* context) {
    PostedRefresh::instance().post(static_cast<MRLRAntennaDlg*>(context));
}

void MRLRAntennaDlg::PreSubclassWindow() {
    CWnd::PreSubclassWindow();
    MRLLangExt::PreSubclassWindow(this);
}

void MRLRAntennaDlg::DoDataExchange(CDataExchange* pDX) {
    CDialog::DoDataExchange(pDX);
    DDX_Control(pDX, IDC_SIGNAL_METER, m_signalMeter);
    DDX_Control(pDX, IDC_NETWORK_COMBO, m_networkCombo);
    DDX_Control(pDX, IDC_RADIO_ON_IMAGE, m_radioOnImage);
    DDX_Control(pDX, IDC_RADIO_OFF_IMAGE, m_radioOffImage);
}

BOOL MRLRAntennaDlg::PreTranslateMessage(MSG* pMsg) {
    if (m_toolTip != nullptr) {
        m_toolTip->RelayEvent(pMsg);
    }
    return CDialog::PreTranslateMessage(pMsg);
}

BOOL MRLRAntennaDlg::OnInitDialog() {
    const mrl::TraceLogger trace = dialogTrace("OnInitDialog()");
    CDialog::OnInitDialog();
    MRLLangExt::OnInitDialog(this);
    ShowsNames(m_networkCombo);
    PostedRefresh::instance().open(this, GetSafeHwnd());

    if (isTabletPc()) {
        // Large enough for a finger. The control takes heights of 16 bits.
        m_networkCombo.SetItemHeight(0, static_cast<WORD>(m_networkCombo.GetItemHeight(0) * 2));
    }
    mrl::System::mssleep(OPENING_PAUSE_MS);

    SetIcon(m_hIcon, TRUE);
    SetIcon(m_hIcon, FALSE);
    populateText();
    createToolTip();
    switchRadioOnAtStart();

    m_radioOnImage.SetImage(RADIO_ON_PICTURE, false, true, false);
    m_radioOffImage.SetImage(RADIO_OFF_PICTURE, false, true, false);
    showRadioPicture();

    UpdateData(TRUE);
    UpdateData(TRUE);

    populateAvailableNetworks();
    updateSelectedNetworkInformation();
    startWirelessProgress();
    m_signalMeter.SetRange(0, 100);
    m_signalMeter.SetStep(1);

    if (DiagModule::checkForStop()) {
        OnCancel();
    }
    return TRUE;
}

void MRLRAntennaDlg::createToolTip() {
    m_toolTip = new CToolTipCtrl; // deleted with the dialog
    if (!m_toolTip->Create(this, 0)) {
        dialogLog(4) << "Unable To create ToolTip";
        return; // the dialog goes on without tool tips
    }
    // Each picture's tool tip is its name for screen readers too.
    const auto add = [this](PngControl& picture, const tesk5::LocalizedString* text) {
        const wchar_t* words = text->localizedString().getUCS2Buffer();
        m_toolTip->AddTool(&picture, words, nullptr, 0);
        picture.SetWindowText(words);
    };
    add(m_radioOnImage, texts::turnRadioOff);
    add(m_radioOffImage, texts::turnRadioOn);
    m_toolTip->Activate(TRUE);
}

void MRLRAntennaDlg::switchRadioOnAtStart() {
    const mrl::Int32 phy = lastPhy();
    m_radioOn = true;
    if (m_wirelessDevice->isRadioEnabled(phy) ||
        m_wirelessDevice->setRadioState(static_cast<mrl::Uint32>(phy), true)) {
        return;
    }
    const mrl::String message = systemMessage(m_wirelessDevice->m_lastSetResult);
    dialogLog() << "WARNING:: setRadioState returned: " << message;
    events::warningEvent->setVariable("warningEvent", tesk5::TeskString(message));
    DiagModule::warning(events::warningEvent, __FILE__, __LINE__);
    m_radioOn = false;
}

mrl::Int32 MRLRAntennaDlg::lastPhy() const {
    return m_wirelessDevice->m_radio.lastPhy();
}

void MRLRAntennaDlg::OnPaint() {
    if (DiagModule::checkForStop()) {
        OnCancel();
        return;
    }
    if (!IsIconic()) {
        CDialog::OnPaint();
        return;
    }
    CPaintDC dc(this);
    SendMessage(WM_ICONERASEBKGND, reinterpret_cast<WPARAM>(dc.GetSafeHdc()), 0);
    CRect client;
    GetClientRect(&client);
    const int x = (client.Width() - GetSystemMetrics(SM_CXICON) + 1) / 2;
    const int y = (client.Height() - GetSystemMetrics(SM_CYICON) + 1) / 2;
    dc.DrawIcon(x, y, m_hIcon);
}

HCURSOR MRLRAntennaDlg::OnQueryDragIcon() {
    return m_hIcon;
}

LRESULT MRLRAntennaDlg::OnKickIdle(WPARAM /*wParam*/, LPARAM /*lParam*/) {
    if (PostedRefresh::instance().takePending(this)) {
        populateAvailableNetworks();
        updateSelectedNetworkInformation();
    }
    return 0;
}

void MRLRAntennaDlg::OnClose() {
    OnFinish();
}

void MRLRAntennaDlg::OnFinish() {
    OnFail();
    OnOK();
}

void MRLRAntennaDlg::OnFail() {
    KillTimer(SIGNAL_TIMER_ID);
    DiagModule::requestAbort();
    m_signalMeter.SetPos(0);
    setText(IDC_STRENGTH_PERCENT, percentText(0));
    UpdateData(TRUE);
    UpdateData(TRUE);
    GetDlgItem(IDC_FINISH)->EnableWindow(TRUE);
}

void MRLRAntennaDlg::OnOK() {
    KillTimer(SIGNAL_TIMER_ID);
    CDialog::OnOK();
}
