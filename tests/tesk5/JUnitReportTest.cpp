#include "FrameworkTest.h"

#include <tesk5/RunContext.h>
#include <tesk5/TeskException.h>

namespace test {

namespace {

using tesk5::DataType;
using tesk5::DiagDevice;
using tesk5::DiagModule;
using tesk5::Measurement;
using tesk5::Severity;
using tesk5::Survey;
using tesk5::TestResult;
using testing::HasSubstr;
using testing::Not;

class JUnitReports : public FrameworkTest {
protected:
    /// The report of a run with these arguments.
    std::string reportOf(std::vector<std::string> arguments = {}) {
        arguments.insert(arguments.begin(), {"run", "--junit", file("report.xml")});
        start(std::move(arguments));
        return bytesOfFile(file("report.xml"));
    }
    std::string reportOfResult(TestResult result) {
        registerTest("A", result);
        return reportOf();
    }
};

TEST_F(JUnitReports, DescribeTheWholeRun) {
    auto* name = DiagModule::createParameter("SSID", DataType::STRING(), "", false, true);
    auto* event = DiagModule::createEvent("WEAK");
    registerTest("Signal", [&](const DiagDevice&) {
        clock().sleep(std::chrono::milliseconds(1750));
        DiagModule::surveyed(
            Survey{"VISIBLE", "%", 0, 100, {{"Far", 5, false}, {"Lab", 12, true}}});
        DiagModule::measured(
            Measurement{"Strength",
                        12,
                        "%",
                        0,
                        100,
                        {{"Warning", 40, Severity::warning}, {"Failing", 20, Severity::error}}});
        event->setVariable("Strength", mrl::Uint32{12})->setVariable("Name", "Lab");
        DiagModule::error(event, "modules/a.cpp", 245);
        return TestResult::FAIL();
    })->addParameter(name);
    setDevices(R"([{"name": "Card", "capabilities": ["Wireless"], "properties": {"z": "1"}}])");
    EXPECT_EQ(reportOf({"--set", "SSID=Lab"}), R"(<?xml version="1.0" encoding="UTF-8"?>
<testsuites name="example" timestamp="2026-11-20T19:55:01.123Z" tests="1" failures="1" errors="0" skipped="0" time="1.750">
  <testsuite name="example.Signal" timestamp="2026-11-20T19:55:01.123Z" tests="1" failures="1" errors="0" skipped="0" time="1.750">
    <properties>
      <property name="module" value="example"/>
      <property name="version" value="6.5"/>
      <property name="build" value="000000001"/>
      <property name="exit" value="2"/>
    </properties>
    <testcase classname="example.Signal" name="Signal[Card]" time="1.750">
      <properties>
        <property name="result" value="FAIL"/>
        <property name="started" value="2026-11-20T19:55:01.123Z"/>
        <property name="device" value="Card"/>
        <property name="device.z" value="1"/>
        <property name="parameter.SSID" value="Lab"/>
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
      <failure message="The signal of Lab is 12 %." type="WEAK">error: The signal of Lab is 12 %.
  WEAK (modules/a.cpp:245)
  Strength = 12
  Name = Lab</failure>
      <system-out>error: The signal of Lab is 12 %.
  WEAK (modules/a.cpp:245)
  Strength = 12
  Name = Lab
Strength: 12 % [###..|....|..............] at or below the failing limit of 20 %
VISIBLE:
  12 %  Lab  (measured)
  5 %  Far</system-out>
    </testcase>
  </testsuite>
</testsuites>
)");
}

TEST_F(JUnitReports, AWarningPassesWithItsTextInTheOutput) {
    registerTest("A", [](const DiagDevice&) {
        DiagModule::warning(DiagModule::createEvent("PLAIN"), "a.cpp", 1);
        return TestResult::WARN();
    });
    const std::string report = reportOf();
    EXPECT_THAT(report, HasSubstr(R"(tests="1" failures="0" errors="0" skipped="0")"));
    EXPECT_THAT(report, HasSubstr("<system-out>warning: Something happened.\n"));
    EXPECT_THAT(report, HasSubstr(R"(<property name="result" value="WARN"/>)"));
    EXPECT_THAT(report, Not(HasSubstr("<failure")));
}

TEST_F(JUnitReports, ResultsWithoutAVerdictAreErrorsNamedAfterTheResult) {
    const std::string report = reportOfResult(TestResult::BADPARAMS());
    EXPECT_THAT(report, HasSubstr(R"(tests="1" failures="0" errors="1" skipped="0")"));
    EXPECT_THAT(report,
                HasSubstr(R"(<error message="Parameters cannot be used" type="BADPARAMS"/>)"));
}

TEST_F(JUnitReports, AnInternalErrorHasItsReason) {
    registerTest("A", [](const DiagDevice&) -> TestResult {
        throw tesk5::TeskException(tesk5::TeskString("the <card> vanished"));
    });
    EXPECT_THAT(reportOf(), HasSubstr("<error message=\"the &lt;card&gt; vanished\" "
                                      "type=\"INTERNALERROR\">the &lt;card&gt; vanished</error>"));
}

TEST_F(JUnitReports, WhatCannotRunIsSkippedWithItsReason) {
    registerTest("A", [](const DiagDevice&) {
        DiagModule::warning(DiagModule::createEvent("PLAIN"), "a.cpp", 1);
        return TestResult::CANNOTRUN();
    });
    const std::string report = reportOf();
    EXPECT_THAT(report, HasSubstr(R"(tests="1" failures="0" errors="0" skipped="1")"));
    EXPECT_THAT(report, HasSubstr(R"(<skipped message="Something happened.")"));
}

TEST_F(JUnitReports, ATestWithoutADeviceIsSkippedWithTheReasonsAgainstEachDevice) {
    registerTest("A", TestResult::PASS());
    setDevices(R"([{"name": "Cable", "capabilities": []}, {"name": "Modem", "capabilities": []}])");
    const std::string report = reportOf();
    EXPECT_THAT(report, HasSubstr(R"(tests="1" failures="0" errors="0" skipped="1" time="0.000")"));
    EXPECT_THAT(report, HasSubstr(R"(<testcase classname="example.A" name="A" time="0.000">)"));
    EXPECT_THAT(report,
                HasSubstr("<skipped message=\"This PC has no device that suits the test.\">Cable"));
    EXPECT_THAT(report, HasSubstr("\nModem: "));
}

TEST_F(JUnitReports, ARunThatCtrlCPreventedIsAnError) {
    registerTest("A", [](const DiagDevice&) {
        tesk5::RunContext::current().stopRequest.raise();
        return TestResult::PASS();
    });
    registerTest("B", TestResult::PASS());
    const std::string report = reportOf();
    EXPECT_THAT(report, HasSubstr(R"(tests="2" failures="0" errors="1" skipped="0")"));
    EXPECT_THAT(report, HasSubstr("<error message=\"The test was not started"));
}

TEST_F(JUnitReports, HaveASuiteForEachTestAndACaseForEachDevice) {
    registerTest("A", TestResult::PASS());
    registerTest("B", TestResult::FAIL());
    setDevices(2);
    const std::string report = reportOf();
    EXPECT_THAT(report, HasSubstr(R"(tests="4" failures="2" errors="0" skipped="0")"));
    EXPECT_THAT(report, HasSubstr(R"(name="example.A" timestamp="2026-11-20T19:55:01.123Z" )"
                                  R"(tests="2" failures="0")"));
    EXPECT_THAT(report, HasSubstr(R"(name="B[Card 1]")"));
    EXPECT_THAT(report, HasSubstr(R"(name="B[Card 2]")"));
}

TEST_F(JUnitReports, DevicesOfOneNameAreNumbered) {
    registerTest("A", TestResult::PASS());
    setDevices(R"([{"name": "Card", "capabilities": ["Wireless"]},
                   {"name": "Card", "capabilities": ["Wireless"]}])");
    const std::string report = reportOf();
    EXPECT_THAT(report, HasSubstr(R"(name="A[Card]")"));
    EXPECT_THAT(report, HasSubstr(R"(name="A[Card (2)]")"));
}

TEST_F(JUnitReports, NamesFromOutsideCannotBreakTheDocument) {
    registerTest("A", TestResult::PASS());
    setDevices(
        R"([{"name": "<a b=\"'&\u0000\u001B\uFFFE\u202E]]>", "capabilities": ["Wireless"]}])");
    EXPECT_THAT(reportOf(),
                HasSubstr(R"(name="A[&lt;a b=&quot;&#39;&amp;\x00\x1B\uFFFE\u202E]]&gt;])"));
}

} // namespace

} // namespace test
