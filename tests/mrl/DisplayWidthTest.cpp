#include <mrl/DisplayWidth.h>

#include <gtest/gtest.h>

namespace {

using mrl::columnsOf;
using mrl::fittedToColumns;

TEST(DisplayWidth, OfLatinIsOneColumnACharacter) {
    EXPECT_EQ(columnsOf(""), 0U);
    EXPECT_EQ(columnsOf("Signal: 72 %"), 12U);
    EXPECT_EQ(columnsOf("Für Straße"), 10U);
}

TEST(DisplayWidth, OfEastAsianCharactersIsTwo) {
    EXPECT_EQ(columnsOf("信号強度"), 8U);
    EXPECT_EQ(columnsOf("カA"), 3U);
    EXPECT_EQ(columnsOf("𠀋"), 2U) << "beyond the first 65536 characters";
    EXPECT_EQ(columnsOf("📶"), 2U);
}

TEST(DisplayWidth, OfCombiningMarksIsZero) {
    EXPECT_EQ(columnsOf("e\u0301"), 1U);
    EXPECT_EQ(columnsOf("قُوّة"), 3U);
}

TEST(DisplayWidth, OfIllFormedBytesIsThatOfTheirReplacement) {
    EXPECT_EQ(columnsOf("\xff"), 1U);
    EXPECT_EQ(columnsOf("a\xff\xffz"), 4U);
}

TEST(FittedText, IsNotCutWhenItFits) {
    EXPECT_EQ(fittedToColumns("Lab", 3), "Lab");
    EXPECT_EQ(fittedToColumns("信号", 4), "信号");
    EXPECT_EQ(fittedToColumns("", 0), "");
}

TEST(FittedText, IsCutAfterAWholeCharacterAndEndsWithAnEllipsis) {
    EXPECT_EQ(fittedToColumns("Laboratory", 4), "Lab…");
    EXPECT_EQ(fittedToColumns("信号強度", 6), "信号…");
    EXPECT_EQ(fittedToColumns("信号強度", 5), "信号…");
    EXPECT_EQ(fittedToColumns("𠀋𠀋", 3), "𠀋…");
    EXPECT_EQ(fittedToColumns("Lab", 1), "…");
    EXPECT_EQ(fittedToColumns("Lab", 0), "");
}

} // namespace
