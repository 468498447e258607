#include <mrl/Languages.h>

#include <gtest/gtest.h>

namespace {

using mrl::isRightToLeft;

TEST(ReadingDirection, IsThatOfTheLanguage) {
    for (const char* tag : {"ar", "ar-EG", "fa-IR", "he", "ur", "ps-AF", "ckb", "yi-001"}) {
        EXPECT_TRUE(isRightToLeft(tag)) << tag;
    }
    for (const char* tag : {"en", "de-AT", "ja", "zh-Hant-TW", "es-419", "arn", "de-1901"}) {
        EXPECT_FALSE(isRightToLeft(tag)) << tag;
    }
}

TEST(ReadingDirection, IsThatOfTheScriptWhereTheTagNamesOne) {
    for (const char* tag : {"az-Arab", "pa-Arab-PK", "ku-Arab-IQ", "ff-Adlm"}) {
        EXPECT_TRUE(isRightToLeft(tag)) << tag;
    }
    for (const char* tag : {"ur-Latn", "ks-Deva-IN", "az-Latn"}) {
        EXPECT_FALSE(isRightToLeft(tag)) << tag;
    }
}

TEST(ReadingDirection, IsFromTheLeftForWhatIsNoTag) {
    for (const char* text : {"", "-", "a", "xx-", "Arab"}) {
        EXPECT_FALSE(isRightToLeft(text)) << text;
    }
}

} // namespace
