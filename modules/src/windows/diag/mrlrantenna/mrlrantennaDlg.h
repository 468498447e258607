// The dialog of the interactive test: the adapter, the visible networks, the details of the
// selected one and a live meter, so that a person can turn the antennas until the signal is best.
#pragma once

#include <afxcmn.h>
#include <afxwin.h>

#include "WirelessDevice.h"
#include "resource.h"

#include <libUikit/MRLLangExt.h>
#include <libUikit/PngControl.h>

#include <optional>

/// "Signal Strength Test", modal. Everything belongs to the thread that runs it, except
/// refreshNetworks(), which any thread may call.
///
/// An exception that leaves one of its handlers ends DoModal() and comes out of it.
class MRLRAntennaDlg : public CDialog, public MRLLangExt {
public:
    static constexpr UINT IDD = IDD_SIGNAL_STRENGTH;
    /// The timer that keeps the display live, every 10 s.
    static constexpr UINT_PTR SIGNAL_TIMER_ID = 129;
    static constexpr UINT SIGNAL_TIMER_MS = 10000;

    /// \param device the card under test; must outlive the dialog
    /// \param parent owner of the window, may be null
    /// Takes the client handle to the card's interface and reads its radio; shows nothing yet.
    explicit MRLRAntennaDlg(const tesk5::DiagDevice& device, CWnd* parent = nullptr);
    MRLRAntennaDlg(const MRLRAntennaDlg&) = delete;
    MRLRAntennaDlg& operator=(const MRLRAntennaDlg&) = delete;
    ~MRLRAntennaDlg() override;

    /// Asks the dialog `context` to refresh its list and details on its own thread when it is next
    /// idle; any number of calls until then make one refresh. Does nothing for a dialog that is
    /// gone. The handler of the scan notification.
    static void refreshNetworks(void* context);

    // The parts of the display. Public, as the fields are, for the tests of the module.

    /// Sets the texts that do not change while the dialog is open. Blocks for 1 s.
    void populateText();
    /// Refills the list of networks and selects what was selected before, or else the connected
    /// network, or else the first.
    void populateAvailableNetworks();
    /// Shows the details of the selected network. Blocks for 50 ms, and for 300 ms more for each
    /// network that it writes into the fields.
    void updateSelectedNetworkInformation();
    /// Shows the state of the radio in words, picture and colour.
    void updateRadioState();
    /// Arms the timer.
    void startWirelessProgress();
    /// Records the networks of the last refresh and the strength that was shown last, for reports;
    /// requests advice when there is no network. Makes no call to the platform.
    void recordObservations() const;
    /// Signal quality of the current connection in percent, 0 without one; tells in words whether
    /// there is one. Blocks for 100 ms.
    unsigned int getSignalStrength();

    bool m_radioOn = false;    ///< which picture is shown
    bool m_radioUsable = true; ///< decides the colour of the radio's status text
    CProgressCtrl m_signalMeter;
    WirelessDevice* m_wirelessDevice; ///< owned
    const tesk5::DiagDevice* m_diagDevice;
    HICON m_hIcon;
    CComboBox m_networkCombo;
    PngControl m_radioOnImage;
    PngControl m_radioOffImage;
    CToolTipCtrl* m_toolTip = nullptr; ///< owned; made in OnInitDialog()

protected:
    void PreSubclassWindow() override;
    void DoDataExchange(CDataExchange* pDX) override;
    BOOL PreTranslateMessage(MSG* pMsg) override;
    BOOL OnInitDialog() override;
    void OnOK() override;

    afx_msg void OnPaint();
    afx_msg void OnTimer(UINT_PTR nIDEvent);
    afx_msg HCURSOR OnQueryDragIcon();
    afx_msg HBRUSH OnCtlColor(CDC* pDC, CWnd* pWnd, UINT nCtlColor);
    afx_msg void OnClose();
    afx_msg void OnFinish();
    afx_msg void OnFail();
    afx_msg void OnSelchangeComboNetwork();
    afx_msg void OnRadioImageClicked();
    afx_msg LRESULT OnKickIdle(WPARAM wParam, LPARAM lParam);
    DECLARE_MESSAGE_MAP()

private:
    // The network whose details were shown last.
    struct Shown {
        mrl::String ssid;
        mrl::Uint32 percent;
    };
    std::optional<Shown> m_shown;

    mrl::Int32 lastPhy() const;
    void setText(int controlId, const mrl::String& text);
    void createToolTip();
    void switchRadioOnAtStart();
    void showRadioPicture();
    bool keyboardIsOnPicture() const;
    void showNetwork(VisibleNetwork& network);
    void clearNetwork();
};
