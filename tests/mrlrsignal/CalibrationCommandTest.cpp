// A station is calibrated by a person who types, measures with its calibration, and is checked: all
// through the program's command line, on the simulated radio.
#include "SignalProgramTest.h"

#include <support/TemporaryFolder.h>

#include <tesk5/TestResult.h>

#include <mrl/Files.h>
#include <mrl/Json.h>
#include <mrl/Sha256.h>
#include <mrl/System.h>

#include <filesystem>
#include <fstream>
#include <optional>

namespace test {
namespace {

using namespace std::chrono_literals;
using tesk5::TestResult;
using testing::HasSubstr;
using testing::Not;

constexpr const char* BSSID = "02:00:00:00:01:00";

class Calibrations : public SignalProgramTest {
protected:
    Calibrations() {
        person().answer = [](int /*asked*/) { return std::string(); };
        hears(-60);
    }

    /// The access point, on channel 6 unless another is given.
    void hears(double level, std::uint32_t channel = 6) {
        radiosim::Bss bss{.bssid = {2, 0, 0, 0, 1, 0},
                          .rssi = radiosim::Level({.start = level}),
                          .heardEvery = 100ms};
        bss.channel = channel;
        startRadio({radiosim::AccessPoint{.ssid = "Lab", .bss = {{bss}}}});
    }
    /// Levels of the placements, one after another.
    void places(const std::vector<double>& levels) {
        person().asked = 0;
        person().answer = [this, levels](int asked) {
            hears(levels[static_cast<std::size_t>(asked - 1) % levels.size()]);
            return std::string();
        };
    }

    /// Placements around -60 dBm with a unit of -57 dBm: the offset is 3 dB.
    int calibrate(const std::vector<std::string>& more = {}) {
        std::vector<std::string> arguments = {
            "calibrate", "--set",     std::string("BSSID=") + BSSID,
            "--set",     "Samples=5", "--reference=-57",
            "--unit",    "G-1",       "--station",
            "Bench1",    "--out",     file()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return program(arguments);
    }
    int check(const std::vector<std::string>& more = {}) {
        std::vector<std::string> arguments = {
            "calibrate", "--check",  "--config", file(), "--set", std::string("BSSID=") + BSSID,
            "--set",     "Samples=5"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return program(arguments);
    }
    int run(const std::vector<std::string>& more = {}) {
        std::vector<std::string> arguments = {
            "run",   "--config",         file(),   "--set", "SSID=Lab",
            "--set", "FailingLevel=-70", "--json", report()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return program(arguments);
    }
    mrl::Json result() const { return mrl::parseJson(bytesOfFile(report()))["results"][0]; }
    std::string raisedKey() const { return result()["events"].at(0)["key"]; }

    std::string file(const char* name = "station.toml") const { return m_folder.file(name); }
    std::string report() const { return m_folder.file("report.json"); }
    std::string fileText() const { return bytesOfFile(file()); }
    void replaceInFile(const std::string& what, const std::string& by) const {
        std::string text = fileText();
        const std::size_t at = text.find(what);
        ASSERT_NE(at, std::string::npos) << what;
        mrl::FileToWrite(mrl::System::path(file())).write(text.replace(at, what.size(), by));
    }

private:
    TemporaryFolder m_folder;
};

TEST_F(Calibrations, AskForEachPlacementAndWriteTheOffset) {
    places({-60, -61, -59, -60, -60});
    EXPECT_EQ(calibrate(), 0) << errors();
    EXPECT_EQ(person().asked, 5);
    EXPECT_THAT(output(), HasSubstr("Placement 5 of 5: take the unit out"));
    EXPECT_THAT(output(), HasSubstr("-61.0\u00A0dBm from 5 readings."));
    EXPECT_THAT(output(), HasSubstr("offset 3.0\u00A0dB"));
    EXPECT_THAT(output(), HasSubstr("Expires on 2026-12-20."));
    EXPECT_THAT(fileText(), HasSubstr("offset = 3.00\n"));
    EXPECT_THAT(fileText(), HasSubstr("placements = [-60.00, -61.00, -59.00, -60.00, -60.00]\n"));
    EXPECT_THAT(fileText(), HasSubstr("date = \"2026-11-20\"\n"));
    EXPECT_THAT(fileText(), HasSubstr("unit = \"G-1\"\n"));
}

TEST_F(Calibrations, TakeAsManyPlacementsAndDaysAsAsked) {
    EXPECT_EQ(calibrate({"--placements", "2", "--days", "1", "--uncertainty", "0.5"}), 0);
    EXPECT_EQ(person().asked, 2);
    EXPECT_THAT(fileText(), HasSubstr("expires = \"2026-11-21\"\n"));
    EXPECT_THAT(fileText(), HasSubstr("reference-uncertainty = 0.50\n"));
}

TEST_F(Calibrations, GoIntoTheLevelAndWidenTheGuardBandAndAreNamedInTheReport) {
    places({-60, -61, -59, -60, -60});
    ASSERT_EQ(calibrate(), 0);
    hears(-73);
    EXPECT_EQ(run(), TestResult::WARN().value()) << errors();
    const mrl::Json level = result()["measurements"][0];
    EXPECT_EQ(level["value"], -70.0) << "-73 dBm and the offset of 3 dB";
    EXPECT_EQ(raisedKey(), "LEVEL_TOO_CLOSE") << "within the uncertainty of the limit";
    std::map<std::string, double> figures;
    for (const mrl::Json& figure : level["figures"]) {
        figures[figure["name"]] = figure["value"];
    }
    EXPECT_EQ(figures["AppliedOffset"], 3.0);
    EXPECT_GT(figures["OffsetUncertainty"], 0.8);
    EXPECT_EQ(figures["AppliedGuardBand"], figures["OffsetUncertainty"]);
    EXPECT_EQ(level["attributes"]["CalibrationSHA256"], mrl::sha256Of(fileText()));
    EXPECT_EQ(level["attributes"]["CalibratedStation"], "Bench1");
    EXPECT_EQ(level["attributes"]["Calibration"], file());
    EXPECT_THAT(output(), HasSubstr("SHA-256 of the calibration: " + mrl::sha256Of(fileText())));
}

TEST_F(Calibrations, CanBeNamedByAConfigurationOfTheirOwnFolder) {
    ASSERT_EQ(calibrate(), 0);
    mrl::FileToWrite(mrl::System::path(file("limits.toml")))
        .write(
            "[parameters]\nSSID = \"Lab\"\nFailingLevel = -58\nCalibration = \"station.toml\"\n");
    hears(-60);
    EXPECT_EQ(program({"run", "--config", file("limits.toml")}), TestResult::PASS().value())
        << output() << errors();
}

TEST_F(Calibrations, ThatAreExpiredOrOfAnotherStationOrRadioAreRefused) {
    ASSERT_EQ(calibrate({"--days", "1"}), 0);
    EXPECT_EQ(run({"--set", "Station=Bench1"}), TestResult::PASS().value());
    EXPECT_EQ(run({"--set", "Station=Bench2"}), TestResult::CANNOTRUN().value());
    EXPECT_EQ(raisedKey(), "CALIBRATION_OTHER_STATION");
    hears(-50, 36);
    EXPECT_EQ(run(), TestResult::CANNOTRUN().value());
    EXPECT_EQ(raisedKey(), "CALIBRATION_FOREIGN");
    EXPECT_TRUE(result()["measurements"].empty());
    clock().sleep(24h);
    hears(-50);
    EXPECT_EQ(run(), TestResult::CANNOTRUN().value());
    EXPECT_EQ(raisedKey(), "CALIBRATION_EXPIRED");
}

TEST_F(Calibrations, AreWarnedOfWhereTheSettingSaysSo) {
    ASSERT_EQ(calibrate({"--days", "1"}), 0);
    const std::vector<std::string> warn = {"--set", "UnusableCalibration=warn", "--set",
                                           "Station=Bench2"};
    EXPECT_EQ(run(warn), TestResult::WARN().value());
    EXPECT_EQ(raisedKey(), "CALIBRATION_OTHER_STATION");
    EXPECT_EQ(result()["measurements"][0]["value"], -60.0) << "the offset of another station";
    EXPECT_FALSE(result()["measurements"][0].contains("attributes"));
    clock().sleep(24h);
    hears(-60);
    EXPECT_EQ(run({"--set", "UnusableCalibration=warn"}), TestResult::WARN().value());
    EXPECT_EQ(raisedKey(), "CALIBRATION_EXPIRED");
    EXPECT_EQ(result()["measurements"][0]["value"], -57.0);
}

TEST_F(Calibrations, AreNoFileForAReport) {
    ASSERT_EQ(calibrate(), 0);
    const std::string before = fileText();
    EXPECT_EQ(program({"run", "--set", "SSID=Lab", "--set", "FailingLevel=-70", "--set",
                       "Calibration=" + file(), "--json", file()}),
              WRONG_USAGE);
    EXPECT_THAT(errors(), HasSubstr("--set Calibration and --json both name"));
    EXPECT_EQ(fileText(), before);
}

TEST_F(Calibrations, ThatAPersonEndsWriteNothing) {
    ASSERT_EQ(calibrate(), 0);
    const std::string before = fileText();
    hears(-40);
    for (const char* const end : {"q", "end of input", "Ctrl+C"}) {
        person().asked = 0;
        person().answer = [this, end](int asked) {
            if (asked == 3 && end == std::string("Ctrl+C")) {
                context().stopRequest.raise();
            }
            return asked == 3 && end == std::string("end of input")
                       ? std::nullopt
                       : std::optional<std::string>(asked == 3 ? end : "");
        };
        EXPECT_EQ(calibrate(), TestResult::USERABORTED().value()) << end;
        EXPECT_THAT(output(), HasSubstr("Nothing is written."));
        EXPECT_EQ(fileText(), before);
        context().stopRequest.clear();
    }
}

TEST_F(Calibrations, ShowNamesInTheirFileHarmlessly) {
    ASSERT_EQ(calibrate(), 0);
    replaceInFile("unit = \"G-1\"", "unit = \"G\\u001b[2J\\u202e\"");
    EXPECT_EQ(check(), TestResult::PASS().value());
    EXPECT_THAT(output(), HasSubstr("with the unit G\\x1B[2J\\u202E, whose level"));
}

TEST_F(Calibrations, ShowTheOffsetThatTheyCannotWrite) {
    const std::filesystem::path folder = mrl::System::path(file()).parent_path();
    const std::filesystem::path away = folder.string() + "-away";
    person().answer = [&](int asked) {
        if (asked == 2) { // the folder is gone, and its name taken: nothing can be written
            std::filesystem::rename(folder, away);
            std::ofstream(folder) << "full";
        }
        return std::string();
    };
    EXPECT_EQ(calibrate({"--placements", "2"}), TestResult::EXITEDABNORMALLY().value());
    EXPECT_THAT(output(), HasSubstr("offset 3.0\u00A0dB"));
    EXPECT_THAT(output(), Not(HasSubstr("Written")));
    std::filesystem::remove(folder);
    std::filesystem::rename(away, folder);
}

TEST_F(Calibrations, MeasureAtNothingButEnter) {
    person().answer = [](int asked) { return std::string(asked == 1 ? "Q" : ""); };
    EXPECT_EQ(calibrate({"--placements", "2"}), 0) << errors();
    EXPECT_EQ(person().asked, 3);
    EXPECT_THAT(output(), HasSubstr("Placement 1 of 2: take the unit out, put it back, and press "
                                    "Enter.\nPlacements: 2. Enter measures."));
}

TEST_F(Calibrations, RepeatAPlacementThatHasNoLevel) {
    person().answer = [this](int asked) {
        if (asked == 2) {
            startRadio(std::vector<radiosim::AccessPoint>());
        } else {
            hears(-60);
        }
        return std::string();
    };
    EXPECT_EQ(calibrate({"--placements", "2", "--set", "MaxSeconds=8"}), 0);
    EXPECT_EQ(person().asked, 3);
    EXPECT_THAT(output(), HasSubstr("was not seen within"));
}

TEST_F(Calibrations, OfOtherRadiosStayInTheFile) {
    ASSERT_EQ(calibrate(), 0);
    person().answer = [this](int /*asked*/) {
        hears(-50, 36);
        return std::string();
    };
    ASSERT_EQ(calibrate(), 0);
    EXPECT_THAT(fileText(), HasSubstr("band = \"2.4\"\noffset = 3.00\n"));
    EXPECT_THAT(fileText(), HasSubstr("band = \"5\"\noffset = -7.00\n"));
    hears(-50, 36);
    EXPECT_EQ(run(), TestResult::PASS().value()) << errors();
    EXPECT_EQ(result()["measurements"][0]["value"], -57.0);
}

TEST_F(Calibrations, DoNotOverwriteOtherSettingsOrAnotherStation) {
    ASSERT_EQ(calibrate(), 0);
    EXPECT_EQ(calibrate({"--station", "Bench1"}), WRONG_USAGE) << "an option twice";
    replaceInFile("\"Bench1\"", "\"Bench7\"");
    EXPECT_EQ(calibrate(), WRONG_USAGE);
    EXPECT_THAT(errors(), HasSubstr("\"Bench7\""));
    replaceInFile("[calibration]", "language = \"en\"\n[calibration]");
    EXPECT_EQ(calibrate(), WRONG_USAGE);
    EXPECT_THAT(errors(), HasSubstr("has other settings too"));
}

TEST_F(Calibrations, NeedTheirOptions) {
    EXPECT_EQ(program({"calibrate", "--set", std::string("BSSID=") + BSSID}), WRONG_USAGE);
    EXPECT_THAT(errors(), HasSubstr("calibrate needs --reference, such as: calibrate "));
    EXPECT_EQ(program({"calibrate", "--reference=-50"}), WRONG_USAGE);
    EXPECT_THAT(errors(), HasSubstr("calibrate needs --set BSSID"));
    EXPECT_EQ(program({"calibrate", "--check", "--set", std::string("BSSID=") + BSSID}),
              WRONG_USAGE);
    EXPECT_THAT(errors(), HasSubstr("--check needs the calibration"));
    EXPECT_EQ(program({"watch", "--check"}), WRONG_USAGE);
    EXPECT_EQ(person().asked, 0);
}

TEST_F(Calibrations, ThatWereChangedByHandAreRefused) {
    ASSERT_EQ(calibrate(), 0);
    const std::string whole = fileText();
    const std::pair<const char*, const char*> changes[] = {
        {"offset = 3.00", "offset = 4.00"},
        {"offset = 3.00\n", ""},
        {"offset = 3.00", "offset = nan"},
        {"\"2.4\"", "\"3\""},
        {"02:00", "02:0"},
        {"2026-11-20", "2026-13-20"},
        {"expires = \"2026-12-20\"", "expires = \"2027-12-20\""},
        {"days = 30", "days = 30.5"},
        {"placements = [-60.00, -60.00, -60.00, -60.00, -60.00]", "placements = [-60.00]"},
        {"placements = [-60.00", "placements = [60.00"},
        {"placements = [-60.00", "placements = [\"x\""},
        {"version = 1", "version = 2"},
        {"[[calibration.radio]]", "[calibration.radio]"},
    };
    for (const auto& [what, by] : changes) {
        mrl::FileToWrite(mrl::System::path(file())).write(whole);
        replaceInFile(what, by);
        EXPECT_EQ(run(), WRONG_USAGE) << what << " as " << by;
        EXPECT_THAT(errors(), HasSubstr("calibrate again")) << by;
    }
}

TEST_F(Calibrations, GoWithNoOtherOffset) {
    ASSERT_EQ(calibrate(), 0);
    EXPECT_EQ(run({"--set", "Offset=2"}), WRONG_USAGE);
    EXPECT_THAT(errors(), HasSubstr("Offset and Calibration are both given"));
}

TEST_F(Calibrations, AreCheckedWithoutBeingChanged) {
    places({-60, -61, -59, -60, -60});
    ASSERT_EQ(calibrate(), 0);
    const std::string before = fileText();
    person().asked = 0;
    EXPECT_EQ(check({"--allowed", "3"}), TestResult::PASS().value()) << errors();
    EXPECT_THAT(output(), HasSubstr("with the unit G-1, whose level is -57.0\u00A0dBm"));
    EXPECT_THAT(output(), HasSubstr("The calibration holds"));
    places({-66, -67, -65, -66, -66});
    EXPECT_EQ(check(), TestResult::FAIL().value());
    EXPECT_THAT(output(), HasSubstr("Offset then 3.0\u00A0dB, now 9.0\u00A0dB: changed by 6.0"));
    EXPECT_THAT(output(), HasSubstr("The station has drifted"));
    places({-61, -62, -60, -61, -61});
    EXPECT_EQ(check(), TestResult::WARN().value());
    EXPECT_THAT(output(), HasSubstr("more are needed"));
    EXPECT_EQ(fileText(), before);
}

} // namespace
} // namespace test
