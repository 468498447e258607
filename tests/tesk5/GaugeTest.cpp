#include <reports/Gauge.h>

#include <gmock/gmock.h>

namespace test {

namespace {

using tesk5::Gauge;
using tesk5::gaugeOf;
using tesk5::Limit;
using tesk5::Measurement;
using tesk5::Severity;

Measurement measured(mrl::Uint32 value, std::vector<Limit> limits) {
    return {"Strength", value, "%", 0, 100, std::move(limits)};
}

const Limit failing{"Failing", 20, Severity::error};
const Limit warning{"Warning", 40, Severity::warning};

TEST(Gauge, HasAZoneForWhatAValueInItWouldMean) {
    const Gauge gauge = gaugeOf(measured(72, {warning, failing}), false);
    ASSERT_EQ(gauge.zones.size(), 3U);
    EXPECT_EQ(gauge.zones[0].severity, Severity::error);
    EXPECT_EQ(gauge.zones[1].severity, Severity::warning);
    EXPECT_EQ(gauge.zones[2].severity, std::nullopt);
    EXPECT_DOUBLE_EQ(gauge.zones[1].x, 20);
    EXPECT_DOUBLE_EQ(gauge.zones[1].width, 20);
    EXPECT_DOUBLE_EQ(gauge.valueX, 72);
}

TEST(Gauge, AHigherSevererLimitCoversTheZonesBelowIt) {
    const Gauge gauge = gaugeOf(measured(1, {{"W", 10, Severity::warning}, failing}), false);
    EXPECT_EQ(gauge.zones[0].severity, Severity::error);
    EXPECT_EQ(gauge.zones[1].severity, Severity::error);
}

TEST(Gauge, RunsFromTheRightWhereTextDoes) {
    const Gauge gauge = gaugeOf(measured(72, {failing}), true);
    EXPECT_DOUBLE_EQ(gauge.valueX, 28);
    EXPECT_DOUBLE_EQ(gauge.value.x, 28);
    EXPECT_DOUBLE_EQ(gauge.value.width, 72);
    EXPECT_DOUBLE_EQ(gauge.zones[0].x, 80);
}

TEST(Gauge, KeepsNumbersApartThatLieCloseTogether) {
    const Gauge gauge =
        gaugeOf(measured(50, {{"F", 40, Severity::error}, {"W", 41, Severity::warning}}), false);
    ASSERT_EQ(gauge.labels.size(), 4U);
    EXPECT_EQ(gauge.labels[2].row, 0U);
    EXPECT_EQ(gauge.labels[3].row, 1U);
    EXPECT_EQ(gauge.rows, 2U);
}

TEST(Gauge, SaysALimitAtTheEndOfTheScaleOnce) {
    EXPECT_EQ(gaugeOf(measured(1, {{"W", 100, Severity::warning}}), false).labels.size(), 2U);
}

TEST(Gauge, TextsAtTheEdgesStayInside) {
    EXPECT_STREQ(tesk5::sideOfText(0), "left");
    EXPECT_STREQ(tesk5::sideOfText(50), "middle");
    EXPECT_STREQ(tesk5::sideOfText(100), "right");
}

} // namespace

} // namespace test
