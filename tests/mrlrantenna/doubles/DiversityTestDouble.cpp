// Stands for the interactive test where there are no dialogs.
#include <MRLrAntenna.h>

const char* diversityTestObstacle() {
    return nullptr;
}

tesk5::TestResult DiversityTest(const tesk5::DiagDevice& /*device*/) {
    return tesk5::TestResult::COMPLETED();
}
