// What the command history makes of journals.
#include "Reports.h"

#include <history/JournalEntry.h>
#include <history/JournalFiles.h>

namespace test {

namespace {

/// A run as its line says it.
struct RunLine {
    std::string time; ///< "20T19:55" of November 2026
    std::string result = "PASS";
    std::string serial = {};
    std::string station = "L1";
    std::string more = {}; ///< further members
    std::string level = "-50";
    std::string test = "Level";
};

std::string textOf(const RunLine& run) {
    static int count = 0;
    const std::string serial =
        run.serial.empty() ? std::string() : R"("serial":")" + run.serial + R"(",)";
    return R"({"journal":1,"runIdentifier":")" + std::to_string(++count) +
           R"(","started":"2026-11-)" + run.time + R"(:00.000Z","ended":"x","exit":0,"result":")" +
           run.result + R"(",)" + run.more + R"("tags":{)" + serial + R"("station":")" +
           run.station + R"("},"tests":[{"test":")" + run.test +
           R"(","device":{"name":"Card","properties":{"result":"x"}},"result":")" + run.result +
           R"(","measurements":[{"name":"Level","value":)" + run.level +
           R"(,"unit":"dBm","lowest":-100,"highest":0,"limits":[{"name":"FailingLevel",)"
           R"("value":-70.5,"severity":"error","kept":"atLeast"}],"brokenLimit":null},)"
           R"({"name":"Other","value":1,"unit":"","lowest":0,"highest":9,"limits":[]}]}]})";
}

class History : public Reports {
protected:
    std::string journal(const std::vector<RunLine>& runs, const std::string& end = "\n") const {
        std::string text;
        for (const RunLine& run : runs) {
            text += textOf(run) + end;
        }
        return fileWith("j.jsonl", text);
    }
    ordered_json historyOf(const std::string& path, std::vector<std::string> more = {}) {
        forgetOutput();
        more.insert(more.begin(), {"history", path, "--format", "json"});
        EXPECT_EQ(startBare(more), 0) << errors();
        return ordered_json::parse(output());
    }
    static std::string yieldOf(const ordered_json& json) {
        return json.at("runs").dump() + " runs, " + json.at("units").dump() + " units, " +
               json.at("firstPass").dump() + " first, " + json.at("finalPass").dump() + " final";
    }
};

TEST_F(History, CountsTheFirstAndTheLastRunOfAUnitInTheOrderOfTime) {
    const std::string path = journal({{"20T12:00", "PASS", "A"},
                                      {"20T10:00", "FAIL", "A"},
                                      {"20T10:00", "PASS", "B"},
                                      {"20T11:00", "FAIL", "B"},
                                      {"20T11:00", "WARN", "C"},
                                      {"20T11:30", "CANNOTRUN", "D"}});
    const ordered_json history = historyOf(path);
    EXPECT_EQ(yieldOf(history), "6 runs, 4 units, 2 first, 2 final");
    EXPECT_EQ(history.at("results").dump(), R"({"PASS":2,"WARN":1,"FAIL":2,"CANNOTRUN":1})");
    EXPECT_EQ(history.at("first"), "2026-11-20T10:00:00.000Z");
    EXPECT_EQ(history.at("last"), "2026-11-20T12:00:00.000Z");
}

TEST_F(History, CountsEachRunWithoutASerialAsAUnitAndSaysSo) {
    const std::string path = journal({{"20T10:00", "PASS"}, {"20T11:00", "FAIL"}});
    const ordered_json history = historyOf(path);
    EXPECT_EQ(yieldOf(history), "2 runs, 2 units, 1 first, 1 final");
    EXPECT_EQ(history.at("withoutSerial"), 2);
    EXPECT_EQ(startBare({"history", path}), 0);
    EXPECT_THAT(output(), HasSubstr("Runs without a serial, each of which counts as a unit: 2\n"));
}

TEST_F(History, CountsEqualSerialsOfTwoPartsAsTwoUnits) {
    std::string path = fileWith("j.jsonl", R"({"journal":1,"started":"2026-11-20T10:00:00.000Z",)"
                                           R"("result":"PASS","tags":{"serial":"1","part":"X"},)"
                                           R"("tests":[]})"
                                           "\n"
                                           R"({"journal":1,"started":"2026-11-20T11:00:00.000Z",)"
                                           R"("result":"FAIL","tags":{"serial":"1","part":"Y"},)"
                                           R"("tests":[]})"
                                           "\n");
    EXPECT_EQ(yieldOf(historyOf(path)), "2 runs, 2 units, 1 first, 1 final");
}

TEST_F(History, HasTheYieldOfEachStationLimitsAndDayFromTheirOwnRuns) {
    clock().setUtcOffset(std::chrono::hours(1));
    const std::string strict = R"("limits":[{"name":"Line","version":"2","sha256":"ab12"}],)";
    const std::string path = journal({{"20T10:00", "FAIL", "A", "L1"},
                                      {"20T22:59", "PASS", "A", "L2", strict},
                                      {"20T23:00", "PASS", "B", "L2", strict}});
    const ordered_json history = historyOf(path);
    EXPECT_EQ(yieldOf(history), "3 runs, 2 units, 1 first, 2 final");
    EXPECT_EQ(history.at("stations").size(), 2U);
    EXPECT_EQ(history["stations"][0]["station"], "L1");
    EXPECT_EQ(yieldOf(history["stations"][0]), "1 runs, 1 units, 0 first, 0 final");
    EXPECT_EQ(yieldOf(history["stations"][1]), "2 runs, 2 units, 2 first, 2 final");
    EXPECT_EQ(history["limits"][0]["limits"].dump(), "[]");
    EXPECT_EQ(history["limits"][1]["limits"].dump(),
              R"([{"name":"Line","version":"2","sha256":"ab12"}])");
    EXPECT_EQ(history["days"][0]["day"], "2026-11-20");
    EXPECT_EQ(yieldOf(history["days"][0]), "2 runs, 1 units, 0 first, 1 final");
    EXPECT_EQ(history["days"][1]["day"], "2026-11-21");
}

TEST_F(History, CountsARunThatIsThereAgainOnce) {
    const std::string line = textOf({"20T10:00", "PASS", "A"}) + "\n";
    const std::string path = fileWith("j.jsonl", line + line);
    const ordered_json history = historyOf(path, {path});
    EXPECT_EQ(history.at("runs"), 1);
    EXPECT_EQ(history.at("repeated"), 3);
}

TEST_F(History, CountsTwoTimesOfOneIdentifierOnceAtTheFirst) {
    const std::string line = textOf({"20T10:00", "FAIL", "A"}) + "\n";
    std::string later = line;
    later.replace(later.find("20T10:00"), 8, "21T10:00");
    const ordered_json history = historyOf(fileWith("j.jsonl", later + line));
    EXPECT_EQ(history.at("repeated"), 1);
    ASSERT_EQ(history.at("days").size(), 1U);
    EXPECT_EQ(history["days"][0]["day"], "2026-11-20");
}

TEST_F(History, TakesTheRunsThatAreAskedFor) {
    const std::string path = journal({{"19T10:00", "FAIL", "A", "L1"},
                                      {"20T10:00", "PASS", "a", "l1"},
                                      {"20T11:00", "PASS", "B", "L2"}});
    EXPECT_EQ(historyOf(path, {"--since", "2026-11-20"}).at("runs"), 2);
    EXPECT_EQ(historyOf(path, {"--station", "L1"}).at("runs"), 2);
    EXPECT_EQ(historyOf(path, {"--serial", "A", "--since", "2026-11-20"}).at("runs"), 1);
    clock().setUtcOffset(std::chrono::hours(-11));
    EXPECT_EQ(historyOf(path, {"--since", "2026-11-20"}).at("runs"), 1) << "a day begins later";
    EXPECT_EQ(historyOf(path, {"--serial", "C"}).at("runs"), 0);
    EXPECT_EQ(errors(), "example: no run in the journals is one of those asked for\n");
}

TEST_F(History, OfATestHasItsResultsAlone) {
    std::string two = textOf({"20T10:00", "FAIL", "A"});
    two.insert(two.size() - 2, R"(,{"test":"Chains","result":"PASS","measurements":[]})");
    const std::string path = fileWith("j.jsonl", two + "\n");
    EXPECT_EQ(historyOf(path).at("results").dump(), R"({"FAIL":1})");
    EXPECT_EQ(historyOf(path, {"--test", "chains"}).at("results").dump(), R"({"PASS":1})");
    EXPECT_EQ(historyOf(path, {"--test", "chains"}).at("levels").dump(), "[]");
    EXPECT_EQ(historyOf(path, {"--test", "none"}).at("runs"), 0);
}

TEST_F(History, HasTheLastLevelsOfEachTestWithTheirLimits) {
    const std::string path = journal({{"20T12:00", "PASS", "C", "L1", "", "-52.25"},
                                      {"20T10:00", "PASS", "A", "L1", "", "-50"},
                                      {"20T11:00", "FAIL", "B", "L1", "", "-80"},
                                      {"20T09:00", "PASS", "D", "L1", "", "1", "Other"}});
    const ordered_json history = historyOf(path, {"--last", "2"});
    ASSERT_EQ(history.at("levels").size(), 2U);
    EXPECT_EQ(history["levels"][0]["test"], "Level");
    const ordered_json& levels = history["levels"][0]["levels"];
    ASSERT_EQ(levels.size(), 2U);
    EXPECT_EQ(levels[0]["serial"], "B");
    EXPECT_EQ(levels[0]["result"], "FAIL");
    EXPECT_EQ(levels[0]["measurement"]["brokenLimit"], "FailingLevel");
    EXPECT_EQ(levels[1]["measurement"]["value"], -52.25);
    EXPECT_EQ(levels[1]["measurement"]["limits"].dump(),
              R"([{"name":"FailingLevel","value":-70.5,"severity":"error","kept":"atLeast"}])");
}

TEST_F(History, ShowsTablesAndBars) {
    const std::string path =
        journal({{"20T10:00", "PASS", "A", "L1"}, {"20T10:01", "FAIL", "B", "Line 2", "", "-80"}});
    EXPECT_EQ(startBare({"history", path}), 0);
    EXPECT_EQ(errors(), "");
    EXPECT_EQ(output(),
              R"(2026-11-20 10:00 to 2026-11-20 10:01

                Runs  Units  First pass   Final  Results
All                2      2       50.0%   50.0%  PASS 1, FAIL 1

Station
  L1               1      1      100.0%  100.0%  PASS 1
  Line 2           1      1        0.0%    0.0%  FAIL 1

Limits
  (none named)     2      2       50.0%   50.0%  PASS 1, FAIL 1

Day
  2026-11-20       2      2       50.0%   50.0%  PASS 1, FAIL 1

A unit passes with PASS, WARN or COMPLETED. First pass: its first run; final: its last one.

Level: the last 2
  2026-11-20 10:00  L1      A  PASS  -50 dBm  [#######|#####............]
  2026-11-20 10:01  Line 2  B  FAIL  -80 dBm  [#####..|.................]
)");
}

TEST_F(History, NamesTheLinesThatAreNoRunsAndCountsTheOthers) {
    const std::string run = textOf({"20T10:00", "PASS", "A"});
    const std::string path =
        fileWith("j.jsonl", "\xEF\xBB\xBF" + run + "\r\n" + // a byte order mark, a foreign line end
                                "\n" + run.substr(0, 50) + "\n" + // cut in the middle
                                "[]\n{\"journal\":1}\n" + R"({"journal":2,"started":7})" + "\n" +
                                std::string(tesk5::LONGEST_JOURNAL_LINE + 1, ' ') + "\n" +
                                textOf({"20T11:00", "PASS", "A"})); // its line end is still to come
    const ordered_json history = historyOf(path);
    EXPECT_EQ(history.at("runs"), 2);
    EXPECT_EQ(history.at("brokenLines"), 4);
    EXPECT_EQ(history.at("laterLines"), 1);
    const std::string begin = "example: \"" + path + "\", line ";
    EXPECT_EQ(errors(),
              begin + "3 does not count: it was cut, or is no JSON\n" + begin +
                  "4 does not count: it is no line of a run\n" + begin +
                  "5 does not count: it is no line of a run\n" + begin +
                  "7 does not count: it is longer than the line of a run can be\n" +
                  "example: lines of a later version of this program, which do not count: 1\n");
}

TEST_F(History, NamesTenBrokenLinesAndCountsTheRest) {
    std::string text = textOf({"20T10:00"}) + "\n";
    for (int i = 0; i < 12; ++i) {
        text += "x\n";
    }
    const ordered_json history = historyOf(fileWith("j.jsonl", text));
    EXPECT_EQ(history.at("broken").size(), 10U);
    EXPECT_EQ(history.at("broken")[9].at("line"), 11);
    EXPECT_THAT(errors(), HasSubstr("example: further lines that do not count: 2\n"));
}

TEST_F(History, IsRefusedWithoutARunOrAFile) {
    for (const std::string& text : {std::string(), std::string("x\n")}) {
        forgetOutput();
        EXPECT_EQ(startBare({"history", fileWith("j.jsonl", text)}), 64);
        EXPECT_THAT(errors(), HasSubstr("example: the journals have no run; "));
    }
    EXPECT_EQ(startBare({"history"}), 64);
    EXPECT_THAT(errors(), HasSubstr("needs a journal; name one or more"));
    forgetOutput();
    EXPECT_EQ(startBare({"history", file("missing")}), 64);
    EXPECT_EQ(errors(), "example: the file \"" + file("missing") +
                            "\" cannot be used: No such file or directory\n");
    forgetOutput();
    std::filesystem::create_directory(file("folder"));
    EXPECT_EQ(startBare({"history", file("folder")}), 64);
    EXPECT_THAT(errors(), HasSubstr("it is a directory"));
}

TEST_F(History, RefusesWhatItsOptionsDoNotTake) {
    const std::string path = journal({{"20T10:00"}});
    for (const char* date : {"yesterday", "2026-02-30", "20.11.2026", ""}) {
        forgetOutput();
        EXPECT_EQ(startBare({"history", path, std::string("--since=") + date}), 64) << date;
        EXPECT_THAT(errors(), HasSubstr(*date == 0 ? "--since" : "write it as 2026-11-20"));
    }
    EXPECT_EQ(startBare({"history", path, "--last", "0"}), 64);
    EXPECT_EQ(startBare({"history", path, "--format", "csv"}), 64);
    forgetOutput();
    EXPECT_EQ(startBare({"history", path, "--page", path}), 64);
    EXPECT_THAT(errors(), HasSubstr("--page names the journal"));
    EXPECT_EQ(startBare({"run", "--since", "2026-11-20"}), 64);
    EXPECT_THAT(errors(), HasSubstr("--since is an option of history;"));
}

TEST_F(History, WritesAPageOnWhichNamesFromOutsideAreText) {
    const std::string path = journal(
        {{"20T10:00", "PASS", "<b>A", "</bdi><i>"}, {"20T10:01", "FAIL", "B", "L1", "", "-80"}});
    EXPECT_EQ(startBare({"history", path, "--page", file("h.html")}), 0);
    const std::string page = bytesOfFile(file("h.html"));
    EXPECT_THAT(page, HasSubstr("<title>History of runs</title>"));
    EXPECT_THAT(page, HasSubstr("&lt;b&gt;A"));
    EXPECT_THAT(page, HasSubstr("&lt;/bdi&gt;&lt;i&gt;"));
    EXPECT_THAT(page, HasSubstr("<path class=\"curve\" d=\"M"));
    EXPECT_THAT(page, HasSubstr("Failing below"));
    EXPECT_THAT(page, HasSubstr("<time dir=\"ltr\">2026-11-20</time></th>"))
        << "a day is not broken at its hyphens";
    EXPECT_THAT(page, HasSubstr(">2</text>"));
    EXPECT_THAT(page, Not(HasSubstr(".5</text>"))) << "there is no reading between two";
    EXPECT_THAT(page, Not(HasSubstr("<b>A")));
    EXPECT_THAT(page, Not(HasSubstr("{{")));
}

TEST_F(History, OfHostileNamesMovesNoCursor) {
    const std::string path = journal({{"20T10:00", "PASS", R"(\u001b[2J\u202e)", R"(\r\n)"}});
    EXPECT_EQ(startBare({"history", path}), 0);
    EXPECT_THAT(output(), Not(HasSubstr("\x1b")));
    EXPECT_THAT(output(), HasSubstr("\\x1B[2J\\u202E"));
    EXPECT_THAT(output(), HasSubstr("\\r\\n"));
}

TEST_F(History, ReadsWhatAJournalOfThisVersionHas) {
    registerTest("Level", [](const DiagDevice&) {
        DiagModule::measured(
            {.name = "Level",
             .value = *tesk5::Number::parse("-57.0"),
             .unit = "dBm",
             .lowest = -100,
             .highest = 0,
             .limits = {{"FailingLevel", -70, Severity::error, tesk5::Limit::Kept::AT_MOST}}});
        return TestResult::FAIL();
    });
    start({"run", "--journal", file("j.jsonl"), "--json", file("r.json")});
    const ordered_json history = historyOf(file("j.jsonl"));
    EXPECT_EQ(history.at("levels")[0].at("levels")[0].at("measurement"),
              result(0).at("measurements")[0]);
}

} // namespace

} // namespace test
