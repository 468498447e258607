// How a measurement compares with its limits, in words and on its scale.
#include "FrameworkTest.h"

#include <reports/Gauge.h>
#include <run/ReportWords.h>
#include <texts/MeasurementText.h>

namespace test {

namespace {

using tesk5::Gauge;
using tesk5::gaugeOf;
using tesk5::Limit;

using Measurements = FrameworkTest;

Measurement strength(mrl::Uint32 value, std::vector<Limit> limits) {
    return {"Strength", value, "%", 0, 100, std::move(limits)};
}

Limit warning(mrl::Uint32 value) {
    return {"Warn", value, Severity::warning};
}

Limit failing(mrl::Uint32 value) {
    return {"Fail", value, Severity::error};
}

std::string brokenBy(mrl::Uint32 value, std::vector<Limit> limits) {
    const Measurement measurement = strength(value, std::move(limits));
    const Limit* limit = measurement.brokenLimit();
    return limit == nullptr ? "" : limit->name.utf8();
}

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
    EXPECT_EQ(brokenBy(5, {{"First", 40, Severity::warning}, {"Second", 40, Severity::warning}}),
              "First");
}

TEST_F(Measurements, SayInWordsHowTheyCompare) {
    using tesk5::comparisonText;
    EXPECT_EQ(comparisonText(strength(72, {warning(40), failing(20)})),
              "above the warning limit of 40%");
    EXPECT_EQ(comparisonText(strength(72, {failing(20)})), "above the failing limit of 20%");
    EXPECT_EQ(comparisonText(strength(40, {warning(40), failing(20)})),
              "at or below the warning limit of 40%");
    EXPECT_EQ(comparisonText(strength(12, {warning(40), failing(20)})),
              "at or below the failing limit of 20%");
    EXPECT_EQ(comparisonText(strength(12, {})), "");
    EXPECT_EQ(tesk5::measuredText(strength(12, {})), "Strength: 12%");
}

Measurement level(const char* value, std::vector<Limit> limits) {
    return {"Level", *tesk5::Number::parse(value), "dBm", -110, -10, std::move(limits)};
}

Limit kept(Limit::Kept where, const char* value, Severity severity = Severity::error) {
    return {"Limit", *tesk5::Number::parse(value), severity, where};
}

TEST_F(Measurements, KeepALimitThatTheyMustNotBeBelowAtIt) {
    using enum Limit::Kept;
    const auto broken = [](const char* value, Limit::Kept where) {
        return level(value, {kept(where, "-70.5")}).brokenLimit() != nullptr;
    };
    EXPECT_FALSE(broken("-70.5", AT_LEAST));
    EXPECT_TRUE(broken("-70.6", AT_LEAST));
    EXPECT_FALSE(broken("-70.5", AT_MOST));
    EXPECT_TRUE(broken("-70.4", AT_MOST));
    EXPECT_TRUE(broken("-70.5", ABOVE));
    EXPECT_FALSE(broken("-70.4", ABOVE));
}

TEST_F(Measurements, BreakTheFartherOfTwoLimitsThatTheyMustNotBeAbove) {
    using enum Limit::Kept;
    const Measurement high = level("-20", {{"Lower", -40, Severity::error, AT_MOST},
                                           {"Upper", -30, Severity::error, AT_MOST}});
    EXPECT_EQ(high.brokenLimit()->name, "Upper");
}

TEST_F(Measurements, SayInWordsOnWhichSideOfALimitTheyAre) {
    using enum Limit::Kept;
    using tesk5::comparisonText;
    using tesk5::limitText;
    EXPECT_EQ(comparisonText(level(
                  "-57.5", {kept(AT_LEAST, "-70", Severity::warning), kept(AT_LEAST, "-80")})),
              "at or above the warning limit of -70\u00A0dBm");
    EXPECT_EQ(comparisonText(level("-70.5", {kept(AT_LEAST, "-70", Severity::warning)})),
              "below the warning limit of -70\u00A0dBm");
    EXPECT_EQ(comparisonText(level("-81", {kept(AT_LEAST, "-80")})),
              "below the failing limit of -80\u00A0dBm");
    EXPECT_EQ(comparisonText(level("-30", {kept(AT_MOST, "-20")})),
              "at or below the failing limit of -20\u00A0dBm");
    EXPECT_EQ(comparisonText(level("-10", {kept(AT_MOST, "-20", Severity::warning)})),
              "above the warning limit of -20\u00A0dBm");
    EXPECT_EQ(limitText(kept(AT_LEAST, "-80"), "dBm"), "Failing below -80\u00A0dBm");
    EXPECT_EQ(limitText(kept(AT_MOST, "1.50", Severity::warning), "dB"),
              "Warning above 1.50\u00A0dB");
    EXPECT_EQ(tesk5::measuredText(level("-57.50", {})), "Level: -57.50\u00A0dBm");
}

TEST_F(Measurements, HaveFiguresBesideThem) {
    Measurement measurement = level("-57.5", {});
    measurement.figures = {{"Spread", *tesk5::Number::parse("1.5"), "dB"}, {"Samples", 15, ""}};
    EXPECT_THAT(tesk5::measurementLines(measurement),
                testing::ElementsAre(testing::HasSubstr("-57.5"), "  Spread: 1.5\u00A0dB",
                                     "  Samples: 15"));
}

TEST(Gauge, HasZonesOnBothSidesOfAValueThatHasTwoLimits) {
    using enum Limit::Kept;
    const Gauge gauge = gaugeOf(
        level("-60", {kept(AT_MOST, "-35", Severity::warning), kept(AT_LEAST, "-85")}), false);
    ASSERT_EQ(gauge.zones.size(), 3U);
    EXPECT_EQ(gauge.zones[0].severity, Severity::error);
    EXPECT_EQ(gauge.zones[1].severity, std::nullopt);
    EXPECT_EQ(gauge.zones[2].severity, Severity::warning);
    EXPECT_DOUBLE_EQ(gauge.zones[0].width, 25);
    EXPECT_DOUBLE_EQ(gauge.valueX, 50);
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
    EXPECT_EQ(measurementBar({"Odd", 5, "", 7, 3, {}}, 4), "[....]") << "a scale upside down";
}

TEST(Gauge, HasAZoneForWhatAValueInItWouldMean) {
    const Gauge gauge = gaugeOf(strength(72, {warning(40), failing(20)}), false);
    ASSERT_EQ(gauge.zones.size(), 3U);
    EXPECT_EQ(gauge.zones[0].severity, Severity::error);
    EXPECT_EQ(gauge.zones[1].severity, Severity::warning);
    EXPECT_EQ(gauge.zones[2].severity, std::nullopt);
    EXPECT_DOUBLE_EQ(gauge.zones[1].x, 20);
    EXPECT_DOUBLE_EQ(gauge.zones[1].width, 20);
    EXPECT_DOUBLE_EQ(gauge.valueX, 72);
}

TEST(Gauge, AHigherSevererLimitCoversTheZonesBelowIt) {
    const Gauge gauge = gaugeOf(strength(1, {{"W", 10, Severity::warning}, failing(20)}), false);
    EXPECT_EQ(gauge.zones[0].severity, Severity::error);
    EXPECT_EQ(gauge.zones[1].severity, Severity::error);
}

TEST(Gauge, RunsFromTheRightWhereTextDoes) {
    const Gauge gauge = gaugeOf(strength(72, {failing(20)}), true);
    EXPECT_DOUBLE_EQ(gauge.valueX, 28);
    EXPECT_DOUBLE_EQ(gauge.value.x, 28);
    EXPECT_DOUBLE_EQ(gauge.value.width, 72);
    EXPECT_DOUBLE_EQ(gauge.zones[0].x, 80);
}

TEST(Gauge, KeepsNumbersApartThatLieCloseTogether) {
    const Gauge gauge =
        gaugeOf(strength(50, {{"F", 40, Severity::error}, {"W", 41, Severity::warning}}), false);
    ASSERT_EQ(gauge.labels.size(), 4U);
    EXPECT_EQ(gauge.labels[2].row, 0U);
    EXPECT_EQ(gauge.labels[3].row, 1U);
    EXPECT_EQ(gauge.rows, 2U);
}

TEST(Gauge, SaysALimitAtTheEndOfTheScaleOnce) {
    EXPECT_EQ(gaugeOf(strength(1, {{"W", 100, Severity::warning}}), false).labels.size(), 2U);
}

TEST(Gauge, KeepsALimitApartFromTheEndsOfTheScale) {
    const auto rowOf = [](mrl::Uint32 limit) {
        return gaugeOf(strength(50, {failing(limit)}), false).labels.at(2).row;
    };
    EXPECT_EQ(rowOf(10), 1U) << "\"0%\" begins at 0, \"10%\" reaches beyond 10 on both sides";
    EXPECT_EQ(rowOf(25), 0U);
    EXPECT_EQ(rowOf(75), 0U);
    EXPECT_EQ(rowOf(90), 1U);
}

TEST(Gauge, GivesALongUnitMoreRoom) {
    const auto rowsWith = [](const char* unit) {
        return gaugeOf({"Rate", 1, unit, 0, 100, {warning(40), failing(60)}}, false).rows;
    };
    EXPECT_EQ(rowsWith("%"), 1U);
    EXPECT_EQ(rowsWith("Mbit/s"), 2U);
}

TEST(Gauge, TextsAtTheEdgesStayInside) {
    const auto sideOf = [](mrl::Uint32 value) {
        return std::string(gaugeOf(strength(value, {}), false).valueSide);
    };
    EXPECT_EQ(sideOf(0), "left");
    EXPECT_EQ(sideOf(50), "middle");
    EXPECT_EQ(sideOf(100), "right");
    EXPECT_STREQ(gaugeOf(strength(50, {failing(1)}), false).labels.at(2).side, "left");
}

} // namespace

} // namespace test
