#include <tesk5/TextLayout.h>

#include <mrl/DisplayWidth.h>

#include <gmock/gmock.h>

namespace test {

namespace {

using tesk5::padded;
using tesk5::wrapped;
using tesk5::wrappedForTerminal;
using testing::ElementsAre;

TEST(Wrapping, EndsLinesAtSpaces) {
    EXPECT_THAT(wrapped("one two three", 7), ElementsAre("one two", "three"));
    EXPECT_THAT(wrapped("one two three", 8), ElementsAre("one two", "three"));
    EXPECT_THAT(wrapped("one two three", 13), ElementsAre("one two three"));
    EXPECT_THAT(wrapped("one  two", 3), ElementsAre("one", "two"));
    EXPECT_THAT(wrapped("", 10), ElementsAre(""));
}

TEST(Wrapping, KeepsALongWordWhole) {
    EXPECT_THAT(wrapped("a incomprehensible b", 5), ElementsAre("a", "incomprehensible", "b"));
}

TEST(Wrapping, DoesNotEndALineAtANoBreakSpace) {
    EXPECT_THAT(wrapped("dit \u00ab\u00a0oui\u00a0\u00bb", 8),
                ElementsAre("dit", "\u00ab\u00a0oui\u00a0\u00bb"));
}

TEST(Wrapping, EndsLinesBetweenEastAsianCharactersWhichAreTwoColumnsWide) {
    EXPECT_THAT(wrapped("無線機能", 4), ElementsAre("無線", "機能"));
    EXPECT_THAT(wrapped("無線機能", 5), ElementsAre("無線", "機能"));
    EXPECT_THAT(wrapped("無線 LAN 機能", 8), ElementsAre("無線 LAN", "機能"));
}

TEST(Wrapping, DoesNotBeginALineWithClosingPunctuationOrEndItWithOpening) {
    EXPECT_THAT(wrapped("無線機能。", 8), ElementsAre("無線機", "能。"));
    EXPECT_THAT(wrapped("無線機「能」", 8), ElementsAre("無線機", "「能」"));
    EXPECT_THAT(wrapped("使用“无线”功能", 6), ElementsAre("使用", "“无线”", "功能"));
}

TEST(Wrapping, LosesNothingButTheSpacesAtLineEnds) {
    const std::string text = "テスト run --help を実行すると、コマンド run の詳細が表示されます。";
    for (std::size_t columns = 10; columns < 80; ++columns) {
        std::string all;
        for (const std::string& line : wrapped(text, columns)) {
            EXPECT_LE(mrl::columnsOf(line), columns);
            all += line;
        }
        std::string expected = text;
        std::erase(expected, ' ');
        std::erase(all, ' ');
        EXPECT_EQ(all, expected);
    }
}

TEST(WrappingForATerminal, KeepsTheIndentAndLeavesTheLastColumnFree) {
    EXPECT_EQ(wrappedForTerminal("  one two three", 10), "  one two\n  three");
    EXPECT_EQ(wrappedForTerminal("  one two three", 9), "  one\n  two\n  three");
    EXPECT_EQ(wrappedForTerminal("one two", 8), "one two");
    EXPECT_EQ(wrappedForTerminal("one two", 1), "one\ntwo");
    EXPECT_EQ(wrappedForTerminal("", 8), "");
}

TEST(WrappingForATerminal, LeavesALineAsItIsWithoutATerminal) {
    EXPECT_EQ(wrappedForTerminal("  one  two three ", 0), "  one  two three ");
}

TEST(Padding, CountsColumnsAndLeavesASpaceAtLeast) {
    EXPECT_EQ(padded("ab", 4), "ab  ");
    EXPECT_EQ(padded("機", 4), "機  ");
    EXPECT_EQ(padded("abcd", 4), "abcd ");
    EXPECT_EQ(padded("", 2), "  ");
}

} // namespace

} // namespace test
