// Captures of the whole program, and what their replays show.
#include "CapturedProgram.h"

#include <radiosim/Scenario.h>

#include <mrl/Json.h>

namespace {

using test::CapturedProgram;
using test::Seen;
using testing::HasSubstr;
using testing::StartsWith;

const std::vector<std::string> RUN = {"run", "--set", "SSID=Lab", "--set",
                                      "FailingSignalStrength=20"};

class Captures : public CapturedProgram {};

TEST_F(Captures, OfARunReplayToTheSame) {
    const Seen seen = capture(radiosim::Scenario::builtIn(), RUN);
    EXPECT_EQ(seen.exitValue, 0) << seen.errors;
    EXPECT_THAT(seen.log, HasSubstr("getAccessPointSignalStrength"));
    EXPECT_THAT(seen.report, HasSubstr("\"PASS\""));
    EXPECT_THAT(captured(), StartsWith("{\"capture\":1,"));
    EXPECT_EQ(replay(), seen);
}

} // namespace
