#include "FrameworkTest.h"

#include <tesk5/TestRecorder.h>
#include <texts/MeasurementText.h>

namespace test {

namespace {

using tesk5::Limit;
using tesk5::Survey;
using tesk5::TestRecorder;

class Measurements : public FrameworkTest {
protected:
    static Measurement strength(mrl::Uint32 value, std::vector<Limit> limits) {
        return {"Strength", value, "%", 0, 100, std::move(limits)};
    }
    static Limit warning(mrl::Uint32 value) { return {"Warn", value, Severity::warning}; }
    static Limit failing(mrl::Uint32 value) { return {"Fail", value, Severity::error}; }

    static std::string brokenBy(mrl::Uint32 value, std::vector<Limit> limits) {
        const Measurement measurement = strength(value, std::move(limits));
        const Limit* limit = measurement.brokenLimit();
        return limit == nullptr ? "" : limit->name.utf8();
    }
};

TEST_F(Measurements, KeepALimitThatTheyLieAbove) {
    EXPECT_EQ(brokenBy(41, {warning(40), failing(20)}), "");
    EXPECT_EQ(brokenBy(40, {warning(40), failing(20)}), "Warn");
    EXPECT_EQ(brokenBy(0, {}), "");
}

TEST_F(Measurements, BreakTheGravestLimitOfSeveral) {
    EXPECT_EQ(brokenBy(20, {warning(40), failing(20)}), "Fail");
    EXPECT_EQ(brokenBy(20, {failing(20), warning(40)}), "Fail");
    EXPECT_EQ(brokenBy(5, {{"Upper", 40, Severity::warning}, {"Lower", 30, Severity::warning}}),
              "Lower");
}

TEST_F(Measurements, SayInWordsHowTheyCompare) {
    using tesk5::comparisonText;
    EXPECT_EQ(comparisonText(strength(72, {warning(40), failing(20)})),
              "above the warning limit of 40 %");
    EXPECT_EQ(comparisonText(strength(72, {failing(20)})), "above the failing limit of 20 %");
    EXPECT_EQ(comparisonText(strength(40, {warning(40), failing(20)})),
              "at or below the warning limit of 40 %");
    EXPECT_EQ(comparisonText(strength(12, {warning(40), failing(20)})),
              "at or below the failing limit of 20 %");
    EXPECT_EQ(comparisonText(strength(12, {})), "");
    EXPECT_EQ(tesk5::measuredText(strength(12, {})), "Strength: 12 %");
}

TEST_F(Measurements, AreDrawnOnTheirScaleWithTheirLimits) {
    using tesk5::measurementBar;
    EXPECT_EQ(measurementBar(strength(50, {}), 10), "[#####.....]");
    EXPECT_EQ(measurementBar(strength(70, {warning(40), failing(20)}), 10), "[##|#|##...]");
    EXPECT_EQ(measurementBar(strength(10, {warning(40)}), 10), "[#...|.....]");
    EXPECT_EQ(measurementBar(strength(0, {}), 4), "[....]");
    EXPECT_EQ(measurementBar(strength(100, {failing(100)}), 4), "[###|]");
    EXPECT_EQ(measurementBar(strength(4294967295, {}), 4), "[####]") << "beyond the scale";
    EXPECT_EQ(measurementBar({"Odd", 5, "", 7, 7, {}}, 4), "[....]") << "a scale of no length";
}

TEST_F(Measurements, AreRecordedWithSurveysInTheOrderInWhichTheyCome) {
    DiagModule::measured(strength(1, {}));
    const TestRecorder recorder;
    DiagModule::measured(strength(70, {failing(20)}));
    DiagModule::surveyed({"NETWORKS", "%", 0, 100, {{"Lab", 70, true}, {"Office", 61, false}}});
    DiagModule::measured(strength(71, {}));
    ASSERT_EQ(recorder.measurements().size(), 2U) << "what comes before the recorder is dropped";
    EXPECT_EQ(recorder.measurements()[0].value, 70U);
    EXPECT_EQ(recorder.measurements()[1].value, 71U);
    ASSERT_EQ(recorder.surveys().size(), 1U);
    EXPECT_EQ(recorder.surveys()[0].entries[1].name, "Office");
}

TEST_F(Measurements, AndEverythingElseReachTheObserverAsItHappens) {
    struct Observer final : tesk5::TestObserver {
        std::vector<std::string> seen;
        void onEvent(const tesk5::RaisedEvent& event) override { seen.push_back(event.text); }
        void onMeasurement(const Measurement& measurement) override {
            seen.push_back("measured " + std::to_string(measurement.value));
        }
        void onSurvey(const Survey& survey) override {
            seen.push_back("saw " + std::to_string(survey.entries.size()));
        }
        void onProgress(const tesk5::Progress& progress) override {
            seen.push_back(progress.text + (progress.longestSeconds ? " with" : " without") +
                           " an end");
        }
    } observer;
    const TestRecorder recorder(&observer);
    DiagModule::progresses("PLAIN", 45.0);
    DiagModule::error(DiagModule::createEvent("PLAIN"), "", 1);
    DiagModule::surveyed({"NETWORKS", "%", 0, 100, {}});
    DiagModule::measured(strength(70, {}));
    DiagModule::progresses("OTHER", {});
    EXPECT_THAT(observer.seen, ElementsAre("Something happened. with an end", "Something happened.",
                                           "saw 0", "measured 70", "OTHER without an end"));
}

} // namespace

} // namespace test
