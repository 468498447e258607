#include <libUikit/CommandLineParser.h>

#include <support/HelperProgram.h>

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using Texts = std::vector<std::string>;

Texts textsOf(libUikit::CommandLineParser& parser) {
    const char** const argv = parser.argv();
    EXPECT_EQ(argv[parser.argc()], nullptr);
    return {argv, argv + parser.argc()};
}

// The arguments that a program started with `arguments` sees.
Texts seenBy(const std::wstring& arguments) {
    const test::HelperRun run = test::runHelper(UIKIT_ARGUMENTS_PROBE, arguments);
    EXPECT_EQ(run.code, 0U) << "argv does not end with a null pointer";
    Texts texts;
    for (std::size_t at = 0; at < run.output.size(); at += texts.back().size() + 1) {
        texts.emplace_back(run.output.c_str() + at);
    }
    return texts;
}

TEST(CommandLineParser, BeginsWithTheModulesNameInUtf8) {
    libUikit::CommandLineParser parser(mrl::String(L"Messger\u00e4t"));
    EXPECT_EQ(parser.argc(), 1);
    EXPECT_EQ(textsOf(parser), Texts{"Messger\xc3\xa4t"});
}

TEST(CommandLineParser, GivesArgumentsAsTheyWereTyped) {
    EXPECT_EQ(seenBy(L"run --json /tmp/x -q \"C:\\x y\" - / -- \"\" last"),
              (Texts{"probe.k5x", "run", "--json", "/tmp/x", "-q", "C:\\x y", "-", "/", "--", "",
                     "last"}));
}

TEST(CommandLineParser, GivesOtherScriptsInUtf8) {
    EXPECT_EQ(seenBy(L"--ssid=Caf\u00e9 \u65e5\u672c -\U0001F4F6"),
              (Texts{"probe.k5x", "--ssid=Caf\xc3\xa9", "\xe6\x97\xa5\xe6\x9c\xac",
                     "-\xf0\x9f\x93\xb6"}));
}

TEST(CommandLineParser, GivesNoArgumentsWhenThereAreNone) {
    EXPECT_EQ(seenBy(L""), Texts{"probe.k5x"});
}

TEST(CommandLineParser, PutsADashBeforeAFlagThatIsNotTheProcessesOwn) {
    libUikit::CommandLineParser parser(mrl::String("module"));
    parser.ParseParam(L"never typed", TRUE, FALSE);
    parser.ParseParam(L"plain", FALSE, TRUE);
    EXPECT_EQ(textsOf(parser), (Texts{"module", "-never typed", "plain"}));
}

} // namespace
