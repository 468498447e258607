#include "FrameworkTest.h"

#include <texts/MeasurementText.h>

namespace test {

namespace {

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

} // namespace

} // namespace test
