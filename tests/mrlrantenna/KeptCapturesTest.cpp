// Captures of runs on the kernel's simulated radios, which tools/radiovm/keep-captures has kept.
#include "CapturedProgram.h"

#include <support/TemporaryFolder.h>

#include <mrl/Json.h>

namespace {

using test::CapturedProgram;
using test::Seen;
using testing::HasSubstr;

struct Kept {
    const char* name;
    const char* result;
    int exitValue;
    std::vector<std::string> events;
    double leastSeconds; ///< the test's fixed pauses
};

const Kept keptCaptures[] = {
    {"pass", "PASS", 0, {}, 7.0},
    {"warn", "WARN", 1, {"FAILING_SIGNAL_STRENGTH_DETECTED"}, 7.0},
    {"fail", "FAIL", 2, {"FAILING_SIGNAL_STRENGTH_DETECTED"}, 7.0},
    {"radio-off", "CANNOTRUN", 3, {"ERROR_NDIS_DOT11_POWER_STATE_INVALID"}, 0.0},
    {"adapter-gone", "CANNOTRUN", 3, {}, 7.0},
    {"unprivileged", "PASS", 0, {}, 0.0},
    {"connected", "PASS", 0, {}, 7.0},
    {"hostile-name", "PASS", 0, {}, 7.0},
};

class CapturesOfLinuxRadios : public CapturedProgram, public testing::WithParamInterface<Kept> {};

TEST_P(CapturesOfLinuxRadios, ReplayToTheirVerdicts) {
    const Kept& kept = GetParam();
    const std::string capture =
        test::bytesOfFile(std::string(KEPT_CAPTURES "/") + kept.name + ".jsonl");
    ASSERT_NE(capture, "") << "no capture " << kept.name;
    writeCapture(capture);
    const Seen seen = replay();
    EXPECT_EQ(seen.exitValue, kept.exitValue) << seen.errors;
    EXPECT_THAT(seen.output, HasSubstr(kept.result));
    const mrl::Json report = mrl::parseJson(seen.report);
    ASSERT_EQ(report.at("results").size(), 1U);
    const mrl::Json& result = report.at("results").front();
    EXPECT_EQ(result.at("result"), kept.result);
    EXPECT_GE(result.at("seconds"), kept.leastSeconds);
    std::vector<std::string> events;
    for (const mrl::Json& event : result.at("events")) {
        events.push_back(event.at("key"));
    }
    EXPECT_EQ(events, kept.events);
}

std::string nameOf(const testing::TestParamInfo<Kept>& info) {
    std::string name = info.param.name;
    std::erase(name, '-');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Kept, CapturesOfLinuxRadios, testing::ValuesIn(keptCaptures), nameOf);

} // namespace
