#include "FrameworkTest.h"

#include <reports/ReportFile.h>
#include <reports/ReportJson.h>

#include <tesk5/RunContext.h>
#include <tesk5/TeskException.h>

#include <mrl/AssertionFailure.h>
#include <mrl/Exception.h>
#include <mrl/MRLArrayCommon.h>

#include <nlohmann/json.hpp>

namespace test {

namespace {

using tesk5::DataType;
using tesk5::DiagDevice;
using tesk5::DiagModule;
using tesk5::TestResult;
using testing::ElementsAre;
using testing::HasSubstr;

class Reports : public FrameworkTest {
protected:
    nlohmann::ordered_json report() const {
        return nlohmann::ordered_json::parse(bytesOfFile(file("report.json")));
    }
    std::vector<std::string> toReport(std::vector<std::string> more = {}) const {
        more.insert(more.begin(), {"run", "--json", file("report.json")});
        return more;
    }
};

TEST_F(Reports, DescribeTheWholeRun) {
    auto* name = DiagModule::createParameter("SSID", DataType::STRING(), "", false, true);
    auto* limit = DiagModule::createParameter("Limit", DataType::UINT32(), "", false, true);
    auto* event = DiagModule::createEvent("WEAK");
    registerTest(
        "Signal",
        [&](const DiagDevice&) {
            clock().sleep(std::chrono::milliseconds(1500));
            event->setVariable("Strength", mrl::Uint32{12})->setVariable("Name", "Lab\x01\"\n");
            DiagModule::error(event, "modules/a.cpp", 245);
            clock().sleep(std::chrono::milliseconds(250));
            return TestResult::FAIL();
        })
        ->addParameter(name)
        ->addParameter(limit);
    setDevices(R"([{"name": "Kärte\u2028", "capabilities": ["Wireless"],
                    "properties": {"z": "1", "a": "2"}}])");
    EXPECT_EQ(start(toReport({"--set", "SSID=L=b"})), 2);
    EXPECT_EQ(bytesOfFile(file("report.json")), R"({
  "schema": 1,
  "module": {
    "name": "example",
    "version": "6.5",
    "build": "000000001"
  },
  "started": "2026-11-20T19:55:01.123Z",
  "ended": "2026-11-20T19:55:02.873Z",
  "exit": 2,
  "results": [
    {
      "test": "Signal",
      "device": {
        "name": "Kärte\u2028",
        "properties": {
          "z": "1",
          "a": "2"
        }
      },
      "result": "FAIL",
      "value": 2,
      "started": "2026-11-20T19:55:01.123Z",
      "seconds": 1.75,
      "parameters": {
        "SSID": "L=b",
        "Limit": 0
      },
      "events": [
        {
          "key": "WEAK",
          "severity": "error",
          "text": "The signal of Lab\u0001\"\n is 12 %.",
          "variables": {
            "Strength": 12,
            "Name": "Lab\u0001\"\n"
          },
          "file": "modules/a.cpp",
          "line": 245,
          "time": "2026-11-20T19:55:02.623Z"
        }
      ],
      "measurements": [],
      "surveys": [],
      "advice": []
    }
  ],
  "withoutDevice": []
}
)");
}

TEST_F(Reports, ReplaceTheOldOneAndLeaveNothingElse) {
    registerTest("A", TestResult::WARN());
    fileWith("report.json", "old");
    EXPECT_EQ(start(toReport()), 1);
    EXPECT_EQ(report()["exit"], 1);
    EXPECT_THAT(filesThere(), ElementsAre("devices.json", "report.json"));
}

TEST_F(Reports, ListRunsThatAStopRequestPrevented) {
    registerTest("A", [](const DiagDevice&) {
        tesk5::RunContext::current().stopRequest.raise();
        return TestResult::PASS();
    });
    registerTest("B", TestResult::PASS());
    EXPECT_EQ(start(toReport()), 6);
    EXPECT_EQ(report()["results"][1]["result"], "USERABORTED");
    EXPECT_EQ(report()["results"][1]["seconds"], 0);
    EXPECT_EQ(report()["exit"], 6);
}

TEST_F(Reports, GiveTheReasonForABrokenTestAlone) {
    registerTest("A", [](const DiagDevice&) -> TestResult {
        throw tesk5::TeskException("the card \xfc vanished");
    });
    registerTest("B", TestResult::PASS());
    EXPECT_EQ(start(toReport()), 5);
    EXPECT_EQ(report()["results"][0]["result"], "INTERNALERROR");
    EXPECT_EQ(report()["results"][0]["failure"], "the card \xEF\xBF\xBD vanished");
    EXPECT_FALSE(report()["results"][1].contains("failure"));
}

TEST_F(Reports, AreWrittenWithoutAnyDeviceToo) {
    registerTest("A", TestResult::PASS());
    setDevices("[]");
    EXPECT_EQ(start(toReport()), 3);
    EXPECT_EQ(report()["exit"], 3);
    EXPECT_TRUE(report()["results"].is_array());
    EXPECT_TRUE(report()["results"].empty());
}

TEST_F(Reports, OfARunThatAnExceptionEndedNameTheTestAndTheReason) {
    registerTest("A", TestResult::PASS());
    registerTest("B", [](const DiagDevice&) -> TestResult {
        DiagModule::warning(DiagModule::createEvent("PLAIN"), "", 1);
        throw mrl::Exception("oops");
    });
    registerTest("C", TestResult::PASS());
    fileWith("report.json", "old");
    EXPECT_THROW(start(toReport()), mrl::Exception);
    EXPECT_EQ(report()["exit"], 8);
    ASSERT_EQ(report()["results"].size(), 2U);
    EXPECT_EQ(report()["results"][0]["result"], "PASS");
    const nlohmann::ordered_json broken = report()["results"][1];
    EXPECT_EQ(broken["result"], "EXITEDABNORMALLY");
    EXPECT_EQ(broken["value"], 8);
    EXPECT_EQ(broken["failure"], "oops");
    ASSERT_EQ(broken["events"].size(), 1U);
    EXPECT_EQ(broken["events"][0]["key"], "PLAIN");
    EXPECT_THAT(filesThere(), ElementsAre("devices.json", "report.json"));
}

TEST_F(Reports, TellABrokenAssertionOfTheArrayFromAnExceptionOfUnknownType) {
    registerTest("A", [](const DiagDevice&) -> TestResult {
        const mrl::MRLArray<int> none;
        return none[0] == 0 ? TestResult::PASS() : TestResult::FAIL();
    });
    EXPECT_THROW(start(toReport()), mrl::StructuredException);
    EXPECT_EQ(report()["results"][0]["failure"], "structured exception with code 7");

    registry().tests.clear();
    registerTest("B", [](const DiagDevice&) -> TestResult { throw 7; });
    EXPECT_THROW(start(toReport()), int);
    EXPECT_EQ(report()["results"][0]["result"], "EXITEDABNORMALLY");
    EXPECT_FALSE(report()["results"][0].contains("failure"));
}

TEST_F(Reports, ThatCannotBeWrittenDoNotHideTheExceptionThatEndedTheRun) {
    registerTest("A", [this](const DiagDevice&) -> TestResult {
        std::filesystem::create_directory(mrl::System::path(file("report.json")));
        fileWith("report.json/full", "");
        throw mrl::Exception("oops");
    });
    EXPECT_THROW(start(toReport()), mrl::Exception);
    EXPECT_THAT(errors(), HasSubstr("report.json\" could not be written: "));
}

TEST_F(Reports, AreNotTouchedBeforeTheRunIsOver) {
    registerTest("A", [this](const DiagDevice&) {
        EXPECT_EQ(bytesOfFile(file("report.json")), "old");
        EXPECT_THAT(filesThere(), ElementsAre("devices.json", "report.json"));
        return TestResult::PASS();
    });
    fileWith("report.json", "old");
    EXPECT_EQ(start(toReport()), 0);
}

TEST_F(Reports, ThatCannotBeWrittenAreAFailureWithAReason) {
    registerTest("A", [this](const DiagDevice&) {
        std::filesystem::create_directory(mrl::System::path(file("report.json")));
        fileWith("report.json/full", "");
        return TestResult::PASS();
    });
    try {
        start(toReport());
        GTEST_FAIL() << "no exception";
    } catch (const tesk5::TeskException& exception) {
        EXPECT_THAT(exception.toString().getUTF8String().bytes(),
                    HasSubstr("report.json\" could not be written: "));
    }
    EXPECT_THAT(filesThere(), ElementsAre("devices.json", "report.json"));
}

#ifndef _WIN32 // where making a link takes a right that few users have
TEST_F(Reports, GoToTheFileBehindALink) {
    registerTest("A", TestResult::PASS());
    std::filesystem::create_symlink(mrl::System::path(fileWith("real.json", "old")),
                                    mrl::System::path(file("report.json")));
    EXPECT_EQ(start(toReport()), 0);
    EXPECT_THAT(bytesOfFile(file("real.json")), HasSubstr("\"schema\": 1"));
    EXPECT_TRUE(std::filesystem::is_symlink(mrl::System::path(file("report.json"))));
}
#endif

TEST_F(Reports, DifferentPathsToOneFileAreRecognised) {
    EXPECT_TRUE(tesk5::nameSameFile(file("a"), file("./a")));
    EXPECT_FALSE(tesk5::nameSameFile(file("a"), file("b")));
    EXPECT_TRUE(tesk5::nameSameFile("a", "./x/../a"));
}

} // namespace

} // namespace test
