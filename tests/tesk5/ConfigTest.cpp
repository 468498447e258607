// A configuration file counts like options on the command line, which take precedence.
#include "FrameworkTest.h"

#include <support/ScriptedInput.h>

#include <commandline/CommandLine.h>
#include <commandline/ConfigFile.h>
#include <commandline/ConfigKeys.h>

#include <tesk5/Texts.h>

#include <regex>

namespace test {

namespace {

class Configurations : public FrameworkTest {
protected:
    Configurations() {
        registerNoting("Signal")
            ->addParameter(optionalParameter("SSID"))
            ->addParameter(
                DiagModule::createParameter("Limit", DataType::UINT32(), "7", false, true));
        registerNoting("Other")->addParameter(
            DiagModule::createParameter("more names", DataType::STRING(), "", true, true));
        registerNoting("Asks")->setInteractive(true);
    }

    /// A test that notes its device and the values of its parameters.
    tesk5::Test* registerNoting(const char* name) {
        return registerTest(name, [this, name](const DiagDevice& device) {
            std::string run = std::string(name) + " on " + device.name().utf8();
            for (const tesk5::Parameter* parameter : registry().findTest(name)->parameters()) {
                run += ", " + parameter->value().valueString().utf8();
            }
            m_runs.push_back(run);
            return TestResult::PASS();
        });
    }

    std::string config(const std::string& toml) { return fileWith("station.toml", toml); }

    /// Runs with this file and these further arguments; \return the exit value.
    int runWith(const std::string& toml, std::vector<std::string> arguments = {}) {
        m_runs.clear();
        forgetOutput();
        arguments.insert(arguments.begin(), {"run", "--config", config(toml)});
        return start(arguments);
    }

    /// The message about the file, after the name of the file.
    std::string refusal(const std::string& toml) {
        const std::vector<std::string> before = filesThere();
        EXPECT_EQ(runWith(toml), 64) << toml;
        EXPECT_THAT(m_runs, IsEmpty());
        EXPECT_EQ(output(), "");
        const std::string start =
            "example: the configuration file \"" + file("station.toml") + "\" cannot be used: ";
        const std::string end = "; mend it, or see list --config-template\n";
        EXPECT_THAT(errors(), testing::StartsWith(start));
        EXPECT_THAT(errors(), testing::EndsWith(end));
        if (errors().size() < start.size() + end.size()) {
            return errors();
        }
        return errors().substr(start.size(), errors().size() - start.size() - end.size());
    }

    std::vector<std::string> m_runs;
};

TEST_F(Configurations, ChooseTestsInTheirOrderAndDevices) {
    setDevices(2);
    EXPECT_EQ(runWith("tests = ['Asks', \"Signal\"]\n[devices]\nfilter = 'card 2'"), 0);
    EXPECT_THAT(m_runs, ElementsAre("Asks on Card 2", "Signal on Card 2, , 7"));
    EXPECT_EQ(runWith("tests = 'Asks'"), 0);
    EXPECT_THAT(m_runs, ElementsAre("Asks on Card 1", "Asks on Card 2"));
}

TEST_F(Configurations, GiveParametersOfTheTestsThatRunTheirValues) {
    EXPECT_EQ(runWith("[parameters]\nSSID = \"L\\u00e4b\"\nLimit = 40\n'more names' = ['a', 'b']"),
              0);
    EXPECT_THAT(m_runs, ElementsAre("Signal on Card 1, L\u00e4b, 40", "Other on Card 1, b"))
        << "of several values the last one counts";
    EXPECT_EQ(runWith("[parameters]\nSSID = 'Lab'", {"Other"}), 0) << errors();
    EXPECT_THAT(m_runs, ElementsAre("Other on Card 1, "));
}

TEST_F(Configurations, NameFilesBesideThemselvesOrByTheirAbsolutePath) {
    std::filesystem::create_directory(mrl::System::path(file("station")));
    const std::string there =
        fileWith("station/here.toml", "tests = ['Signal']\n[devices]\nfile = '../cards.json'\n"
                                      "[outputs]\njson = 'r.json'\nlog = 'r.log'\nlog-level = 0\n"
                                      "html = " +
                                          tesk5::tomlText(file("elsewhere.html")));
    fileWith("cards.json", R"([{"name": "Own", "capabilities": ["Wireless"]}])");
    EXPECT_EQ(startBare({"run", "--config", there}), 0) << errors();
    EXPECT_THAT(m_runs, ElementsAre("Signal on Own, , 7"));
    EXPECT_NE(bytesOfFile(file("station/r.json")), "");
    EXPECT_NE(bytesOfFile(file("station/r.log")), "");
    EXPECT_NE(bytesOfFile(file("elsewhere.html")), "") << "an absolute path";
    EXPECT_THAT(filesThere(),
                ElementsAre("cards.json", "devices.json", "elsewhere.html", "station"));
}

TEST_F(Configurations, YieldToTheCommandLineSettingBySetting) {
    const std::string toml = "tests = ['Other']\nlanguage = 'en'\n"
                             "[parameters]\nSSID = 'File'\nLimit = 1\n'more names' = ['a', 'b']\n"
                             "[devices]\nfilter = 'no such card'\n"
                             "[outputs]\njson = 'file.json'\nlog = 'file.log'\nlog-level = 5\n";
    EXPECT_EQ(runWith(toml, {"Signal", "--set", "Limit=2", "--device", "Card 1", "--json",
                             file("line.json"), "--log", file("line.log"), "--log-level", "0",
                             "--language", "en"}),
              0)
        << errors();
    EXPECT_THAT(m_runs, ElementsAre("Signal on Card 1, File, 2"));
    EXPECT_THAT(filesThere(), ElementsAre("devices.json", "line.json", "line.log", "station.toml"));
    EXPECT_NE(bytesOfFile(file("line.log")), "") << "level 0 logs";

    EXPECT_EQ(runWith("tests = ['Other']\n[parameters]\n'more names' = ['a', 'b']",
                      {"--set", "more names=c"}),
              0);
    EXPECT_THAT(m_runs, ElementsAre("Other on Card 1, c"));
    EXPECT_EQ(runWith("tests = ['Signal']\n[parameters]\nSSID = 'Lab'", {"--set", "SSID="}), 0);
    EXPECT_THAT(m_runs, ElementsAre("Signal on Card 1, , 7")) << "none is a value too";
}

TEST_F(Configurations, RequestEveryLineOfTheLog) {
    for (const bool full : {false, true}) {
        tesk5::CommandLine line;
        line.configFile = config(std::string("[outputs]\nfull-log = ") + (full ? "true" : "false"));
        EXPECT_EQ(tesk5::withConfiguration(line, registry()).fullLog, full);
    }
}

TEST_F(Configurations, KeepTheConsoleQuietAndColourIt) {
    EXPECT_EQ(runWith("[console]\nquiet = true"), 0);
    EXPECT_THAT(output(), Not(HasSubstr("Signal")));
    EXPECT_EQ(runWith("[console]\ncolor = 'always'"), 0);
    EXPECT_THAT(output(), HasSubstr("\x1B["));
    EXPECT_EQ(runWith("[console]\ncolor = 'always'", {"--color", "auto"}), 0);
    EXPECT_THAT(output(), Not(HasSubstr("\x1B[")));
}

TEST_F(Configurations, GiveRequiredParameters) {
    auto* required = DiagModule::createParameter("Key", DataType::STRING(), "", false, false);
    registerTest("Needs", TestResult::PASS())->addParameter(required);
    EXPECT_EQ(runWith("tests = ['Needs']\n[parameters]\nKey = 'x'"), 0) << errors();
    EXPECT_EQ(runWith("tests = ['Needs']"), 64);
}

TEST_F(Configurations, MayBeSavedWithAByteOrderMarkOrAsUtf16) {
    EXPECT_EQ(runWith("\xEF\xBB\xBFtests = ['Other']\r\n"), 0) << errors();
    EXPECT_THAT(m_runs, ElementsAre("Other on Card 1, "));
    std::string utf16 = "\xFF\xFE";
    for (const char letter : std::string("tests = ['Asks']\r\n")) {
        utf16 += letter;
        utf16 += '\0';
    }
    EXPECT_EQ(runWith(utf16), 0) << errors();
    EXPECT_THAT(m_runs, ElementsAre("Asks on Card 1"));
}

TEST_F(Configurations, AreRefusedWithPlaceAndNearestKnownKey) {
    const std::vector<std::pair<const char*, const char*>> mistakes = {
        {"language = 'en'\n  test = []",
         "line 2, column 3: there is no key \"test\", the nearest "
         "is \"tests\"; known are \"tests\", \"language\", "
         "\"require-tags\", \"tag-prompt\", \"console\", \"devices\", "
         "\"outputs\", \"parameters\", \"tag-patterns\", \"tags\""},
        {"[parameter]\nSSID = 'x'", "line 1, column 2: there is no key \"parameter\", the nearest "
                                    "is \"parameters\"; known are \"tests\", \"language\", "
                                    "\"require-tags\", \"tag-prompt\", \"console\", \"devices\", "
                                    "\"outputs\", \"parameters\", \"tag-patterns\", \"tags\""},
        {"zzz = 1\naaa = 1", "line 1, column 1: "}, // the first one in the file
        {"[parameters]\nSSDI = 'x'",
         "line 2, column 1: there is no key \"SSDI\" below [parameters], the nearest is \"SSID\"; "
         "known there are \"SSID\", \"Limit\", \"more names\""},
        {"[outputs]\nlog-lvel = 1\n[x]",
         "line 2, column 1: there is no key \"log-lvel\" below [outputs], the nearest is "
         "\"log-level\"; known there are"},
        {"[parameters]\nSSID = 'x'\ntests = ['Signal']",
         "line 3, column 1: \"tests\" is below [parameters] and belongs before the first line in "
         "brackets"},
        {"[devices]\nlog = 'x'", "line 2, column 1: \"log\" belongs below [outputs]"},
        {"SSID = 'x'", "line 1, column 1: \"SSID\" belongs below [parameters]"},
        {"tests = ['Signal',\n 'Signl']",
         "line 2, column 2: there is no test \"Signl\", the nearest is \"Signal\"; the tests are "
         "\"Signal\", \"Other\", \"Asks\""},
        {"tests = ['Signal', 'Signal']",
         "line 1, column 20: the test \"Signal\" is named more than once; name it once"},
        {"language = 'tlh'",
         "line 1, column 12: there are no texts in the language \"tlh\"; give one of "},
    };
    for (const auto& [toml, expected] : mistakes) {
        EXPECT_THAT(refusal(toml), testing::StartsWith(expected)) << toml;
    }
}

TEST_F(Configurations, AreRefusedForValuesOfTheWrongKind) {
    const std::vector<std::pair<const char*, const char*>> mistakes = {
        {"tests = 4", "line 1, column 9: tests takes a text in quotes or a list of such, not 4"},
        {"tests = [['Signal']]", "line 1, column 10: tests takes a text in quotes or a list of "
                                 "such, not a list"},
        {"parameters = 'x'",
         "line 1, column 14: [parameters] is a heading with settings below it, not a text"},
        {"[[outputs]]", "line 1, column 1: [outputs] is a heading with settings below it, not a "
                        "list"},
        {"[parameters]\nSSID = 12345", "line 2, column 8: SSID takes a text in quotes, not 12345"},
        {"[parameters]\nSSID = ['a', 'b']",
         "line 2, column 8: SSID takes a text in quotes, not a list"},
        {"[parameters]\nSSID.x = 1", "line 2, column 1: SSID takes a text in quotes, not a table"},
        {"[parameters]\nSSID = 1979-05-27",
         "line 2, column 8: SSID takes a text in quotes, not a time"},
        {"[parameters]\nSSID = \"a\\u0000b\"",
         "line 2, column 8: this text is empty or has a zero character in it"},
        {"[outputs]\nlog-level = 6",
         "line 2, column 13: log-level takes a whole number from 0 to 5, not 6"},
        {"[console]\nquiet = 'yes'",
         "line 2, column 9: quiet takes true or false, without quotes, not a text"},
        {"[console]\ncolor = 'red'", "line 2, column 9: color takes \"auto\", \"always\" or "
                                     "\"never\", not \"red\""},
        {"[outputs]\njson = ''",
         "line 2, column 8: this text is empty or has a zero character in it"},
    };
    for (const auto& [toml, expected] : mistakes) {
        EXPECT_EQ(refusal(toml), expected) << toml;
    }
    const std::vector<std::pair<const char*, const char*>> noLimits = {
        {"'40'", "a text"},
        {"4294967296", "4294967296"},
        {"-1", "-1"},
        {"4e1", "a number with a decimal point"},
        {"true", "true or false"},
    };
    for (const auto& [value, words] : noLimits) {
        EXPECT_EQ(refusal(std::string("[parameters]\nLimit = ") + value),
                  std::string("line 2, column 9: Limit takes a whole number from 0 to 4294967295, "
                              "not ") +
                      words);
    }
}

class NumbersInConfigurations : public Configurations {
protected:
    NumbersInConfigurations() {
        registerNoting("Level")
            ->addParameter(
                DiagModule::createParameter("Level", DataType::DECIMAL(), "-70", false, true)
                    ->setRange({-110, -10, "dBm"}))
            ->addParameter(
                optionalParameter("Samples", DataType::INTEGER())->setRange({5, 1000, ""}))
            ->addParameter(optionalParameter("Band", DataType::CHOICE())->setChoices({"2.4", "5"}));
    }

    std::string valuesFor(const std::string& parameters) {
        EXPECT_EQ(runWith("tests = 'Level'\n[parameters]\n" + parameters), 0) << errors();
        return m_runs.empty() ? "" : m_runs.front();
    }
};

TEST_F(NumbersInConfigurations, AreTomlNumbersAndChoicesAreTexts) {
    EXPECT_EQ(valuesFor("Level = -57.5\nSamples = 20\nBand = '5'"),
              "Level on Card 1, -57.5, 20, 5");
    EXPECT_EQ(valuesFor("Level = -60\nSamples = 2e1"), "Level on Card 1, -60, 20, ");
    EXPECT_EQ(valuesFor("Level = -0.1e3"), "Level on Card 1, -100, 0, ");
}

TEST_F(NumbersInConfigurations, AreRefusedAtTheirPlace) {
    const std::vector<std::pair<const char*, const char*>> mistakes = {
        {"Level = 70", "line 2, column 9: \"70\" lies outside -110 to -10\u00A0dBm, and -70 lies "
                       "inside; did you mean -70?"},
        {"Level = -70.12345", "line 2, column 9: \"-70.12345\" has more than 3 digits behind the "
                              "decimal point; round it"},
        {"Level = '-70'", "line 2, column 9: Level takes a number, without quotes, not a text"},
        {"Level = -inf", "line 2, column 9: Level takes a number, without quotes, not a number "
                         "with a decimal point"},
        {"Level = 1e300", nullptr},
        {"Samples = 15.5",
         "line 2, column 11: \"15.5\" is not a whole number; give one from 5 to 1000"},
        {"Band = 5", "line 2, column 8: Band takes a text in quotes, not 5"},
        {"Band = '7'", "line 2, column 8: \"7\" is no choice; give one of \"2.4\", \"5\""},
    };
    for (const auto& [toml, expected] : mistakes) {
        const std::string found = refusal(std::string("[parameters]\n") + toml);
        EXPECT_THAT(found, expected == nullptr ? HasSubstr("is not a number in decimal digits")
                                               : HasSubstr(expected));
    }
}

TEST_F(NumbersInConfigurations, AreDescribedInTheTemplateWhichIsAccepted) {
    EXPECT_EQ(start({"list", "--config-template"}), 0);
    const std::string text = output();
    EXPECT_THAT(text, HasSubstr("# A number, -110 to -10\u00A0dBm; for Level\n#Level = -70\n"));
    EXPECT_THAT(text, HasSubstr("# A whole number, 5 to 1000; for Level\n#Samples = 5\n"));
    EXPECT_THAT(text, HasSubstr("# One of \"2.4\", \"5\"; for Level\n#Band = \"2.4\"\n"));
    const std::string settings = std::regex_replace(text.substr(text.find("[parameters]")),
                                                    std::regex("(^|\n)#(?! )"), "$1");
    EXPECT_EQ(valuesFor(settings.substr(settings.find('\n'),
                                        settings.find("[devices]") - settings.find('\n'))),
              "Level on Card 1, -70, 5, 2.4");
}

TEST_F(Configurations, AreRefusedWhenTheyAreNotToml) {
    for (const auto& [toml, place] : std::vector<std::pair<std::string, const char*>>{
             {"tests = [", "line 1, column "},
             {"a = 1\na = 2", "line 2, column "},
             {"\n\noops", "line 3, column "},
             {"a = '\xFF'", "line 1, column "},
             {"[!]", "line 1, column "},         // not the beginning of a key
             {"a = 0\u00fc", "line 1, column "}, // a letter where a blank could stand
             {"a = " + std::string(1000, '[') + std::string(1000, ']'), "line 1, column "},
             {std::string("a = 'x\0'", 8), "line 1, column "},
         }) {
        EXPECT_THAT(refusal(toml), testing::StartsWith(place)) << toml;
    }
}

TEST_F(Configurations, AreRefusedForATextWithoutQuotesWithTheLineToWrite) {
    EXPECT_THAT(refusal("\n[parameters]\n  SSID = Lab 5G # bench\nx = 1"),
                testing::AllOf(testing::StartsWith("line 3, column "),
                               HasSubstr("a text stands in quotes: SSID = \"Lab 5G\"")));
    EXPECT_THAT(refusal("a = B\u00fcro"), HasSubstr("a text stands in quotes: a = \"B\u00fcro\""));
    for (const char* other : {"a = \"Lab", "a = 0x", "a =", "oops"}) {
        EXPECT_THAT(refusal(other), Not(HasSubstr("in quotes"))) << other;
    }
}

TEST_F(Configurations, AreRefusedForKeysSoDeepThatReadingThemWouldExhaustTheStack) {
    std::string path;
    while (path.size() < 60000) {
        path += "a.";
    }
    constexpr const char* EXPECTED = "there are more than 2000 dots up to here";
    EXPECT_EQ(refusal(path + "a = 1"), std::string("line 1, column 4002: ") + EXPECTED);
    EXPECT_EQ(refusal("\n[" + path + "a]"), std::string("line 2, column 4003: ") + EXPECTED);
    path.resize(4000);
    EXPECT_THAT(refusal(path + "a = 1"), testing::StartsWith("line 1, column 1: "));
    EXPECT_THAT(refusal("[" + path + "a]"), testing::StartsWith("line 1, column 2: "));
    std::string nested;
    for (int depth = 0; depth < 100; ++depth) {
        nested += "[{" + path.substr(0, 40) + "a = ";
    }
    EXPECT_THAT(refusal("a = " + nested), testing::StartsWith("line 1, column "));
}

TEST_F(Configurations, ThatCannotBeReadAreRefused) {
    const auto refusalOf = [this](const std::string& path) {
        forgetOutput();
        EXPECT_EQ(start({"run", "--config", path}), 64);
        return errors();
    };
    EXPECT_THAT(refusalOf(file("missing.toml")), HasSubstr("missing.toml\" cannot be used: "));
    std::filesystem::create_directory(mrl::System::path(file("folder")));
    EXPECT_THAT(refusalOf(file("folder")), HasSubstr("cannot be used: it is a directory; "));
    fileWith("large.toml", std::string(65537, '\n'));
    EXPECT_THAT(refusalOf(file("large.toml")), HasSubstr("cannot be used: it is too large; "));
    EXPECT_THAT(m_runs, IsEmpty());
}

TEST_F(Configurations, AreNotOverwrittenByTheirOwnReport) {
    EXPECT_EQ(runWith("[outputs]\njson = 'station.toml'"), 64);
    EXPECT_THAT(errors(), HasSubstr("--config and --json both name"));
    EXPECT_EQ(bytesOfFile(file("station.toml")), "[outputs]\njson = 'station.toml'");
}

TEST_F(Configurations, GoWithRunAlone) {
    EXPECT_EQ(start({"list", "--config", config("")}), 64);
    EXPECT_EQ(start({"run", "--config-template"}), 64);
    EXPECT_THAT(m_runs, IsEmpty());
}

class ConfigTemplates : public Configurations {
protected:
    std::string printed() {
        forgetOutput();
        EXPECT_EQ(start({"list", "--config-template"}), 0);
        return output();
    }
};

TEST_F(ConfigTemplates, AreAcceptedAsTheyArePrintedAndChangeNothing) {
    EXPECT_EQ(runWith(printed()), 0) << errors();
    EXPECT_THAT(m_runs, ElementsAre("Signal on Card 1, , 7", "Other on Card 1, "));
    EXPECT_THAT(filesThere(), ElementsAre("devices.json", "station.toml"));
}

TEST_F(ConfigTemplates, AreAcceptedWithEverySettingUncommented) {
    // All but --wsjf, which needs tags that no setting can have a default for.
    const std::string all = std::regex_replace(printed(), std::regex("(^|\n)#(?! )(?!wsjf)"), "$1");
    fileWith("cards.json", R"([{"name": "Intel", "capabilities": ["Wireless"]}])");
    std::filesystem::remove(mrl::System::path(file("devices.json")));
    test::ScriptedInput person;
    tesk5::RunContext::current().input = &person;
    person.types("B0001");
    EXPECT_EQ(startBare({"run", "--config", config(all)}), 0) << errors() << all;
    EXPECT_EQ(person.asked, 1);
    EXPECT_EQ(m_runs.size(), 3U);
    EXPECT_THAT(m_runs, testing::Each(HasSubstr(" on Intel")));
    EXPECT_THAT(filesThere(), testing::IsSupersetOf({"report.json", "antenna.log"}));
}

TEST_F(ConfigTemplates, DescribeEveryParameter) {
    EXPECT_THAT(printed(), HasSubstr("[parameters]\n"
                                     "# A text; for Signal\n"
                                     "#SSID = \"\"\n"
                                     "\n"
                                     "# A whole number; for Signal\n"
                                     "#Limit = 7\n"
                                     "\n"
                                     "# A text; a list gives several; for Other\n"
                                     "#\"more names\" = \"\"\n"));
}

TEST(TomlTexts, AreQuotedSoThatTheyMeanTheSame) {
    EXPECT_EQ(tesk5::tomlText("a\"b\\c\n\x7F\u00e4"), "\"a\\\"b\\\\c\\u000A\\u007F\u00e4\"");
    EXPECT_EQ(tesk5::tomlKey("log-level_1"), "log-level_1");
    EXPECT_EQ(tesk5::tomlKey("a b"), "\"a b\"");
    EXPECT_EQ(tesk5::tomlKey(""), "\"\"");
}

} // namespace

} // namespace test
