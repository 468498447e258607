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
    const std::pair<CharString, std::string> rows[] = {
        {{}, ""},
        {units({0x00}), bytes({0x00})},
        {units({0x7F}), "\x7F"},
        {units({0x80}), "\xC2\x80"},
        {units({0x7FF}), "\xDF\xBF"},
        {units({0x800}), "\xE0\xA0\x80"},
        {units({0xFFFF}), "\xEF\xBF\xBF"},
        {units({0xD800, 0xDC00}), "\xF0\x90\x80\x80"},
        {units({0xDBFF, 0xDFFF}), "\xF4\x8F\xBF\xBF"},
    };
    for (const auto& [utf16, utf8] : rows) {
        EXPECT_EQ(mrl::toUtf8(utf16), utf8);
    }
}

TEST(Unicode, Utf32HasOneUnitForEachCharacter) {
    EXPECT_EQ(mrl::toUtf32("a\xC3\xBC\xF0\x9F\x93\xB6\xFF"), U"a\u00FC\U0001F4F6\uFFFD");
    EXPECT_EQ(mrl::toUtf8(U"a\u00FC\U0001F4F6"), "a\xC3\xBC\xF0\x9F\x93\xB6");
}

TEST(Unicode, IllFormedBytesBecomeReplacementCharactersAndTheRestIsKept) {
    const struct {
        const char* kind;
        const char* utf8;
        const Char* utf16;
    } rows[] = {
        {"a byte that follows nothing", "a\x80\xBFz", MRL_TEXT("a\uFFFD\uFFFDz")},
        {"bytes that never occur", "a\xC0\xC1\xF5\xFE\xFFz",
         MRL_TEXT("a\uFFFD\uFFFD\uFFFD\uFFFD\uFFFDz")},
        {"sequences cut by the next", "a\xF1\x80\x80\xE1\x80\xC2x\x80y\x80\xBFz",
         MRL_TEXT("a\uFFFD\uFFFD\uFFFDx\uFFFDy\uFFFD\uFFFDz")},
        {"longer than needed", "\xC0\xAF\xE0\x80\xBF\xF0\x81\x82z",
         MRL_TEXT("\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFDz")},
        {"encoded surrogates", "\xED\xA0\x80\xED\xBF\xBF\xED\xAFz",
         MRL_TEXT("\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFDz")},
        {"above the last character", "\xF4\x91\x92\x93\xFFz\x80\xBFz",
         MRL_TEXT("\uFFFD\uFFFD\uFFFD\uFFFD\uFFFDz\uFFFD\uFFFDz")},
        {"cut at the end after one", "a\xC3", MRL_TEXT("a\uFFFD")},
        {"cut at the end after two", "a\xE2\x82", MRL_TEXT("a\uFFFD")},
        {"cut at the end after three", "a\xF0\x9F\x93", MRL_TEXT("a\uFFFD")},
        {"Latin 1", "M\xFCller", MRL_TEXT("M\uFFFDller")},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(mrl::toUtf16(row.utf8), row.utf16) << row.kind;
    }
}

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

TEST(Unicode, LettersOfTheNamedAlphabetsFoldAndOtherCharactersStay) {
    constexpr std::pair<int, int> pairs[] = {
        {'A', 'a'},       {'Z', 'z'},       {0x00C4, 0x00E4}, {0x00DE, 0x00FE}, {0x0100, 0x0101},
        {0x012E, 0x012F}, {0x0132, 0x0133}, {0x0139, 0x013A}, {0x0147, 0x0148}, {0x014A, 0x014B},
        {0x0176, 0x0177}, {0x0178, 0x00FF}, {0x0179, 0x017A}, {0x017D, 0x017E}, {0x0386, 0x03AC},
        {0x0388, 0x03AD}, {0x038A, 0x03AF}, {0x038C, 0x03CC}, {0x038E, 0x03CD}, {0x038F, 0x03CE},
        {0x0391, 0x03B1}, {0x03A1, 0x03C1}, {0x03A3, 0x03C3}, {0x03AB, 0x03CB}, {0x0400, 0x0450},
        {0x040F, 0x045F}, {0x0410, 0x0430}, {0x042F, 0x044F}, {0x0460, 0x0461}, {0x0490, 0x0491},
        {0x04C0, 0x04CF}, {0x04C1, 0x04C2}, {0x04D0, 0x04D1}, {0x052E, 0x052F}, {0xFF21, 0xFF41},
        {0xFF3A, 0xFF5A},
    };
    for (const auto& [upper, lower] : pairs) {
        EXPECT_EQ(mrl::foldCase(static_cast<Char>(upper)), static_cast<Char>(lower))
            << std::hex << upper;
    }
    // The multiplication sign and the sharp s among them.
    for (const int unit : {int{'@'}, int{'['}, 0x00D7, 0x00DF, 0x0130, 0x0131, 0x0138, 0x0149,
                           0x017F, 0x03A2, 0x03C2, 0x0482, 0x3042, 0xD83D, 0xDCF6}) {
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

TEST(Unicode, ControlsAreEscapedByNameOrNumberAndOrdinaryTextIsNot) {
    const std::string ordinary = "C:\\temp M\u00fcller \u65e5\u672c \U0001F4F6 \u00a0\u2026";
    const std::pair<std::string, std::string> rows[] = {
        {"", ""},
        {"a\r\nb\tc", "a\\r\\nb\\tc"},
        {bytes({'a', 0x00, 0x1B, '[', '2', 'J', 0x7F}), "a\\x00\\x1B[2J\\x7F"},
        {"\xC2\x85\xC2\x9B", "\\x85\\x9B"},
        {"exe\u202Egpj", "exe\\u202Egpj"},
        {"\u2066x\u2069", "\\u2066x\\u2069"},
        {"\u200E\u200F\u061C", "\\u200E\\u200F\\u061C"},
        {"a\u2028z\u2029", "a\\u2028z\\u2029"},
        {"La\u200B\uFEFFb", "La\\u200B\\uFEFFb"},
        {"\uFFFE\uFFFF", "\\uFFFE\\uFFFF"},
        {"a\xFF\n", "a\uFFFD\\n"}, // ill-formed
        {ordinary, ordinary},
    };
    for (const auto& [text, shown] : rows) {
        EXPECT_EQ(mrl::escapeControls(text), shown);
    }
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
