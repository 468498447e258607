// Where reports go: their folders, other names of one file, other processes that write the same
// one.
#include "FrameworkTest.h"

#include <tesk5/ReportFile.h>
#include <tesk5/TeskException.h>

#include <mrl/System.h>

#ifdef _WIN32
#include <fstream>
#include <thread>
#else
#include <sys/stat.h>
#endif

namespace test {

namespace {

using tesk5::nameSameFile;

namespace fs = std::filesystem;

class ReportPlaces : public FrameworkTest {
protected:
    ReportPlaces() { registerTest("A", TestResult::PASS()); }

    /// A folder as a process leaves it that is killed while it writes the report `name`.
    std::string leftover(const std::string& name, const std::string& process) const {
        std::string folder = name + "." + process + "-4294967295.tmp";
        fs::create_directory(path(folder));
        fileWith(folder + "/mrl-report", "{\"half\":");
        return folder;
    }
    fs::path path(const std::string& name) const { return mrl::System::path(file(name)); }

    /// No process has it: numbers of processes are much lower.
    static constexpr const char* ENDED = "4294967291";
};

TEST_F(ReportPlaces, OfAKilledProcessAreRemovedByTheNextReport) {
    leftover("r.json", ENDED);
    fs::create_directory(path(std::string("r.json.") + ENDED + "-7.tmp"));
    EXPECT_EQ(start({"run", "--json", file("r.json")}), 0);
    EXPECT_THAT(filesThere(), ElementsAre("devices.json", "r.json"));
}

TEST_F(ReportPlaces, OfAProcessThatStillRunsStay) {
    const std::string folder = leftover("r.json", std::to_string(mrl::System::processId()));
    EXPECT_EQ(start({"run", "--json", file("r.json")}), 0);
    EXPECT_TRUE(fs::exists(path(folder + "/mrl-report")));
}

TEST_F(ReportPlaces, OfOthersStayWhateverTheirNames) {
    const std::string ours = std::string("r.json.") + ENDED + "-7.tmp";
    fileWith(ours, "a file of this name");
    for (const char* other : {"r.json.tmp", "r.json.7.tmp", "r.json.7-x.tmp", "r.json.7-7.tmp.bak",
                              "r.json.-7.tmp", "r.jso.7-7.tmp"}) {
        fs::create_directory(path(other));
        fileWith(std::string(other) + "/mrl-report", "not ours");
    }
    const std::string full = leftover("r.json", ENDED);
    fileWith(full + "/notes.txt", "a user's");
    const std::vector<std::string> before = filesThere();
    EXPECT_EQ(start({"run", "--json", file("r.json")}), 0);
    EXPECT_EQ(filesThere().size(), before.size() + 1) << "only the report is new";
    EXPECT_EQ(bytesOfFile(file(full + "/notes.txt")), "a user's");
}

TEST_F(ReportPlaces, ThatTheCommandLineNamesStay) {
    const std::string folder = leftover("r.json", ENDED);
    fileWith(folder + "/mrl-report", "[console]\nquiet = true\n");
    EXPECT_EQ(start({"run", "--json", file("r.json"), "--config", file(folder + "/mrl-report")}),
              0);
    EXPECT_EQ(bytesOfFile(file(folder + "/mrl-report")), "[console]\nquiet = true\n");
}

TEST_F(ReportPlaces, GetTheFoldersAboveThem) {
    EXPECT_EQ(start({"run", "--json", file("a/b/r.json"), "--log", file("c/d/r.log")}), 0);
    EXPECT_THAT(bytesOfFile(file("a/b/r.json")), HasSubstr("\"schema\": 1"));
    EXPECT_TRUE(fs::exists(path("c/d/r.log")));
}

TEST_F(ReportPlaces, LeaveNoFolderBehindWhenTheRunIsRefused) {
    fileWith("plain", "");
    EXPECT_EQ(start({"run", "--json", file("a/b/r.json"), "--junit", file("plain/r.xml")}), 64);
    EXPECT_THAT(errors(), HasSubstr("plain/r.xml"));
    EXPECT_THAT(filesThere(), ElementsAre("devices.json", "plain"));
}

TEST_F(ReportPlaces, ThatAreMissingHaveAsManyNamesAsTheirFolder) {
    fs::create_directory(path("folder"));
    EXPECT_TRUE(nameSameFile(file("folder/new"), file("folder/../folder/./new")));
    EXPECT_FALSE(nameSameFile(file("folder/new"), file("folder/other")));
    EXPECT_FALSE(nameSameFile(file("folder/new"), file("new")));
#ifdef _WIN32
    EXPECT_TRUE(
        nameSameFile(file("folder/new"), "\\\\?\\" + path("folder/NEW").make_preferred().string()));
#else
    fs::create_directory_symlink(path("folder"), path("link"));
    EXPECT_TRUE(nameSameFile(file("folder/new"), file("link/new")));
    EXPECT_EQ(start({"run", "--json", file("folder/new"), "--junit", file("link/new")}), 64);
    EXPECT_THAT(errors(), HasSubstr("--json and --junit both name"));
#endif
}

#ifdef _WIN32

TEST_F(ReportPlaces, AreTriedForTwoSecondsWhileAnotherProgramHasThemOpen) {
    const tesk5::ReportFile report(fileWith("r.json", "old"));
    const std::ifstream reader(path("r.json")); // such a stream does not share the right to delete
    ASSERT_TRUE(reader);
    EXPECT_THROW(report.replace("new"), tesk5::TeskException);
    EXPECT_THAT(clock().sleeps(), testing::AllOf(testing::SizeIs(99), testing::Each(20)));
    EXPECT_EQ(bytesOfFile(file("r.json")), "old");
    EXPECT_THAT(filesThere(), ElementsAre("devices.json", "r.json"));
}

TEST_F(ReportPlaces, AreWrittenAsSoonAsTheOtherProgramClosesThem) {
    const tesk5::ReportFile report(fileWith("r.json", "old"));
    std::ifstream reader(path("r.json"));
    std::thread closing([&] {
        while (clock().sleeps().size() < 3) {
            std::this_thread::yield();
        }
        reader.close();
    });
    report.replace("new");
    closing.join();
    EXPECT_EQ(bytesOfFile(file("r.json")), "new");
}

#else

TEST_F(ReportPlaces, ThatLeadToADeviceOrAPipeAreRefusedBeforeTheRun) {
    fs::create_symlink("/dev/null", path("link"));
    ASSERT_EQ(mkfifo(file("pipe").c_str(), 0600), 0);
    for (const std::string& name : {file("link"), file("pipe"), std::string("/dev/null")}) {
        for (const char* option : {"--json", "--log"}) {
            forgetOutput();
            EXPECT_EQ(start({"run", option, name}), 64) << option << " " << name;
            EXPECT_THAT(errors(), HasSubstr("it is no ordinary file")) << option << " " << name;
            EXPECT_THAT(output(), IsEmpty());
        }
    }
}

#endif

} // namespace

} // namespace test
