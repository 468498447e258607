// Applications, windows, dialogs and the controls of user32, with their messages routed to C++.
//
// Threads: a window object belongs to the thread that its window belongs to, and so do the maps
// from handles to objects. Exceptions that leave a message handler never cross Windows' own frames:
// they come out of the loop that dispatched the message (CDialog::DoModal(), CWnd::RunModalLoop()),
// or of the call that created the window.
#pragma once

#include <afx.h>
#include <afxmsg_.h>
#include <atltypes.h>

#include <afxdd_.h>

#include <string>

class CWnd;
class CDC;
class CScrollBar;
class CCommandLineInfo;
struct AFX_CMDHANDLERINFO;

/// Anything that can have a message map.
class CCmdTarget : public CObject {
public:
    /// Routes a command or a control's notification through the message map.
    /// \return whether there was a handler
    virtual BOOL OnCmdMsg(UINT nID, int nCode, void* pExtra, AFX_CMDHANDLERINFO* pHandlerInfo);

protected:
    static const AFX_MSGMAP* GetThisMessageMap();
    virtual const AFX_MSGMAP* GetMessageMap() const;

    /// The row for a message, searched from the class itself towards the root; null without one.
    const AFX_MSGMAP_ENTRY* findMessageEntry(UINT message, UINT code, UINT id) const;
};

/// The application. A program defines exactly one object of a class derived from this one, at
/// namespace scope; the library's main() then runs it:
/// InitInstance(), and Run() when that returned TRUE, or else ExitInstance(). Run()'s (or
/// ExitInstance()'s) value is the process's exit code.
class CWinApp : public CCmdTarget {
public:
    /// Registers the object as the process's application. A second one while the first lives is
    /// an error of the program and stays unregistered.
    /// \param lpszAppName title of message boxes; by default the executable's name without folder
    /// and ending
    explicit CWinApp(LPCTSTR lpszAppName = nullptr);
    CWinApp(const CWinApp&) = delete;
    CWinApp& operator=(const CWinApp&) = delete;
    ~CWinApp() override;

    LPCTSTR m_pszAppName = nullptr; ///< title of message boxes

    /// Prepares the run. The default returns FALSE: nothing to run.
    virtual BOOL InitInstance();
    /// The application's work. The default has none. \return ExitInstance()'s result
    virtual int Run();
    /// Cleans up. \return the exit code; the default gives 0
    virtual int ExitInstance();

    /// An icon of the executable, at the system's size for icons.
    /// \return null when there is none. Shared: not to be destroyed.
    /// Platform: LoadIconW
    HICON LoadIcon(LPCTSTR lpszResourceName) const;
    HICON LoadIcon(UINT nIDResource) const;

    /// Calls rCmdInfo.ParseParam() for each argument of the process but its name.
    /// Platform: GetCommandLineW
    void ParseCommandLine(CCommandLineInfo& rCmdInfo);

private:
    std::wstring m_name;
};

/// Receives the arguments from CWinApp::ParseCommandLine().
class CCommandLineInfo : public CObject {
public:
    CCommandLineInfo() = default;

    /// One argument; the default ignores it.
    /// \param pszParam the argument without the flag's leading '-' or '/'; valid during the call
    /// \param bFlag whether there was such a leading character
    /// \param bLast whether it is the last argument
    virtual void ParseParam(const TCHAR* /*pszParam*/, BOOL /*bFlag*/, BOOL /*bLast*/) {}
};

/// A device context.
class CDC : public CObject {
public:
    HDC m_hDC = nullptr;

    CDC() = default;
    /// Deletes the device context, unless Detach() has taken it.
    ~CDC() override;

    HDC GetSafeHdc() const { return m_hDC; }
    operator HDC() const { return m_hDC; }
    /// Makes `hDC` the context of this object. \return FALSE for null
    BOOL Attach(HDC hDC);
    /// Gives the handle back to the caller.
    HDC Detach();

    /// \return the colour before, or CLR_INVALID. Platform: SetTextColor
    COLORREF SetTextColor(COLORREF crColor);
    /// \return the colour behind texts, or CLR_INVALID. Platform: GetBkColor
    COLORREF GetBkColor() const;
    /// \return the colour before, or CLR_INVALID. Platform: SetBkColor
    COLORREF SetBkColor(COLORREF crColor);
    /// Draws at the system's size for icons. Platform: DrawIcon
    BOOL DrawIcon(int x, int y, HICON hIcon);
};

/// The device context for answering WM_PAINT.
class CPaintDC : public CDC {
public:
    PAINTSTRUCT m_ps{};

    /// Failure: throws CResourceException. Platform: BeginPaint
    explicit CPaintDC(CWnd* pWnd);
    CPaintDC(const CPaintDC&) = delete;
    CPaintDC& operator=(const CPaintDC&) = delete;
    /// Platform: EndPaint
    ~CPaintDC() override;

private:
    HWND m_hWnd;
};

// A flag of CWnd::RunModalLoop().
constexpr DWORD MLF_SHOWONIDLE = 0x0004; ///< show the window when the queue is first empty

/// Sent to a window in its modal loop when the queue is empty; wParam is MSGF_DIALOGBOX, lParam
/// counts the messages since the queue was last in use. A result other than 0 asks for another.
constexpr UINT WM_KICKIDLE = 0x036A;

/// A window. The object and the window are two things: the object holds the handle between
/// Attach() (or a creation) and Detach() (or the window's end), and during that time receives the
/// window's messages if the window was created or subclassed through it.
class CWnd : public CCmdTarget {
public:
    HWND m_hWnd = nullptr; ///< null while there is no window

    CWnd();
    /// Destroys a window that is still attached.
    ~CWnd() override;

    // Handles.

    HWND GetSafeHwnd() const { return m_hWnd; }
    operator HWND() const { return m_hWnd; }

    /// The object attached to `hWnd` on this thread, or else a temporary one.
    /// \return null for a null handle. A temporary object lives until the thread's loop is next
    /// idle: it is for use at once, not to be kept.
    static CWnd* FromHandle(HWND hWnd);
    /// The same without making temporary objects: null when none is attached.
    static CWnd* FromHandlePermanent(HWND hWnd);
    /// Frees the thread's temporary objects. The message loops do it when idle and no handler
    /// is running.
    static void DeleteTempMap();

    /// Makes this the object of `hWndNew`, whose messages keep going where they went.
    /// \return FALSE for null, or when the window already has another object
    BOOL Attach(HWND hWndNew);
    /// Detaches from the window, which stays as it is. \return its handle
    HWND Detach();

    /// Attaches `hWnd`, calls PreSubclassWindow(), and replaces the window's procedure.
    BOOL SubclassWindow(HWND hWnd);
    /// Restores the window procedure from before SubclassWindow() and detaches. \return the handle
    HWND UnsubclassWindow();

    // Creation and end.

    /// Creates a window with this object. `nIDorHMenu` is the id of a child window.
    /// \return whether it worked
    /// Failure: an exception that leaves a handler during creation comes out of here, and there
    /// is no window then.
    /// Platform: CreateWindowExW
    BOOL CreateEx(DWORD dwExStyle, LPCTSTR lpszClassName, LPCTSTR lpszWindowName, DWORD dwStyle,
                  int x, int y, int nWidth, int nHeight, HWND hWndParent, HMENU nIDorHMenu,
                  LPVOID lpParam = nullptr);
    /// \return whether there was a window to destroy. Platform: DestroyWindow
    virtual BOOL DestroyWindow();

    // Messages.

    LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;
    BOOL PostMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
    /// Called for each message of this window and of its children, before it is dispatched.
    /// \return TRUE when it is handled. The default returns FALSE
    virtual BOOL PreTranslateMessage(MSG* pMsg);

    // State. Each does what the Windows function of its name does.

    /// \return whether the style changed. `nFlags` other than 0 go to SetWindowPos().
    BOOL ModifyStyleEx(DWORD dwRemove, DWORD dwAdd, UINT nFlags = 0);
    int GetDlgCtrlID() const;
    /// \return whether the window was disabled before
    BOOL EnableWindow(BOOL bEnable = TRUE);
    BOOL IsWindowEnabled() const;
    /// \return the window of this thread that had the keyboard focus before, or null
    CWnd* SetFocus();
    /// \return the window of this thread that has the keyboard focus, or null; as FromHandle()
    static CWnd* GetFocus();
    BOOL ShowWindow(int nCmdShow);
    BOOL IsIconic() const;
    /// \return the icon before
    HICON SetIcon(HICON hIcon, BOOL bBigIcon);

    // Text.

    void SetWindowText(LPCTSTR lpszString);

    // Place and appearance.

    void GetClientRect(LPRECT lpRect) const;
    void Invalidate(BOOL bErase = TRUE);
    void UpdateWindow();

    // Timers.

    /// \return the timer's id, or 0 on failure
    UINT_PTR SetTimer(UINT_PTR nIDEvent, UINT nElapse,
                      void(CALLBACK* lpfnTimer)(HWND, UINT, UINT_PTR, DWORD));
    BOOL KillTimer(UINT_PTR nIDEvent);

    // Controls of a dialog.

    /// \return null when there is no such control; otherwise as FromHandle()
    CWnd* GetDlgItem(int nID) const;
    void SetDlgItemText(int nID, LPCTSTR lpszString);

    /// Exchanges data between members and controls through DoDataExchange().
    /// \param bSaveAndValidate TRUE from the controls to the members, FALSE the other way
    /// \return FALSE when there is no window
    BOOL UpdateData(BOOL bSaveAndValidate = TRUE);

    // Modal loops.

    /// Pumps messages until EndModalLoop().
    /// \return what EndModalLoop() was given; -1 after WM_QUIT, which stays for the loop outside
    /// Failure: an exception that left a message handler comes out of here.
    int RunModalLoop(DWORD dwFlags = 0);
    /// Whether the modal loop is to go on. The default: until EndModalLoop().
    virtual BOOL ContinueModal();
    virtual void EndModalLoop(int nResult);

protected:
    /// Called when the object has just got its window, before the first message comes through it.
    virtual void PreSubclassWindow();
    /// Called last of all when the window is gone; may delete the object.
    virtual void PostNcDestroy();
    virtual void DoDataExchange(CDataExchange* pDX);

    /// Every message: to its handler, and to DefWindowProc() when there is none.
    virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    /// \return whether there was a handler
    virtual BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* pResult);
    /// WM_COMMAND. \return whether there was a handler
    virtual BOOL OnCommand(WPARAM wParam, LPARAM lParam);
    /// The window procedure from before this object, or else Windows' default.
    virtual LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    /// DefWindowProc() with the message that is being handled.
    LRESULT Default();

    // Handlers for the macros of the message map. Each does Default().

    afx_msg void OnPaint();
    afx_msg void OnTimer(UINT_PTR nIDEvent);
    afx_msg HCURSOR OnQueryDragIcon();
    afx_msg void OnHScroll(UINT nSBCode, UINT nPos, CScrollBar* pScrollBar);
    /// \param nCtlColor kind of control, CTLCOLOR_
    /// \return the brush for the background
    afx_msg HBRUSH OnCtlColor(CDC* pDC, CWnd* pWnd, UINT nCtlColor);
    afx_msg void OnClose();

    DECLARE_MESSAGE_MAP()

    // Not in the slice; see there.
#include "afxhidden_.h"

    int m_nModalResult = 0;
    bool m_continueModal = false;

private:
    friend class AfxWindowAccess;

    void takeMessages();
    void onNcDestroy();

    WNDPROC m_super = nullptr; // the procedure from before; null while it is not replaced
    bool m_temporary = false;
};

/// One exchange between members and controls.
class CDataExchange {
public:
    CDataExchange(CWnd* pDlgWnd, BOOL bSaveAndValidate)
        : m_bSaveAndValidate(bSaveAndValidate), m_pDlgWnd(pDlgWnd) {}

    BOOL m_bSaveAndValidate; ///< TRUE: controls to members
    CWnd* m_pDlgWnd;         ///< the dialog

    /// \return the control's window
    /// Failure: throws CNotSupportedException when the dialog has no such control.
    HWND PrepareCtrl(int nIDC);
};

/// A dialog made from a template among the executable's resources.
class CDialog : public CWnd {
public:
    CDialog() = default;
    /// For DoModal().
    /// \param pParentWnd owner, or null. A window of another process, such as a console, is not
    /// made the owner: its input would be joined with that of the dialog.
    explicit CDialog(UINT nIDTemplate, CWnd* pParentWnd = nullptr);

    // A dialog whose template is at 0, 0 is centred on the monitor where the user is, unless its
    // owner is in view: Windows then places it at the owner's corner.

    /// Shows a dialog that runs in the loops of the thread.
    /// \return whether it worked
    /// Failure: an exception that leaves OnInitDialog() or a handler comes out of here, and there
    /// is no window then.
    virtual BOOL Create(UINT nIDTemplate, CWnd* pParentWnd = nullptr);

    /// Runs the dialog until EndDialog(). It comes to the foreground if the system allows. Its
    /// owner is disabled meanwhile; the window is gone when the call returns. \return what
    /// EndDialog() was given; -1 when there is no such template or window Failure: an exception
    /// that leaves OnInitDialog() or a handler ends the dialog and comes out of here, the owner
    /// enabled again and the window gone.
    virtual INT_PTR DoModal();
    /// Ends DoModal() with this result. May be called from OnInitDialog(); without a modal
    /// dialog it does nothing.
    void EndDialog(int nResult);

    /// Called when the controls exist and the dialog is about to be shown. The default does
    /// UpdateData(FALSE).
    /// \return TRUE to have the focus set to the first control
    virtual BOOL OnInitDialog();

    /// Hands keys and mouse messages to the dialog manager. Platform: IsDialogMessageW
    BOOL PreTranslateMessage(MSG* pMsg) override;

protected:
    /// Command IDOK. The default does UpdateData(TRUE) and, when that worked, EndDialog(IDOK).
    virtual void OnOK();
    /// Command IDCANCEL, which the dialog manager sends for Escape. The default:
    /// EndDialog(IDCANCEL).
    virtual void OnCancel();

    DECLARE_MESSAGE_MAP()

private:
    friend class AfxWindowAccess;

    HWND createFrom(LPCTSTR templateName, HWND owner);
    void destroyModal(HWND disabledOwner);

    LPCTSTR m_templateName = nullptr;
    CWnd* m_parent = nullptr;
};

class CStatic : public CWnd {};

class CScrollBar : public CWnd {};

/// A combo box. Indices count from 0; failures are CB_ERR, or CB_ERRSPACE when memory is short.
class CComboBox : public CWnd {
public:
    int GetCount() const;
    /// \return CB_ERR when nothing is selected
    int GetCurSel() const;
    /// \param nSelect -1 for nothing
    int SetCurSel(int nSelect);
    /// \param lpszText room for the entry (CB_GETLBTEXTLEN) and a zero
    int GetLBText(int nIndex, LPTSTR lpszText) const;
    int InsertString(int nIndex, LPCTSTR lpszString);
    void ResetContent();
    /// Selects the next entry that begins with the text, in any letter case, after `nStartAfter`
    /// and round. \return its index
    int SelectString(int nStartAfter, LPCTSTR lpszString);
    /// \param nIndex -1 for the field that is always visible
    int GetItemHeight(int nIndex) const;
    int SetItemHeight(int nIndex, UINT cyItemHeight);
};

namespace afx {

/// The context, control and kind of a request for colours, for the length of the handler.
class ColorRequest {
public:
    explicit ColorRequest(const MSG& message);
    ColorRequest(const ColorRequest&) = delete;
    ColorRequest& operator=(const ColorRequest&) = delete;
    ~ColorRequest();

    CDC* dc() const { return &m_dc; }
    CWnd* control() const { return m_control; }
    UINT type() const { return m_type; }

private:
    mutable CDC m_dc;
    CWnd* m_control;
    UINT m_type;
};

/// The object of the scroll bar control that a scroll message comes from. Null without one, and
/// when the message comes from the window's own scroll bar.
CScrollBar* scrollBarOf(const MSG& message);

} // namespace afx

/// The application object, or null when there is none. Any thread.
CWinApp* AFXAPI AfxGetApp();
/// Runs the application on the calling thread, as the library's main() does, and ends OLE there if
/// AfxOleInit() has started it. The parameters are WinMain()'s, and are not used.
/// \return the process's exit code; -1 when there is no application object
int AFXAPI AfxWinMain(HINSTANCE hInstance, HINSTANCE hPrevInstance, LPTSTR lpCmdLine, int nCmdShow);

/// A window class with these properties, registered with the executable on the first call.
/// \return its name, made from the properties: equal ones give the same name. Valid until the
/// thread's next call.
/// Failure: AfxThrowResourceException().
/// Platform: RegisterClassW, DefWindowProcW
LPCTSTR AFXAPI AfxRegisterWndClass(UINT nClassStyle, HCURSOR hCursor = nullptr,
                                   HBRUSH hbrBackground = nullptr, HICON hIcon = nullptr);

/// Shows a message box over the application's active window and waits for the answer.
/// \param nType MB_ flags; without an icon among them the exclamation mark is shown
/// \param nIDHelp help context of the text; there is no help to show for it
/// \return the button's id, or 0 when the box could not be shown
/// Platform: MessageBoxW
int AFXAPI AfxMessageBox(LPCTSTR lpszText, UINT nType = MB_OK, UINT nIDHelp = 0);
