// The guided study through the real framework, on the simulated radio, with a person who types.
#include "SignalProgramTest.h"

#include <study/FileLock.h>

#include <support/TemporaryFolder.h>

#include <tesk5/TestResult.h>

#include <mrl/Files.h>
#include <mrl/Json.h>
#include <mrl/System.h>

#include <fstream>

namespace test {
namespace {

using namespace std::chrono_literals;
using tesk5::TestResult;
using testing::HasSubstr;
using testing::Not;

class GuidedStudies : public SignalProgramTest {
protected:
    GuidedStudies() {
        const radiosim::Bss radio{.bssid = {2, 0, 0, 0, 1, 0},
                                  .rssi = radiosim::Level({.start = -60, .deviation = 2}),
                                  .heardEvery = 100ms};
        startRadio({radiosim::AccessPoint{.ssid = "Lab", .bss = {{radio}}}});
    }

    int study(std::vector<std::string> options, const std::string& ssid = "Lab") {
        options.insert(options.begin(), {"study", "--file", file(), "--set", "SSID=" + ssid,
                                         "--set", "MaxSeconds=8"});
        return program(std::move(options));
    }
    // Two parts, one operator, two trials.
    int smallStudy(std::vector<std::string> more = {}) {
        more.insert(more.begin(), {"--parts", "2", "--operators", "1", "--trials", "2"});
        return study(std::move(more));
    }

    std::string file(const char* name = "bench.study.json") const { return m_folder.file(name); }
    mrl::Json kept() const { return mrl::parseJson(bytesOfFile(file())); }
    void keep(std::string_view text) const {
        mrl::FileToWrite(mrl::System::path(file())).write(text);
    }

private:
    TemporaryFolder m_folder;
};

TEST_F(GuidedStudies, LeadThroughAllMeasurementsAndShowTheStudy) {
    person().pressesEnter(4);
    EXPECT_EQ(smallStudy({"--csv", file("raw.csv")}), 0) << errors();
    EXPECT_THAT(output(), HasSubstr("4 measurements"));
    EXPECT_THAT(output(), HasSubstr("Done: 0, left: 4. Operator 1: put down part "));
    EXPECT_THAT(output(), HasSubstr("Done: 3, left: 1. "));
    EXPECT_THAT(output(), HasSubstr("from 15 readings. Kept."));
    EXPECT_THAT(output(), HasSubstr("Repeatability"));
    EXPECT_THAT(output(), HasSubstr("Written: "));
    const mrl::Json study = kept();
    EXPECT_EQ(study["session"]["measurements"].size(), 4U);
    EXPECT_TRUE(study["variations"]["gauge"]["deviation"]["value"].is_number());
    EXPECT_THAT(bytesOfFile(file("raw.csv")),
                HasSubstr("part,operator,trial,level\r\n\"1\",\"1\",1,-"));
}

TEST_F(GuidedStudies, KeepEachMeasurementAtOnceAndGoOnWithTheSameOrder) {
    person().pressesEnter(2);
    std::size_t keptMeanwhile = 0;
    person().types("q", [&] { keptMeanwhile = kept()["session"]["measurements"].size(); });
    EXPECT_EQ(smallStudy(), TestResult::USERABORTED().value());
    EXPECT_EQ(keptMeanwhile, 2U);
    EXPECT_THAT(output(), HasSubstr("Measurements left: 2."));
    const mrl::Json before = kept();
    EXPECT_FALSE(before.contains("anova"));

    person().pressesEnter(2);
    EXPECT_EQ(study({}), 0) << errors();
    EXPECT_THAT(output(), HasSubstr("2 of 4 measurements are in "));
    const mrl::Json after = kept();
    EXPECT_EQ(after["session"]["order"], before["session"]["order"]);
    EXPECT_EQ(after["session"]["measurements"][1], before["session"]["measurements"][1]);
    EXPECT_EQ(study({"--tolerance", "20"}), 0);
    EXPECT_THAT(output(), HasSubstr("Of tolerance"));
    EXPECT_THAT(output(), Not(HasSubstr("put down")));
}

TEST_F(GuidedStudies, EndWithTheInput) {
    person().pressesEnter(1);
    EXPECT_EQ(smallStudy(), TestResult::USERABORTED().value());
    EXPECT_EQ(kept()["session"]["measurements"].size(), 1U);
}

TEST_F(GuidedStudies, LoseOnlyTheMeasurementUnderWayWhenInterrupted) {
    person().pressesEnter(1);
    person().types("", [this] { context().stopRequest.raise(); });
    person().pressesEnter(5);
    EXPECT_EQ(smallStudy(), TestResult::USERABORTED().value());
    EXPECT_EQ(kept()["session"]["measurements"].size(), 1U);
}

TEST_F(GuidedStudies, RepeatOrStrikeOutTheLastMeasurementWithAReason) {
    person().types("s"); // nothing yet
    person().pressesEnter(1);
    person().types("r");
    person().types(""); // no reason: it stays
    person().types("r");
    person().types("slipped");
    person().pressesEnter(1);
    person().types("s");
    person().types("wrong\xE4 part"); // from a terminal that writes Latin-1
    person().types("x");              // no key
    person().pressesEnter(4);
    EXPECT_EQ(smallStudy(), 0) << errors();
    EXPECT_THAT(output(), HasSubstr("There is no measurement yet."));
    EXPECT_THAT(output(), HasSubstr("Without a reason the measurement stays."));
    const mrl::Json session = kept()["session"];
    ASSERT_EQ(session["struckOut"].size(), 2U);
    EXPECT_EQ(session["struckOut"][0]["reason"], "slipped");
    EXPECT_EQ(session["struckOut"][1]["reason"], "wrong\uFFFD part");
    EXPECT_EQ(session["struckOut"][0]["part"], session["struckOut"][1]["part"]);
    EXPECT_EQ(session["measurements"][3]["part"], session["struckOut"][1]["part"]);
}

TEST_F(GuidedStudies, SayWhyThereIsNoLevelAndAskAgain) {
    person().pressesEnter(1);
    EXPECT_EQ(study({"--parts", "2", "--operators", "1", "--trials", "2"}, "Other"),
              TestResult::USERABORTED().value());
    EXPECT_THAT(output(), HasSubstr("\"Other\" was not seen"));
    EXPECT_EQ(kept()["session"]["measurements"].size(), 0U);
}

TEST_F(GuidedStudies, GoOnOnceThereIsRoomAgain) {
    const std::filesystem::path folder = mrl::System::path(file()).parent_path();
    const std::filesystem::path away = folder.string() + "-away";
    // The folder is gone, and its name taken: nothing can be written.
    person().types("", [&] {
        std::filesystem::rename(folder, away);
        std::ofstream(folder) << "full";
    });
    person().types("");
    person().types("", [&] {
        std::filesystem::remove(folder);
        std::filesystem::rename(away, folder);
    });
    person().types("q");
    EXPECT_EQ(smallStudy(), TestResult::USERABORTED().value());
    EXPECT_THAT(output(), HasSubstr("The study is not kept. Mend this"));
    EXPECT_EQ(kept()["session"]["measurements"].size(), 1U);
}

TEST_F(GuidedStudies, LeaveTheFileToTheProcessThatHasItFirst) {
    {
        const study::FileLock other(file());
        ASSERT_TRUE(other.isHeld());
        EXPECT_FALSE(study::FileLock(file()).isHeld());
        EXPECT_EQ(smallStudy(), WRONG_USAGE);
        EXPECT_THAT(errors(), HasSubstr("is open in another window"));
    }
    person().types("q", [this] { EXPECT_FALSE(study::FileLock(file()).isHeld()); });
    EXPECT_EQ(smallStudy(), TestResult::USERABORTED().value());
    EXPECT_TRUE(study::FileLock(file()).isHeld());
    EXPECT_FALSE(std::filesystem::exists(mrl::System::path(file("bench.study.json.lock"))));
}

TEST_F(GuidedStudies, RefuseAFileThatIsNotTheirs) {
    for (const char* wrong : {"", "[]", R"({"studyVersion": 2})"}) {
        keep(wrong);
        EXPECT_EQ(smallStudy(), WRONG_USAGE);
        EXPECT_THAT(errors(), HasSubstr("is no study of this version")) << wrong;
    }
    keep(R"({"studyVersion": 1})");
    EXPECT_EQ(smallStudy(), WRONG_USAGE);
    EXPECT_THAT(errors(), HasSubstr("holds no guided study"));
    EXPECT_EQ(bytesOfFile(file()), R"({"studyVersion": 1})");
}

TEST_F(GuidedStudies, RefuseAnotherSizeOrAccessPointThanTheirs) {
    person().types("q");
    smallStudy();
    EXPECT_EQ(study({"--parts", "3", "--operators", "1", "--trials", "2"}), WRONG_USAGE);
    EXPECT_THAT(errors(), HasSubstr("has parts: 2, operators: 1, trials: 2"));
    EXPECT_EQ(study({}, "Other"), WRONG_USAGE);
    EXPECT_THAT(errors(), HasSubstr("measures \"Lab\", not \"Other\""));
}

TEST_F(GuidedStudies, NeedASizeAndAnAccessPoint) {
    EXPECT_EQ(study({}), WRONG_USAGE);
    EXPECT_THAT(errors(), HasSubstr("--parts 10 --operators 3 --trials 3"));
    EXPECT_EQ(study({"--parts", "3", "--trials", "2"}), WRONG_USAGE);
    EXPECT_THAT(errors(), HasSubstr("--parts 10 --operators 3 --trials 3"));
    EXPECT_EQ(study({"--parts", "1", "--operators", "1", "--trials", "2"}), WRONG_USAGE);
    EXPECT_EQ(study({}, ""), WRONG_USAGE);
    EXPECT_FALSE(std::filesystem::exists(mrl::System::path(file())));
}

TEST_F(GuidedStudies, NeedNoDeviceForATable) {
    radiosim::Scenario none;
    none.interfaces.clear();
    startRadio(none);
    const std::string table = file("readings.csv");
    mrl::FileToWrite(mrl::System::path(table)).write("part,level\n1,-50\n1,-51\n2,-55\n2,-56\n");
    EXPECT_EQ(runSignalProgram({"mrlrsignal", "study", "--from", table}), 0) << errors();
    EXPECT_EQ(smallStudy(), TestResult::CANNOTRUN().value());
}

// One part, whose level is known.
const std::vector<std::string> SHORT_STUDY = {"--type1", "--reference=-60", "--tolerance", "20"};

TEST_F(GuidedStudies, OfOnePartLeadThroughItsMeasurementsAndGoOn) {
    person().pressesEnter(24);
    person().types("q");
    EXPECT_EQ(study(SHORT_STUDY), TestResult::USERABORTED().value());
    EXPECT_THAT(output(), HasSubstr("Short study of one part: 25 measurements."));
    EXPECT_THAT(output(), HasSubstr("Done: 24, left: 1. "));
    person().pressesEnter(1);
    EXPECT_EQ(study(SHORT_STUDY), 0) << errors();
    EXPECT_THAT(output(), HasSubstr("25 readings: mean -6"));
    EXPECT_THAT(output(), HasSubstr("Cg "));
    EXPECT_EQ(kept()["session"]["measurements"].size(), 25U);
    EXPECT_EQ(kept()["typeOne"]["reference"], -60);
    EXPECT_EQ(kept()["readings"][0]["levels"].size(), 25U);
    EXPECT_EQ(study(SHORT_STUDY), 0) << "shows the figures of a whole study again";
    EXPECT_EQ(kept()["session"]["measurements"].size(), 25U);
}

TEST_F(GuidedStudies, OfOnePartAndOfSeveralDoNotGoOnWithEachOther) {
    person().types("q");
    EXPECT_EQ(study(SHORT_STUDY), TestResult::USERABORTED().value());
    EXPECT_EQ(study({}), WRONG_USAGE);
    EXPECT_THAT(errors(), HasSubstr("has parts: 1, operators: 1, trials: 25"));
}

TEST_F(GuidedStudies, OfOnePartRefuseWhatDoesNotGoWithThem) {
    for (const auto& [more, reason] : std::vector<std::pair<std::vector<std::string>, std::string>>{
             {{"--trials", "24"}, "--trials 24: --type1 needs at least 25 measurements"},
             {{"--parts", "2"}, "--parts does not go"},
             {{"--page", file("p.html")}, "--page does not go"}}) {
        std::vector<std::string> options = SHORT_STUDY;
        options.insert(options.end(), more.begin(), more.end());
        EXPECT_EQ(study(options), WRONG_USAGE);
        EXPECT_THAT(errors(), HasSubstr(reason));
    }
}

} // namespace
} // namespace test
