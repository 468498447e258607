#include <mrl/CommandLineText.h>
#include <mrl/Unicode.h>

#include <gmock/gmock.h>
#include <string>
#include <vector>

#ifdef _WIN32
#include <windows.h>
// After windows.h.
#include <shellapi.h>
#endif

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::string>;

Texts inUtf8(const std::vector<mrl::CharString>& texts) {
    Texts converted;
    for (const mrl::CharString& text : texts) {
        converted.push_back(mrl::toUtf8(text));
    }
    return converted;
}

// What is cut off behind the program's name.
Texts argumentsOf(const std::string& text) {
    Texts texts = inUtf8(mrl::splitCommandLine(mrl::toUtf16("program " + text)));
    EXPECT_EQ(texts.front(), "program");
    texts.erase(texts.begin());
    return texts;
}

TEST(CommandLineText, IsCutAtBlanksAndTabs) {
    EXPECT_THAT(argumentsOf("run  --set \t SSID=Lab "), ElementsAre("run", "--set", "SSID=Lab"));
    EXPECT_THAT(argumentsOf(" \t "), IsEmpty());
}

TEST(CommandLineText, IsNotCutInQuotes) {
    EXPECT_THAT(argumentsOf(R"("SSID=The Lab" --set="a b"c "" "open end)"),
                ElementsAre("SSID=The Lab", "--set=a bc", "", "open end"));
}

TEST(CommandLineText, HasBackslashesThatMeanSomethingBeforeQuotesAlone) {
    EXPECT_THAT(
        argumentsOf(R"(C:\x\\y\ \"a\" "C:\x y\\" \\\"b \\"c d" last\)"),
        ElementsAre(R"(C:\x\\y\)", R"("a")", R"(C:\x y\)", R"(\"b)", R"(\c d)", R"(last\)"));
}

TEST(CommandLineText, HasAThirdQuoteAsACharacter) {
    EXPECT_THAT(argumentsOf(R"("a""b c"" d """e "f"""" g")"),
                ElementsAre(R"(a"b)", "c", "d", R"("e)", R"(f")", "g"));
}

TEST(CommandLineText, BeginsWithTheProgramsName) {
    const auto nameIn = [](const char* text) {
        return inUtf8(mrl::splitCommandLine(mrl::toUtf16(text)));
    };
    EXPECT_THAT(nameIn(R"("C:\A b\c.exe" d)"), ElementsAre(R"(C:\A b\c.exe)", "d"));
    EXPECT_THAT(nameIn(R"("C:\A b\"d e)"), ElementsAre(R"(C:\A b\)", "d", "e"));
    EXPECT_THAT(nameIn(R"(C:\a"b c" d)"), ElementsAre(R"(C:\a"b)", R"(c d)"));
    EXPECT_THAT(nameIn(R"("open end)"), ElementsAre("open end"));
    EXPECT_THAT(nameIn(" a"), ElementsAre("", "a"));
    EXPECT_THAT(nameIn(""), IsEmpty());
}

#ifdef _WIN32
// Every text of up to seven of the characters that mean something.
TEST(CommandLineText, IsCutAsTheSystemCutsIt) {
    constexpr std::wstring_view UNITS = L"a \"\\";
    constexpr unsigned LENGTH = 7;
    int differences = 0;
    for (unsigned number = 0; number < 1U << (2 * LENGTH); ++number) {
        std::wstring line = L"p ";
        for (unsigned place = 0; place < LENGTH; ++place) {
            line += UNITS[number >> (2 * place) & 3U];
        }
        int count = 0;
        LPWSTR* const expected = CommandLineToArgvW(line.c_str(), &count);
        ASSERT_NE(expected, nullptr);
        if (mrl::splitCommandLine(line) !=
            std::vector<mrl::CharString>(expected, expected + count)) {
            ADD_FAILURE() << mrl::toUtf8(line);
            ASSERT_LT(++differences, 10);
        }
        LocalFree(expected);
    }
}
#endif

} // namespace
