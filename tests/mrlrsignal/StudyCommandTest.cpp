// A study from a table: what people read, what programs read, and what is refused.
#include <study/StudyCommand.h>

#include <study/StudyFile.h>

#include "MeasurementCommand.h"
#include "TextbookStudy.h"

#include <mrl/Files.h>
#include <mrl/Json.h>
#include <mrl/System.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

namespace test {
namespace {

using testing::HasSubstr;
using testing::Not;

// The textbook's study as a German spreadsheet exports it.
std::string textbookTable() {
    std::string text = "Part;Operator;Level\r\n";
    for (std::size_t op = 0; op < 3; ++op) {
        for (std::size_t part = 0; part < 10; ++part) {
            for (const double value : TEXTBOOK_READINGS[op][part]) {
                std::string number = std::to_string(value);
                std::replace(number.begin(), number.end(), '.', ',');
                text += std::to_string(part + 1) + ";" + "ABC"[op] + ";" + number + "\r\n";
            }
        }
    }
    return text;
}

class StudyCommands : public MeasurementCommand {
protected:
    int study(const Options& options) { return call(study::studyCommand(), options); }
    std::string refusal(std::string_view table) {
        return refusalOf(study::studyCommand(), {{"--from", fileWith(table)}});
    }
};

TEST_F(StudyCommands, ShowTheFiguresOfTheTextbook) {
    EXPECT_EQ(study({{"--from", fileWith(textbookTable())}}), 0);
    EXPECT_THAT(output(), HasSubstr("Parts: 10, operators: 3, trials: 3."));
    EXPECT_THAT(output(), HasSubstr("Gauge (GRR)        0.302 "));
    EXPECT_THAT(output(), HasSubstr("27.9%"));
    EXPECT_THAT(output(), HasSubstr("Interaction: F = 0.43, p = 0.974"));
    EXPECT_THAT(output(), HasSubstr("above 0.25"));
    EXPECT_THAT(output(), HasSubstr("Cannot tell parts apart"));
    EXPECT_THAT(output(), HasSubstr("tells apart: 4 (at least 5 are needed)"));
    EXPECT_THAT(output(), Not(HasSubstr("tolerance")));
}

TEST_F(StudyCommands, WriteTheSameForPrograms) {
    const std::string file = outputFile("study.json");
    EXPECT_EQ(
        study({{"--from", fileWith(textbookTable())}, {"--tolerance", "20"}, {"--file", file}}), 0);
    EXPECT_THAT(output(), HasSubstr("Against the tolerance: good"));
    const mrl::Json json = mrl::parseJson(bytesOfFile(file));
    EXPECT_EQ(json["studyVersion"], 1);
    EXPECT_EQ(json["anova"]["interactionPooled"], true);
    EXPECT_NEAR(json["variations"]["repeatability"]["deviation"]["value"].get<double>(), 0.199933,
                1e-6);
    EXPECT_EQ(json["categories"]["count"], 4);
    EXPECT_EQ(json["rating"]["inStudy"], "unusable");
    EXPECT_EQ(json["rating"]["inTolerance"], "good");
    EXPECT_EQ(json["readings"].size(), 30U);
    EXPECT_EQ(json["readings"][1]["operator"], "B");
    EXPECT_EQ(json["readings"][1]["levels"], mrl::Json({0.08, 0.25, 0.07}));
}

TEST_F(StudyCommands, WriteTheirReadingsAsATableThatGivesTheSameStudy) {
    const std::string csv = outputFile("raw.csv");
    study({{"--from", fileWith(textbookTable())}, {"--csv", csv}});
    const std::string first = output().substr(0, output().find("Written"));
    EXPECT_EQ(study({{"--from", csv}}), 0);
    EXPECT_EQ(output(), first);
}

TEST_F(StudyCommands, WriteTheNamesOfTheirPartsAsTheyAre) {
    const std::string csv = outputFile("raw.csv");
    study({{"--from", fileWith("part,level\n\"A \"\"1\"\"\",-50\n\"A \"\"1\"\"\",-51\n"
                               "\"B,2\",-55\n\"B,2\",-56\n")},
           {"--csv", csv}});
    EXPECT_THAT(bytesOfFile(csv), HasSubstr("\"A \"\"1\"\"\",\"\",2,-51.0\r\n"));
    EXPECT_THAT(bytesOfFile(csv), HasSubstr("\"B,2\""));
}

std::size_t countOf(const std::string& text, std::string_view word) {
    std::size_t count = 0;
    for (std::size_t at = text.find(word); at != std::string::npos;
         at = text.find(word, at + word.size())) {
        ++count;
    }
    return count;
}

TEST_F(StudyCommands, DrawTheStudyOnOnePage) {
    const std::string file = outputFile("bench.html");
    study({{"--from", fileWith(textbookTable())}, {"--tolerance", "8"}, {"--page", file}});
    EXPECT_THAT(output(), HasSubstr("Written: "));
    const std::string page = bytesOfFile(file);
    EXPECT_THAT(page, testing::StartsWith("<!DOCTYPE html>"));
    EXPECT_THAT(page, HasSubstr("<strong>Cannot tell parts apart</strong>"));
    EXPECT_THAT(page, HasSubstr("Against the tolerance: conditional"));
    EXPECT_THAT(page, HasSubstr("<td>27.9%</td>"));
    EXPECT_THAT(page, HasSubstr("<td>7.8%</td>")) << "of variance";
    EXPECT_THAT(page, HasSubstr("Warning: the operators repeat themselves"));
    EXPECT_THAT(page, HasSubstr("0.29; 0.41; 0.64"));
    EXPECT_EQ(countOf(page, "role=\"img\""), 4U);
    // Three panels twice, and three lines.
    EXPECT_EQ(countOf(page, "class=\"curve c3\" d=\"M"), 4U) << "with one of the legend";
    for (const char* forbidden : {"<script", "http:", "https:", "{{", "STUDY_", "nan", "inf\""}) {
        EXPECT_THAT(page, Not(HasSubstr(forbidden)));
    }
}

TEST_F(StudyCommands, ShortenTheNamesBelowManyPanels) {
    const std::string file = outputFile("bench.html");
    const auto pageOf = [&](int operators, const std::string& name) {
        std::string table = "part,operator,level\n";
        for (int row = 0; row < 4 * operators; ++row) {
            table += std::to_string(row % 2) + "," + name + std::to_string(row / 4) + "," +
                     std::to_string(-50 - row) + "\n";
        }
        study({{"--from", fileWith(table)}, {"--page", file}});
        return bytesOfFile(file);
    };
    EXPECT_THAT(pageOf(3, "Al"), HasSubstr("dy=\"20\">Operator Al2</text>"));
    EXPECT_THAT(pageOf(20, ""), HasSubstr("dy=\"20\">19</text>"));
    const std::string page = pageOf(10, "Alexander");
    EXPECT_THAT(page, HasSubstr("dy=\"20\">Alexan…</text>"));
    EXPECT_THAT(page, HasSubstr("Operator Alexander9"));
    EXPECT_THAT(pageOf(100, "Al"), Not(HasSubstr("dy=\"20\">Operator")));
}

TEST_F(StudyCommands, ShowNamesOnThePageAsText) {
    const std::string file = outputFile("bench.html");
    study({{"--from", fileWith("part,operator,level\n<b>,<i>,-50\n<b>,<i>,-50\n"
                               "P&,<i>,-50\nP&,<i>,-50\n")},
           {"--page", file}});
    const std::string page = bytesOfFile(file);
    EXPECT_THAT(page, HasSubstr("<bdi>&lt;b&gt;</bdi>"));
    EXPECT_THAT(page, HasSubstr("Operator &lt;i&gt;"));
    EXPECT_THAT(page, HasSubstr("P&amp;"));
    EXPECT_THAT(page, Not(HasSubstr("<i>")));
    EXPECT_THAT(page, Not(HasSubstr("nan")));
}

TEST_F(StudyCommands, OfReadingsThatAreAllTheSameGiveNoPercentsForAVerdict) {
    const std::string from = fileWith("part,level\n1,-50\n1,-50\n2,-50\n2,-50\n");
    EXPECT_EQ(study({{"--from", from}, {"--tolerance", "8"}}), 0);
    EXPECT_THAT(output(), HasSubstr("Cannot tell parts apart: all readings are the same."));
    EXPECT_THAT(output(), Not(HasSubstr("Against the tolerance")));
}

TEST_F(StudyCommands, WarnWhereAssumptionsFail) {
    std::string table = "part,level\n";
    for (int part = 0; part < 5; ++part) {
        for (int trial = 0; trial < 5; ++trial) {
            table += std::to_string(part) + "," + std::to_string(-50 - part - trial) + "\n";
        }
    }
    EXPECT_EQ(study({{"--from", fileWith(table)}}), 0);
    EXPECT_THAT(output(), HasSubstr("operators: 1"));
    EXPECT_THAT(output(), HasSubstr("drift by -1.00"));
    EXPECT_THAT(output(), Not(HasSubstr("Interaction: F")));

    table = "part,level\n";
    for (int part = 0; part < 5; ++part) {
        for (int trial = 0; trial < 5; ++trial) {
            table += std::to_string(part) + "," + std::to_string(-50 - part) + "\n";
        }
    }
    EXPECT_EQ(study({{"--from", fileWith(table)}}), 0);
    EXPECT_THAT(output(), HasSubstr("too coarse for their scatter"));
    EXPECT_THAT(output(), HasSubstr("the readings of each part are all the same"));
    EXPECT_THAT(output(), Not(HasSubstr("the gauge takes")));
}

TEST_F(StudyCommands, NeverWriteOverWhatTheyReadOrWrote) {
    const std::string from = fileWith(textbookTable());
    const std::string out = outputFile("bench");
    for (const char* option : {"--file", "--csv", "--page"}) {
        EXPECT_THAT(refusalOf(study::studyCommand(), {{"--from", from}, {option, from}}),
                    HasSubstr(std::string(option) + " and --from both name"));
    }
    EXPECT_THAT(
        refusalOf(study::studyCommand(), {{"--from", from}, {"--page", out}, {"--csv", out}}),
        HasSubstr("both name"));
    EXPECT_EQ(bytesOfFile(from), textbookTable());
}

TEST_F(StudyCommands, RefuseStudiesWithMissingCells) {
    EXPECT_THAT(refusal("part,operator,level\n1,A,-50\n1,A,-51\n2,A,-52\n"),
                HasSubstr("readings of part \"2\" by operator \"A\": 1, in other cells: 2"));
    EXPECT_THAT(refusal("part,operator,level\n1,A,-50\n1,A,-51\n2,B,-52\n2,B,-52\n"),
                HasSubstr("readings of part \"1\" by operator \"B\": 0"));
    EXPECT_THAT(refusal("part,operator,level\n1,A,-50\n1,A,-51\n"), HasSubstr("at least 2 parts"));
    EXPECT_THAT(refusal("part,level\n1,-50\n2,-51\n"), HasSubstr("2 trials"));
}

TEST_F(StudyCommands, RefuseTablesThatWouldTakeTheMemory) {
    std::string crossed = "part,operator,level\n0,0,-50\n";
    std::string one = "level\n";
    for (int row = 0; row < 20'000; ++row) {
        const std::string number = std::to_string(row);
        crossed.append(number).append(",").append(number).append(",-50\n");
        one += "-50\n";
    }
    EXPECT_THAT(refusal(crossed), HasSubstr("readings of part \"0\" by operator \"1\": 0"));
    EXPECT_THAT(refusalOf(study::studyCommand(),
                          {{"--type1", "true"}, {"--reference", "-50"}, {"--from", fileWith(one)}}),
                HasSubstr("has 20000"));
}

TEST_F(StudyCommands, RefuseWhatIsNoTable) {
    EXPECT_THAT(refusal("part,operator,level\n1,A,good\n"), HasSubstr("line 2, column 5"));
    EXPECT_THAT(refusal("operator,level\nA,-50\n"), HasSubstr("has no column \"part\""));
    EXPECT_THAT(refusalOf(study::studyCommand(), {}), HasSubstr("study --from"));
    EXPECT_THAT(refusalOf(study::studyCommand(),
                          {{"--from", fileWith(textbookTable())}, {"--tolerance", "wide"}}),
                HasSubstr("is not a tolerance"));
    EXPECT_THAT(refusalOf(study::studyCommand(),
                          {{"--from", fileWith(textbookTable())}, {"--tolerance", "0"}}),
                HasSubstr("\"0\" is not a tolerance"));
    EXPECT_THAT(refusal("part,operator,level\n1,J\xF6rg,-50\n"),
                HasSubstr("line 2, column 4: these bytes are not UTF-8"));
    EXPECT_THAT(refusal("part,operator,Operator,level\n1,A,B,-50\n"),
                HasSubstr("several columns are named \"Operator\""));
    EXPECT_THAT(refusal("part,level\n1,5000000\n"), HasSubstr("\"5000000\" is too large"));
}

// 26 readings about -50.1 dBm that scatter by 0.2 dB, in no order.
std::string typeOneTable() {
    std::string text = "level\n";
    for (const char* pair : {"-50.3\n-49.9\n", "-49.9\n-50.3\n"}) {
        for (int i = 0; i < 6; ++i) {
            text += pair;
        }
    }
    return text + "-50.1\n-50.1\n";
}

TEST_F(StudyCommands, OfOnePartSayWhetherTheGaugeIsOff) {
    const std::string from = fileWith(typeOneTable());
    EXPECT_EQ(study({{"--type1", "true"}, {"--reference", "-50"}, {"--from", from}}), 0);
    EXPECT_THAT(output(), HasSubstr("26 readings: mean -50.10"));
    EXPECT_THAT(output(), HasSubstr("Bias -0.10"));
    EXPECT_THAT(output(), Not(HasSubstr("Cg")));
    EXPECT_THAT(output(), Not(HasSubstr("Warning")));
    const auto verdict = [&](const char* tolerance, const char* reference) {
        study({{"--type1", "true"},
               {"--reference", reference},
               {"--tolerance", tolerance},
               {"--from", from}});
        return output();
    };
    EXPECT_THAT(verdict("20", "-50"), HasSubstr("Good: Cg and Cgk"));
    EXPECT_THAT(verdict("20", "-51.9"), HasSubstr("but is off"));
    EXPECT_THAT(verdict("20", "-51.9"), HasSubstr("outside all readings"));
    EXPECT_THAT(verdict("4", "-50"), HasSubstr("scatters too much"));
}

TEST_F(StudyCommands, OfOnePartKeepFiguresAndReadings) {
    const std::string json = outputFile("one.study.json");
    const std::string csv = outputFile("one.csv");
    EXPECT_EQ(study({{"--type1", "true"},
                     {"--reference", "-50"},
                     {"--tolerance", "20"},
                     {"--from", fileWith(typeOneTable())},
                     {"--file", json},
                     {"--csv", csv}}),
              0);
    EXPECT_THAT(output(), HasSubstr("one.csv"));
    const mrl::Json kept = study::studyIn(json);
    EXPECT_EQ(kept["design"].dump(), R"({"parts":1,"operators":1,"trials":26})");
    EXPECT_EQ(kept["tolerance"], 20);
    const mrl::Json& figures = kept["typeOne"];
    EXPECT_EQ(figures["reference"], -50);
    EXPECT_NEAR(figures["mean"].get<double>(), -50.1, 1e-9);
    EXPECT_NEAR(figures["deviation"].get<double>(), std::sqrt(24 * 0.04 / 25), 1e-9);
    EXPECT_NEAR(figures["bias"]["value"].get<double>(), -0.1, 1e-9);
    EXPECT_LT(figures["bias"]["low"].get<double>(), -0.1);
    EXPECT_GT(figures["bias"]["high"].get<double>(), -0.1);
    EXPECT_NEAR(figures["cg"]["value"].get<double>(), 4 / (6 * figures["deviation"].get<double>()),
                1e-9);
    EXPECT_LT(figures["cgk"]["atLeast"], figures["cgk"]["value"]);
    EXPECT_EQ(kept["readings"][0]["levels"].size(), 26U);
    EXPECT_THAT(mrl::readWholeFile(mrl::System::path(csv), study::LARGEST_STUDY),
                testing::StartsWith("part,operator,trial,level\r\n\"1\",\"1\",1,-50.3\r\n"));
    EXPECT_EQ(study({{"--type1", "true"}, {"--reference", "-50"}, {"--from", csv}}), 0);
    EXPECT_THAT(refusalOf(study::studyCommand(), {{"--from", json}}), HasSubstr("is JSON"));
}

TEST_F(StudyCommands, OfOnePartWarnOfReadingsThatAreNoIndependentOnes) {
    std::string drifting = "level\n";
    std::string same = drifting;
    for (int i = 0; i < 30; ++i) {
        drifting += std::to_string(-60 + i / 3) + "\n";
        same += "-50\n";
    }
    const auto report = [this](const std::string& text) {
        study({{"--type1", "true"}, {"--reference", "-55"}, {"--from", fileWith(text)}});
        return output();
    };
    EXPECT_THAT(report(drifting), HasSubstr("drift by 9"));
    EXPECT_THAT(report(drifting), HasSubstr("neighbouring readings are alike"));
    EXPECT_THAT(report(same), HasSubstr("all readings are the same"));
}

TEST_F(StudyCommands, OfOnePartRefuseTooFewReadingsAndAReferenceThatIsNone) {
    const std::string few = fileWith("level\n-50\n-51\n");
    EXPECT_THAT(refusalOf(study::studyCommand(),
                          {{"--type1", "true"}, {"--reference", "-50"}, {"--from", few}}),
                HasSubstr("at least 25 readings"));
    for (const char* wrong : {"", "50", "-130", "x"}) {
        EXPECT_THAT(refusalOf(study::studyCommand(),
                              {{"--type1", "true"}, {"--reference", wrong}, {"--from", few}}),
                    HasSubstr("--reference=-50"))
            << wrong;
    }
}

} // namespace
} // namespace test
