// What a run says of itself: the JSON report, the JUnit report, the HTML page and the stream of
// events, all of the same run.
#include "Reports.h"

#include <reports/EventStream.h>

#include <mrl/Exception.h>
#include <mrl/LoggerStream.h>

#include <regex>
#include <thread>

namespace test {

namespace {

void log(int priority, const char* text) {
    mrl::Logger& logger = mrl::LogFactory::createLogger("page");
    mrl::LoggerStream(logger.admitting(priority), priority) << text;
}

// A run with everything that there is to report, and names that every format must escape.
class WholeRun : public Reports {
protected:
    WholeRun() {
        registerTest("Signal",
                     [this](const DiagDevice&) {
                         DiagModule::progresses("PLAIN", 44.5);
                         clock().sleep(std::chrono::milliseconds(1500));
                         DiagModule::surveyed(
                             {"VISIBLE", "%", 0, 100, {{"<b>Far", 5, false}, {"Lab", 12, true}}});
                         DiagModule::measured({"Strength",
                                               12,
                                               "%",
                                               0,
                                               100,
                                               {{"Warning", 40, Severity::warning},
                                                {"Failing", 20, Severity::error}}});
                         auto* event = DiagModule::createEvent("WEAK");
                         event->setVariable("Strength", mrl::Uint32{12})
                             ->setVariable("Name", "Lab\x01\"<\n")
                             ->setVariable("Other", "{{exit}}");
                         DiagModule::error(event, "modules/a.cpp", 245);
                         clock().sleep(std::chrono::milliseconds(250));
                         DiagModule::progresses("WEAK", std::nullopt);
                         return TestResult::FAIL();
                     })
            ->addParameter(optionalParameter("SSID"))
            ->addParameter(optionalParameter("Limit", DataType::UINT32()));
        registerTest("Other", TestResult::PASS())->addDevicePropertyRequirement("wired", "");
        setDevices(R"([{"name": "Kärte\u2028<'&]]>", "capabilities": ["Wireless"],
                        "properties": {"z": "1", "a": "2"}}])");
        EXPECT_EQ(startWithReports({"--events", "--set", "SSID=L=b"}), 2);
    }
};

TEST_F(WholeRun, IsDescribedByTheJsonReport) {
    ordered_json report = json();
    EXPECT_EQ(report.erase("runIdentifier"), 1U);
    EXPECT_EQ(report, ordered_json::parse(R"({
        "schema": 1,
        "module": {"name": "example", "version": "6.5", "build": "000000001"},
        "started": "2026-11-20T19:55:01.123Z",
        "ended": "2026-11-20T19:55:02.873Z",
        "exit": 2,
        "results": [{
            "test": "Signal",
            "device": {"name": "Kärte\u2028<'&]]>", "properties": {"z": "1", "a": "2"}},
            "result": "FAIL",
            "value": 2,
            "started": "2026-11-20T19:55:01.123Z",
            "seconds": 1.75,
            "parameters": {"SSID": "L=b", "Limit": 0},
            "events": [{
                "key": "WEAK",
                "severity": "error",
                "text": "The signal of Lab\u0001\"<\n is 12%.",
                "variables": {"Strength": 12, "Name": "Lab\u0001\"<\n", "Other": "{{exit}}"},
                "file": "modules/a.cpp",
                "line": 245,
                "time": "2026-11-20T19:55:02.623Z"}],
            "measurements": [{
                "name": "Strength", "value": 12, "unit": "%", "lowest": 0, "highest": 100,
                "limits": [{"name": "Warning", "value": 40, "severity": "warning"},
                           {"name": "Failing", "value": 20, "severity": "error"}],
                "brokenLimit": "Failing"}],
            "surveys": [{
                "name": "VISIBLE", "unit": "%", "lowest": 0, "highest": 100,
                "entries": [{"name": "<b>Far", "value": 5, "measured": false},
                            {"name": "Lab", "value": 12, "measured": true}]}],
            "advice": [{"key": "LIMIT_REACHED", "good": false,
                        "text": "Kärte\u2028<'&]]> is weak.",
                        "variables": {"Device": "Kärte\u2028<'&]]>"}}]}],
        "withoutDevice": [{
            "test": "Other",
            "reasons": ["Kärte\u2028<'&]]>: lacks the property \"wired\""],
            "advice": []}]
    })"))
        << "in this order";
    const std::string text = bytesOfFile(file("r.json"));
    EXPECT_THAT(text, testing::StartsWith("{\n  \"schema\": 1,\n  \"module\": {\n    \"name\": "));
    EXPECT_THAT(text, testing::EndsWith("\n}\n"));
    EXPECT_THAT(text, HasSubstr("\"name\": \"Kärte\\u2028<'&]]>\",\n"));
}

TEST_F(WholeRun, IsAStreamOfOneAsciiLineForEachEventInTheShapeOfTheReport) {
    const ordered_json report = json();
    const ordered_json signal = report["results"][0];
    const std::string start = report["started"];
    const std::string later = signal["events"][0]["time"];
    const std::string end = report["ended"];
    std::string expected;
    int sequence = 0;
    const auto expect = [&](const char* type, const std::string& time, const ordered_json& rest) {
        ordered_json line = {{"type", type},
                             {"sequence", ++sequence},
                             {"time", time},
                             {"runIdentifier", report["runIdentifier"]}};
        line.update(rest);
        expected += line.dump(-1, ' ', true) + "\n";
    };
    expect("runStarted", start,
           {{"protocol", 1},
            {"module", report["module"]},
            {"planned", 1},
            {"withoutDevice", report["withoutDevice"]}});
    expect("testStarted", start,
           {{"run", 1},
            {"test", "Signal"},
            {"interactive", false},
            {"device", signal["device"]},
            {"parameters", signal["parameters"]}});
    expect(
        "progress", start,
        {{"run", 1}, {"key", "PLAIN"}, {"text", "Something happened."}, {"longestSeconds", 44.5}});
    expect("survey", later, {{"run", 1}, {"survey", signal["surveys"][0]}});
    expect("measurement", later, {{"run", 1}, {"measurement", signal["measurements"][0]}});
    expect("event", later, {{"run", 1}, {"event", signal["events"][0]}});
    expect("progress", end,
           {{"run", 1},
            {"key", "WEAK"},
            {"text", "The signal of {Name} is {Strength}%."},
            {"longestSeconds", nullptr}});
    expect("testEnded", end, {{"run", 1}, {"called", true}, {"failure", ""}, {"result", signal}});
    expect("runEnded", end, {{"exit", 2}, {"started", start}, {"ended", end}, {"leftOut", 0}});
    EXPECT_EQ(output(), expected);
    EXPECT_EQ(errors(), "example: no device for Other\n"
                        "  Kärte\\u2028<'&]]>: lacks the property \"wired\"\n")
        << "standard error has it too, for people";
}

TEST_F(WholeRun, IsDescribedByTheJUnitReport) {
    const std::regex identifier(json().at("runIdentifier").get<std::string>());
    EXPECT_EQ(std::regex_replace(junit(), identifier, "RUN"),
              R"(<?xml version="1.0" encoding="UTF-8"?>
<testsuites name="example" timestamp="2026-11-20T19:55:01.123Z" tests="2" failures="1" errors="0" skipped="1" time="1.750">
  <testsuite name="example.Signal" timestamp="2026-11-20T19:55:01.123Z" tests="1" failures="1" errors="0" skipped="0" time="1.750">
    <properties>
      <property name="module" value="example"/>
      <property name="version" value="6.5"/>
      <property name="build" value="000000001"/>
      <property name="runIdentifier" value="RUN"/>
      <property name="exit" value="2"/>
    </properties>
    <testcase classname="example.Signal" name="Signal[Kärte\u2028&lt;&#39;&amp;]]&gt;]" time="1.750">
      <properties>
        <property name="result" value="FAIL"/>
        <property name="started" value="2026-11-20T19:55:01.123Z"/>
        <property name="device" value="Kärte\u2028&lt;&#39;&amp;]]&gt;"/>
        <property name="device.z" value="1"/>
        <property name="device.a" value="2"/>
        <property name="parameter.SSID" value="L=b"/>
        <property name="parameter.Limit" value="0"/>
        <property name="measurement.Strength" value="12"/>
        <property name="measurement.Strength.unit" value="%"/>
        <property name="measurement.Strength.lowest" value="0"/>
        <property name="measurement.Strength.highest" value="100"/>
        <property name="measurement.Strength.limit.Warning" value="40"/>
        <property name="measurement.Strength.limit.Warning.severity" value="warning"/>
        <property name="measurement.Strength.limit.Failing" value="20"/>
        <property name="measurement.Strength.limit.Failing.severity" value="error"/>
        <property name="measurement.Strength.brokenLimit" value="Failing"/>
      </properties>
      <failure message="The signal of Lab\x01&quot;&lt;\n is 12%." type="WEAK">error: The signal of Lab\x01&quot;&lt;\n is 12%.
  WEAK (modules/a.cpp:245)
  Strength = 12
  Name = Lab\x01&quot;&lt;\n
  Other = {{exit}}</failure>
      <system-out>error: The signal of Lab\x01&quot;&lt;\n is 12%.
  WEAK (modules/a.cpp:245)
  Strength = 12
  Name = Lab\x01&quot;&lt;\n
  Other = {{exit}}
Strength: 12% [###..|....|..............] at or below the failing limit of 20%
VISIBLE:
  12%  Lab  (measured)
  5%  &lt;b&gt;Far
Kärte\u2028&lt;&#39;&amp;]]&gt; is weak.</system-out>
    </testcase>
  </testsuite>
  <testsuite name="example.Other" timestamp="2026-11-20T19:55:01.123Z" tests="1" failures="0" errors="0" skipped="1" time="0.000">
    <properties>
      <property name="module" value="example"/>
      <property name="version" value="6.5"/>
      <property name="build" value="000000001"/>
      <property name="runIdentifier" value="RUN"/>
      <property name="exit" value="2"/>
    </properties>
    <testcase classname="example.Other" name="Other" time="0.000">

      <skipped message="This PC has no device that suits the test. Kärte\u2028&lt;&#39;&amp;]]&gt;: lacks the property &quot;wired&quot;">Kärte\u2028&lt;&#39;&amp;]]&gt;: lacks the property &quot;wired&quot;</skipped>

    </testcase>
  </testsuite>
</testsuites>
)");
}

TEST_F(WholeRun, IsShownByTheHtmlPageWithEveryNameAsTextIsolatedInItsDirection) {
    const std::string page = html();
    for (const char* part : {
             R"(<html lang="en" dir="ltr">)",
             "<title>Failed · Runs: 2 · Test report</title>",
             "<bdi>SSID</bdi></th><td><bdi>L=b</bdi></td>",
             "<bdi>Limit</bdi></th><td><i>not set</i></td>",
             "<strong>Failed</strong> <small>FAIL</small>",
             "<bdi>example 6.5 (build 000000001)</bdi>",
             "<bdi>Kärte\\u2028&lt;&#39;&amp;]]&gt;</bdi>",
             R"(aria-label="Strength: 12%; Warning at 40% or below; Failing at 20% or below")",
             R"(<rect class="bad" x="0.00%" y="24" width="20.00%")",
             R"(<rect class="warning" x="20.00%" y="24" width="20.00%")",
             R"(<rect class="good" x="40.00%" y="24" width="60.00%")",
             R"(<rect class="bar" x="0.00%" y="32" width="12.00%")",
             R"(<tr class="measured"><th scope="row"><bdi>Lab</bdi>)",
             "The signal of <bdi>Lab\\x01&quot;&lt;\\n</bdi> is <bdi>12</bdi>%.",
             "<bdi>Other</bdi>: <bdi>{{exit}}</bdi>",
         }) {
        EXPECT_THAT(page, HasSubstr(part));
    }
    EXPECT_LT(page.find("<bdi>Lab</bdi>"), page.find("<bdi>&lt;b&gt;Far</bdi>"))
        << "the strongest first";
    EXPECT_THAT(page, HasSubstr("content=\"default-src 'none'; style-src 'sha256-"));
    for (const char* foreign : {"<script", "src=", "url(", "style=", "http://", "https://"}) {
        EXPECT_THAT(page, Not(HasSubstr(foreign)));
    }
    EXPECT_THAT(page, Not(HasSubstr("REPORT_"))) << "every text is found";
}

TEST_F(Reports, HaveAnElementWithTheReasonForEachResultInTheJUnitReport) {
    const struct {
        TestResult result;
        bool warns; ///< the test raises a warning
        const char* counts;
        const char* part; ///< of the report
    } rows[] = {
        {.result = TestResult::COMPLETED(),
         .warns = false,
         .counts = R"(failures="0" errors="0" skipped="0")",
         .part = "<testcase "},
        {.result = TestResult::WARN(),
         .warns = true,
         .counts = R"(failures="0" errors="0" skipped="0")",
         .part = "<system-out>warning: Something happened.\n"},
        {.result = TestResult::CANNOTRUN(),
         .warns = true,
         .counts = R"(failures="0" errors="0" skipped="1")",
         .part = R"(<skipped message="Something happened.")"},
        {.result = TestResult::BADPARAMS(),
         .warns = false,
         .counts = R"(failures="0" errors="1" skipped="0")",
         .part = R"(<error message="Parameters cannot be used" type="BADPARAMS"/>)"},
    };
    auto row = rows[0];
    auto* event = DiagModule::createEvent("PLAIN");
    registerTest("A", [&](const DiagDevice&) {
        if (row.warns) {
            DiagModule::warning(event, "a.cpp", 1);
        }
        return row.result;
    });
    for (const auto& next : rows) {
        row = next;
        startWithReports();
        EXPECT_THAT(junit(), HasSubstr(std::string(R"(tests="1" )") + row.counts));
        EXPECT_THAT(junit(), HasSubstr(std::string(R"("result" value=")") + row.result.name()));
        EXPECT_THAT(junit(), HasSubstr(row.part));
        const bool passed = row.result.good() || row.result == TestResult::WARN();
        EXPECT_EQ(junit().find(" message=") == std::string::npos, passed);
    }
}

TEST_F(Reports, SayWhyATestHasNoDevice) {
    registerTest("A", TestResult::PASS());
    setDevices(R"([{"name": "Cable", "capabilities": []}, {"name": "Modem", "capabilities": []}])");
    EXPECT_EQ(startWithEvents(), 3);
    EXPECT_EQ(json()["exit"], 3);
    EXPECT_EQ(json()["results"], ordered_json::array());
    EXPECT_THAT(types(), ElementsAre("runStarted", "runEnded"));
    EXPECT_EQ(events()[0]["planned"], 0);
    EXPECT_EQ(events()[1]["exit"], 3);
    EXPECT_THAT(junit(), HasSubstr(R"(<testcase classname="example.A" name="A" time="0.000">)"));
    EXPECT_THAT(junit(),
                HasSubstr("<skipped message=\"This PC has no device that suits the test.\">Cable"));
    EXPECT_THAT(junit(), HasSubstr("\nModem: "));
    EXPECT_THAT(html(), HasSubstr("<small>CANNOTRUN</small>"));
    EXPECT_THAT(html(), HasSubstr("<li><bdi>Cable: "));
}

TEST_F(Reports, GiveTheReasonForAnInternalError) {
    registerThrowing("A", TeskException("the \xfc <card> vanished"));
    registerTest("B", TestResult::CANNOTRUN());
    EXPECT_EQ(startWithEvents(), 5);
    EXPECT_EQ(result(0)["result"], "INTERNALERROR");
    EXPECT_EQ(result(0)["failure"], "the \xEF\xBF\xBD <card> vanished");
    EXPECT_FALSE(result(1).contains("failure"));
    EXPECT_EQ(events()[2]["failure"], result(0)["failure"]);
    EXPECT_THAT(junit(), HasSubstr("<error message=\"the \xEF\xBF\xBD &lt;card&gt; vanished\" "
                                   "type=\"INTERNALERROR\">the \xEF\xBF\xBD &lt;card&gt; "
                                   "vanished</error>"));
    EXPECT_THAT(html(), HasSubstr("<p class=\"remark\"><bdi>the \xEF\xBF\xBD &lt;card&gt; "
                                  "vanished</bdi></p>"));
    EXPECT_THAT(html(), HasSubstr("The test gave no reason. The log may show more.")) << "of B";
}

TEST_F(Reports, CountAnEventThatIsRaisedAgain) {
    registerTest("A", [](const DiagDevice&) {
        tesk5::Event* const event = DiagModule::createEvent("WEAK");
        for (const char* name : {"a", "b", "a", "a"}) {
            DiagModule::warning(event->setVariable("Name", name), "x.cpp", 1);
        }
        DiagModule::error(event, "x.cpp", 1);
        DiagModule::warning(event, "x.cpp", 2);
        DiagModule::warning(event, "y.cpp", 1);
        DiagModule::warning(event->setVariable("Unspoken", "1"), "x.cpp", 1);
        return TestResult::WARN();
    });
    EXPECT_EQ(start({"run", "--json", file("report.json")}), 1);
    const auto events =
        nlohmann::json::parse(bytesOfFile(file("report.json")))["results"][0]["events"];
    ASSERT_EQ(events.size(), 6U) << "one that differs in anything is another event";
    EXPECT_EQ(events[0]["count"], 3);
    for (std::size_t i = 1; i < events.size(); ++i) {
        EXPECT_FALSE(events[i].contains("count"));
    }
    EXPECT_EQ(events[2]["severity"], "error");
    EXPECT_THAT(output(), HasSubstr("The signal of a is {Strength}%. (3 times)"));
}

TEST_F(Reports, ListRunsThatAStopRequestPrevented) {
    registerStopping("A");
    registerTest("B", TestResult::PASS());
    EXPECT_EQ(startWithEvents(), 6);
    EXPECT_EQ(result(1)["result"], "USERABORTED");
    EXPECT_EQ(result(1)["seconds"], 0);
    EXPECT_EQ(json()["exit"], 6);
    EXPECT_THAT(types(),
                ElementsAre("runStarted", "testStarted", "testEnded", "testEnded", "runEnded"));
    EXPECT_EQ(events()[2]["called"], true);
    EXPECT_EQ(events()[3]["called"], false);
    EXPECT_EQ(events()[3]["run"], 2);
    EXPECT_THAT(junit(), HasSubstr(R"(tests="2" failures="0" errors="1" skipped="0")"));
    EXPECT_THAT(junit(), HasSubstr("<error message=\"The test was not started"));
}

TEST_F(Reports, CountTheRunsThatAnAbortLeftOut) {
    registerTest("A", [](const DiagDevice&) {
        DiagModule::requestAbort();
        return TestResult::PASS();
    });
    setDevices(3);
    EXPECT_EQ(startWithEvents(), 0);
    EXPECT_EQ(events().front()["planned"], 3);
    EXPECT_EQ(events().back()["leftOut"], 2);
    EXPECT_THAT(junit(), HasSubstr(R"(<property name="leftOut" value="2"/>)"));
}

TEST_F(Reports, OfARunThatAnExceptionEndedNameTheTestAndTheReason) {
    registerTest("A", TestResult::PASS());
    registerTest("B", [](const DiagDevice&) -> TestResult {
        DiagModule::warning(DiagModule::createEvent("PLAIN"), "", 1);
        throw std::runtime_error("no \xfc"
                                 "ber\n");
    });
    registerTest("C", TestResult::PASS());
    EXPECT_THROW(startWithEvents(), std::runtime_error);
    EXPECT_EQ(json()["exit"], 8);
    ASSERT_EQ(json()["results"].size(), 2U);
    EXPECT_EQ(result(0)["result"], "PASS");
    EXPECT_EQ(result(1)["result"], "EXITEDABNORMALLY");
    EXPECT_EQ(result(1)["value"], 8);
    EXPECT_EQ(result(1)["failure"], "no \xef\xbf\xbd"
                                    "ber\n")
        << "in no encoding that is known";
    EXPECT_EQ(result(1)["events"][0]["key"], "PLAIN");
    EXPECT_THAT(types(), ElementsAre("runStarted", "testStarted", "testEnded", "testStarted",
                                     "event", "broken"));
    EXPECT_EQ(events().back()["run"], 2);
    EXPECT_EQ(events().back()["reason"], result(1)["failure"]);
    EXPECT_THAT(errors(), HasSubstr("an exception ended B on Card 1; the run ends here"));
}

TEST_F(Reports, OfSeveralRunsNumberDevicesOfOneNameAndShowTheWorstFirst) {
    registerTest("A", TestResult::PASS())->setInteractive(true);
    registerTest("B", TestResult::FAIL());
    setDevices(R"([{"name": "Card", "capabilities": ["Wireless"]},
                   {"name": "Card", "capabilities": ["Wireless"]}])");
    EXPECT_EQ(startWithReports({"A", "B", "--events"}), 2);
    EXPECT_THAT(types(),
                ElementsAre("runStarted", "testStarted", "testEnded", "testStarted", "testEnded",
                            "testStarted", "testEnded", "testStarted", "testEnded", "runEnded"));
    EXPECT_EQ(events()[1]["interactive"], true);
    EXPECT_EQ(events()[8]["run"], 4);
    EXPECT_EQ(errors(), "");
    for (const char* part : {R"(tests="4" failures="2" errors="0" skipped="0")",
                             R"(name="example.A" timestamp="2026-11-20T19:55:01.123Z" tests="2")",
                             R"(name="B[Card]")", R"(name="B[Card (2)]")"}) {
        EXPECT_THAT(junit(), HasSubstr(part));
    }
    const std::string page = html();
    EXPECT_LT(page.find("<strong>Failed</strong>"), page.find("<strong>Passed</strong>"));
    EXPECT_THAT(page, HasSubstr("<a href=\"#result-3\"><bdi>B</bdi></a>"));
    EXPECT_THAT(page, HasSubstr("<article class=\"card\" id=\"result-3\">"));
}

TEST_F(Reports, HoldTheLogInTheHtmlPageWithoutALogOption) {
    registerTest("A", [](const DiagDevice&) {
        log(1, "the <line>");
        log(0, "a trace");
        return TestResult::PASS();
    });
    startWithReports();
    EXPECT_THAT(html(), HasSubstr("2026-11-20T19:55:01.123Z 1 page: the &lt;line&gt;\n"));
    EXPECT_THAT(html(), Not(HasSubstr("a trace")));
    EXPECT_EQ(errors(), "");
    EXPECT_EQ(mrl::LogFactory::getPriority(), mrl::LogFactory::OFF);
}

TEST_F(Reports, FoldTheLogInTheHtmlPageUnlessAllOfItIsRequested) {
    registerTest("A", [](const DiagDevice&) {
        for (const char* text : {"poll 1", "poll 2", "poll 3"}) {
            log(1, text);
        }
        return TestResult::PASS();
    });
    constexpr const char* HINT = "<p><small>Repetitions are folded. --full-log shows every line.";
    startWithReports();
    EXPECT_THAT(html(), HasSubstr("1 page: poll 1\n... Repeated with other numbers until "
                                  "2026-11-20T19:55:01.123Z (lines: 1, times: 2)\n"));
    EXPECT_THAT(html(), Not(HasSubstr("poll 3")));
    EXPECT_THAT(html(), HasSubstr("<small>Lines: 5</small>"));
    EXPECT_THAT(html(), HasSubstr(HINT));
    startWithReports({"--full-log"});
    EXPECT_THAT(html(), HasSubstr("page: poll 2\n"));
    EXPECT_THAT(html(), HasSubstr("page: poll 3\n"));
    EXPECT_THAT(html(), Not(HasSubstr(HINT)));
}

TEST_F(Reports, NameADeviceInTheTitleOfTheHtmlPageAndBreakNamesBetweenTheirWords) {
    registerTest("SignalStrengthTest", TestResult::PASS())
        ->addParameter(optionalParameter("WarningLimit", DataType::UINT32()));
    setDevices(R"([{"name": "<Card>", "capabilities": ["Wireless"],
                    "properties": {"SystemName<b>X": "1"}}])");
    startWithReports({"--set", "WarningLimit=0"});
    EXPECT_THAT(html(), HasSubstr("<title>Passed · &lt;Card&gt; · Test report</title>"));
    EXPECT_THAT(html(), HasSubstr("<h2><bdi>Signal<wbr>Strength<wbr>Test</bdi></h2>"));
    EXPECT_THAT(html(), HasSubstr("<bdi>Warning<wbr>Limit</bdi></th><td><bdi>0</bdi></td>"));
    EXPECT_THAT(html(), HasSubstr("<bdi>System<wbr>Name&lt;b&gt;X</bdi>"));
}

TEST_F(Reports, HaveEachEventInTheStreamAsSoonAsItHappens) {
    registerTest("A", [this](const DiagDevice&) {
        EXPECT_THAT(types(), ElementsAre("runStarted", "testStarted"));
        DiagModule::progresses("PLAIN", 1.0);
        EXPECT_THAT(types(), ElementsAre("runStarted", "testStarted", "progress"));
        return TestResult::PASS();
    });
    EXPECT_EQ(startWithEvents(), 0);
}

TEST_F(Reports, HaveAStopRequestInTheStreamOfEvents) {
    tesk5::RunRecord record;
    record.identity.identifier = "017f22e2-79b0-7cc3-98c4-dc0c0c07398f";
    tesk5::EventStream stream(mrl::cout);
    stream.onRunStart(record, {});
    forgetOutput();
    stream.onStopRequest();
    EXPECT_EQ(output(),
              "{\"type\":\"stopping\",\"sequence\":2,\"time\":\"2026-11-20T19:55:01.123Z\","
              "\"runIdentifier\":\"017f22e2-79b0-7cc3-98c4-dc0c0c07398f\"}\n");
}

TEST_F(Reports, HaveWholeLinesOfEveryThreadInTheStreamInTheOrderOfTheirNumbers) {
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
    for (const ordered_json& line : events()) {
        EXPECT_EQ(line["sequence"], ++sequence);
    }
    EXPECT_EQ(sequence, 2U * TIMES);
}

} // namespace

} // namespace test
