// Numbers, units and times as the language in force writes them.
#include "FrameworkTest.h"

#include <texts/NumberText.h>

#include <tesk5/Language.h>
#include <tesk5/Texts.h>

namespace test {

namespace {

using tesk5::countText;
using tesk5::localTimeText;
using tesk5::secondsText;
using tesk5::wholeSecondsText;
using tesk5::withUnit;

class NumbersForPeople : public OwnTexts {};

TEST_F(NumbersForPeople, AreEnglishAtFirst) {
    EXPECT_EQ(secondsText(7), "7.0\u00A0s");
    EXPECT_EQ(wholeSecondsText(7.9), "7\u00A0s");
    EXPECT_EQ(wholeSecondsText(-1), "0\u00A0s");
    EXPECT_EQ(withUnit(72, "%"), "72%");
    EXPECT_EQ(withUnit(72, "dBm"), "72\u00A0dBm");
    EXPECT_EQ(withUnit(-72, "dBm"), "-72\u00A0dBm");
    EXPECT_EQ(withUnit(15, ""), "15");
    EXPECT_EQ(tesk5::numberText(tesk5::Number::rounded(-0.5, 2)), "-0.50");
}

TEST_F(NumbersForPeople, AreGroupedFromFiveDigitsOn) {
    EXPECT_EQ(countText(9999), "9999");
    EXPECT_EQ(countText(40000), "40,000");
    EXPECT_EQ(countText(400000), "400,000");
    EXPECT_EQ(countText(1234567), "1,234,567");
}

TEST_F(NumbersForPeople, FollowTheLanguage) {
    write("tesk5", "sv", R"({"NUMBER_DECIMAL": "{Whole},{Fraction}", "NUMBER_PERCENT": "{Number} %",
                             "NUMBER_GROUPS": "{Higher}.{Lowest}",
                             "NUMBER_NEGATIVE": "\u2212{Number}",
                             "TIME_LOCAL": "{Day}.{Month}.{Year} {Time} UTC{Offset}"})");
    ASSERT_TRUE(tesk5::Language::current().set("sv"));
    EXPECT_EQ(secondsText(12.34), "12,3\u00A0s");
    EXPECT_EQ(withUnit(72, "%"), "72 %");
    const tesk5::Value level = tesk5::quantity(tesk5::Number::rounded(-57.5, 1), "dBm");
    EXPECT_EQ(level.shownString(), "\u221257,5\u00A0dBm");
    EXPECT_EQ(level.valueString(), "-57.5");
    EXPECT_EQ(countText(1234567), "1.234.567");
    EXPECT_EQ(localTimeText({}), "01.01.1970 00:00:00 UTC+00:00");
}

TEST_F(NumbersForPeople, TellTheLocalTimeWithItsOffset) {
    clock().setUtcOffset(std::chrono::minutes(330));
    EXPECT_EQ(localTimeText({}), "1970-01-01 05:30:00 UTC+05:30");
    clock().setUtcOffset(std::chrono::minutes(-210));
    EXPECT_EQ(localTimeText({}), "1969-12-31 20:30:00 UTC-03:30");
}

} // namespace

} // namespace test
