// The texts that console and reports share.
#include "FrameworkTest.h"

#include <run/ReportWords.h>

namespace test {

namespace {

using tesk5::InForce;
using tesk5::Outcome;
using tesk5::RaisedEvent;

class ReportWords : public FrameworkTest {
protected:
    static Outcome outcomeOf(TestResult result) {
        return {.test = nullptr,
                .device = nullptr,
                .result = result,
                .started = true,
                .time = {},
                .seconds = 0,
                .parameters = {},
                .events = {},
                .measurements = {},
                .surveys = {},
                .advice = {},
                .failure = {}};
    }

    static RaisedEvent event(Severity severity, const char* text) {
        return {"WEAK", severity, text, {}, {}, 0, {}};
    }

    // As they stand in a table: what, its meaning if it has one, the value.
    static std::vector<std::string> wordsOf(const tesk5::RunIdentity& identity) {
        std::vector<std::string> lines;
        for (const tesk5::FactInWords& fact : tesk5::identityWords(identity)) {
            lines.push_back(fact.name + (fact.meaning.empty() ? "" : " (" + fact.meaning + ")") +
                            ": " + fact.value);
        }
        return lines;
    }
};

TEST_F(ReportWords, OfAResultAreItsMeasurementsThenItsNetworksTheStrongestFirstThenItsAdvice) {
    Outcome outcome = outcomeOf(TestResult::CANNOTRUN());
    outcome.measurements = {{"Strength", 30, "%", 0, 100, {}}};
    outcome.surveys = {
        {"VISIBLE", "%", 0, 100, {{"Far", 5, false}, {"Lab", 30, true}, {"Other", 5, false}}},
        {"PLAIN", "dBm", 0, 100, {}}};
    outcome.advice = {{"PLAIN", false, {}}, {"SERVICE_ANSWERS", true, {}}, {"WEAK", false, {}}};
    EXPECT_THAT(tesk5::observationLines(outcome),
                ElementsAre("Strength: 30% [########.................]",
                            "VISIBLE:", "  30%  Lab  (measured)", "  5%  Far", "  5%  Other",
                            "Something happened.:", "Something happened.",
                            "The signal of {Name} is {Strength}%."));
}

TEST_F(ReportWords, OfAMeasurementAreItsFiguresThenItsAttributes) {
    tesk5::Measurement measurement{"Strength", 30, "%", 0, 100, {}};
    measurement.figures = {{"Samples", 15, ""}, {"Spread", 2, "dB"}};
    measurement.attributes = {{"Channel", "6"}, {"PLAIN", "x"}};
    EXPECT_THAT(tesk5::measurementLines(measurement),
                ElementsAre("Strength: 30% [########.................]", "  Samples: 15",
                            "  Spread: 2\u00A0"
                            "dB",
                            "  Channel: 6", "  Something happened.: x"));
}

TEST_F(ReportWords, OfAnIdentityAreItsTagsThePcItsAdaptersItsLimitsAndItsCalibration) {
    const tesk5::RunIdentity whole{
        .identifier = {},
        .tags = {{"serial", "S1"}, {"line", "3"}, {"sequence", "2"}},
        .pc = tesk5::PcIdentity{.name = "BENCH",
                                .maker = "Maker",
                                .model = "Model",
                                .serial = "PC-7",
                                .system = "System 13",
                                .build = "6.1"},
        .adapters = {{"Card", "driver", "1.2", "02:00:5e:00:53:01"}, {"Other", "", "3", ""}},
        .limits = {{"Lab", "4", "aa", InForce::Source::file},
                   {"Field", "", "bb", InForce::Source::commandLine}},
        .calibration = InForce{"bench-2", "", "cc", InForce::Source::standard}};
    EXPECT_THAT(wordsOf(whole),
                ElementsAre("serial (Serial number of the unit): S1", "line: 3",
                            "sequence (Number of the attempt at this unit): 2",
                            "Computer name: BENCH", "Maker: Maker", "Model: Model",
                            "Serial number: PC-7", "Operating system: System 13",
                            "Build of the system: 6.1",
                            "Adapter: Card; driver; 1.2; 02:00:5e:00:53:01", "Adapter: Other; 3",
                            "Limits in force: Lab 4; SHA-256: aa; from a file",
                            "Limits in force: Field; SHA-256: bb; from the command line",
                            "Calibration in force: bench-2; SHA-256: cc; defaults"));
    EXPECT_THAT(wordsOf({}), IsEmpty());
}

TEST_F(ReportWords, NameATestAsProgramsAndAsPeopleDo) {
    EXPECT_EQ(tesk5::labelOf(*registerTest("PLAIN", TestResult::PASS())),
              "PLAIN (Something happened.)");
    EXPECT_EQ(tesk5::labelOf(*registerTest("Untranslated", TestResult::PASS())), "Untranslated");
}

TEST_F(ReportWords, SayHowOftenAnEventWasRaised) {
    RaisedEvent raised = event(Severity::warning, "Weak.");
    raised.count = 1;
    EXPECT_EQ(tesk5::eventText(raised), "Weak.");
    raised.count = 3;
    EXPECT_EQ(tesk5::eventText(raised), "Weak. (3 times)");
}

TEST_F(ReportWords, LeadWithTheFirstErrorElseWithTheFirstWarning) {
    Outcome outcome = outcomeOf(TestResult::FAIL());
    EXPECT_EQ(tesk5::leadingEvent(outcome), nullptr);
    outcome.events = {event(Severity::warning, "first"), event(Severity::warning, "second")};
    EXPECT_EQ(tesk5::leadingEvent(outcome)->text, "first");
    outcome.events.push_back(event(Severity::error, "third"));
    outcome.events.push_back(event(Severity::error, "fourth"));
    EXPECT_EQ(tesk5::leadingEvent(outcome)->text, "third");
    outcome.events = {event(Severity::error, "first"), event(Severity::warning, "second")};
    EXPECT_EQ(tesk5::leadingEvent(outcome)->text, "first");
}

TEST_F(ReportWords, GiveAsAReasonTheExceptionThenTheAdviceThenTheEventThenTheResult) {
    Outcome outcome = outcomeOf(TestResult::CANNOTRUN());
    const std::string result = tesk5::resultInWords(outcome.result);
    EXPECT_EQ(tesk5::reasonFor(outcome), result);
    outcome.started = false;
    EXPECT_EQ(tesk5::reasonFor(outcome), "The test was not started: the user had ended the run.");
    outcome.started = true;
    outcome.events = {event(Severity::error, "An error.")};
    EXPECT_EQ(tesk5::reasonFor(outcome), "An error.");
    outcome.advice = {{"SERVICE_ANSWERS", true, {}}, {"PLAIN", false, {}}};
    EXPECT_EQ(tesk5::reasonFor(outcome), "Something happened.");
    outcome.measurements = {{"Strength", 30, "%", 0, 100, {}}};
    EXPECT_EQ(tesk5::reasonFor(outcome), "An error.") << "what was measured has its event";
    outcome.failure = "bad_alloc";
    EXPECT_EQ(tesk5::reasonFor(outcome), "bad_alloc");
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
