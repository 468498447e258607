// The journal: one line a run.
#include "Reports.h"

#include <reports/Journal.h>

#include <mrl/System.h>

#ifndef _WIN32
#include <support/FullDisk.h>
#endif

namespace test {

namespace {

class Journals : public Reports {
protected:
    Journals() {
        registerTest("Level", [](const DiagDevice&) {
            DiagModule::measured({.name = "Level",
                                  .value = *tesk5::Number::parse("-57.5"),
                                  .unit = "dBm",
                                  .lowest = -100,
                                  .highest = 0,
                                  .limits = {{"FailingLevel", -70, Severity::error}}});
            return TestResult::WARN();
        });
    }

    int startWithJournal(std::vector<std::string> more = {}) {
        more.insert(more.begin(), {"run", "--journal", file("j.jsonl")});
        return start(std::move(more));
    }
    std::vector<ordered_json> lines() const {
        std::vector<ordered_json> all;
        std::istringstream stream(bytesOfFile(file("j.jsonl")));
        for (std::string line; std::getline(stream, line);) {
            all.push_back(ordered_json::parse(line));
        }
        return all;
    }
    void takeItsPlace() const {
        std::filesystem::create_directory(mrl::System::path(file("j.jsonl")));
    }
};

TEST_F(Journals, HaveALineForEachRunWithPartsOfItsReport) {
    EXPECT_EQ(startWithJournal({"--json", file("r.json")}), TestResult::WARN().value());
    EXPECT_EQ(startWithJournal(), TestResult::WARN().value());
    ASSERT_EQ(lines().size(), 2U);
    const ordered_json line = lines().front();
    const ordered_json report = json();
    EXPECT_EQ(line.at("journal"), 1);
    for (const char* member : {"runIdentifier", "started", "ended", "exit", "module"}) {
        EXPECT_EQ(line.at(member), report.at(member)) << member;
    }
    EXPECT_EQ(line.at("result"), "WARN");
    const ordered_json& reported = report.at("results").at(0);
    const ordered_json& test = line.at("tests").at(0);
    for (const char* member : {"test", "device", "result", "measurements"}) {
        EXPECT_EQ(test.at(member), reported.at(member)) << member;
    }
    EXPECT_NE(lines()[0].at("runIdentifier"), lines()[1].at("runIdentifier"));
}

TEST_F(Journals, HaveTheTagsAndWhatWasInForceByWhichAHistoryCounts) {
    startWithJournal({"--tag", "serial=A1", "--tag", "station=L3-07", "--json", file("r.json")});
    EXPECT_EQ(lines().back().at("tags").dump(), R"({"serial":"A1","station":"L3-07"})");
    for (const char* member : {"tags", "pc", "limits"}) {
        EXPECT_EQ(lines().back().contains(member), json().contains(member)) << member;
        EXPECT_EQ(lines().back().value(member, ordered_json()),
                  json().value(member, ordered_json()))
            << member;
    }
    forgetOutput();
    EXPECT_EQ(startBare({"history", file("j.jsonl"), "--station", "l3-07", "--serial", "a1"}), 0);
    EXPECT_THAT(output(), HasSubstr("  L3-07 "));
    EXPECT_THAT(output(), Not(HasSubstr("without a serial")));
}

TEST_F(Journals, NameATestWithoutDeviceAndTheFailureOfOne) {
    setDevices(0);
    EXPECT_EQ(startWithJournal(), TestResult::CANNOTRUN().value());
    EXPECT_EQ(lines().back().at("tests").dump(),
              R"([{"test":"Level","result":"CANNOTRUN","measurements":[]}])");
    setDevices(1);
    registerThrowing("Broken", TeskException("oops"));
    EXPECT_EQ(startWithJournal({"Broken"}), TestResult::INTERNALERROR().value());
    EXPECT_EQ(lines().back().at("tests").at(0).at("failure"), "oops");
}

TEST_F(Journals, HaveTheRunThatAnExceptionEnded) {
    registerThrowing("Broken", std::runtime_error("oops"));
    EXPECT_THROW(startWithJournal({"Broken"}), std::runtime_error);
    EXPECT_EQ(lines().back().at("result"), "EXITEDABNORMALLY");
}

TEST_F(Journals, AreAsciiWhateverTheNamesAre) {
    setDevices(
        R"({"devices": [{"name": "K\u00e4rtchen \ud83d\ude00 \u202e", "capabilities": ["Wireless"]}]})");
    startWithJournal();
    const std::string bytes = bytesOfFile(file("j.jsonl"));
    EXPECT_TRUE(std::all_of(bytes.begin(), bytes.end(), [](char c) {
        return c == '\n' || (c >= ' ' && c <= '~');
    })) << bytes;
}

TEST_F(Journals, GetTheFoldersAboveThem) {
    EXPECT_EQ(start({"run", "--journal", file("a/b/j.jsonl")}), TestResult::WARN().value());
    EXPECT_THAT(bytesOfFile(file("a/b/j.jsonl")), HasSubstr("\"journal\":1"));
}

TEST_F(Journals, ThatCannotBeWrittenAreRefusedBeforeTheRun) {
    takeItsPlace();
    EXPECT_EQ(startWithJournal(), 64);
    EXPECT_EQ(errors(), "example: the journal \"" + file("j.jsonl") +
                            "\" cannot be written: it is a directory; name a file that you may "
                            "write to\n");
    EXPECT_THAT(output(), IsEmpty());
}

TEST_F(Journals, ThatAnotherOptionNamesAreRefused) {
    EXPECT_EQ(startWithJournal({"--json", file("j.jsonl")}), 64);
    EXPECT_THAT(errors(), HasSubstr("--json and --journal both name"));
}

TEST_F(Journals, ThatFailAtTheEndAreNamedWithTheReportsThatFail) {
    registerTest("B", [this](const DiagDevice&) {
        takeItsPlace();
        return TestResult::PASS();
    });
    const std::string reason = reasonOf([&] { startWithJournal({"--json", file("r.json")}); });
    EXPECT_THAT(reason, HasSubstr("the run is not in the journal \"" + file("j.jsonl") + "\": "));
    EXPECT_TRUE(std::filesystem::exists(mrl::System::path(file("r.json"))));
}

TEST_F(Journals, AreOfRunsAlone) {
    EXPECT_EQ(start({"list", "--journal", file("j.jsonl")}), 64);
    EXPECT_THAT(errors(), HasSubstr("--journal"));
}

TEST_F(Journals, CanBeNamedInTheConfiguration) {
    const std::string config = fileWith("station.toml", "[outputs]\njournal = \"j.jsonl\"\n");
    EXPECT_EQ(start({"run", "--config", config}), TestResult::WARN().value());
    EXPECT_EQ(lines().size(), 1U);
}

#ifndef _WIN32

TEST_F(Journals, OnAFullDiskFailAndKeepTheLinesBefore) {
    startWithJournal();
    const std::string before = bytesOfFile(file("j.jsonl"));
    const std::string reason = reasonOf([&] {
        const FullDisk full(before.size() + 10);
        startWithJournal();
    });
    EXPECT_THAT(reason, HasSubstr("the run is not in the journal"));
    EXPECT_THAT(bytesOfFile(file("j.jsonl")), testing::StartsWith(before));
    startWithJournal();
    EXPECT_THAT(bytesOfFile(file("j.jsonl")), testing::StartsWith(before));
    forgetOutput();
    EXPECT_EQ(startBare({"history", file("j.jsonl")}), 0);
    EXPECT_THAT(errors(), HasSubstr("line 2 does not count: it was cut, or is no JSON"));
    EXPECT_THAT(output(), HasSubstr("WARN 2"));
}

#endif

} // namespace

} // namespace test
