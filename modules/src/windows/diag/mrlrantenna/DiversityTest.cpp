// The interactive test.
#include "MRLrAntenna.h"

#include <mrl/LoggerStream.h>
#include <mrl/TraceLogger.h>

using tesk5::TestResult;

TestResult DiversityTest(const tesk5::DiagDevice& device) {
    const mrl::TraceLogger trace(moduleLogger(), "Enter DiversityTest", MODULE_SOURCE_FILE,
                                 __LINE__);
    mrl::LoggerStream(moduleLogger(), 1, __LINE__)
        << "DiversityTest::this build has no dialog, so the antennas of "
        << device.name().mrlString() << " cannot be tested interactively";
    return TestResult::CANNOTRUN();
}
