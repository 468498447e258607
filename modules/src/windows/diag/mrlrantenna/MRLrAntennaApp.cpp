#include "MRLrAntennaApp.h"

#include "MRLrAntenna.h"

#include <libUikit/CommandLineParser.h>

#include <tesk5/DiagModule.h>

#include <mrl/Exception.h>
#include <mrl/OutputStream.h>
#include <mrl/TraceLogger.h>

#include <afxdisp.h>

using tesk5::DiagModule;
using tesk5::TestResult;

namespace {

// Writes why the run ended to Basekit's error stream. \return the exit value of such a run
int exitedAbnormally(const char* kind, const mrl::String& text) {
    mrl::cerr << kind << text.getUTF8String().c_str() << mrl::endl;
    return TestResult::EXITEDABNORMALLY().value();
}

} // namespace

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
    int result = 0;
    libUikit::CommandLineParser parser(mrl::String("mrlrantenna.k5x"));
    ParseCommandLine(parser);
    try {
        const char** argv = parser.argv();
        const int argc = parser.argc();
        DiagModule::setCmdLineArgs(argc, argv);
        DiagModule::setVersion(6, 5, "000000001");
        DiagModule::setModuleInitCallback(&initializeModule);
        result = DiagModule::start();
    } catch (const mrl::Exception& exception) {
        result = exitedAbnormally("Exception: ", exception.toString());
    } catch (const tesk5::TeskException& exception) {
        result = exitedAbnormally("TeskException: ", exception.toString());
    } catch (...) {
        // Hosts take the value 0 without a message for a run without a verdict.
    }
    return result;
}
