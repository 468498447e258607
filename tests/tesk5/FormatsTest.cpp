// The open formats of a run: on every outcome that there is each keeps to its schema, and says the
// same as the others.
#include "FormatSchemas.h"
#include "Reports.h"

#include <support/JsonSchema.h>
#include <support/SafeText.h>

#ifndef _WIN32
#include <support/FullDisk.h>
#endif

namespace test {

namespace {

// Runs with each open format, whose files are held against their schemas after every run.
class Formats : public Reports {
protected:
    Formats() {
        for (const char* tag : {"serial=A1", "part=P-7", "revision=C", "station=L3-07",
                                "operator=Ann", "process=42", "location=Hall 3", "purpose=Line"}) {
            m_tags.insert(m_tags.end(), {"--tag", tag});
        }
    }

    int startWithFormats(std::vector<std::string> arguments = {}) {
        arguments.insert(arguments.begin(),
                         {"run", "--no-identity", "--ocp", file("ocp.jsonl"), "--wsjf",
                          file("wsjf.json"), "--openhtf", file("openhtf.json")});
        arguments.insert(arguments.end(), m_tags.begin(), m_tags.end());
        const int value = start(arguments);
        expectValid();
        return value;
    }

    void expectValid() const {
        static const JsonSchema line(ocpSchema());
        static const JsonSchema unit(wsjfSchema());
        static const JsonSchema record(openHtfSchema());
        std::size_t number = 0;
        for (const std::string& text : linesOf(bytesOfFile(file("ocp.jsonl")))) {
            EXPECT_EQ(line.refusalOf(text), "") << text;
            EXPECT_EQ(ordered_json::parse(text).at("sequenceNumber"), number++);
        }
        EXPECT_GE(number, 3U);
        EXPECT_EQ(unit.refusalOf(bytesOfFile(file("wsjf.json"))), "");
        EXPECT_EQ(record.refusalOf(bytesOfFile(file("openhtf.json"))), "");
    }

    std::vector<ordered_json> ocp() const {
        std::vector<ordered_json> lines;
        for (const std::string& line : linesOf(bytesOfFile(file("ocp.jsonl")))) {
            lines.push_back(ordered_json::parse(line));
        }
        return lines;
    }
    /// The messages `kind` of the steps, or of the run.
    std::vector<ordered_json> ocp(const char* kind,
                                  const char* artifact = "testStepArtifact") const {
        std::vector<ordered_json> messages;
        for (const ordered_json& line : ocp()) {
            if (line.contains(artifact) && line[artifact].contains(kind)) {
                messages.push_back(line[artifact][kind]);
            }
        }
        return messages;
    }
    ordered_json ocpOfRun(const char* kind) const { return ocp(kind, "testRunArtifact").at(0); }
    ordered_json wsjf() const { return ordered_json::parse(bytesOfFile(file("wsjf.json"))); }
    ordered_json openHtf() const { return ordered_json::parse(bytesOfFile(file("openhtf.json"))); }

private:
    std::vector<std::string> m_tags;
};

// What each format says of a result.
struct ResultRow {
    TestResult result;
    const char* status; ///< of OCP
    const char* ocpResult;
    const char* verdict; ///< or the symptom of an error
    const char* wsjf;
    const char* wsjfStep;
    const char* openHtf;
    const char* phase;
};

// A line of OCP with that member.
std::string lineWith(const std::string& artifact) {
    return R"({"sequenceNumber": 1, "timestamp": "2026-11-20T19:55:01.123Z", )" + artifact + "}";
}

TEST(FormatSchemas, RefuseWhatTheFormatsForbid) {
    const JsonSchema ocp(ocpSchema());
    const std::string taken = R"("testRunArtifact": {"testRunEnd": )"
                              R"({"status": "COMPLETE", "result": "PASS"}})";
    EXPECT_EQ(ocp.refusalOf(lineWith(taken)), "");
    for (const char* refused : {
             R"("testRunArtifact": {"testRunEnd": {"status": "COMPLETE", "result": "WARN"}})",
             R"("testRunArtifact": {"testRunEnd": {"status": "SKIP", "result": "PASS"}})",
             R"("testRunArtifact": {"log": {"severity": "INFO", "message": null}})",
             R"("testStepArtifact": {"testStepId": "0", "extension": {"name": "a",
                "content": {"b": null}}})",
             R"("testStepArtifact": {"testStepId": "0", "measurement": {"name": "a", "value": 1,
                "validators": [{"type": "IN_SET", "value": 1}]}})",
             R"("testStepArtifact": {"testStepId": "0", "measurement": {"name": "a", "value": 1,
                "validators": [{"type": "EQUAL", "value": [1]}]}})",
             R"("testStepArtifact": {"testStepEnd": {"status": "COMPLETE"}})",
             R"("schemaVersion": {"major": 2, "minor": 1})",
         }) {
        EXPECT_NE(ocp.refusalOf(lineWith(refused)), "") << refused;
    }
    EXPECT_NE(ocp.refusalOf("{" + taken + "}"), "") << "no number and no time";
    EXPECT_NE(JsonSchema(wsjfSchema()).refusalOf(R"({"type": "T"})"), "");
    EXPECT_NE(JsonSchema(openHtfSchema()).refusalOf(R"({"outcome": "PASS"})"), "");
}

TEST_F(Formats, KnowEachResult) {
    const ResultRow rows[] = {
        {TestResult::PASS(), "COMPLETE", "PASS", "level-test-pass", "P", "P", "PASS", "PASS"},
        {TestResult::WARN(), "COMPLETE", "PASS", "level-test-marginal", "P", "P", "PASS", "PASS"},
        {TestResult::COMPLETED(), "COMPLETE", "PASS", "level-test-completed", "P", "P", "PASS",
         "PASS"},
        {TestResult::FAIL(), "COMPLETE", "FAIL", "level-test-fail", "F", "F", "FAIL", "FAIL"},
        {TestResult::CANNOTRUN(), "SKIP", "NOT_APPLICABLE", "level-test-cannot-run", "E", "S",
         "ERROR", "SKIP"},
        {TestResult::USERABORTED(), "SKIP", "NOT_APPLICABLE", "level-test-user-aborted", "T", "T",
         "ABORTED", "SKIP"},
        {TestResult::BADPARAMS(), "ERROR", "NOT_APPLICABLE", "bad-parameters", "E", "E", "ERROR",
         "ERROR"},
        {TestResult::INTERNALERROR(), "ERROR", "NOT_APPLICABLE", "internal-error", "E", "E",
         "ERROR", "ERROR"},
        {TestResult::EXITEDABNORMALLY(), "ERROR", "NOT_APPLICABLE", "exited-abnormally", "E", "E",
         "ERROR", "ERROR"},
    };
    TestResult result = TestResult::PASS();
    registerTest("LevelTest", [&result](const DiagDevice&) { return result; });
    for (const ResultRow& row : rows) {
        result = row.result;
        startWithFormats();
        EXPECT_EQ(ocpOfRun("testRunEnd"),
                  (ordered_json{{"status", row.status}, {"result", row.ocpResult}}));
        EXPECT_EQ(ocp("testStepEnd").at(0)["status"], row.status);
        const bool error = std::string_view(row.status) == "ERROR";
        EXPECT_EQ(error ? ocp("error").at(0)["symptom"] : ocp("diagnosis").at(0)["verdict"],
                  row.verdict);
        EXPECT_EQ(ocp("error").size() + ocp("diagnosis").size(), 1U);
        EXPECT_EQ(wsjf()["result"], row.wsjf);
        EXPECT_EQ(wsjf()["root"]["status"], row.wsjf);
        EXPECT_EQ(wsjf()["root"]["steps"][0]["status"], row.wsjfStep);
        EXPECT_EQ(openHtf()["outcome"], row.openHtf);
        EXPECT_EQ(openHtf()["phases"][0]["outcome"], row.phase);
        EXPECT_EQ(openHtf()["marginal"], row.result == TestResult::WARN());
    }
}

TEST_F(Formats, HaveAMeasurementWithItsLimitsFiguresAndReadings) {
    registerTest("LevelTest", [this](const DiagDevice&) {
        DiagModule::progresses("PLAIN", 5);
        DiagModule::follows({"Level", "dBm", {}, std::nullopt});
        DiagModule::sampled("Level", -57, {{"Source", "scan"}}, 0.25);
        DiagModule::sampled("Level", -59, {}, 0.5);
        DiagModule::follows({"Level", "dBm", {}, -58});
        DiagModule::measured({"Level",
                              tesk5::Number::rounded(-57.5, 1),
                              "dBm",
                              -100,
                              0,
                              {{"FailingLevel", -80, Severity::error, tesk5::Limit::Kept::AT_LEAST},
                               {"WarningLevel", -60, Severity::warning},
                               {"HighestLevel", -50, Severity::error, tesk5::Limit::Kept::AT_MOST}},
                              {{"Drift", 2, "dB"}},
                              {{"Calibration", "station 7"}}});
        DiagModule::surveyed({"VISIBLE", "%", 0, 100, {{"Far", 5, false}, {"Lab", 12, true}}});
        clock().sleep(std::chrono::milliseconds(1500));
        return TestResult::PASS();
    });
    EXPECT_EQ(startWithFormats(), 0);

    EXPECT_EQ(ocp("measurement").at(0), ordered_json::parse(R"({
        "name": "Level", "value": -57.5, "unit": "dBm",
        "validators": [
            {"name": "fail_limit", "type": "GREATER_THAN_OR_EQUAL", "value": -80,
             "metadata": {"parameter": "FailingLevel"}},
            {"name": "warn_limit", "type": "GREATER_THAN", "value": -60,
             "metadata": {"parameter": "WarningLevel"}},
            {"name": "fail_limit", "type": "LESS_THAN_OR_EQUAL", "value": -50,
             "metadata": {"parameter": "HighestLevel"}}],
        "hardwareInfoId": "1",
        "metadata": {"lowest": -100, "highest": 0, "Calibration": "station 7"}})"));
    EXPECT_EQ(ocp("measurement").at(1)["name"], "Level.Drift");
    ASSERT_EQ(ocp("measurementSeriesStart").size(), 1U) << "the head that comes again is no other";
    const std::vector<ordered_json> elements = ocp("measurementSeriesElement");
    ASSERT_EQ(elements.size(), 2U);
    EXPECT_EQ(elements[0], ordered_json::parse(R"({
        "index": 0, "measurementSeriesId": "0", "value": -57,
        "timestamp": "2026-11-20T19:55:01.373Z", "metadata": {"Source": "scan"}})"));
    EXPECT_EQ(elements[1]["index"], 1);
    EXPECT_EQ(ocp("measurementSeriesEnd").at(0)["totalCount"], 2);
    EXPECT_EQ(ocp("extension").at(0)["content"]["entries"].size(), 2U);
    EXPECT_EQ(ocp("log").at(0)["severity"], "DEBUG");

    const ordered_json step = wsjf()["root"]["steps"][0];
    EXPECT_EQ(step["name"], "LevelTest[Card 1]");
    EXPECT_EQ(step["totTime"], 1.5);
    EXPECT_EQ(step["chart"]["series"][0]["xdata"], "0.250;0.500");
    EXPECT_EQ(step["chart"]["series"][0]["ydata"], "-57;-59");
    EXPECT_EQ(step["steps"][0]["numericMeas"], ordered_json::parse(R"([
        {"name": "Level", "status": "P", "compOp": "GELE", "value": -57.5, "unit": "dBm",
         "lowLimit": -80, "highLimit": -50},
        {"name": "WarningLevel", "status": "P", "compOp": "LOG", "value": -60, "unit": "dBm"},
        {"name": "Level.Drift", "status": "P", "compOp": "LOG", "value": 2, "unit": "dB"}])"));

    const ordered_json measurements = openHtf()["phases"][0]["measurements"];
    EXPECT_EQ(measurements["Level"], ordered_json::parse(R"({
        "name": "Level", "outcome": "PASS",
        "validators": ["-80 <= Marginal:-60 < x <= -50"],
        "units": {"name": "decibel-milliwatts", "code": "DBM", "suffix": "dBm"},
        "measured_value": -57.5})"));
    EXPECT_EQ(measurements["Level.Drift"]["measured_value"], 2);
    EXPECT_EQ(measurements["Level.Series"]["measured_value"],
              ordered_json::parse("[[0.25, -57], [0.5, -59]]"));
    EXPECT_EQ(openHtf()["phases"][0]["end_time_millis"].get<std::int64_t>() -
                  openHtf()["phases"][0]["start_time_millis"].get<std::int64_t>(),
              1500);
}

TEST_F(Formats, SayWhatAValueBreaks) {
    registerTest("LevelTest", [](const DiagDevice&) {
        DiagModule::measured({"Level",
                              10,
                              "%",
                              0,
                              100,
                              {{"Warning", 40, Severity::warning},
                               {"Failing", 20, Severity::error},
                               {"Stricter", 30, Severity::error}}});
        DiagModule::measured({"Level", 90, "%", 0, 100, {}});
        DiagModule::error(DiagModule::createEvent("PLAIN"), "modules/a.cpp", 245);
        return TestResult::FAIL();
    });
    EXPECT_EQ(startWithFormats(), 2);
    EXPECT_EQ(ocp("log").at(0),
              (ordered_json{{"severity", "ERROR"}, {"message", "PLAIN: Something happened."}}));
    EXPECT_EQ(ocp("diagnosis").at(0), ordered_json::parse(R"({
        "verdict": "level-test-fail", "type": "FAIL", "message": "Something happened.",
        "hardwareInfoId": "1"})"));
    const ordered_json step = wsjf()["root"]["steps"][0];
    EXPECT_EQ(step["causedUUTFailure"], true);
    EXPECT_EQ(step["errorMessage"], "Something happened.");
    EXPECT_EQ(wsjf()["uut"]["errorMessage"], "Something happened.");
    const ordered_json number = step["steps"][0]["numericMeas"][0];
    EXPECT_EQ(number["status"], "F");
    EXPECT_EQ(number["compOp"], "GT");
    EXPECT_EQ(number["lowLimit"], 30) << "the strictest of several";
    EXPECT_EQ(step["steps"][1]["numericMeas"][0]["compOp"], "LOG");
    const ordered_json phase = openHtf()["phases"][0];
    EXPECT_EQ(phase["measurements"]["Level"]["outcome"], "FAIL");
    EXPECT_EQ(phase["measurements"]["Level"]["validators"][0], "30 < Marginal:40 < x");
    EXPECT_EQ(phase["measurements"]["Level (2)"]["measured_value"], 90);
    EXPECT_EQ(openHtf()["outcome_details"], ordered_json::parse(R"([
        {"code": "PLAIN", "description": "Something happened."}])"));
    const ordered_json log = openHtf()["log_records"][0];
    EXPECT_EQ(log["source"], "a.cpp");
    EXPECT_EQ(log["lineno"], 245);
    EXPECT_EQ(log["level"], 40);
}

TEST_F(Formats, NameTheUnitTheStationAndTheProgram) {
    registerTest("LevelTest", TestResult::PASS())->addParameter(optionalParameter("SSID"));
    startWithFormats({"--set", "SSID=Lab", "--tag", "batch=B9", "--tag", "shift=late"});
    const ordered_json first = ocp().at(0);
    EXPECT_EQ(first["schemaVersion"], (ordered_json{{"major", 2}, {"minor", 0}}));
    const ordered_json begin = ocpOfRun("testRunStart");
    EXPECT_EQ(begin["name"], "example");
    EXPECT_EQ(begin["version"], "6.5");
    EXPECT_THAT(begin["commandLine"].get<std::string>(), HasSubstr(" --tag \"location=Hall 3\""));
    EXPECT_EQ(begin["parameters"], (ordered_json{{"LevelTest.SSID", "Lab"}}));
    EXPECT_EQ(begin["dutInfo"]["dutInfoId"], "A1");
    EXPECT_EQ(begin["dutInfo"]["hardwareInfos"][0]["serialNumber"], "A1");
    EXPECT_EQ(begin["dutInfo"]["hardwareInfos"][0]["partNumber"], "P-7");
    EXPECT_EQ(begin["dutInfo"]["hardwareInfos"][1]["name"], "Card 1");
    EXPECT_EQ(begin["dutInfo"]["softwareInfos"][0]["version"], "6.5");
    EXPECT_EQ(begin["metadata"]["tags"]["shift"], "late");

    const ordered_json report = wsjf();
    EXPECT_EQ(report["id"], begin["metadata"]["runIdentifier"]);
    EXPECT_EQ(report["sn"], "A1");
    EXPECT_EQ(report["pn"], "P-7");
    EXPECT_EQ(report["rev"], "C");
    EXPECT_EQ(report["processCode"], 42);
    EXPECT_EQ(report["machineName"], "L3-07");
    EXPECT_EQ(report["startUTC"], "2026-11-20T19:55:01.123Z");
    EXPECT_EQ(report["uut"]["user"], "Ann");
    EXPECT_EQ(report["uut"]["batchSN"], "B9");
    EXPECT_EQ(report["miscInfos"][0], (ordered_json{{"description", "shift"}, {"text", "late"}}));

    EXPECT_EQ(openHtf()["dut_id"], "A1");
    EXPECT_EQ(openHtf()["station_id"], "L3-07");
    EXPECT_EQ(openHtf()["start_time_millis"], 1795204501123);
    EXPECT_EQ(openHtf()["metadata"]["run_name"], report["id"]);
    EXPECT_EQ(openHtf()["metadata"]["operator_name"], "Ann");
    EXPECT_EQ(openHtf()["metadata"]["config"], (ordered_json{{"LevelTest.SSID", "Lab"}}));
}

TEST_F(Formats, HaveAStepForEachDeviceAndForATestWithoutOne) {
    registerTest("LevelTest", TestResult::PASS());
    registerTest("WiredTest", TestResult::PASS())->addDevicePropertyRequirement("wired", "");
    setDevices(2);
    EXPECT_EQ(startWithFormats(), 3);
    EXPECT_THAT(allOf("name", ocp("testStepStart")),
                ElementsAre("WiredTest", "LevelTest", "LevelTest"));
    EXPECT_THAT(allOf("status", ocp("testStepEnd")), ElementsAre("SKIP", "COMPLETE", "COMPLETE"));
    EXPECT_THAT(allOf("hardwareInfoId", ocp("diagnosis")), ElementsAre("1", "2"));
    EXPECT_EQ(ocpOfRun("testRunEnd")["status"], "SKIP");
    EXPECT_THAT(allOf("name", wsjf()["root"]["steps"]),
                ElementsAre("LevelTest[Card 1]", "LevelTest[Card 2]", "WiredTest"));
    EXPECT_THAT(allOf("status", wsjf()["root"]["steps"]), ElementsAre("P", "P", "S"));
    EXPECT_THAT(allOf("outcome", openHtf()["phases"]), ElementsAre("PASS", "PASS", "SKIP"));
    EXPECT_THAT(allOf("descriptor_id", openHtf()["phases"]), ElementsAre(1, 1, 2));
}

TEST_F(Formats, AreWholeWithoutAnyDevice) {
    registerTest("LevelTest", TestResult::PASS());
    setDevices("[]");
    EXPECT_EQ(startWithFormats(), 3);
    EXPECT_EQ(ocp("testStepStart").size(), 1U);
    EXPECT_EQ(ocpOfRun("testRunEnd")["result"], "NOT_APPLICABLE");
    EXPECT_EQ(wsjf()["result"], "E");
    EXPECT_EQ(openHtf()["outcome_details"][0]["code"], "CANNOTRUN");
}

TEST_F(Formats, AreWholeAfterAStopRequest) {
    registerStopping("FirstTest");
    registerTest("SecondTest", TestResult::PASS());
    EXPECT_EQ(startWithFormats(), 6);
    EXPECT_THAT(allOf("status", ocp("testStepEnd")), ElementsAre("COMPLETE", "SKIP"));
    EXPECT_EQ(ocpOfRun("testRunEnd")["status"], "SKIP");
    EXPECT_EQ(wsjf()["result"], "T");
    EXPECT_EQ(openHtf()["outcome"], "ABORTED");
}

TEST_F(Formats, CountTheRunsThatATestLeftOut) {
    registerTest("LevelTest", [](const DiagDevice&) {
        DiagModule::requestAbort();
        return TestResult::PASS();
    });
    setDevices(3);
    EXPECT_EQ(startWithFormats(), 0);
    EXPECT_EQ(ocpOfRun("log")["message"], "The test ended the run. Runs left out: 2");
    EXPECT_EQ(wsjf()["uut"]["comment"], "The test ended the run. Runs left out: 2");
    EXPECT_EQ(openHtf()["metadata"]["leftOut"], 2);
}

TEST_F(Formats, AreWholeAfterAnExceptionThatEndsTheRun) {
    registerTest("LevelTest", [](const DiagDevice&) -> TestResult {
        DiagModule::sampled("Level", -57);
        throw std::runtime_error("no \xfc"
                                 "ber\n");
    });
    setDevices(2);
    EXPECT_THROW(startWithFormats(), std::runtime_error);
    expectValid();
    EXPECT_EQ(ocp("measurementSeriesEnd").size(), 1U);
    EXPECT_EQ(ocp("error").at(0)["symptom"], "exited-abnormally");
    EXPECT_EQ(ocpOfRun("testRunEnd")["status"], "ERROR");
    EXPECT_EQ(wsjf()["result"], "E");
    EXPECT_EQ(openHtf()["outcome_details"][0]["code"], "EXITEDABNORMALLY");
}

TEST_F(Formats, EscapeHostileNamesAndCutThoseThatAreTooLong) {
    std::string hostile = "\x1b[2J\"\\\n\xe2\x80\xae</script>";
    for (int i = 0; i < 60; ++i) {
        hostile += "\xf0\x9f\x93\xb6"; // two code units each
    }
    registerTest("LevelTest", [&hostile](const DiagDevice&) -> TestResult {
        DiagModule::surveyed({"VISIBLE", "%", 0, 100, {{tesk5::TeskString(hostile), 5, false}}});
        DiagModule::measured(
            {"Level", 7, "%", 0, 100, {}, {}, {{"Network", tesk5::TeskString(hostile)}}});
        throw TeskException(tesk5::TeskString(hostile + "\xff"));
    });
    setDevices(ordered_json::array({{{"name", hostile},
                                     {"capabilities", {"Wireless"}},
                                     {"properties", {{hostile, hostile}}}}})
                   .dump());
    EXPECT_EQ(startWithFormats(), 5);
    EXPECT_EQ(findUnsafeInLines(bytesOfFile(file("ocp.jsonl"))), "");
    EXPECT_EQ(findUnsafeInLines(bytesOfFile(file("wsjf.json"))), "");
    EXPECT_EQ(findUnsafeInLines(bytesOfFile(file("openhtf.json"))), "");
    EXPECT_EQ(ocpOfRun("testRunStart")["dutInfo"]["hardwareInfos"][1]["name"], hostile);
    EXPECT_THAT(openHtf()["phases"][0]["name"].get<std::string>(), HasSubstr(hostile));
    EXPECT_THAT(wsjf()["root"]["steps"][0]["name"].get<std::string>(),
                testing::StartsWith("LevelTest[\x1b[2J"));
}

TEST_F(Formats, HaveEachMessageOfTheRunAsSoonAsItHappens) {
    registerTest("LevelTest", [this](const DiagDevice&) {
        EXPECT_EQ(ocp("testStepStart").size(), 1U);
        DiagModule::sampled("Level", -57);
        EXPECT_EQ(ocp("measurementSeriesElement").size(), 1U);
        return TestResult::PASS();
    });
    EXPECT_EQ(startWithFormats(), 0);
}

TEST_F(Formats, LeaveAFileThatIsThereAsItIsWhenTheRunIsRefused) {
    registerTest("LevelTest", TestResult::PASS());
    const std::string there = fileWith("there.jsonl", "kept");
    EXPECT_EQ(start({"run", "--ocp", there, "--set", "Unknown=1"}), 64);
    EXPECT_EQ(start({"run", "--ocp", there, "--wsjf", file("w.json")}), 64);
    EXPECT_EQ(bytesOfFile(there), "kept");
}

TEST_F(Formats, NameTheTagsThatWsjfNeedsBeforeAnythingRuns) {
    registerTest("LevelTest", [](const DiagDevice&) {
        ADD_FAILURE() << "nothing runs";
        return TestResult::PASS();
    });
    EXPECT_EQ(start({"run", "--wsjf", file("w.json"), "--tag", "serial=A1"}), 64);
    EXPECT_EQ(errors(),
              "example: --wsjf needs the tags part, revision, station, operator, process, "
              "location and purpose; give each with --tag, for example --tag "
              "part=VALUE; a replay has the tags of the captured run\n");
    EXPECT_THAT(filesThere(), Not(testing::Contains("w.json")));
    EXPECT_EQ(start({"run", "--check", "--wsjf", file("w.json"), "--tag", "serial=A1"}), 64);
    const auto refusalOf = [this](const std::string& tag) {
        forgetOutput();
        std::vector<std::string> arguments = {"run", "--wsjf", file("w.json")};
        for (const char* name :
             {"part", "revision", "station", "operator", "location", "purpose"}) {
            arguments.insert(arguments.end(), {"--tag", std::string(name) + "=X"});
        }
        for (const std::string& last :
             {tag, std::string(tag[0] == 's' ? "process=1" : "serial=1")}) {
            arguments.insert(arguments.end(), {"--tag", last});
        }
        EXPECT_EQ(start(arguments), 64);
        return errors();
    };
    EXPECT_THAT(refusalOf("process=late"), HasSubstr("the tag process is \"late\""));
    EXPECT_THAT(refusalOf("process=32768"), HasSubstr("a whole number from 0 to 32767"));
    EXPECT_THAT(refusalOf("serial=" + std::string(101, '1')),
                HasSubstr("the tag serial is longer than the 100 characters"));
}

TEST_F(Formats, NameTheTagsThatNoPersonIsAskedForBeforeOneIsAsked) {
    registerTest("LevelTest", TestResult::PASS());
    std::vector<std::string> arguments = {"run",          "--check", "--wsjf",       file("w.json"),
                                          "--tag-prompt", "serial",  "--tag-prompt", "process"};
    for (const char* name : {"revision", "station", "operator", "location", "purpose"}) {
        arguments.insert(arguments.end(), {"--tag", std::string(name) + "=X"});
    }
    EXPECT_EQ(start(arguments), 64);
    EXPECT_THAT(errors(), testing::StartsWith("example: --wsjf needs the tags part;"));
    arguments.insert(arguments.end(), {"--tag", "part=X"});
    EXPECT_EQ(start(arguments), 0) << "the others will be asked for";
}

TEST_F(Formats, OfSeveralRunsHaveFilesOfTheirOwn) {
    registerTest("LevelTest", TestResult::PASS());
    for (const char* serial : {"serial=A1", "serial=A1", "serial=B2"}) {
        EXPECT_EQ(start({"run", "--ocp", file("{serial}.jsonl"), "--openhtf",
                         file("{serial}-{result}.json"), "--tag", serial}),
                  0);
    }
    EXPECT_THAT(filesThere(),
                testing::IsSupersetOf({"A1.jsonl", "A1-2.jsonl", "B2.jsonl", "A1-PASS.json",
                                       "A1-PASS-2.json", "B2-PASS.json"}));
    EXPECT_EQ(start({"run", "--ocp", file("{result}.jsonl")}), 64)
        << "the file is written before the result is known";
    EXPECT_EQ(start({"run", "--check", "--ocp", file("{serial}.jsonl")}), 64);
}

TEST_F(Formats, RefuseAFileThatCannotBeWrittenOrIsNamedTwice) {
    registerTest("LevelTest", TestResult::PASS());
    EXPECT_EQ(start({"run", "--ocp", file("")}), 64);
    EXPECT_EQ(start({"run", "--ocp", file("a"), "--openhtf", file("a")}), 64);
    EXPECT_THAT(errors(), HasSubstr("--ocp"));
}

#ifndef _WIN32
TEST_F(Formats, ThatAFullDiskCutsLeaveTheVerdictToTheOtherReports) {
    bool ended = false;
    registerTest("LevelTest", [&ended](const DiagDevice&) {
        for (int i = 0; i < 100; ++i) {
            DiagModule::sampled("Level", -57);
        }
        ended = true;
        return TestResult::PASS();
    });
    const FullDisk disk(4000);
    EXPECT_EQ(start({"run", "--ocp", file("o.jsonl")}), 74);
    EXPECT_TRUE(ended);
    EXPECT_THAT(errors(), HasSubstr("example: the report \""));
    EXPECT_THAT(errors(), HasSubstr("o.jsonl\" could not be written: "));
    EXPECT_EQ(bytesOfFile(file("o.jsonl")).find("testRunEnd"), std::string::npos);
    forgetOutput();
    EXPECT_EQ(start({"run", "--ocp", file("o.jsonl"), "--junit", file("r.xml")}), 0)
        << "the other report has the verdict";
    EXPECT_THAT(errors(), HasSubstr("o.jsonl\" could not be written: "));
}
#endif

} // namespace

} // namespace test
