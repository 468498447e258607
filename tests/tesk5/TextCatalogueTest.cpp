#include <support/CapturedLog.h>
#include <support/TemporaryFolder.h>

#include <texts/TextCatalogue.h>

#include <mrl/System.h>

#include <gmock/gmock.h>

namespace test {

namespace {

using tesk5::TextCatalogue;
using testing::HasSubstr;
using testing::IsEmpty;

struct Texts : testing::Test {
    CapturedLog log;
    TemporaryFolder folder;
    std::filesystem::path first = folder.path() / "first";
    std::filesystem::path second = folder.path() / "second";

    static constexpr const char* BUILT_IN = R"({"A": "built-in A", "B": "built-in B"})";

    Texts() {
        std::filesystem::create_directory(first);
        std::filesystem::create_directory(second);
    }
    static void write(const std::filesystem::path& path, const std::string& text) {
        std::ofstream(path, std::ios::binary) << text;
    }
    std::string text(const char* key, const char* language = "en", const char* builtIn = BUILT_IN) {
        const tesk5::TeskString wanted(key);
        return TextCatalogue({{{first, second}, builtIn}}, language).find(wanted).utf8();
    }
};

TEST_F(Texts, ComeFromTheFirstFolderThatHasThemThenTheProgramAndElseAreTheKey) {
    EXPECT_EQ(text("A"), "built-in A");
    write(second / "en.json", R"({"A": "second A"})");
    EXPECT_EQ(text("A"), "second A");
    write(first / "en.json", R"({"A": "first \u00C4"})");
    EXPECT_EQ(text("A"), "first Ä");
    EXPECT_EQ(text("B"), "built-in B");
    EXPECT_EQ(text("NO_SUCH_KEY"), "NO_SUCH_KEY");
    EXPECT_EQ(text(""), "");
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(Texts, OfAnUnusableFileComeFromTheNextFolderOrTheProgramAndTheLogSaysWhy) {
    const std::pair<const char*, const char*> rows[] = {
        {"{\"A\": \"first A\",\n oops}", "en.json are not used: line 2, column 2: "},
        {R"({"A": "first A", "A": "second A"})", "the member \"A\" is there twice in one object"},
        {R"({"A": 1})", "the text of \"A\" is no string"},
        {R"(["A"])", "is an object of keys and texts"},
    };
    for (const auto& [json, reason] : rows) {
        log.clear();
        write(first / "en.json", json);
        EXPECT_EQ(text("A"), "built-in A");
        ASSERT_EQ(log.lines().size(), 1U);
        EXPECT_EQ(log.lines()[0].priority, 4);
        EXPECT_THAT(log.lines()[0].text, HasSubstr(reason));
    }
    write(second / "en.json", R"({"A": "second A"})");
    EXPECT_EQ(text("A"), "second A");
}

TEST_F(Texts, OfAnotherLanguageFallBackToEnglishThenToTheProgram) {
    write(first / "de.json", R"({"A": "deutsches A"})");
    write(first / "en.json", R"({"A": "English A", "B": "English B"})");
    EXPECT_EQ(text("A", "de"), "deutsches A");
    EXPECT_EQ(text("B", "de"), "English B");
    EXPECT_EQ(text("C", "de", R"({"C": "built-in C"})"), "built-in C");
    EXPECT_EQ(text("A", "fr"), "English A");
}

TEST_F(Texts, DoWithoutAnUnusableBuiltInCopy) {
    EXPECT_EQ(text("A", "en", "{"), "A");
    EXPECT_THAT(log.texts(), testing::ElementsAre(HasSubstr("of the program itself are not used")));
}

TEST_F(Texts, ForThisSystemWinOverThoseForAllButNotOverThoseOfABetterFile) {
    const std::string own = "A@" + std::string(mrl::System::name());
    const std::string builtIn = R"({"A": "all", ")" + own + R"(": "this", "A@other": "other"})";
    EXPECT_EQ(text("A", "en", builtIn.c_str()), "this");
    write(first / "en.json", R"({"A": "first"})");
    EXPECT_EQ(text("A", "en", builtIn.c_str()), "first");
}

TEST(TextFolders, LieInTheFoldersOfResources) {
    EXPECT_THAT(tesk5::textFolders("example", {"bin/resources", "resources"}),
                testing::ElementsAre(std::filesystem::path("bin/resources/example/texts"),
                                     std::filesystem::path("resources/example/texts")));
}

TEST(ExecutableFolder, HoldsThisProgram) {
    const std::filesystem::path folder = mrl::System::executableFolder();
    EXPECT_TRUE(std::filesystem::exists(folder / "test_tesk5") ||
                std::filesystem::exists(folder / "test_tesk5.exe"))
        << folder;
}

} // namespace

} // namespace test
