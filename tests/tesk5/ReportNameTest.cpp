#include "Reports.h"

#include <reports/ReportName.h>

#include <tesk5/BadInput.h>

#include <set>
#include <thread>

namespace {

using tesk5::filledName;
using tesk5::NameParts;
using tesk5::takenName;
using tesk5::TestResult;
using test::HasSubstr;
using test::Reports;
using testing::ElementsAre;
using testing::IsSupersetOf;
using testing::UnorderedElementsAre;

// The name of a file for a serial number.
std::string named(const std::string& serial) {
    return filledName("{serial}", {{"serial", serial}});
}

TEST(ReportNames, KeepAValueWithinOneNameThatEveryFileSystemTakes) {
    const std::pair<const char*, const char*> rows[] = {
        {"A1-é.x", "A1-é.x"},     {"../../etc/passwd", "..%2F..%2Fetc%2Fpasswd"},
        {"C:\\x", "C%3A%5Cx"},    {"<\"|?*>%", "%3C%22%7C%3F%2A%3E%25"},
        {"..", ".%2E"},           {"a. ", "a.%20"},
        {"a\x1F\x7F", "a%1F%7F"}, {"CON", "%43ON"},
        {"nul.txt", "%6Eul.txt"}, {"Com1", "%43om1"},
        {"CONTACT", "CONTACT"},   {"{serial}", "{serial}"},
    };
    for (const auto& [value, name] : rows) {
        EXPECT_EQ(named(value), name);
    }
}

TEST(ReportNames, OfDifferentValuesDifferAndAreNotTooLong) {
    const std::string hundred(100, 'x');
    std::set<std::string> names;
    for (const std::string& value :
         {std::string("A/1"), std::string("A:1"), std::string("A%2F1"), hundred, hundred + "1",
          hundred + "2", std::string(47, 'x') + std::string(100, '/'),
          std::string(46, 'x') + std::string(100, '/'),
          std::string(47, 'x') + std::string(50, '?')}) {
        names.insert(named(value));
        EXPECT_LE(named(value).size(), 72U) << value;
    }
    EXPECT_EQ(names.size(), 9U);
    std::string umlauts = "x";
    for (int i = 0; i < 100; ++i) {
        umlauts += "ü";
    }
    EXPECT_THAT(named(umlauts), testing::StartsWith("xüüüüüüüüüüüüüüüüüüüüüüü~"))
        << "no half character";
}

TEST(ReportNames, HaveBracesThemselvesWhereTheyAreDoubled) {
    EXPECT_EQ(filledName("{{{a}}}-{{}}.json", {{"a", "1"}}), "{1}-{}.json");
    EXPECT_EQ(filledName("plain.json", {}), "plain.json");
}

class NamedReports : public Reports {
protected:
    NamedReports() {
        registerTest("A", [this](const auto&) { return m_result; });
    }
    int startFor(const std::string& name, std::vector<std::string> more = {}) {
        more.insert(more.begin(), {"run", "--json", file(name)});
        forgetOutput();
        return start(more);
    }
    // The files in a folder of this test's own.
    std::vector<std::string> filesIn(const std::string& folder) const {
        std::vector<std::string> names;
        for (const auto& entry :
             std::filesystem::directory_iterator(mrl::System::path(file(folder)))) {
            names.push_back(entry.path().filename().string());
        }
        return names;
    }

    TestResult m_result = TestResult::PASS();
};

TEST_F(NamedReports, CarryTagsResultAndTimeInFoldersMadeOnDemand) {
    m_result = TestResult::FAIL();
    EXPECT_EQ(startFor("{station}/{serial}/{result}-{time}.json",
                       {"--tag", "serial=A1", "--tag", "station=L/3"}),
              2);
    EXPECT_THAT(filesIn("L%2F3/A1"), ElementsAre("FAIL-20261120T195501Z.json"));
}

TEST_F(NamedReports, AreAnotherFileForEachRun) {
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(startFor("by-run/{run}.json"), 0);
        EXPECT_EQ(startFor("by-serial/{serial}.json", {"--tag", "serial=A1"}), 0);
    }
    EXPECT_EQ(filesIn("by-run").size(), 3U);
    EXPECT_THAT(filesIn("by-serial"), UnorderedElementsAre("A1.json", "A1-2.json", "A1-3.json"));
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(startFor("plain.json"), 0);
    }
    EXPECT_THAT(filesThere(), testing::Not(testing::Contains("plain-2.json")));
}

TEST_F(NamedReports, OfProcessesThatWriteAtOnceHaveNamesOfTheirOwn) {
    constexpr std::size_t PROCESSES = 8;
    std::vector<std::string> taken(PROCESSES);
    std::vector<std::thread> processes;
    processes.reserve(PROCESSES);
    for (std::string& name : taken) {
        processes.emplace_back([this, &name] { name = takenName(file("at-once/A1.json")); });
    }
    for (std::thread& process : processes) {
        process.join();
    }
    EXPECT_EQ(std::set<std::string>(taken.begin(), taken.end()).size(), PROCESSES);
    EXPECT_EQ(filesIn("at-once").size(), PROCESSES);
}

TEST_F(NamedReports, AreRefusedForBracesThatStandForNothing) {
    for (const char* braces : {"{serial}", "{}", "{", "}", "{run", "{Run}", "{pc}"}) {
        EXPECT_EQ(startFor(std::string("reports/x") + braces), 64);
        EXPECT_THAT(errors(),
                    HasSubstr(std::string("x") + braces + "\" has " + braces +
                              " in it, which stands for nothing; known are {run}, {time}, "
                              "{result}, {program}; for a brace itself write it twice\n"));
    }
    EXPECT_FALSE(std::filesystem::exists(mrl::System::path(file("reports"))));
    test::g_module.pc.emplace().name = "BENCH";
    EXPECT_EQ(startFor("{pc}.json"), 0);
    EXPECT_THAT(filesThere(), testing::Contains("BENCH.json"));
}

TEST_F(NamedReports, AreRefusedWhereTwoWouldBeOneFile) {
    EXPECT_EQ(startFor("{serial}", {"--junit", file("A1"), "--tag", "serial=A1"}), 64);
    EXPECT_THAT(errors(), HasSubstr("--json"));
    EXPECT_EQ(startFor("{serial}", {"--log", file("A1"), "--tag", "serial=A1"}), 64);
    EXPECT_THAT(errors(), HasSubstr("--log"));
    EXPECT_THAT(filesThere(), ElementsAre("devices.json"));
}

} // namespace
