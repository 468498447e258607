#include "Reports.h"

#include <run/Tags.h>

#include <support/ScriptedInput.h>

#include <tesk5/BadInput.h>
#include <tesk5/Texts.h>

#include <chrono>

namespace {

using tesk5::TagPattern;
using tesk5::TestResult;
using test::HasSubstr;
using test::Reports;
using testing::StartsWith;

const std::string HUNDRED(100, 'x');

class Tags : public Reports {
protected:
    Tags() {
        registerTest("A", [this](const auto&) {
            ++m_runs;
            return TestResult::PASS();
        });
        tesk5::RunContext::current().input = &m_person;
    }

    /// The line that refuses a run with these arguments; nothing has run.
    std::string refusal(std::vector<std::string> arguments) {
        const int before = m_runs;
        EXPECT_EQ(startWithReports(std::move(arguments)), 64);
        EXPECT_EQ(m_runs, before);
        return errors();
    }
    std::string refusalOf(const std::string& toml) {
        return refusal({"--config", fileWith("station.toml", toml)});
    }
    test::ordered_json tagsWith(std::vector<std::string> arguments) {
        EXPECT_EQ(startWithReports(std::move(arguments)), 0) << errors();
        return json().value("tags", test::ordered_json());
    }

    test::ScriptedInput m_person;
    int m_runs = 0;
};

TEST_F(Tags, AreInEveryOutputInTheirOrder) {
    startWithReports({"--tag", "serial=A<1", "--tag", "x.Y_z-1=é=ü"});
    EXPECT_EQ(json().at("tags").dump(), R"({"serial":"A<1","x.Y_z-1":"é=ü"})");
    EXPECT_THAT(junit(), HasSubstr("<property name=\"tag.serial\" value=\"A&lt;1\"/>\n"
                                   "      <property name=\"tag.x.Y_z-1\" value=\"é=ü\"/>"));
    EXPECT_THAT(html(), HasSubstr("<dt><bdi>Serial number of the unit</bdi></dt>"
                                  "<dd><bdi>A&lt;1</bdi></dd>"));
    EXPECT_THAT(html(), HasSubstr("<dt><bdi>x.Y_z-1</bdi></dt><dd><bdi>é=ü</bdi></dd>"));
    EXPECT_LT(html().find("A&lt;1"), html().find("<h2>")) << "who comes before what";
    EXPECT_THAT(output(), HasSubstr("Run: " + json().at("runIdentifier").get<std::string>() +
                                    "\n  serial: A<1\n  x.Y_z-1: é=ü\n"));
    startWithReports({"--tag", "serial=A1", "--events"});
    EXPECT_EQ(events()[0].at("tags").dump(), R"({"serial":"A1"})");
    EXPECT_EQ(types().back(), "runEnded") << "nothing but events is on standard output";
}

TEST_F(Tags, AreAbsentWhenThereAreNone) {
    startWithReports();
    EXPECT_FALSE(json().contains("tags"));
    EXPECT_THAT(junit(), test::Not(HasSubstr("\"tag.")));
    EXPECT_THAT(output(), test::Not(HasSubstr("Run:")));
}

TEST_F(Tags, OfTheCommandLineWinOverThoseOfTheConfiguration) {
    const std::string station =
        fileWith("station.toml", "[tags]\nserial = \"FILE\"\nstation = \"L3\"\n");
    EXPECT_EQ(tagsWith({"--config", station, "--tag", "serial=LINE"}).dump(),
              R"({"serial":"LINE","station":"L3"})");
}

TEST_F(Tags, LoseTheLineEndOfAScanner) {
    EXPECT_EQ(tagsWith({"--tag", "serial=A1\r\n", "--tag", "part=P\t"}).dump(),
              R"({"serial":"A1","part":"P"})");
    EXPECT_EQ(refusal({"--tag", "serial=A1\rB"}),
              "example: the value of the tag serial has a control character: \"A1\\rB\"; give it "
              "without\n");
}

TEST_F(Tags, AreRefusedBeforeAnythingRunsWhenTheyCannotBeUsed) {
    const std::string longest = HUNDRED + HUNDRED;
    EXPECT_EQ(tagsWith({"--tag", "a=" + longest}).at("a"), longest);
    EXPECT_THAT(tagsWith({"--tag", std::string(64, 'n') + "=1"}).size(), 1U);
    const struct {
        std::vector<std::string> arguments;
        const char* line;
    } rows[] = {
        {{"--tag", "a=" + std::string(10000, '1')},
         "the value of the tag a has 10000 characters; give it 200 at most"},
        {{"--tag", "a=" + longest + "é"}, "the value of the tag a has 201 characters;"},
        {{"--tag", "a="}, "the tag a has no value;"},
        {{"--tag", "a= \r\n"}, "the tag a has no value;"},
        {{"--tag", "a=\x1b[2J"}, "the value of the tag a has a control character: \"\\x1B[2J\""},
        {{"--tag", "a=1\xE2\x80\xAE"
                   "2"},
         "the value of the tag a has a control character: "},
        {{"--tag", "serial"}, "--tag \"serial\" is not NAME=VALUE; "},
        {{"--tag", "=1"}, "--tag \"=1\" is not NAME=VALUE; "},
        {{"--tag", "sérial=1"}, "\"sérial\" cannot be the name of a tag; "},
        {{"--tag", std::string(65, 'n') + "=1"}, "\"nnnnnnnn"},
        {{"--tag", "a=1", "--tag", "a=2"}, "the tag a is given more than once; give it once"},
        {{"--require-tags", "serial,station", "--tag", "serial=1"},
         "the tag station is required and has no value; give it with --tag station=VALUE"},
        {{"--require-tags", "serial,"}, "\"\" cannot be the name of a tag; "},
        {{"--tag", "a=", "--require-tags", "b"}, "the tag a has no value;"},
        {{"--tag-prompt", "a b"}, "\"a b\" cannot be the name of a tag; "},
    };
    for (const auto& row : rows) {
        EXPECT_THAT(refusal(row.arguments), StartsWith(std::string("example: ") + row.line));
    }
    EXPECT_EQ(m_runs, 2);
}

TEST_F(Tags, HaveNamesOfLettersDigitsAndThreeSigns) {
    EXPECT_EQ(tagsWith({"--tag", "azAZ09-_.=1"}).dump(), R"({"azAZ09-_.":"1"})");
    for (const char* name : {"`", "{", "@", "[", "/", ":", "a,b"}) {
        EXPECT_THAT(refusal({"--tag", std::string(name) + "=1"}),
                    HasSubstr("cannot be the name of a tag"))
            << name;
    }
}

TEST_F(Tags, WithAFixedMeaningAreTheseEach) {
    std::vector<std::string> known;
    std::vector<std::string> arguments;
    for (const tesk5::KnownTag& tag : tesk5::knownTags()) {
        known.push_back(std::string(tag.name) + ": " + tesk5::message(tag.meaning) + ", " +
                        tag.example);
        arguments.insert(arguments.end(), {"--tag", std::string(tag.name) + "=" + tag.example});
    }
    EXPECT_THAT(known,
                testing::ElementsAre(
                    "serial: Serial number of the unit, A1234",
                    "part: Part number of the unit, 4711", "revision: Revision of the part, C",
                    "station: Test station, L3-07", "fixture: Fixture that holds the unit, F2",
                    "operator: Operator, 17", "batch: Batch or order, 2026-W47",
                    "sequence: Number of the attempt at this unit, 1"));
    EXPECT_EQ(tagsWith(arguments).size(), known.size()) << "an example is a usable value";
}

TEST_F(Tags, OfAConfigurationAreRefusedWithTheirPlace) {
    EXPECT_THAT(refusalOf("[tags]\nserial = \"a\\u0007\"\n"), HasSubstr("line 2, column 10: the "
                                                                        "value of the tag serial"));
    EXPECT_THAT(refusalOf("[tags]\n\"a b\" = \"1\"\n"), HasSubstr("\"a b\" cannot be the name"));
    EXPECT_THAT(refusalOf("[tags]\npart = 4711\n"), HasSubstr("line 2, column 8"));
    EXPECT_THAT(refusalOf("require-tags = [\"serial\"]\n"),
                HasSubstr("the tag serial is required"));
    std::string many = "[tags]\n";
    for (int i = 0; i < 100; ++i) {
        many += "t" + std::to_string(i) + " = \"1\"\n";
    }
    EXPECT_EQ(tagsWith({"--config", fileWith("station.toml", many)}).size(), 100U);
    EXPECT_THAT(refusalOf(many + "last = \"1\"\n"),
                HasSubstr("there are too many tags; use 100 at most"));
}

TEST_F(Tags, MatchTheirPatternsAsAWhole) {
    const std::string station =
        fileWith("station.toml", "[tag-patterns]\nserial = \"[A-Z]{2}[0-9]{4}\"\n");
    EXPECT_EQ(tagsWith({"--config", station, "--tag", "serial=AB1234"}).at("serial"), "AB1234");
    EXPECT_EQ(tagsWith({"--config", station, "--tag", "part=any"}).at("part"), "any");
    for (const char* wrong : {"AB12345", "xAB1234", "ab1234"}) {
        EXPECT_EQ(refusal({"--config", station, "--tag", std::string("serial=") + wrong}),
                  std::string("example: \"") + wrong +
                      "\" does not match the pattern of the tag serial, [A-Z]{2}[0-9]{4}; correct "
                      "the value, or the pattern in [tag-patterns]\n");
    }
}

TEST_F(Tags, AreNotMatchedByWhatIsNoRegularExpressionOrWouldExhaustTheProgram) {
    for (const char* wrong : {"[A-", "(a", "*", "a{2,1}", "\\"}) {
        EXPECT_THAT(refusalOf(std::string("[tag-patterns]\nserial = '") + wrong + "'\n"),
                    HasSubstr("line 2, column 10: the pattern of the tag serial is no regular "
                              "expression: "))
            << wrong;
    }
    for (const std::string& large :
         {HUNDRED + HUNDRED + "x", std::string("a{1001}"), std::string("(a?){999}"),
          std::string("((a{20}){20}){20}"), std::string("(((a{40000}){40000}){40000}){40000}"),
          std::string("a{99999999999999999999}"), std::string("([0-9]{2}:){400}")}) {
        EXPECT_THAT(refusalOf("[tag-patterns]\nserial = '" + large + "'\n"),
                    HasSubstr("the pattern of the tag serial is too large; "))
            << large;
    }
}

TEST(TagPatterns, AreTooLargeByWhatTheirRepetitionsStandFor) {
    for (const char* pattern :
         {"a{1000}", "[0-9a-f]{1000}", R"([\](]{1000})", R"(\({1000})", R"([a]\d{999})",
          "(ab){333}c", "(b(c)){250}", "(a)(b)c{996}", "a{999}b{0}"}) {
        EXPECT_NO_THROW(TagPattern("serial", pattern)) << pattern;
    }
    for (const char* pattern :
         {"a{1001}", "[0-9a-f]{1001}", R"([\](]{1001})", R"(\({1001})", R"([a]\d{1000})",
          "(ab){333}cd", "a(b(c)){250}", "(a)(b)c{997}", "a{2,1001}", "a{1001,}"}) {
        EXPECT_THROW(TagPattern("serial", pattern), tesk5::BadInput) << pattern;
    }
}

TEST(TagPatterns, AreMatchedInTimeThatDoesNotExplode) {
    const TagPattern hostile("serial", "(a|a)*(a|aa)+((a+)+)+b");
    EXPECT_FALSE(hostile.matches(std::string(200, 'a')));
    EXPECT_TRUE(hostile.matches(std::string(199, 'a') + "b"));
    const TagPattern address("mac", "([0-9A-F]{2}:){5}[0-9A-F]{2}");
    EXPECT_TRUE(address.matches("02:00:00:00:01:0F"));
    EXPECT_FALSE(address.matches("02:00:00:00:01"));
}

TEST_F(Tags, AreAskedForBeforeAnythingRuns) {
    m_person.types("A1\r", [this] { EXPECT_EQ(m_runs, 0); });
    m_person.types("17");
    EXPECT_EQ(tagsWith({"--tag", "station=L3", "--tag-prompt", "serial", "--tag-prompt", "operator",
                        "--require-tags", "serial"})
                  .dump(),
              R"({"station":"L3","serial":"A1","operator":"17"})");
    EXPECT_EQ(errors(), "Tag serial: Tag operator: ");
    EXPECT_EQ(m_runs, 1);
}

TEST_F(Tags, AreAskedForAgainAfterAnAnswerThatCannotBeUsed) {
    const std::string station =
        fileWith("station.toml", "tag-prompt = \"serial\"\n[tag-patterns]\nserial = \"[A-Z]+\"\n");
    m_person.types("");
    m_person.types("a1");
    m_person.types("A");
    EXPECT_EQ(tagsWith({"--config", station}).at("serial"), "A");
    EXPECT_THAT(errors(), HasSubstr("Tag serial: the tag serial has no value; "));
    m_person.types("\xFF");
    m_person.types("A\x07");
    m_person.types(std::string(10000, 'A'));
    EXPECT_THAT(refusal({"--config", station}),
                testing::EndsWith("Tag serial: example: the value of the tag serial has 10000 "
                                  "characters; give it 200 at most\n"))
        << "the last reason stands once";
    EXPECT_EQ(m_person.asked, 6);
    EXPECT_THAT(refusal({"--config", station}),
                testing::EndsWith("the tag serial was asked for, and the input ended without an "
                                  "answer; answer, or give it with --tag serial=VALUE\n"));
}

TEST_F(Tags, ThatTheCommandLineGivesAreNotAskedFor) {
    EXPECT_EQ(tagsWith({"--tag-prompt", "serial", "--tag", "serial=A1"}).at("serial"), "A1");
    EXPECT_EQ(m_person.asked, 0);
}

TEST_F(Tags, OfACheckAreCheckedAndNotAskedFor) {
    EXPECT_EQ(start({"run", "--check", "--tag-prompt", "serial", "--require-tags", "serial"}), 0);
    EXPECT_EQ(start({"run", "--check", "--require-tags", "serial"}), 64);
    EXPECT_EQ(m_person.asked, 0);
}

} // namespace
