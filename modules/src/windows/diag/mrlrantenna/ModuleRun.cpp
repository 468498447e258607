#include "ModuleRun.h"

#include "MRLrAntenna.h"

#include <tesk5/DiagModule.h>

#include <mrl/Exception.h>
#include <mrl/OutputStream.h>

using tesk5::DiagModule;
using tesk5::TestResult;

namespace {

// Writes why the run ended to Basekit's error stream. \return the exit value of such a run
int exitedAbnormally(const char* kind, const mrl::String& text) {
    mrl::cerr << kind << text.getUTF8String().c_str() << mrl::endl;
    return TestResult::EXITEDABNORMALLY().value();
}

} // namespace

int runModule(const std::function<void()>& setCommandLine) {
    try {
        setCommandLine();
        DiagModule::setVersion(6, 5, "000000001");
        DiagModule::setModuleInitCallback(&initializeModule);
        return DiagModule::start();
    } catch (const mrl::Exception& exception) {
        return exitedAbnormally("Exception: ", exception.toString());
    } catch (const tesk5::TeskException& exception) {
        return exitedAbnormally("TeskException: ", exception.toString());
    } catch (...) {
        // Hosts take the value 0 without a message for a run without a verdict.
        return 0;
    }
}
