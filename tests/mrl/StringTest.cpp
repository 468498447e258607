#include <mrl/Exception.h>
#include <mrl/String.h>

#include <gtest/gtest.h>

#include <memory>

namespace {

using mrl::Char;
using mrl::String;

String trimmed(const char* text) {
    return String(text).trim();
}

TEST(String, GoesToUtf8AndBack) {
    const char* const text = "M\xC3\xBCller \xE6\x97\xA5 \xF0\x9F\x93\xB6";
    EXPECT_STREQ(String(text).getUTF8String().c_str(), text);
    EXPECT_EQ(String(text).length(), 11U) << "the last character takes two units";
}

TEST(String, KeepsANullCharacterInsideAndTerminatesTheBuffer) {
    const String text(std::string_view("a\0b", 3));
    EXPECT_EQ(text.length(), 3U);
    EXPECT_EQ(text.getUTF8String().bytes(), std::string("a\0b", 3));
    EXPECT_EQ(text.getUCS2Buffer()[3], Char(0));
    EXPECT_EQ(String().getUCS2Buffer()[0], Char(0));
    EXPECT_TRUE(String(static_cast<const char*>(nullptr)).empty());
    EXPECT_TRUE(String(static_cast<const Char*>(nullptr)).empty());
}

TEST(String, TheUtf8TextOutlivesItsSource) {
    auto source = std::make_unique<String>("a text that is too long for the object itself");
    const mrl::CString utf8 = source->getUTF8String();
    source.reset();
    EXPECT_STREQ(utf8.c_str(), "a text that is too long for the object itself");
}

TEST(String, CopiesAreIndependent) {
    String original("Lab");
    const String copy = original;
    original += "-5G";
    EXPECT_EQ(original, String("Lab-5G"));
    EXPECT_EQ(copy, String("Lab"));
    original.clear();
    EXPECT_TRUE(original.empty());
    EXPECT_EQ(original, String());
}

TEST(String, AddingJoinsAlsoATextToItself) {
    EXPECT_EQ(String("Lab") + "-5G", String("Lab-5G"));
    EXPECT_EQ(String() + "", String());
    String text("Lab");
    text += text;
    EXPECT_EQ(text, String("LabLab"));
}

TEST(String, SwapExchangesTheTexts) {
    String one("Lab");
    String other("a text that is too long for the object itself");
    one.swap(other);
    EXPECT_EQ(one, String("a text that is too long for the object itself"));
    EXPECT_EQ(other, String("Lab"));
}

TEST(String, ComparesUnitByUnit) {
    EXPECT_NE(String("Lab"), String("lab"));
    EXPECT_LT(String("Lab"), String("Lab-5G"));
    EXPECT_LT(String("Z"), String("a"));
}

TEST(String, FindsTheFirstOccurrence) {
    const String text("Lab Lab-5G");
    EXPECT_EQ(text.find("Lab"), 0U);
    EXPECT_EQ(text.find("Lab", 1), 4U);
    EXPECT_EQ(text.find("Lab-5G"), 4U);
    EXPECT_EQ(text.find("lab"), String::NOT_FOUND);
    EXPECT_EQ(text.find("Lab Lab-5G and more"), String::NOT_FOUND);
    EXPECT_EQ(text.find(Char('-')), 7U);
    EXPECT_EQ(text.find(Char('L'), 1), 4U);
    EXPECT_EQ(text.find(Char('x')), String::NOT_FOUND);
}

TEST(String, TheEmptyTextOccursEverywhereUpToTheEndBeyondWhichThereIsNothing) {
    EXPECT_EQ(String("Lab").find(""), 0U);
    EXPECT_EQ(String("Lab").find("", 3), 3U);
    EXPECT_EQ(String("Lab").find("", 4), String::NOT_FOUND);
    EXPECT_EQ(String().find(""), 0U);
    EXPECT_EQ(String().find("Lab"), String::NOT_FOUND);
    EXPECT_EQ(String("Lab").find("b", 99), String::NOT_FOUND);
    EXPECT_EQ(String("Lab").find(Char('b'), 99), String::NOT_FOUND);
}

TEST(String, SubStringIsCutAtTheEndBeyondWhichItIsEmpty) {
    const String text("{4A2B}");
    EXPECT_EQ(text.subString(1, 4), String("4A2B"));
    EXPECT_EQ(text.subString(1), String("4A2B}"));
    EXPECT_EQ(text.subString(4, 99), String("B}"));
    EXPECT_EQ(text.subString(2, 0), String());
    EXPECT_EQ(text.subString(6), String());
    EXPECT_EQ(text.subString(7, 1), String());
    EXPECT_EQ(text.subString(String::NOT_FOUND), String());
    EXPECT_EQ(String().subString(0), String());
}

TEST(String, TrimTakesWhiteSpaceFromBothEndsOnlyAndLeavesNullCharacters) {
    EXPECT_EQ(trimmed("  My  Net "), String("My  Net"));
    EXPECT_EQ(trimmed("\t\r\n\v\f \xC2\xA0Lab\xC2\xA0 \f\v\n\r\t"), String("Lab"));
    EXPECT_EQ(trimmed("Lab"), String("Lab"));
    EXPECT_EQ(trimmed(" \t "), String());
    EXPECT_EQ(trimmed(""), String());
    EXPECT_EQ(String(std::string_view("\0 ", 2)).trim().length(), 1U);
}

TEST(String, EqualNoCaseIgnoresLetterCase) {
    EXPECT_TRUE(String::equalNoCase("LAB-5g", "lab-5G"));
    EXPECT_TRUE(String::equalNoCase("M\xC3\x9CLLER \xC3\x85", "m\xC3\xBCller \xC3\xA5"));
    EXPECT_TRUE(String::equalNoCase("\xC3\xBF", "\xC5\xB8")) << "y with diaeresis";
    EXPECT_TRUE(String::equalNoCase("", ""));
}

TEST(String, EqualNoCaseIgnoresNothingElse) {
    EXPECT_FALSE(String::equalNoCase("Lab", "Lab "));
    EXPECT_FALSE(String::equalNoCase("Lab", "La"));
    EXPECT_FALSE(String::equalNoCase("Lab", ""));
    EXPECT_FALSE(String::equalNoCase("u", "\xC3\xBC"));
    EXPECT_FALSE(String::equalNoCase("\xC3\x97", "\xC3\xB7")) << "times is not divided by";
    EXPECT_FALSE(String::equalNoCase("[", "{"));
}

TEST(Exception, SaysItsTextThroughTheBaseClass) {
    try {
        throw mrl::Exception("the text");
    } catch (const mrl::Exception& failure) {
        EXPECT_EQ(failure.toString(), String("the text"));
    }
}

} // namespace
