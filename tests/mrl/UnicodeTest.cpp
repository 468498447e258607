// Network names are arbitrary bytes. Ill-formed ones must not spoil the text around them.
#include <mrl/Unicode.h>

#include <support/SafeText.h>

#include <gtest/gtest.h>

#include <initializer_list>

namespace {

using mrl::Char;
using mrl::CharString;
using mrl::CharView;

CharString units(std::initializer_list<int> values) {
    CharString text;
    for (const int value : values) {
        text += static_cast<Char>(value);
    }
    return text;
}

std::string bytes(std::initializer_list<int> values) {
    std::string text;
    for (const int value : values) {
        text += static_cast<char>(value);
    }
    return text;
}

constexpr int REPLACED = 0xFFFD;

bool isSurrogate(char32_t codePoint) {
    return codePoint >= 0xD800 && codePoint <= 0xDFFF;
}

CharString utf16Of(char32_t codePoint) {
    if (codePoint < 0x10000) {
        return CharString(1, static_cast<Char>(codePoint));
    }
    const char32_t offset = codePoint - 0x10000;
    return {static_cast<Char>(0xD800 + offset / 0x400), static_cast<Char>(0xDC00 + offset % 0x400)};
}

TEST(Unicode, EveryCharacterComesBackFromUtf8) {
    for (char32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
        if (isSurrogate(codePoint)) {
            continue;
        }
        const CharString text = utf16Of(codePoint);
        ASSERT_EQ(mrl::toUtf16(mrl::toUtf8(text)), text) << std::hex << std::uint32_t{codePoint};
    }
}

TEST(Unicode, TheFirstAndLastCharacterOfEachByteCountHaveTheStandardsBytes) {
    EXPECT_EQ(mrl::toUtf8(units({0x00})), bytes({0x00}));
    EXPECT_EQ(mrl::toUtf8(units({0x7F})), bytes({0x7F}));
    EXPECT_EQ(mrl::toUtf8(units({0x80})), bytes({0xC2, 0x80}));
    EXPECT_EQ(mrl::toUtf8(units({0x7FF})), bytes({0xDF, 0xBF}));
    EXPECT_EQ(mrl::toUtf8(units({0x800})), bytes({0xE0, 0xA0, 0x80}));
    EXPECT_EQ(mrl::toUtf8(units({0xFFFF})), bytes({0xEF, 0xBF, 0xBF}));
    EXPECT_EQ(mrl::toUtf8(units({0xD800, 0xDC00})), bytes({0xF0, 0x90, 0x80, 0x80}));
    EXPECT_EQ(mrl::toUtf8(units({0xDBFF, 0xDFFF})), bytes({0xF4, 0x8F, 0xBF, 0xBF}));
}

TEST(Unicode, EmptyTextsStayEmpty) {
    EXPECT_EQ(mrl::toUtf8(CharView()), "");
    EXPECT_EQ(mrl::toUtf16(""), CharString());
    EXPECT_EQ(mrl::escapeControls(""), "");
}

TEST(Unicode, Utf32HasOneUnitForEachCharacter) {
    EXPECT_EQ(mrl::toUtf32("a\xC3\xBC\xF0\x9F\x93\xB6\xFF"), U"a\u00FC\U0001F4F6\uFFFD");
    EXPECT_EQ(mrl::toUtf8(U"a\u00FC\U0001F4F6"), "a\xC3\xBC\xF0\x9F\x93\xB6");
}

struct IllFormed {
    const char* kind;
    std::string utf8;
    CharString utf16;
};

class IllFormedUtf8 : public testing::TestWithParam<IllFormed> {};

TEST_P(IllFormedUtf8, BecomesReplacementCharactersAndTheRestIsKept) {
    EXPECT_EQ(mrl::toUtf16(GetParam().utf8), GetParam().utf16);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, IllFormedUtf8,
    testing::Values(
        IllFormed{"ByteThatFollowsNothing", bytes({'a', 0x80, 0xBF, 'z'}),
                  units({'a', REPLACED, REPLACED, 'z'})},
        IllFormed{"BytesThatNeverOccur", bytes({'a', 0xC0, 0xC1, 0xF5, 0xFE, 0xFF, 'z'}),
                  units({'a', REPLACED, REPLACED, REPLACED, REPLACED, REPLACED, 'z'})},
        IllFormed{"SequencesCutByTheNext",
                  bytes({'a', 0xF1, 0x80, 0x80, 0xE1, 0x80, 0xC2, 'b', 0x80, 'c', 0x80, 0xBF, 'd'}),
                  units({'a', REPLACED, REPLACED, REPLACED, 'b', REPLACED, 'c', REPLACED, REPLACED,
                         'd'})},
        IllFormed{"LongerThanNeeded", bytes({0xC0, 0xAF, 0xE0, 0x80, 0xBF, 0xF0, 0x81, 0x82, 'A'}),
                  units({REPLACED, REPLACED, REPLACED, REPLACED, REPLACED, REPLACED, REPLACED,
                         REPLACED, 'A'})},
        IllFormed{"EncodedSurrogates", bytes({0xED, 0xA0, 0x80, 0xED, 0xBF, 0xBF, 0xED, 0xAF, 'A'}),
                  units({REPLACED, REPLACED, REPLACED, REPLACED, REPLACED, REPLACED, REPLACED,
                         REPLACED, 'A'})},
        IllFormed{"AboveTheLastCharacter",
                  bytes({0xF4, 0x91, 0x92, 0x93, 0xFF, 'A', 0x80, 0xBF, 'B'}),
                  units({REPLACED, REPLACED, REPLACED, REPLACED, REPLACED, 'A', REPLACED, REPLACED,
                         'B'})},
        IllFormed{"CutAtTheEndAfterOne", bytes({'a', 0xC3}), units({'a', REPLACED})},
        IllFormed{"CutAtTheEndAfterTwo", bytes({'a', 0xE2, 0x82}), units({'a', REPLACED})},
        IllFormed{"CutAtTheEndAfterThree", bytes({'a', 0xF0, 0x9F, 0x93}), units({'a', REPLACED})},
        IllFormed{"LatinOneBytes", bytes({'M', 0xFC, 'l', 'l', 'e', 'r'}),
                  units({'M', REPLACED, 'l', 'l', 'e', 'r'})}),
    [](const auto& row) { return row.param.kind; });

TEST(Unicode, AnyTwoBytesLeaveTheirNeighbours) {
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; ++second) {
            const CharString text = mrl::toUtf16(bytes({'a', first, second, 'z'}));
            ASSERT_GE(text.size(), 3U) << first << " " << second;
            ASSERT_EQ(text.front(), Char('a')) << first << " " << second;
            ASSERT_EQ(text.back(), Char('z')) << first << " " << second;
            ASSERT_EQ(mrl::toUtf16(mrl::toUtf8(text)), text) << first << " " << second;
        }
    }
}

TEST(Unicode, ALoneSurrogateIsReplacedAndTheRestIsKept) {
    const std::string replaced = "\xEF\xBF\xBD";
    EXPECT_EQ(mrl::toUtf8(units({'a', 0xD83D, 'z'})), "a" + replaced + "z");
    EXPECT_EQ(mrl::toUtf8(units({'a', 0xDCF6, 'z'})), "a" + replaced + "z");
    EXPECT_EQ(mrl::toUtf8(units({'a', 0xD83D})), "a" + replaced);
    EXPECT_EQ(mrl::toUtf8(units({0xDCF6, 0xD83D})), replaced + replaced);
    EXPECT_EQ(mrl::toUtf8(units({0xD83D, 0xD83D, 0xDCF6})), replaced + "\xF0\x9F\x93\xB6");
}

TEST(Unicode, LatinOneLettersFoldAndItsSignsDoNot) {
    EXPECT_EQ(mrl::foldCase(Char('A')), Char('a'));
    EXPECT_EQ(mrl::foldCase(Char('[')), Char('['));
    EXPECT_EQ(mrl::foldCase(Char('@')), Char('@'));
    EXPECT_EQ(mrl::foldCase(Char(0xC4)), Char(0xE4));
    EXPECT_EQ(mrl::foldCase(Char(0xDE)), Char(0xFE));
    EXPECT_EQ(mrl::foldCase(Char(0xD7)), Char(0xD7)) << "the multiplication sign";
    EXPECT_EQ(mrl::foldCase(Char(0xDF)), Char(0xDF)) << "the sharp s";
    EXPECT_EQ(mrl::foldCase(Char(0xFF)), Char(0xFF));
}

TEST(Unicode, LettersOfTheNamedAlphabetsFold) {
    struct Pair {
        int upper, lower;
    };
    constexpr Pair pairs[] = {
        {0x0100, 0x0101}, {0x012E, 0x012F}, {0x0132, 0x0133}, {0x0139, 0x013A}, {0x0147, 0x0148},
        {0x014A, 0x014B}, {0x0176, 0x0177}, {0x0178, 0x00FF}, {0x0179, 0x017A}, {0x017D, 0x017E},
        {0x0386, 0x03AC}, {0x0388, 0x03AD}, {0x038A, 0x03AF}, {0x038C, 0x03CC}, {0x038E, 0x03CD},
        {0x038F, 0x03CE}, {0x0391, 0x03B1}, {0x03A1, 0x03C1}, {0x03A3, 0x03C3}, {0x03AB, 0x03CB},
        {0x0400, 0x0450}, {0x040F, 0x045F}, {0x0410, 0x0430}, {0x042F, 0x044F}, {0x0460, 0x0461},
        {0x0490, 0x0491}, {0x04C0, 0x04CF}, {0x04C1, 0x04C2}, {0x04D0, 0x04D1}, {0x052E, 0x052F},
        {0xFF21, 0xFF41}, {0xFF3A, 0xFF5A},
    };
    for (const Pair& pair : pairs) {
        EXPECT_EQ(mrl::foldCase(static_cast<Char>(pair.upper)), static_cast<Char>(pair.lower))
            << std::hex << pair.upper;
        EXPECT_EQ(mrl::foldCase(static_cast<Char>(pair.lower)), static_cast<Char>(pair.lower))
            << std::hex << pair.lower;
    }
}

TEST(Unicode, CharactersWithoutALowerCaseOfOneUnitStay) {
    for (const int unit :
         {0x0130, 0x0131, 0x0138, 0x0149, 0x017F, 0x03A2, 0x03C2, 0x0482, 0x3042, 0xD83D, 0xDCF6}) {
        EXPECT_EQ(mrl::foldCase(static_cast<Char>(unit)), static_cast<Char>(unit))
            << std::hex << unit;
    }
}

TEST(Unicode, FoldingTwiceIsFoldingOnce) {
    for (int unit = 0; unit <= 0xFFFF; ++unit) {
        const Char folded = mrl::foldCase(static_cast<Char>(unit));
        ASSERT_EQ(mrl::foldCase(folded), folded) << std::hex << unit;
    }
}

TEST(Unicode, ControlsAreEscapedByName) {
    EXPECT_EQ(mrl::escapeControls("a\r\nb\tc"), "a\\r\\nb\\tc");
    EXPECT_EQ(mrl::escapeControls(bytes({'a', 0x00, 0x1B, '[', '2', 'J', 0x7F})),
              "a\\x00\\x1B[2J\\x7F");
    EXPECT_EQ(mrl::escapeControls("\xC2\x85\xC2\x9B"), "\\x85\\x9B");
}

TEST(Unicode, InvisibleAndBidirectionalControlsAreEscapedByNumber) {
    EXPECT_EQ(mrl::escapeControls("exe\xE2\x80\xAEgpj"), "exe\\u202Egpj");
    EXPECT_EQ(mrl::escapeControls("\xE2\x81\xA6x\xE2\x81\xA9"), "\\u2066x\\u2069");
    EXPECT_EQ(mrl::escapeControls("\xE2\x80\x8E\xE2\x80\x8F\xD8\x9C"), "\\u200E\\u200F\\u061C");
    EXPECT_EQ(mrl::escapeControls("a\xE2\x80\xA8z\xE2\x80\xA9"), "a\\u2028z\\u2029");
    EXPECT_EQ(mrl::escapeControls("La\xE2\x80\x8B\xEF\xBB\xBF"
                                  "b"),
              "La\\u200B\\uFEFFb");
    EXPECT_EQ(mrl::escapeControls("\xEF\xBF\xBE\xEF\xBF\xBF"), "\\uFFFE\\uFFFF");
}

TEST(Unicode, OrdinaryTextIsNotEscaped) {
    const std::string text = "C:\\temp M\xC3\xBCller \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x93\xB6 "
                             "\xC2\xA0\xE2\x80\xA6";
    EXPECT_EQ(mrl::escapeControls(text), text);
}

TEST(Unicode, EscapingReplacesIllFormedBytes) {
    EXPECT_EQ(mrl::escapeControls("a\xFF\n"), "a\xEF\xBF\xBD\\n");
}

TEST(Unicode, UnsafeCharactersAreEscapedAndNoOthers) {
    for (char32_t codePoint = 0; codePoint < 0x11000; ++codePoint) {
        if (isSurrogate(codePoint)) {
            continue;
        }
        const std::string text = mrl::toUtf8(utf16Of(codePoint));
        const bool isUnsafe = !test::findUnsafe(text).empty();
        EXPECT_EQ(mrl::isUnsafeToShow(codePoint), isUnsafe) << static_cast<unsigned>(codePoint);
        const std::string shown = mrl::escapeControls(text);
        EXPECT_EQ(shown != text, isUnsafe) << static_cast<unsigned>(codePoint);
        EXPECT_EQ(test::findUnsafe(shown), "");
    }
}

} // namespace
