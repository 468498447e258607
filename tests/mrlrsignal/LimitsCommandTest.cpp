// The limits that a configuration file gets, and the tables that are refused.
#include "LimitsCommand.h"

#include "FixedRandom.h"
#include "MeasurementCommand.h"

#include <gmock/gmock.h>

#include <cmath>

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
    int limits(const Options& options) { return call(limitsCommand(), options); }
    std::string refusal(const Options& options) { return refusalOf(limitsCommand(), options); }
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

TEST_F(LimitsCommands, TakeTheGuardBandFromAStudy) {
    const std::string study =
        fileWith(R"({"studyVersion": 1, "variations": {"gauge": {"deviation": {"value": 0.9}}}})");
    const std::string good = fileWith(table(30, -55));
    const std::string out = outputFile("limits.toml");
    EXPECT_EQ(limits({{"--from", good}, {"--study", study}, {"--out", out}}), 0);
    EXPECT_THAT(bytesOfFile(out), HasSubstr("\nGuardBand = 1.5\n"));
    EXPECT_THAT(bytesOfFile(out), HasSubstr("1.645 times"));
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
