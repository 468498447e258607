// The application object on Windows: the one that the process runs.
#pragma once

#include <afxwin.h>

/// Starts OLE, hands the command line to the framework and lets it run the tests. There is one,
/// `theApp`, made during static initialisation.
class CMRLrAntennaGUIApp : public CWinApp {
public:
    ~CMRLrAntennaGUIApp() override;

    /// Starts OLE and the control container.
    /// \return FALSE when OLE cannot be started, after a message box; no test runs then
    /// Platform: OleInitialize
    BOOL InitInstance() override;

    /// The whole life of the module. \return the process's exit value, as runModule() says it
    int Run() override;

    DECLARE_MESSAGE_MAP()
};

extern CMRLrAntennaGUIApp theApp;
