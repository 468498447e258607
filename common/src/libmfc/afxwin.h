// Applications and message routing: the classes that every program on this library starts from.
#pragma once

#include <afx.h>
#include <afxmsg_.h>

#include <string>

class CWnd;
class CCommandLineInfo;

/// Anything that can have a message map.
class CCmdTarget : public CObject {
protected:
    static const AFX_MSGMAP* GetThisMessageMap();
    virtual const AFX_MSGMAP* GetMessageMap() const;
};

/// A thread that runs a message loop.
class CWinThread : public CCmdTarget {
public:
    /// The window whose end ends the application, or null.
    CWnd* m_pMainWnd = nullptr;

    /// Prepares the thread. The default returns FALSE: nothing to run.
    virtual BOOL InitInstance();
    /// Pumps messages until WM_QUIT, calling OnIdle() whenever the queue is empty.
    /// \return ExitInstance()'s result
    virtual int Run();
    /// Cleans up. \return the exit code; the default takes it from WM_QUIT, or 0 without one
    virtual int ExitInstance();
    /// Work for an empty queue. `lCount` counts the calls since the last message.
    /// \return whether there is more to do; the default has nothing
    virtual BOOL OnIdle(LONG lCount);
    /// A look at each message of the loop before it is translated and dispatched.
    /// \return TRUE when the message is dealt with and must not be dispatched
    virtual BOOL PreTranslateMessage(MSG* pMsg);
    /// Whether OnIdle() is to be called again after `pMsg`. Pointer moves that change nothing and
    /// caret blinks do not count.
    virtual BOOL IsIdleMessage(MSG* pMsg);
    /// Takes one message, waiting for it, and dispatches it. \return FALSE for WM_QUIT
    virtual BOOL PumpMessage();

protected:
    CWinThread() = default;

private:
    MSG m_msgCur{};
    POINT m_lastPointer{};
    UINT m_lastPointerMessage = 0;
};

/// The application. A program defines exactly one object of a class derived from this one, at
/// namespace scope; the library's main() then runs it:
/// InitInstance(), and Run() when that returned TRUE, or else ExitInstance(). Run()'s (or
/// ExitInstance()'s) value is the process's exit code.
class CWinApp : public CWinThread {
public:
    /// Registers the object as the process's application. A second one while the first lives is
    /// an error of the program and stays unregistered.
    /// \param lpszAppName title of message boxes; by default the executable's name without folder
    /// and ending
    explicit CWinApp(LPCTSTR lpszAppName = nullptr);
    CWinApp(const CWinApp&) = delete;
    CWinApp& operator=(const CWinApp&) = delete;
    ~CWinApp() override;

    HINSTANCE m_hInstance = nullptr; ///< the executable; valid from InitInstance() on
    LPTSTR m_lpCmdLine = nullptr;    ///< the process's command line
    int m_nCmdShow = SW_SHOWDEFAULT; ///< how the starter wants the first window shown
    LPCTSTR m_pszAppName = nullptr;  ///< title of message boxes

    /// An icon of the executable, at the system's size for icons.
    /// \return null when there is none. Shared: not to be destroyed.
    /// Platform: LoadIconW
    HICON LoadIcon(LPCTSTR lpszResourceName) const;
    HICON LoadIcon(UINT nIDResource) const;

    /// Calls rCmdInfo.ParseParam() for each argument of the process but its name.
    /// Platform: GetCommandLineW, CommandLineToArgvW
    void ParseCommandLine(CCommandLineInfo& rCmdInfo);

    /// What AfxMessageBox() does.
    virtual int DoMessageBox(LPCTSTR lpszPrompt, UINT nType, UINT nIDPrompt);

private:
    std::wstring m_name;
};

/// Receives the arguments from CWinApp::ParseCommandLine().
class CCommandLineInfo : public CObject {
public:
    CCommandLineInfo() = default;

    BOOL m_bShowSplash = TRUE;    ///< FALSE after Automation or Embedding
    BOOL m_bRunEmbedded = FALSE;  ///< Embedding was given: started to edit an embedded object
    BOOL m_bRunAutomated = FALSE; ///< Automation was given: started as a server

    /// One argument.
    /// \param pszParam the argument without the flag's leading '-' or '/'; valid during the call
    /// \param bFlag whether there was such a leading character
    /// \param bLast whether it is the last argument
    /// The default knows the flags Automation and Embedding and ignores everything else.
    virtual void ParseParam(const TCHAR* pszParam, BOOL bFlag, BOOL bLast);
};

/// The application object, or null when there is none. Any thread.
CWinApp* AFXAPI AfxGetApp();

/// The executable whose resources are used.
HINSTANCE AFXAPI AfxGetInstanceHandle();
HINSTANCE AFXAPI AfxGetResourceHandle();

/// Readies the library and fills the application object, if any; main() does it for programs that
/// leave main() to the library. \return FALSE when it fails
BOOL AFXAPI AfxWinInit(HINSTANCE hInstance, HINSTANCE hPrevInstance, LPTSTR lpCmdLine,
                       int nCmdShow);

/// The application's life, on the calling thread, as the library's main() runs it.
/// What AfxOleInit() began on this thread is ended before it returns.
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
