// The interactive test needs windows: here it is listed with that reason and never runs.
#include "MRLrAntenna.h"

const char* diversityTestObstacle() {
    return "DIVERSITY_TEST_NEEDS_WINDOWS";
}

tesk5::TestResult DiversityTest(const tesk5::DiagDevice& /*device*/) {
    return tesk5::TestResult::CANNOTRUN();
}
