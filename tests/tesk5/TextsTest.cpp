// The choice of the language, and the texts in it. The files of a language are read once, so each
// test has a language of its own.
#include "FrameworkTest.h"

#include <tesk5/Language.h>
#include <tesk5/Texts.h>

#include <cstdlib>

namespace test {

namespace {

using tesk5::Language;
using tesk5::message;
using testing::Contains;

class SpokenTexts : public OwnTexts {};

TEST_F(SpokenTexts, FillTheirPlaceholders) {
    EXPECT_EQ(message("WEAK", {{"Strength", mrl::Uint32{7}}, {"Name", "{Strength}"}}),
              "The signal of {Strength} is 7%.");
    EXPECT_EQ(message("PLAIN"), "Something happened.");
    EXPECT_EQ(message("NO_SUCH_KEY", {{"Name", "x"}}), "NO_SUCH_KEY");
}

TEST_F(SpokenTexts, ComeInALanguageThatAFileBringsForModuleAndFramework) {
    EXPECT_FALSE(Language::current().set("nl"));
    write("example", "nl", R"({"WEAK": "Het signaal van {Name} is {Strength}%."})");
    write("tesk5", "nl", R"({"LIST_TESTS": "Tests van deze pc"})");
    EXPECT_THAT(tesk5::Language::available(), Contains("nl"));
    EXPECT_TRUE(Language::current().set("nl"));
    EXPECT_EQ(Language::current().tag(), "nl");
    EXPECT_EQ(message("WEAK", {{"Name", "Lab"}, {"Strength", mrl::Uint32{7}}}),
              "Het signaal van Lab is 7%.");
    EXPECT_EQ(message("LIST_TESTS"), "Tests van deze pc");
    EXPECT_EQ(message("LIST_DEVICES"), "Devices") << "the file lacks it";
    EXPECT_EQ(message("PLAIN"), "Something happened.");
}

TEST_F(SpokenTexts, OfARegionAreThoseOfItsLanguage) {
    write("tesk5", "da", R"({"LIST_TESTS": "Prøver"})");
    EXPECT_TRUE(Language::current().set("DA_dk"));
    EXPECT_EQ(Language::current().tag(), "da");
    EXPECT_EQ(message("LIST_TESTS"), "Prøver");
}

TEST_F(SpokenTexts, StayInTheLanguageInForceWhenThereAreNone) {
    for (const char* tag : {"xx", "../../x", "de/../x", "nul", "\n", "C"}) {
        EXPECT_FALSE(Language::current().set(tag)) << tag;
        EXPECT_EQ(Language::current().tag(), "en");
    }
}

TEST_F(SpokenTexts, DecideHowLabelsAndListsArePunctuated) {
    write("tesk5", "br", R"({"LIST_NAME_AND_VALUE": "{Name} : {Value}", "LIST_HEADING": "{Text} :",
                             "LIST_COMMA": "{List} + {Item}", "LIST_SEMICOLON": "{List} ; {Item}"})");
    g_module.examine = [](const auto&, auto, tesk5::Findings& findings) {
        findings.push_back({"PLAIN", false, {}});
    };
    registerTest("A", [](const DiagDevice&) {
        auto* event = DiagModule::createEvent("WEAK");
        DiagModule::error(event->setVariable("Limit", mrl::Uint32{30}), "modules/a.cpp", 10);
        DiagModule::surveyed({"VISIBLE", "%", 0, 100, {}});
        return TestResult::FAIL();
    });
    registerThrowing("B", TeskException("oops"));
    start({"run", "--language", "br", "--html", file("r.html"), "--junit", file("r.xml")});
    for (const char* line : {"  error: The signal of {Name} is {Strength}%.\n         Limit : 30\n",
                             "  possible cause : Something happened.\n", "s : oops\n",
                             "(1 INTERNALERROR + 1 FAIL) ; exit value "}) {
        EXPECT_THAT(output(), HasSubstr(line));
    }
    EXPECT_THAT(bytesOfFile(file("r.html")), HasSubstr("<bdi>Limit</bdi> : <bdi>30</bdi>"));
    EXPECT_THAT(bytesOfFile(file("r.xml")), HasSubstr("VISIBLE :\n"));
    forgetOutput();
    start({"doctor", "--language", "br"});
    EXPECT_THAT(output(), testing::StartsWith("ok : The service answers.\n"));
    forgetOutput();
    registerThrowing("C", std::runtime_error("no memory"));
    EXPECT_THROW(start({"run", "C", "--language", "br"}), std::runtime_error);
    EXPECT_THAT(errors(), HasSubstr("ends here : no memory\n"));
}

TEST_F(SpokenTexts, AreUsedByTheWholeProgram) {
    write("tesk5", "nb", R"({"LIST_TESTS": "Tester", "INPUT_UNKNOWN_TEST": "ukjent: {Name}",
                             "INPUT_UNKNOWN_LANGUAGE": "ukjent språk: {Language}"})");
    EXPECT_EQ(start({"list", "--language", "nb"}), 0);
    EXPECT_THAT(output(), testing::StartsWith("Tester\n"));
    forgetOutput();
    EXPECT_EQ(start({"--language=nb", "run", "{Name}"}), 64);
    EXPECT_THAT(errors(), HasSubstr("example: ukjent: {Name}\n"));
    EXPECT_EQ(start({"--language", "xx", "list"}), 64);
    EXPECT_THAT(errors(), HasSubstr("example: ukjent språk: xx\n")) << "the language in force";
    Language::current().set("en");
    forgetOutput();
    EXPECT_EQ(start({"list", "--language", "../xx"}), 64);
    EXPECT_EQ(errors(),
              "example: there are no texts in the language \"../xx\"; give one of en, nb\n");
    EXPECT_EQ(output(), "");
}

#ifndef _WIN32
// On Windows the system decides; the tests of the executable cover that.
TEST_F(SpokenTexts, ComeInTheLanguageOfTheEnvironment) {
    write("tesk5", "cs", R"({"LIST_TESTS": "Testy"})");
    const char* const set = std::getenv("LC_ALL");
    const std::string before = set != nullptr ? set : "";
    for (const auto& [locale, tag, text] :
         {std::tuple("cs_CZ.UTF-8", "cs", "Testy"), std::tuple("C.UTF-8", "en", "Tests"),
          std::tuple("POSIX", "en", "Tests"), std::tuple("xx_XX.UTF-8", "en", "Tests"),
          std::tuple("../../cs", "en", "Tests")}) {
        setenv("LC_ALL", locale, 1);
        EXPECT_TRUE(Language::current().set(""));
        EXPECT_EQ(Language::current().tag(), tag) << locale;
        EXPECT_EQ(message("LIST_TESTS"), text) << locale;
    }
    setenv("LC_ALL", before.c_str(), 1);
}
#endif

} // namespace

} // namespace test
