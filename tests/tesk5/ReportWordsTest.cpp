// The texts that console and reports share.
#include "FrameworkTest.h"

#include <run/ReportWords.h>

namespace test {

namespace {

class ReportWords : public FrameworkTest {};

TEST_F(ReportWords, OfAResultAreItsMeasurementsThenItsNetworksTheStrongestFirstThenItsAdvice) {
    const tesk5::Outcome outcome{
        .test = nullptr,
        .device = nullptr,
        .result = TestResult::CANNOTRUN(),
        .started = true,
        .time = {},
        .seconds = 0,
        .parameters = {},
        .events = {},
        .measurements = {{"Strength", 30, "%", 0, 100, {}}},
        .surveys =
            {{"VISIBLE", "%", 0, 100, {{"Far", 5, false}, {"Lab", 30, true}, {"Other", 5, false}}},
             {"PLAIN", "dBm", 0, 100, {}}},
        .advice = {{"PLAIN", false, {}}, {"SERVICE_ANSWERS", true, {}}, {"WEAK", false, {}}},
        .failure = {}};
    EXPECT_THAT(tesk5::observationLines(outcome),
                ElementsAre("Strength: 30% [########.................]",
                            "VISIBLE:", "  30%  Lab  (measured)", "  5%  Far", "  5%  Other",
                            "Something happened.:", "Something happened.",
                            "The signal of {Name} is {Strength}%."));
}

TEST_F(ReportWords, NameTheVariablesThatTheTextOfAnEventDoesNotHave) {
    const tesk5::Event::Variables variables = {{"Limit", "30"}, {"Strength", "7"}, {"Nam", "x"}};
    const tesk5::RaisedEvent event{"WEAK", Severity::error, {}, variables, {}, 245, {}};
    EXPECT_THAT(tesk5::unspokenVariables(event),
                ElementsAre(testing::Pair("Limit", "30"), testing::Pair("Nam", "x")));
}

TEST_F(ReportWords, AreTranslationsOfTheResult) {
    EXPECT_EQ(tesk5::resultInWords(TestResult::WARN()), "Passed with a warning");
    EXPECT_EQ(tesk5::resultInWords(TestResult::EXITEDABNORMALLY()), "The program failed");
}

} // namespace

} // namespace test
