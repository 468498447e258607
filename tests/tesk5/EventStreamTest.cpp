#include "FrameworkTest.h"

#include <commandline/CommandLine.h>
#include <reports/EventStream.h>

#include <tesk5/RunContext.h>

#include <mrl/Exception.h>

#include <nlohmann/json.hpp>

#include <sstream>
#include <thread>

namespace test {

namespace {

using nlohmann::ordered_json;
using tesk5::DataType;
using tesk5::DiagDevice;
using tesk5::DiagModule;
using tesk5::Severity;
using tesk5::TestResult;
using testing::ElementsAre;
using testing::HasSubstr;

std::vector<ordered_json> linesOf(const std::string& text) {
    std::vector<ordered_json> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(ordered_json::parse(line));
    }
    return lines;
}

class EventStreams : public FrameworkTest {
protected:
    std::vector<ordered_json> lines() const { return linesOf(output()); }
    std::vector<std::string> types() const {
        std::vector<std::string> all;
        for (const ordered_json& line : lines()) {
            all.push_back(line["type"]);
        }
        return all;
    }
};

TEST_F(EventStreams, DescribeTheWholeRunWithOneLineForEachEvent) {
    auto* name = DiagModule::createParameter("SSID", DataType::STRING(), "", false, true);
    registerTest("Signal", [this](const DiagDevice&) {
        DiagModule::progresses("PLAIN", 44.5);
        clock().sleep(std::chrono::milliseconds(1500));
        DiagModule::surveyed({"Networks", "%", 0, 100, {{"Lab", 12, true}}});
        DiagModule::measured({"Strength", 12, "%", 0, 100, {{"Failing", 20, Severity::error}}});
        auto* event = DiagModule::createEvent("WEAK");
        event->setVariable("Name", "Lab")->setVariable("Strength", mrl::Uint32{12});
        DiagModule::error(event, "modules/a.cpp", 245);
        DiagModule::progresses("WEAK", std::nullopt);
        return TestResult::FAIL();
    })->addParameter(name);
    registerTest("Other", TestResult::PASS())->addDevicePropertyRequirement("wired", "");
    EXPECT_EQ(start({"run", "--events", "--set", "SSID=Lab"}), 2);
    const std::string event =
        R"({"key":"WEAK","severity":"error","text":"The signal of Lab is 12 %.",)"
        R"("variables":{"Name":"Lab","Strength":12},"file":"modules/a.cpp","line":245,)"
        R"("time":"2026-11-20T19:55:02.623Z"})";
    const std::string measurement =
        R"({"name":"Strength","value":12,"unit":"%","lowest":0,"highest":100,)"
        R"("limits":[{"name":"Failing","value":20,"severity":"error"}],"brokenLimit":"Failing"})";
    const std::string survey = R"({"name":"Networks","unit":"%","lowest":0,"highest":100,)"
                               R"("entries":[{"name":"Lab","value":12,"measured":true}]})";
    EXPECT_EQ(
        output(),
        R"({"type":"runStarted","sequence":1,"time":"2026-11-20T19:55:01.123Z","protocol":1,)"
        R"("module":{"name":"example","version":"6.5","build":"000000001"},"planned":1,)"
        R"("withoutDevice":[{"test":"Other","reasons":["Card 1: lacks the property )"
        R"(\"wired\""],"advice":[]}]})"
        "\n"
        R"({"type":"testStarted","sequence":2,"time":"2026-11-20T19:55:01.123Z","run":1,)"
        R"("test":"Signal","interactive":false,"device":{"name":"Card 1","properties":{}},)"
        R"("parameters":{"SSID":"Lab"}})"
        "\n"
        R"({"type":"progress","sequence":3,"time":"2026-11-20T19:55:01.123Z","run":1,)"
        R"("key":"PLAIN","text":"Something happened.","longestSeconds":44.5})"
        "\n"
        R"({"type":"survey","sequence":4,"time":"2026-11-20T19:55:02.623Z","run":1,"survey":)" +
            survey +
            "}\n"
            R"({"type":"measurement","sequence":5,"time":"2026-11-20T19:55:02.623Z","run":1,)"
            R"("measurement":)" +
            measurement +
            "}\n"
            R"({"type":"event","sequence":6,"time":"2026-11-20T19:55:02.623Z","run":1,"event":)" +
            event +
            "}\n"
            R"({"type":"progress","sequence":7,"time":"2026-11-20T19:55:02.623Z","run":1,)"
            R"("key":"WEAK","text":"The signal of {Name} is {Strength} %.",)"
            R"("longestSeconds":null})"
            "\n"
            R"({"type":"testEnded","sequence":8,"time":"2026-11-20T19:55:02.623Z","run":1,)"
            R"("called":true,"failure":"","result":{"test":"Signal",)"
            R"("device":{"name":"Card 1","properties":{}},"result":"FAIL","value":2,)"
            R"("started":"2026-11-20T19:55:01.123Z","seconds":1.5,"parameters":{"SSID":"Lab"},)"
            R"("events":[)" +
            event + R"(],"measurements":[)" + measurement + R"(],"surveys":[)" + survey +
            R"(],"advice":[]}})"
            "\n"
            R"({"type":"runEnded","sequence":9,"time":"2026-11-20T19:55:02.623Z","exit":2,)"
            R"("started":"2026-11-20T19:55:01.123Z","ended":"2026-11-20T19:55:02.623Z",)"
            R"("leftOut":0})"
            "\n");
    EXPECT_EQ(errors(), "example: no device for Other\n"
                        "  Card 1: lacks the property \"wired\"\n")
        << "standard error has it too, for people";
}

TEST_F(EventStreams, OfASuccessfulRunLeaveStandardErrorEmpty) {
    registerTest("A", TestResult::PASS())->setInteractive(true);
    setDevices(2);
    EXPECT_EQ(start({"run", "A", "--events"}), 0);
    EXPECT_THAT(types(), ElementsAre("runStarted", "testStarted", "testEnded", "testStarted",
                                     "testEnded", "runEnded"));
    EXPECT_EQ(lines()[1]["interactive"], true);
    EXPECT_EQ(lines()[2]["run"], 1);
    EXPECT_EQ(lines()[4]["run"], 2);
    EXPECT_EQ(lines()[4]["result"]["device"]["name"], "Card 2");
    EXPECT_EQ(errors(), "");
}

TEST_F(EventStreams, HaveEachLineAsSoonAsItsEventHappens) {
    registerTest("A", [this](const DiagDevice&) {
        EXPECT_THAT(types(), ElementsAre("runStarted", "testStarted"));
        DiagModule::progresses("PLAIN", 1.0);
        EXPECT_THAT(types(), ElementsAre("runStarted", "testStarted", "progress"));
        return TestResult::PASS();
    });
    EXPECT_EQ(start({"run", "--events"}), 0);
}

TEST_F(EventStreams, HoldAsciiOnlyWhateverTheNamesContain) {
    auto* name = DiagModule::createParameter("SSID", DataType::STRING(), "", false, true);
    const std::string hostile =
        "\x1b[2J\r\n\x7f\"\\</script>\xe2\x80\xae\xe2\x80\xa8\xf0\x9f\x93\xb6";
    registerTest("A", [&hostile](const DiagDevice&) {
        DiagModule::surveyed({"Networks", "%", 0, 100, {{tesk5::TeskString(hostile), 12, false}}});
        DiagModule::warning(
            DiagModule::createEvent("WEAK")->setVariable("Name", tesk5::TeskString(hostile)),
            "modules/a.cpp", 1);
        return TestResult::WARN();
    })->addParameter(name);
    setDevices(R"([{"name": "Card\u0000\n\u202E\uD83D\uDCF6", "capabilities": ["Wireless"]}])");
    EXPECT_EQ(start({"run", "--events", "--set", "SSID=" + hostile}), 1);
    for (const char byte : output()) {
        EXPECT_TRUE(byte == '\n' || (byte >= 0x20 && byte < 0x7f)) << static_cast<int>(byte);
    }
    const std::vector<ordered_json> all = lines();
    ASSERT_EQ(all.size(), 6U) << "a line end in a name is none of the stream";
    EXPECT_EQ(all[1]["parameters"]["SSID"], hostile);
    EXPECT_EQ(all[2]["survey"]["entries"][0]["name"], hostile);
    EXPECT_EQ(all[3]["event"]["variables"]["Name"], hostile);
    EXPECT_EQ(all[4]["result"]["device"]["name"],
              std::string("Card\0\n\xe2\x80\xae\xf0\x9f\x93\xb6", 13));
}

TEST_F(EventStreams, OfABrokenRunSayWhyAndDoNotEnd) {
    registerTest("A", TestResult::PASS());
    registerTest("B", [](const DiagDevice&) -> TestResult {
        throw std::runtime_error("no \xfc"
                                 "ber\n");
    });
    EXPECT_THROW(start({"run", "--events"}), std::runtime_error);
    EXPECT_THAT(types(),
                ElementsAre("runStarted", "testStarted", "testEnded", "testStarted", "broken"));
    EXPECT_EQ(lines().back()["run"], 2);
    EXPECT_EQ(lines().back()["reason"], "no \xef\xbf\xbd"
                                        "ber\n")
        << "in no encoding that is known";
    EXPECT_THAT(errors(), HasSubstr("an exception ended B on Card 1; the run ends here"));
}

TEST_F(EventStreams, GiveTheReasonForAnInternalError) {
    registerTest("A",
                 [](const DiagDevice&) -> TestResult { throw tesk5::TeskException("no radio"); });
    EXPECT_EQ(start({"run", "--events"}), 5);
    EXPECT_EQ(lines()[2]["failure"], "no radio");
    EXPECT_EQ(lines()[2]["result"]["result"], "INTERNALERROR");
}

TEST_F(EventStreams, ListRunsThatAStopRequestPrevented) {
    registerTest("A", [](const DiagDevice&) {
        tesk5::RunContext::current().stopRequest.raise();
        return TestResult::PASS();
    });
    registerTest("B", TestResult::PASS());
    EXPECT_EQ(start({"run", "--events"}), 6);
    EXPECT_THAT(types(),
                ElementsAre("runStarted", "testStarted", "testEnded", "testEnded", "runEnded"));
    EXPECT_EQ(lines()[2]["called"], true);
    EXPECT_EQ(lines()[3]["called"], false);
    EXPECT_EQ(lines()[3]["run"], 2);
    EXPECT_EQ(lines()[3]["result"]["result"], "USERABORTED");
    EXPECT_EQ(lines()[4]["exit"], 6);
}

TEST_F(EventStreams, CountTheRunsThatAnAbortLeftOut) {
    registerTest("A", [](const DiagDevice&) {
        DiagModule::requestAbort();
        return TestResult::PASS();
    });
    setDevices(3);
    EXPECT_EQ(start({"run", "--events"}), 0);
    EXPECT_EQ(lines().front()["planned"], 3);
    EXPECT_EQ(lines().back()["leftOut"], 2);
}

TEST_F(EventStreams, WithoutAnyDeviceStillBeginAndEnd) {
    registerTest("A", TestResult::PASS());
    setDevices("[]");
    EXPECT_EQ(start({"run", "--events"}), 3);
    EXPECT_THAT(types(), ElementsAre("runStarted", "runEnded"));
    EXPECT_EQ(lines()[0]["planned"], 0);
    EXPECT_EQ(lines()[0]["withoutDevice"][0]["test"], "A");
    EXPECT_EQ(lines()[1]["exit"], 3);
}

TEST_F(EventStreams, EndWithTheReportsWritten) {
    registerTest("A", TestResult::PASS());
    EXPECT_EQ(start({"run", "--events", "--json", file("report.json")}), 0);
    const auto report = ordered_json::parse(bytesOfFile(file("report.json")));
    EXPECT_EQ(lines()[2]["result"], report["results"][0]) << "one shape for both";
}

TEST_F(EventStreams, OfARunThatLosesItsReportDoNotEnd) {
    registerTest("A", [this](const DiagDevice&) {
        std::filesystem::create_directory(mrl::System::path(file("report.json")));
        fileWith("report.json/full", "");
        return TestResult::PASS();
    });
    EXPECT_THROW(start({"run", "--events", "--json", file("report.json")}), tesk5::TeskException);
    EXPECT_EQ(types().back(), "testEnded");
}

TEST_F(EventStreams, AreEmptyWhenTheInputIsRefused) {
    registerTest("A", TestResult::PASS());
    EXPECT_EQ(start({"run", "--events", "--set", "Nothing=1"}), 64);
    EXPECT_EQ(output(), "");
    EXPECT_THAT(errors(), HasSubstr("Nothing"));
}

TEST_F(EventStreams, BelongToRunsAlone) {
    EXPECT_EQ(start({"list", "--events"}), 64);
    EXPECT_EQ(output(), "");
    EXPECT_EQ(errors(),
              "example: --events goes with the command run, and nothing is to be run; add run\n");
}

TEST_F(EventStreams, AreRequestedByASwitchWithoutAValue) {
    EXPECT_FALSE(tesk5::parseCommandLine({"run"}).events);
    EXPECT_TRUE(tesk5::parseCommandLine({"run", "--events"}).events);
    EXPECT_TRUE(tesk5::parseCommandLine({"--events", "run"}).events);
    EXPECT_EQ(start({"run", "--events=no"}), 64);
    EXPECT_EQ(errors(), "example: --events takes no value; leave \"=no\" out\n");
}

TEST(EventStreamStops, AreReported) {
    const VirtualClock clock;
    const CapturedStream captured(mrl::cout);
    tesk5::EventStream(mrl::cout).onStopRequest();
    EXPECT_EQ(captured.text(),
              "{\"type\":\"stopping\",\"sequence\":1,\"time\":\"2026-11-20T19:55:01.123Z\"}\n");
}

TEST(EventStreamThreads, WriteWholeLinesInTheOrderOfTheirNumbers) {
    const VirtualClock clock;
    const CapturedStream captured(mrl::cout);
    tesk5::EventStream stream(mrl::cout);
    constexpr int TIMES = 200;
    std::thread other([&stream] {
        for (int i = 0; i < TIMES; ++i) {
            stream.onStopRequest();
        }
    });
    for (int i = 0; i < TIMES; ++i) {
        stream.onProgress({"KEY", std::string(300, 'x'), 7.0});
    }
    other.join();
    mrl::Uint32 sequence = 0;
    for (const ordered_json& line : linesOf(captured.text())) {
        EXPECT_EQ(line["sequence"], ++sequence);
    }
    EXPECT_EQ(sequence, 2U * TIMES);
}

} // namespace

} // namespace test
