#include "MRLrAntennaApp.h"

#include "MRLrAntenna.h"
#include "ModuleRun.h"

#include <libUikit/CommandLineParser.h>

#include <tesk5/DiagModule.h>

#include <mrl/TraceLogger.h>

#include <afxdisp.h>

BEGIN_MESSAGE_MAP(CMRLrAntennaGUIApp, CWinApp)
END_MESSAGE_MAP()

CMRLrAntennaGUIApp::~CMRLrAntennaGUIApp() = default;

BOOL CMRLrAntennaGUIApp::InitInstance() {
    if (!AfxOleInit()) {
        AfxMessageBox(MRL_TEXT("Ole Initialization Failed"), 0, 0);
        return FALSE;
    }
    AfxEnableControlContainer();
    AfxRegisterWndClass(CS_BYTEALIGNWINDOW | CS_DBLCLKS | CS_HREDRAW | CS_VREDRAW, nullptr, nullptr,
                        nullptr);
    return TRUE;
}

int CMRLrAntennaGUIApp::Run() {
    const mrl::TraceLogger trace(moduleLogger(), "MRLRAntenna Run", MODULE_SOURCE_FILE, 112);
    libUikit::CommandLineParser parser(mrl::String("mrlrantenna.k5x"));
    ParseCommandLine(parser);
    return runModule([&parser] {
        const char** argv = parser.argv();
        const int argc = parser.argc();
        tesk5::DiagModule::setCmdLineArgs(argc, argv);
    });
}
