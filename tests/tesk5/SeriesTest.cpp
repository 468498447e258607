// Series of readings: how they are recorded, drawn and reported.
#include "Reports.h"

#include <reports/Chart.h>
#include <reports/HtmlReport.h>
#include <reports/JUnitReport.h>
#include <reports/ReportJson.h>

#include <tesk5/TestRecorder.h>
#include <tesk5/Texts.h>

#include <limits>

namespace test {

namespace {

using tesk5::Chart;
using tesk5::chartOf;
using tesk5::Limit;
using tesk5::Number;
using tesk5::Series;
using tesk5::TestRecorder;

Number decibels(double value) {
    return Number::rounded(value, 1);
}

Series::Head headOf(std::optional<Number> median) {
    return {.name = "Level",
            .unit = "dBm",
            .limits = {{"FailingLevel", -80, Severity::error, Limit::Kept::AT_LEAST}},
            .median = median};
}

// Counts what it receives.
struct Counter : tesk5::TestObserver {
    void onSeries(const Series::Head& head) override { heads.push_back(head.name.utf8()); }
    void onPoint(const tesk5::TeskString& /*series*/, const tesk5::SeriesPoint& point) override {
        seconds.push_back(point.seconds);
    }

    std::vector<std::string> heads;
    std::vector<double> seconds;
};

class RecordedSeries : public FrameworkTest {};

TEST_F(RecordedSeries, HaveTheTimeOfEachPointSinceTheRecorderBegan) {
    clock().sleep(std::chrono::seconds(5));
    Counter counter;
    const TestRecorder recorder(&counter);
    clock().sleep(std::chrono::milliseconds(250));
    DiagModule::sampled("Level", -57);
    DiagModule::sampled("Level", -58, {}, 0.1);
    DiagModule::sampled("Level", -59, {}, -1);
    DiagModule::sampled("Level", -60, {}, std::numeric_limits<double>::infinity());
    EXPECT_THAT(counter.seconds, ElementsAre(0.25, 0.1, 0, 0.25));
    ASSERT_EQ(recorder.series().size(), 1U);
    EXPECT_EQ(recorder.series().front().points.at(1).value, Number(-58));
    EXPECT_THAT(counter.heads, ElementsAre("Level")) << "it begins with its first point";
}

TEST_F(RecordedSeries, KeepTheirPointsWhenTheyGetTheirMedian) {
    const TestRecorder recorder;
    DiagModule::follows(headOf(std::nullopt));
    DiagModule::sampled("Level", -57);
    DiagModule::sampled("Noise", -95);
    DiagModule::follows(headOf(decibels(-57)));
    ASSERT_EQ(recorder.series().size(), 2U);
    EXPECT_EQ(recorder.series().front().points.size(), 1U);
    EXPECT_EQ(recorder.series().front().head.median, Number(-57));
    EXPECT_EQ(recorder.series().front().head.limits.size(), 1U);
}

TEST_F(RecordedSeries, KeepTheFirstPointsOfVeryManyAndTellAnObserverOfAll) {
    Counter counter;
    const TestRecorder recorder(&counter);
    for (std::size_t i = 0; i < Series::MOST_POINTS + 2; ++i) {
        DiagModule::sampled("Level", i);
    }
    const Series& series = recorder.series().front();
    EXPECT_EQ(series.points.size(), Series::MOST_POINTS);
    EXPECT_EQ(series.points.back().value, Number(Series::MOST_POINTS - 1));
    EXPECT_EQ(series.leftOut, 2U);
    EXPECT_EQ(counter.seconds.size(), Series::MOST_POINTS + 2);
}

TEST_F(RecordedSeries, AreDroppedOutsideATest) {
    DiagModule::follows(headOf(std::nullopt));
    DiagModule::sampled("Level", -57);
    EXPECT_TRUE(TestRecorder().series().empty());
}

std::vector<double> places(const std::vector<Chart::Tick>& ticks) {
    std::vector<double> all;
    all.reserve(ticks.size());
    for (const Chart::Tick& tick : ticks) {
        all.push_back(tick.at);
    }
    return all;
}

std::vector<std::string> numbers(const std::vector<Chart::Tick>& ticks) {
    std::vector<std::string> all;
    all.reserve(ticks.size());
    for (const Chart::Tick& tick : ticks) {
        all.push_back(tick.number.text());
    }
    return all;
}

Series seriesWith(std::vector<tesk5::SeriesPoint> points) {
    return {.head = headOf(Number(-60)), .points = std::move(points)};
}

TEST(Charts, HaveRoundNumbersOnBothAxesAroundPointsLimitsAndMedian) {
    const Chart chart = chartOf(seriesWith({{0, -60, {}}, {2.5, decibels(-57.5), {}}}), false);
    EXPECT_THAT(numbers(chart.times), ElementsAre("0.0", "0.5", "1.0", "1.5", "2.0", "2.5"));
    EXPECT_THAT(
        places(chart.times),
        testing::Pointwise(testing::DoubleNear(1e-9), std::vector<double>{0, 20, 40, 60, 80, 100}));
    EXPECT_THAT(numbers(chart.values), ElementsAre("-80", "-75", "-70", "-65", "-60", "-55"));
    EXPECT_THAT(
        places(chart.values),
        testing::Pointwise(testing::DoubleNear(1e-9), std::vector<double>{100, 80, 60, 40, 20, 0}));
    ASSERT_EQ(chart.limits.size(), 1U);
    EXPECT_DOUBLE_EQ(chart.limits[0].y, 100);
    EXPECT_DOUBLE_EQ(chart.medianY.value(), 20);
    EXPECT_EQ(chart.curve, "M0.0 200.0L1000.0 100.0");
    EXPECT_EQ(chart.dots, "M0.0 200.0h0M1000.0 100.0h0");
}

TEST(Charts, RunFromTheRightWhereTextDoes) {
    const Chart chart = chartOf(seriesWith({{0, -60, {}}, {2.5, -80, {}}}), true);
    EXPECT_EQ(chart.curve, "M1000.0 0.0L0.0 1000.0");
    EXPECT_DOUBLE_EQ(chart.times.front().at, 100);
}

TEST(Charts, HaveAScaleForOnePointToo) {
    const Series one = {.head = {.name = "Level", .unit = "", .limits = {}, .median = {}},
                        .points = {{0, -57, {}}}};
    const Chart chart = chartOf(one, false);
    EXPECT_EQ(chart.curve, "M0.0 1000.0");
    EXPECT_THAT(numbers(chart.values),
                ElementsAre("-57.0", "-56.8", "-56.6", "-56.4", "-56.2", "-56.0"));
    EXPECT_EQ(chart.medianY, std::nullopt);
}

TEST(Charts, HaveAScaleForTheGreatestNumbersTheClosestTogether) {
    const Number greatest(Number::GREATEST);
    const Chart chart = chartOf(
        seriesWith({{0, greatest, {}}, {1e9, *Number::parse("999999999999.999999"), {}}}), false);
    EXPECT_LT(chart.values.size(), 10U);
    EXPECT_THAT(chart.curve, Not(HasSubstr("nan")));
    Series close = seriesWith({{0, greatest, {}}, {1, *Number::parse("999999999999.999999"), {}}});
    close.head = {.name = "Level", .unit = "", .limits = {}, .median = {}};
    EXPECT_LT(chartOf(close, false).values.size(), 10U);
    EXPECT_THAT(chartOf(close, false).curve, Not(HasSubstr("nan")));
}

TEST(Charts, HaveNoDotsForVeryManyPoints) {
    Series series = seriesWith({});
    series.points.resize(Chart::MOST_DOTS);
    EXPECT_NE(chartOf(series, false).dots, "");
    series.points.resize(Chart::MOST_DOTS + 1);
    EXPECT_EQ(chartOf(series, false).dots, "");
    EXPECT_NE(chartOf(series, false).curve, "");
}

// A run that measures a level in dBm.
class LevelRun : public Reports {
protected:
    LevelRun() {
        auto* event = DiagModule::createEvent("LEVEL_SEEN");
        registerTest("Level",
                     [this, event](const DiagDevice&) {
                         DiagModule::follows(headOf(std::nullopt));
                         clock().sleep(std::chrono::milliseconds(250));
                         DiagModule::sampled("Level", decibels(-57.5),
                                             {{"Source", "<b>scan"}, {"Channel", mrl::Uint32{36}}});
                         clock().sleep(std::chrono::seconds(1));
                         DiagModule::sampled("Level", -60, {{"Offset", decibels(-1.5)}});
                         DiagModule::follows(headOf(decibels(-58.75)));
                         DiagModule::measured(
                             {"Median",
                              decibels(-57),
                              "dBm",
                              -110,
                              -10,
                              headOf(std::nullopt).limits,
                              {{"Spread", decibels(1.5), "dB"}, {"Samples", 2, ""}}});
                         event->setVariable("Level", tesk5::quantity(decibels(-57), "dBm"));
                         DiagModule::warning(event, "modules/a.cpp", 1);
                         return TestResult::WARN();
                     })
            ->addParameter(optionalParameter("FailingLevel", DataType::DECIMAL())
                               ->setRange({-110, -10, "dBm"}))
            ->addParameter(
                optionalParameter("Samples", DataType::INTEGER())->setRange({5, 1000, ""}))
            ->addParameter(optionalParameter("Band", DataType::CHOICE())->setChoices({"2.4", "5"}));
        EXPECT_EQ(startWithReports({"--events", "--set", "FailingLevel=-80.50", "--set", "Band=5"}),
                  1);
    }
};

TEST_F(LevelRun, IsDescribedByTheJsonReport) {
    const ordered_json all = result(0);
    EXPECT_EQ(all.at("parameters").dump(), R"({"FailingLevel":-80.5,"Samples":null,"Band":"5"})");
    EXPECT_EQ(all.at("measurements").at(0).dump(),
              R"({"name":"Median","value":-57.0,"decimals":1,"unit":"dBm","lowest":-110,)"
              R"("highest":-10,"limits":[{"name":"FailingLevel","value":-80,"severity":"error",)"
              R"("kept":"atLeast"}],"brokenLimit":null,"figures":[)"
              R"({"name":"Spread","value":1.5,"unit":"dB"},)"
              R"({"name":"Samples","value":2,"unit":""}]})");
    EXPECT_EQ(all.at("series").dump(),
              R"([{"name":"Level","unit":"dBm","limits":[{"name":"FailingLevel","value":-80,)"
              R"("severity":"error","kept":"atLeast"}],"median":-58.8,"points":[)"
              R"({"seconds":0.25,"value":-57.5,"attributes":{"Source":"<b>scan","Channel":36}},)"
              R"({"seconds":1.25,"value":-60,"attributes":{"Offset":-1.5}}],"leftOut":0}])");
    EXPECT_EQ(all.at("events").at(0).at("variables").dump(), R"({"Level":-57.0})");
}

TEST_F(LevelRun, HasEachPointInTheStreamAsItComes) {
    EXPECT_THAT(types(), ElementsAre("runStarted", "testStarted", "series", "point", "point",
                                     "series", "measurement", "event", "testEnded", "runEnded"));
    EXPECT_TRUE(events().at(2).at("series").at("median").is_null());
    EXPECT_EQ(events().at(3).at("run"), 1);
    EXPECT_EQ(events().at(3).at("series"), "Level");
    EXPECT_EQ(events().at(3).at("point"), result(0).at("series").at(0).at("points").at(0));
    EXPECT_EQ(events().at(5).at("series").at("median"), -58.8);
    EXPECT_EQ(events().at(1).at("parameters"), result(0).at("parameters"));
}

TEST_F(LevelRun, IsDescribedByTheJUnitReport) {
    for (const char* property :
         {R"("parameter.FailingLevel" value="-80.50")", R"("parameter.Samples" value="")",
          R"("measurement.Median" value="-57.0")",
          R"("measurement.Median.limit.FailingLevel" value="-80")",
          R"("measurement.Median.limit.FailingLevel.kept" value="atLeast")",
          R"("measurement.Median.figure.Spread" value="1.5")",
          R"("measurement.Median.figure.Spread.unit" value="dB")",
          R"("series.Level.points" value="2")"}) {
        EXPECT_THAT(junit(), HasSubstr(std::string("<property name=") + property + "/>"));
    }
    EXPECT_THAT(junit(), Not(HasSubstr("leftOut")));
    EXPECT_THAT(junit(), HasSubstr("\n  Spread: 1.5\u00A0dB\n  Samples: 2"));
}

TEST_F(LevelRun, IsDrawnOnTheHtmlPageWithAllReadingsInATable) {
    const std::string page = html();
    EXPECT_THAT(page, HasSubstr("aria-label=\"Level; Readings: 2; Lowest: -60\u00A0dBm; "
                                "Highest: -57.5\u00A0dBm; Median: -58.8\u00A0dBm; "
                                "Failing below -80\u00A0dBm\""));
    EXPECT_THAT(page, HasSubstr("<path class=\"curve\" d=\"M166.7 100.0L833.3 200.0\"/>"));
    EXPECT_THAT(page, HasSubstr("<line class=\"limit bad\" x2=\"100%\" y1=\"100.00%\""));
    EXPECT_THAT(page, HasSubstr("Median: <bdi>-58.8\u00A0dBm</bdi>"));
    EXPECT_THAT(page,
                HasSubstr("<th scope=\"row\">0.25\u00A0s</th><td><bdi>-57.5\u00A0dBm</bdi></td>"
                          "<td><bdi>&lt;b&gt;scan</bdi></td><td><bdi>36</bdi></td>"
                          "<td><bdi></bdi></td>"));
    EXPECT_THAT(page, HasSubstr("<dt>Spread</dt><dd><bdi>1.5\u00A0dB</bdi></dd>"));
    EXPECT_THAT(page, HasSubstr("at or above the failing limit of <bdi>-80\u00A0dBm</bdi>"));
}

TEST_F(LevelRun, ShowsParametersWithTheirUnit) {
    EXPECT_THAT(html(), HasSubstr("Level</bdi></th><td><bdi>-80.50\u00A0dBm</bdi></td>"));
    EXPECT_THAT(html(), HasSubstr("Samples</bdi></th><td><i>not set</i></td>"));
    EXPECT_THAT(html(), HasSubstr("Band</bdi></th><td><bdi>5</bdi></td>"));
}

TEST_F(LevelRun, IsShownOnTheConsoleWithItsFigures) {
    EXPECT_EQ(start({"run"}), 1);
    EXPECT_THAT(
        output(),
        HasSubstr("  Median: -57.0\u00A0dBm [#######|#####............] at or above the "
                  "failing limit of -80\u00A0dBm\n    Spread: 1.5\u00A0dB\n    Samples: 2\n"));
    EXPECT_THAT(output(), HasSubstr(" Level: -57.0\u00A0dBm\n")) << "the variable of the event";
}

class SeriesReports : public Reports {};

TEST_F(SeriesReports, SayHowManyReadingsWereLeftOut) {
    const tesk5::Test* const test = registerTest("Long", TestResult::PASS());
    const DiagDevice device("Card", DeviceCapability::Wireless(), {});
    Series series = seriesWith({});
    series.points.resize(1001);
    series.leftOut = 3;
    tesk5::RunRecord record;
    record.outcomes.push_back({.test = test,
                               .device = &device,
                               .result = TestResult::PASS(),
                               .started = true,
                               .time = {},
                               .seconds = 1,
                               .parameters = {},
                               .events = {},
                               .measurements = {},
                               .surveys = {},
                               .series = {series},
                               .advice = {},
                               .failure = {}});
    EXPECT_THAT(tesk5::jsonReportOf(record), HasSubstr("\"leftOut\": 3\n"));
    EXPECT_THAT(tesk5::junitReportOf(record), HasSubstr(R"("series.Level.leftOut" value="3")"));
    const std::string page = tesk5::htmlReportOf(record);
    for (const char* text :
         {"<li>Readings: <bdi>1001</bdi></li>", "<li>Later readings left out: <bdi>3</bdi></li>",
          "The table has the first 1000; a JSON report has more."}) {
        EXPECT_NE(page.find(text), std::string::npos) << text;
    }
}

TEST_F(SeriesReports, OfNoReadingHaveNoDrawing) {
    registerTest("None", [](const DiagDevice&) {
        DiagModule::follows(headOf(std::nullopt));
        return TestResult::CANNOTRUN();
    });
    EXPECT_EQ(startWithReports(), 3);
    EXPECT_THAT(html(), HasSubstr("<li>Readings: <bdi>0</bdi></li>"));
    EXPECT_THAT(html(), Not(HasSubstr("class=\"curve\"")));
}

TEST_F(SeriesReports, LeaveTheReportsOfOtherTestsAsTheyAre) {
    registerTest("Plain", TestResult::PASS());
    EXPECT_EQ(startWithReports({"--events"}), 0);
    EXPECT_FALSE(result(0).contains("series"));
    EXPECT_FALSE(events().at(2).at("result").contains("series"));
    EXPECT_THAT(junit(), Not(HasSubstr("series.")));
    EXPECT_THAT(html(), Not(HasSubstr("<svg class=\"chart\"")));
}

} // namespace

} // namespace test
