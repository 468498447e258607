#include <support/TemporaryFolder.h>

#include <texts/LanguageTags.h>
#include <texts/TextCatalogue.h>

#include <gmock/gmock.h>

namespace test {

namespace {

using tesk5::canonicalTag;
using tesk5::fallbacksOf;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(LanguageTags, AreWrittenAsFilesAreNamedAlsoWhenTheEnvironmentHasThem) {
    EXPECT_EQ(canonicalTag("de"), "de");
    EXPECT_EQ(canonicalTag("DE-at"), "de-AT");
    EXPECT_EQ(canonicalTag("zh-hans"), "zh-Hans");
    EXPECT_EQ(canonicalTag("ZH-HANT-hk"), "zh-Hant-HK");
    EXPECT_EQ(canonicalTag("es-419"), "es-419");
    EXPECT_EQ(canonicalTag("fil"), "fil");
    EXPECT_EQ(canonicalTag("de_AT.UTF-8"), "de-AT");
    EXPECT_EQ(canonicalTag("ca_ES.UTF-8@valencia"), "ca-ES");
    EXPECT_EQ(canonicalTag("fr_FR@euro"), "fr-FR");
}

TEST(LanguageTags, ThatCouldLeadOutOfAFolderAreRefused) {
    for (const char* text :
         {"../../x", "..",           "de/../../x", "de\\x",     "/etc/passwd", "C:de",   "de\n",
          "de de",   "de-",          "-",          "",          "d",           "de--AT", "de-*",
          "de?",     "\u00e4\u00f6", "de-\u00e4",  "abcdefghi", "12",          "C",      ".UTF-8",
          "nul.json"}) {
        const std::string tag = canonicalTag(text);
        EXPECT_EQ(tag.find_first_not_of(
                      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-"),
                  std::string::npos)
            << text;
        if (std::string(text) != "nul.json") { // what precedes the point is a tag
            EXPECT_EQ(tag, "") << text;
        }
        EXPECT_EQ(fallbacksOf(text).empty(), tag.empty()) << text;
    }
}

TEST(LanguageFallbacks, GoFromTheRegionToTheLanguageAndKnowTheScriptOfAChineseOne) {
    EXPECT_THAT(fallbacksOf("de-AT"), ElementsAre("de-AT", "de"));
    EXPECT_THAT(fallbacksOf("pt_BR.UTF-8"), ElementsAre("pt-BR", "pt"));
    EXPECT_THAT(fallbacksOf("sr-Latn-RS"), ElementsAre("sr-Latn-RS", "sr-Latn", "sr"));
    EXPECT_THAT(fallbacksOf("fr"), ElementsAre("fr"));
    EXPECT_THAT(fallbacksOf("zh-CN"), ElementsAre("zh-CN", "zh-Hans", "zh"));
    EXPECT_THAT(fallbacksOf("zh"), ElementsAre("zh", "zh-Hans"));
    EXPECT_THAT(fallbacksOf("zh_SG"), ElementsAre("zh-SG", "zh-Hans", "zh"));
    EXPECT_THAT(fallbacksOf("zh-Hans-CN"), ElementsAre("zh-Hans-CN", "zh-Hans", "zh"));
}

TEST(LanguageFallbacks, OfTraditionalChineseAreNeverSimplifiedOnes) {
    for (const char* tag : {"zh_TW.UTF-8", "zh-HK", "zh-MO", "zh-Hant", "zh-Hant-TW"}) {
        EXPECT_THAT(fallbacksOf(tag), testing::Contains("zh-Hant")) << tag;
        EXPECT_THAT(fallbacksOf(tag), testing::Not(testing::Contains("zh-Hans"))) << tag;
    }
}

TEST(Languages, AreThoseThatHaveAFileInAnyFolderAndEnglish) {
    const TemporaryFolder folder;
    const std::filesystem::path first = folder.path() / "first";
    const std::filesystem::path second = folder.path() / "second";
    std::filesystem::create_directory(first);
    std::filesystem::create_directory(second);
    for (const auto& file : {first / "de.json", first / "zh-Hans.json", second / "nl.json",
                             second / "de.json", first / "readme.txt", first / "DE-at.json",
                             first / "notes on texts.json", first / "x.json"}) {
        std::ofstream(file) << "{}";
    }
    EXPECT_THAT(tesk5::languagesOf({{{first, folder.path() / "none"}, "{}"}, {{second}, "{}"}}),
                ElementsAre("de", "en", "nl", "zh-Hans"));
    EXPECT_THAT(tesk5::languagesOf({}), ElementsAre("en"));
}

} // namespace

} // namespace test
