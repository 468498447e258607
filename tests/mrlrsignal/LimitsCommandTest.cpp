// The limits that a configuration file gets, and the tables that are refused.
#include <limits/LimitsCommand.h>

#include <levels/LimitsId.h>
#include <levels/ModuleObjects.h>

#include "FixedRandom.h"
#include "MeasurementCommand.h"

#include <gmock/gmock.h>

#include <cmath>
#include <filesystem>

namespace test {
namespace {

using testing::HasSubstr;
using testing::Not;

// Levels of `count` units of one model, in whole dBm.
std::string table(int count, double mean, char separator = ',') {
    std::mt19937 random = fixedRandom(21);
    std::normal_distribution<double> normal(mean, 2);
    std::string text = std::string("unit") + separator + "level\n";
    for (int i = 0; i < count; ++i) {
        text += "U" + std::to_string(i) + separator +
                std::to_string(static_cast<int>(std::round(normal(random)))) + "\n";
    }
    return text;
}

class LimitsCommands : public MeasurementCommand {
protected:
    LimitsCommands() {
        static const bool initialized = (initializeSignalModule(), true);
        EXPECT_TRUE(initialized);
    }
    int limits(const Options& options) { return call(limits::limitsCommand(), options); }
    std::string refusal(const Options& options) {
        return refusalOf(limits::limitsCommand(), options);
    }
};

TEST_F(LimitsCommands, WriteAConfigurationFileThatTellsWhereItsNumbersComeFrom) {
    const std::string out = outputFile("limits.toml");
    EXPECT_EQ(limits({{"--from", fileWith(table(30, -55))},
                      {"--bad", fileWith(table(5, -70))},
                      {"--guard-band", "0.5"},
                      {"--out", out}}),
              0);
    const std::string text = bytesOfFile(out);
    EXPECT_THAT(text, HasSubstr("# 30 good units: mean -5"));
    EXPECT_THAT(text, HasSubstr("\n[parameters]\n"));
    EXPECT_THAT(text, HasSubstr("# WarningLevel -"));
    EXPECT_THAT(text, HasSubstr("\nWarningLevel = -"));
    EXPECT_THAT(text, HasSubstr("\nFailingLevel = -"));
    EXPECT_THAT(text, HasSubstr("\nGuardBand = 0.5\n"));
    EXPECT_THAT(text, HasSubstr("# Of the bad units 100.0% are stopped"));
    EXPECT_THAT(output(), HasSubstr("mean less 2.22 standard deviations"));
    EXPECT_THAT(output(), HasSubstr("Written: "));
}

TEST_F(LimitsCommands, GiveTheirFileAnIdentifierThatTheRunChecks) {
    const std::string good = fileWith(table(30, -55));
    const std::string out = outputFile("limits.toml");
    const auto idIn = [&](const Options& more) {
        Options options = {{"--from", good}, {"--out", out}};
        options.insert(more.begin(), more.end());
        EXPECT_EQ(limits(options), 0);
        const std::string text = bytesOfFile(out);
        const std::size_t begin = text.find("\nLimits = \"") + 11;
        return text.substr(begin, text.find('"', begin) - begin);
    };
    const std::string first = idIn({});
    EXPECT_THAT(first, testing::StartsWith("limits 1 "));
    EXPECT_EQ(first.find_first_not_of("0123456789abcdef", 9), std::string::npos);
    EXPECT_EQ(first.size(), 9U + 64U);
    EXPECT_THAT(output(), HasSubstr("Limits: " + first));
    EXPECT_EQ(idIn({}), first);
    EXPECT_THAT(idIn({{"--name", "Lab-A"}, {"--revision", "12"}}),
                testing::StartsWith("Lab-A 12 "));
    EXPECT_NE(idIn({{"--guard-band", "0.3"}}), first);
    EXPECT_NE(idIn({{"--revision", "2"}}).substr(9), first.substr(9));
}

TEST_F(LimitsCommands, RefuseANameThatReportsCouldNotCarry) {
    const std::string good = fileWith(table(30, -55));
    const std::string longest(40, 'x');
    EXPECT_EQ(limits({{"--from", good}, {"--name", longest}}), 0);
    for (const std::string& wrong : {std::string("two words"), std::string("\"x"), longest + "x"}) {
        EXPECT_THAT(refusal({{"--from", good}, {"--name", wrong}}),
                    HasSubstr("no name for limits"));
    }
}

TEST(LimitsIds, BelongToTheirLimitsAlone) {
    const statistics::LevelLimits limits{.warning = -60.2, .failing = -61.2, .guardBand = 0.5};
    const std::string id = levels::limitsId("Lab", 3, limits);
    EXPECT_TRUE(levels::isIdOf(id, limits));
    EXPECT_FALSE(levels::isIdOf(id, {.warning = -60.3, .failing = -61.2, .guardBand = 0.5}));
    EXPECT_FALSE(levels::isIdOf(id, {.warning = -60.2, .failing = std::nullopt, .guardBand = 0.5}));
    EXPECT_FALSE(levels::isIdOf(id, {.warning = -60.2, .failing = -61.2, .guardBand = 0.6}));
    EXPECT_FALSE(levels::isIdOf("Lab 4" + id.substr(5), limits));
    EXPECT_FALSE(levels::isIdOf("", limits));
    EXPECT_FALSE(levels::isIdOf("Lab", limits));
    // Sums of tenths are not exact in binary.
    EXPECT_TRUE(
        levels::isIdOf(id, {.warning = -60.2, .failing = -60.2 - 1, .guardBand = 0.1 + 0.4}));
}

TEST_F(LimitsCommands, WithoutAFileOnlyShowThem) {
    EXPECT_EQ(limits({{"--from", fileWith(table(30, -55))}}), 0);
    EXPECT_THAT(output(), HasSubstr("FailingLevel -"));
    EXPECT_THAT(output(), HasSubstr("With fewer than 59 units"));
    EXPECT_THAT(output(), HasSubstr("measure 29 more"));
    EXPECT_EQ(limits({{"--from", fileWith(table(60, -55))}}), 0);
    EXPECT_THAT(output(), Not(HasSubstr("With fewer than")));
    EXPECT_THAT(output(), Not(HasSubstr("Written")));
}

TEST_F(LimitsCommands, SayHowManyUnitsAreMissingWhereLevelsAreNotNormal) {
    std::string text = "level\n";
    for (int i = 0; i < 30; ++i) {
        text += i < 25 ? "-50\n" : "-60\n";
    }
    const std::string out = outputFile("limits.toml");
    EXPECT_EQ(limits({{"--from", fileWith(text)}, {"--out", out}}), 1);
    EXPECT_THAT(output(), HasSubstr("not normally distributed"));
    EXPECT_THAT(output(), HasSubstr("Measure 29 more."));
    EXPECT_FALSE(std::filesystem::exists(mrl::System::path(out)));
}

TEST_F(LimitsCommands, OfEqualLevelsSayThatTheirDistributionIsUnknown) {
    std::string text = "level\n";
    for (int i = 0; i < 60; ++i) {
        text += "-50\n";
    }
    EXPECT_EQ(limits({{"--from", fileWith(text)}}), 0);
    EXPECT_THAT(output(), HasSubstr("All levels are the same"));
    EXPECT_THAT(output(), HasSubstr("Without a distribution: level number 1 from below."));
    EXPECT_THAT(output(), HasSubstr("FailingLevel: too few units"));
}

TEST_F(LimitsCommands, RefuseWhatIsNoLevelAndUnitsThatAreThereTwice) {
    EXPECT_THAT(refusal({{"--from", fileWith("level\n-50\n70\n")}}),
                HasSubstr("line 3, column 1: \"70\" is not a level"));
    EXPECT_THAT(refusal({{"--from", fileWith("unit,level\nA,-50\nA,-51\n")}}),
                HasSubstr("line 3, column 1: the unit \"A\" is there twice"));
    EXPECT_THAT(refusal({{"--from", fileWith("unit,level\nA,-50,5\n")}}),
                HasSubstr("line 2, column 7: 3 fields"));
    EXPECT_THAT(refusal({{"--from", fileWith("unit;level\nA;weak\n")}}),
                HasSubstr("\"weak\" is not a number"));
    EXPECT_THAT(refusal({{"--from", fileWith("unit,power\nA,-50\n")}}),
                HasSubstr("has no column \"level\""));
}

TEST_F(LimitsCommands, RefuseTooFewUnitsAndMissingFiles) {
    EXPECT_THAT(refusal({{"--from", fileWith(table(9, -55))}}),
                HasSubstr("at least 10 good units"));
    EXPECT_THAT(refusal({}), HasSubstr("limits --from"));
    EXPECT_THAT(refusal({{"--from", outputFile("none.csv")}}), HasSubstr("No such file"));
    EXPECT_THAT(refusal({{"--from", fileWith(table(30, -55))}, {"--out", outputFile("no/../")}}),
                HasSubstr("cannot be written"));
}

TEST_F(LimitsCommands, ComputeWithTheGuardBandThatTheFileHas) {
    const std::string good = fileWith(table(60, -55));
    const std::string out = outputFile("limits.toml");
    const auto fileFor = [&](const char* guardBand) {
        EXPECT_EQ(limits({{"--from", good}, {"--guard-band", guardBand}, {"--out", out}}), 0);
        return bytesOfFile(out);
    };
    EXPECT_THAT(fileFor("0.54"), HasSubstr("\nGuardBand = 0.6\n"));
    EXPECT_EQ(fileFor("0.54"), fileFor("0.6"));
    EXPECT_THAT(fileFor("1.1"), HasSubstr("\nGuardBand = 1.1\n"));
}

TEST_F(LimitsCommands, WriteNoFileThatARunRefuses) {
    const std::string out = outputFile("limits.toml");
    EXPECT_EQ(
        limits({{"--from", fileWith(table(60, -100))}, {"--guard-band", "3"}, {"--out", out}}), 1);
    EXPECT_THAT(output(), HasSubstr("takes a FailingLevel of -110"));
    std::string strong = "level\n";
    for (int i = 0; i < 60; ++i) {
        strong += "-5\n";
    }
    EXPECT_EQ(limits({{"--from", fileWith(strong)}, {"--out", out}}), 1);
    EXPECT_THAT(output(), HasSubstr("takes a WarningLevel of -110"));
    EXPECT_FALSE(std::filesystem::exists(mrl::System::path(out)));
    const std::string study =
        fileWith(R"({"studyVersion": 1, "variations": {"gauge": {"deviation": {"value": 13}}}})");
    EXPECT_THAT(refusal({{"--from", fileWith(table(60, -55))}, {"--study", study}}),
                HasSubstr("\"21.4\" is not a guard band"));
}

TEST_F(LimitsCommands, NeverWriteOverWhatTheyRead) {
    const std::string good = fileWith(table(60, -55));
    for (const char* input : {"--bad", "--study", "--out"}) {
        EXPECT_THAT(refusal({{"--from", good}, {input, good}}), HasSubstr("both name"));
    }
    EXPECT_EQ(bytesOfFile(good), table(60, -55));
}

TEST_F(LimitsCommands, ReplaceNothingButEarlierLimits) {
    const std::string good = fileWith(table(60, -55));
    for (const char* other :
         {"[calibration]\nversion = 1\n", "[parameters]\nWarningLevel = -60\nSSID = \"Lab\"\n",
          "language = \"de\"\n[parameters]\nWarningLevel = -60\n", "parameters = 3\n"}) {
        const std::string out = fileWith(other);
        EXPECT_THAT(refusal({{"--from", good}, {"--out", out}}),
                    HasSubstr("has other settings than limits"));
        EXPECT_EQ(bytesOfFile(out), other);
    }
    EXPECT_THAT(refusal({{"--from", good}, {"--out", fileWith("unit,level\n")}}),
                HasSubstr("line 1"));
    const std::string out = fileWith("");
    EXPECT_EQ(limits({{"--from", good}, {"--out", out}}), 0);
    EXPECT_EQ(limits({{"--from", good}, {"--guard-band", "1"}, {"--out", out}}), 0);
    EXPECT_THAT(bytesOfFile(out), HasSubstr("GuardBand = 1.0"));
}

TEST_F(LimitsCommands, TakeTheGuardBandFromAStudy) {
    const std::string study =
        fileWith(R"({"studyVersion": 1, "variations": {"gauge": {"deviation": {"value": 0.9}}}})");
    const std::string good = fileWith(table(30, -55));
    const std::string out = outputFile("limits.toml");
    EXPECT_EQ(limits({{"--from", good}, {"--study", study}, {"--out", out}}), 0);
    EXPECT_THAT(bytesOfFile(out), HasSubstr("\nGuardBand = 1.5\n"));
    EXPECT_THAT(bytesOfFile(out), HasSubstr("1.645 times"));
    const std::string hostile = outputFile("study\u2028SSID");
    std::filesystem::copy(mrl::System::path(study), mrl::System::path(hostile));
    EXPECT_EQ(limits({{"--from", good}, {"--study", hostile}, {"--out", out}}), 0);
    EXPECT_THAT(bytesOfFile(out), HasSubstr("study\\u2028SSID.\n"));
    EXPECT_EQ(limits({{"--from", good}, {"--study", study}, {"--guard-band", "2"}, {"--out", out}}),
              0);
    EXPECT_THAT(bytesOfFile(out), HasSubstr("\nGuardBand = 2.0\n"));
}

TEST_F(LimitsCommands, RefuseAFileThatIsNoStudyOfThisVersion) {
    const std::string good = fileWith(table(30, -55));
    for (const char* wrong :
         {"", "{", "[]", "{}", R"({"studyVersion": 1})", R"({"studyVersion": 1, "variations": 3})",
          R"({"studyVersion": 2, "variations": {"gauge": {"deviation": {"value": 0.9}}}})",
          R"({"studyVersion": 1, "variations": {"gauge": {"deviation": {"value": "x"}}}})"}) {
        EXPECT_THAT(refusal({{"--from", good}, {"--study", fileWith(wrong)}}),
                    HasSubstr("is no study"))
            << wrong;
    }
}

// A report as run --json writes it, shortened.
std::string report(double level, int second, const char* ssid = "Lab") {
    return R"({"schema": 1, "module": {"name": "mrlrsignal"}, "results": [{"started":
        "2026-11-22T10:00:)" +
           std::to_string(second) + R"(Z", "device": {"name": "A"}, "parameters": {"SSID": ")" +
           ssid + R"(", "BSSID": "", "Band": ""}, "measurements": [{"name": "Level", "value": )" +
           std::to_string(level) + R"(, "unit": "dBm"}]}]})";
}

std::string calibrated(std::string report) {
    const std::string unit = R"("unit": "dBm")";
    return report.insert(report.find(unit), R"("attributes": {"CalibrationSHA256": "ab"}, )");
}

class LimitsFromReports : public LimitsCommands {
protected:
    LimitsFromReports() { std::filesystem::create_directory(mrl::System::path(m_folder)); }

    void keep(const std::string& name, std::string_view text) {
        mrl::FileToWrite(mrl::System::path(m_folder + "/" + name)).write(text);
    }
    void keepTwelve() {
        for (int i = 10; i < 22; ++i) {
            keep("unit" + std::to_string(i) + ".json", report(-50 - i % 4, i));
        }
    }
    std::string refusal() { return LimitsCommands::refusal({{"--from", m_folder}}); }

    const std::string m_folder = outputFile("reports");
};

TEST_F(LimitsFromReports, TakeOneUnitFromEachReportOfTheFolder) {
    keepTwelve();
    keep("notes.txt", "no report");
    EXPECT_EQ(limits({{"--from", m_folder}}), 0);
    EXPECT_THAT(output(), HasSubstr("12 good units: mean -51.5"));
    const std::string one = m_folder + "/unit10.json";
    EXPECT_THAT(LimitsCommands::refusal({{"--from", one}}), HasSubstr("has 1"));
    EXPECT_EQ(limits({{"--from", m_folder}, {"--bad", one}}), 0);
    EXPECT_THAT(output(), HasSubstr("Of the bad units"));
}

TEST_F(LimitsFromReports, TakeReportsOfStationsThatAreAllCalibrated) {
    for (int i = 10; i < 22; ++i) {
        keep("unit" + std::to_string(i) + ".json", calibrated(report(-50 - i % 4, i)));
    }
    EXPECT_EQ(limits({{"--from", m_folder}}), 0);
    keep("unit30.json", report(-50, 30));
    EXPECT_THAT(refusal(),
                HasSubstr("unit30.json\" were made with a calibration and some without"));
}

TEST_F(LimitsFromReports, RefuseReportsThatAreNoMeasurementsOfOneUnitEach) {
    EXPECT_THAT(refusal(), HasSubstr("has no reports"));
    const std::string two = report(-50, 30).substr(0, report(-50, 30).size() - 2) + "," +
                            report(-51, 31).substr(report(-51, 31).find("{\"started"));
    const std::pair<std::string, const char*> reports[] = {
        {report(-50, 10), "the same measurement"},
        {report(-50, 30, "Other"), "another access point"},
        {calibrated(report(-50, 30)), "not on one scale"},
        {two, "several levels"},
        {R"({"schema": 1, "module": {"name": "mrlrsignal"}, "results": []})", "has no level"},
        {R"({"schema": 1, "module": {"name": "mrlrantenna"}, "results": []})", "no JSON report"},
        {R"({"schema": 2, "module": {"name": "mrlrsignal"}, "results": []})", "no JSON report"},
        {R"({"schema": 1, "module": {"name": "mrlrsignal"}, "results": 1})", "no JSON report"},
        {R"({"schema": 1, "module": {"name": "mrlrsignal"}, "results": [1, {"measurements": 2}]})",
         "has no level"},
        {"[", "no JSON report"},
        {"[]", "no JSON report"}};
    keepTwelve();
    for (const auto& [text, reason] : reports) {
        keep("unit30.json", text);
        EXPECT_THAT(refusal(), HasSubstr(reason)) << text;
    }
}

TEST_F(LimitsCommands, RefuseAGuardBandThatIsNone) {
    const std::string good = fileWith(table(30, -55));
    for (const char* wrong : {"x", "-1", "21", "1,5"}) {
        EXPECT_THAT(refusal({{"--from", good}, {"--guard-band", wrong}}),
                    HasSubstr("is not a guard band"))
            << wrong;
    }
}

} // namespace
} // namespace test
