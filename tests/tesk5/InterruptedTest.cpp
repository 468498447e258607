// What is left of reports and logs when the disk is full or a process was killed while it wrote.
#include "FrameworkTest.h"

#include <reports/ReportFile.h>

#ifndef _WIN32
#include <support/FullDisk.h>
#endif

#include <tesk5/TeskException.h>

namespace test {

namespace {

using tesk5::TestResult;
using testing::ElementsAre;

class LeftBehind : public FrameworkTest {
protected:
    LeftBehind() { registerTest("A", TestResult::PASS()); }
};

TEST_F(LeftBehind, TemporaryFilesOfAKilledProcessAreRemovedByTheNextReport) {
    fileWith("r.json.4294967295.tmp", "{\"half\":");
    fileWith("r.json.7.tmp", "");
    for (const char* other : {"r.json.tmp", "r.json.7x.tmp", "r.json.7.tmp.bak", "r.jso.7.tmp"}) {
        fileWith(other, "not ours");
    }
    EXPECT_EQ(start({"run", "--json", file("r.json")}), 0);
    EXPECT_THAT(filesThere(), ElementsAre("devices.json", "r.jso.7.tmp", "r.json",
                                          "r.json.7.tmp.bak", "r.json.7x.tmp", "r.json.tmp"));
}

TEST_F(LeftBehind, FoldersOfSuchANameStay) {
    std::filesystem::create_directory(mrl::System::path(file("r.json.7.tmp")));
    EXPECT_EQ(start({"run", "--json", file("r.json")}), 0);
    EXPECT_THAT(filesThere(), ElementsAre("devices.json", "r.json", "r.json.7.tmp"));
}

#ifndef _WIN32

TEST_F(LeftBehind, AReportOnAFullDiskIsTheOldOneWhole) {
    EXPECT_EQ(start({"run", "--json", file("r.json")}), 0);
    const std::string old = bytesOfFile(file("r.json"));
    for (rlim_t bytes = 0; bytes < old.size(); bytes += 37) {
        const FullDisk disk(bytes);
        EXPECT_THROW(start({"run", "--json", file("r.json")}), tesk5::TeskException) << bytes;
        EXPECT_EQ(bytesOfFile(file("r.json")), old) << bytes;
        EXPECT_THAT(filesThere(), ElementsAre("devices.json", "r.json")) << bytes;
    }
    EXPECT_EQ(start({"run", "--json", file("r.json")}), 0) << "the next run works";
}

TEST_F(LeftBehind, ANewReportOnAFullDiskIsAbsent) {
    {
        const FullDisk disk(100);
        EXPECT_THROW(start({"run", "--json", file("r.json")}), tesk5::TeskException);
    }
    EXPECT_THAT(filesThere(), ElementsAre("devices.json"));
}

TEST_F(LeftBehind, EachReportThatAFullDiskHasNoRoomForIsNamed) {
    const FullDisk disk(100);
    try {
        start({"run", "--json", file("r.json"), "--junit", file("r.xml"), "--html", file("r.htm")});
        GTEST_FAIL() << "there was room";
    } catch (const tesk5::TeskException& failure) {
        const std::string text = failure.toString().getUTF8String().bytes();
        for (const char* name : {"r.json", "r.xml", "r.htm"}) {
            EXPECT_THAT(text, testing::HasSubstr(std::string(name) + "\" could not be written: "));
        }
    }
    EXPECT_THAT(filesThere(), ElementsAre("devices.json"));
}

TEST_F(LeftBehind, ALogOnAFullDiskCostsNoVerdict) {
    const FullDisk disk(10);
    EXPECT_EQ(start({"run", "--log", file("r.log"), "--log-level", "0"}), 0);
    EXPECT_LE(bytesOfFile(file("r.log")).size(), 10U);
}

#endif

} // namespace

} // namespace test
