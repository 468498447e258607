#include "MRLrAntennaApp.h"

#include "MRLrAntenna.h"
#include "ModuleRun.h"

#include <tesk5/DiagModule.h>

#include <mrl/TraceLogger.h>

int CMRLrAntennaGUIApp::Run(int argc, const char** argv) {
    const mrl::TraceLogger trace(moduleLogger(), "MRLRAntenna Run", MODULE_SOURCE_FILE, 112);
    return runModule([argc, argv] { tesk5::DiagModule::setCmdLineArgs(argc, argv); });
}
