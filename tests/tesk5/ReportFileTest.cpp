// The files of reports and logs: what is in the folder after a run, also when the disk is full, a
// process was killed while it wrote, or the place is taken.
#include "FrameworkTest.h"

#include <tesk5/ReportFile.h>

#ifndef _WIN32
#include <support/FullDisk.h>
#endif

#include <mrl/Exception.h>

namespace test {

namespace {

class ReportFiles : public FrameworkTest {
protected:
    ReportFiles() { registerTest("A", TestResult::PASS()); }

    int startWithReport() { return start({"run", "--json", file("r.json")}); }
    /// The text of the exception that a run with these reports ends with.
    std::string failureOf(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "run");
        return reasonOf([&] { start(arguments); });
    }
    /// Makes it impossible to write "r.json" from now on.
    void takeItsPlace() const {
        std::filesystem::create_directory(mrl::System::path(file("r.json")));
        fileWith("r.json/full", "");
    }
};

TEST_F(ReportFiles, AreReplacedAtTheEndOfTheRunAndNothingElseIsLeft) {
    fileWith("r.json", "old");
    registerTest("B", [this](const DiagDevice&) {
        EXPECT_EQ(bytesOfFile(file("r.json")), "old");
        EXPECT_THAT(filesThere(), ElementsAre("devices.json", "r.json"));
        return TestResult::PASS();
    });
    EXPECT_EQ(startWithReport(), 0);
    EXPECT_THAT(bytesOfFile(file("r.json")), HasSubstr("\"exit\": 0"));
    EXPECT_THAT(filesThere(), ElementsAre("devices.json", "r.json"));
}

TEST_F(ReportFiles, ThatCannotBeWrittenAreAFailureWithAReasonAndTheStreamOfEventsDoesNotEnd) {
    registerTest("B", [this](const DiagDevice&) {
        takeItsPlace();
        return TestResult::PASS();
    });
    EXPECT_THAT(failureOf({"--events", "--json", file("r.json")}),
                HasSubstr("r.json\" could not be written: "));
    EXPECT_THAT(output(), Not(HasSubstr("runEnded")));
    EXPECT_THAT(filesThere(), ElementsAre("devices.json", "r.json"));
}

TEST_F(ReportFiles, ThatCannotBeWrittenDoNotHideTheExceptionThatEndedTheRun) {
    registerTest("B", [this](const DiagDevice&) -> TestResult {
        takeItsPlace();
        throw mrl::Exception("oops");
    });
    EXPECT_THROW(startWithReport(), mrl::Exception);
    EXPECT_THAT(errors(), HasSubstr("r.json\" could not be written: "));
}

TEST_F(ReportFiles, AreRecognisedByDifferentPaths) {
    EXPECT_TRUE(tesk5::nameSameFile(file("a"), file("./a")));
    EXPECT_FALSE(tesk5::nameSameFile(file("a"), file("b")));
    EXPECT_TRUE(tesk5::nameSameFile("a", "./x/../a"));
}

#ifndef _WIN32

// On Windows, making a link takes a right that few users have.
TEST_F(ReportFiles, BehindALinkAreReplacedAndTheLinkStays) {
    std::filesystem::create_symlink(mrl::System::path(fileWith("real.json", "old")),
                                    mrl::System::path(file("r.json")));
    EXPECT_EQ(startWithReport(), 0);
    EXPECT_THAT(bytesOfFile(file("real.json")), HasSubstr("\"schema\": 1"));
    EXPECT_TRUE(std::filesystem::is_symlink(mrl::System::path(file("r.json"))));
}

TEST_F(ReportFiles, OnAFullDiskAreTheOldOnesWhole) {
    EXPECT_EQ(startWithReport(), 0);
    const std::string old = bytesOfFile(file("r.json"));
    for (rlim_t bytes = 0; bytes < old.size(); bytes += 37) {
        const FullDisk disk(bytes);
        EXPECT_THROW(startWithReport(), TeskException) << bytes;
        EXPECT_EQ(bytesOfFile(file("r.json")), old) << bytes;
        EXPECT_THAT(filesThere(), ElementsAre("devices.json", "r.json")) << bytes;
    }
    EXPECT_EQ(startWithReport(), 0) << "the next run works";
}

TEST_F(ReportFiles, OnAFullDiskAreAllNamedAndNewOnesAreAbsent) {
    const FullDisk disk(100);
    const std::string failure =
        failureOf({"--json", file("r.json"), "--junit", file("r.xml"), "--html", file("r.htm")});
    for (const char* name : {"r.json", "r.xml", "r.htm"}) {
        EXPECT_THAT(failure, HasSubstr(std::string(name) + "\" could not be written: "));
    }
    EXPECT_THAT(filesThere(), ElementsAre("devices.json"));
}

TEST_F(ReportFiles, ALogOnAFullDiskCostsNoVerdict) {
    const FullDisk disk(10);
    EXPECT_EQ(start({"run", "--log", file("r.log"), "--log-level", "0"}), 0);
    EXPECT_LE(bytesOfFile(file("r.log")).size(), 10U);
}

#endif

} // namespace

} // namespace test
