#include "reports/JUnitReport.h"

#include <tesk5/ModuleInfo.h>
#include <tesk5/Texts.h>

#include "reports/ReportJson.h"
#include "reports/XmlWriter.h"
#include "run/ReportWords.h"

#include <algorithm>
#include <cstdio>

namespace tesk5 {

namespace {

enum class Standing { passed, failed, broken, skipped };

struct ResultStanding {
    TestResult result;
    Standing standing;
};
// What is not here could not do its work.
const ResultStanding standings[] = {
    {TestResult::PASS(), Standing::passed},       {TestResult::WARN(), Standing::passed},
    {TestResult::COMPLETED(), Standing::passed},  {TestResult::FAIL(), Standing::failed},
    {TestResult::CANNOTRUN(), Standing::skipped},
};

Standing standingOf(const TestResult& result) {
    const auto* const found =
        std::find_if(std::begin(standings), std::end(standings),
                     [&result](const ResultStanding& row) { return row.result == result; });
    return found == std::end(standings) ? Standing::broken : found->standing;
}

struct Counts {
    std::size_t tests = 0;
    std::size_t failures = 0;
    std::size_t errors = 0;
    std::size_t skipped = 0;
    double seconds = 0;

    void count(Standing standing, double lasted) {
        ++tests;
        failures += standing == Standing::failed ? 1 : 0;
        errors += standing == Standing::broken ? 1 : 0;
        skipped += standing == Standing::skipped ? 1 : 0;
        seconds += lasted;
    }
};

// One test with all that became of it.
struct Suite {
    const Test* test;
    std::vector<const Outcome*> outcomes;
    std::vector<const TestWithoutDevice*> withoutDevice;

    Counts counts() const {
        Counts all;
        for (const Outcome* outcome : outcomes) {
            all.count(standingOf(outcome->result), outcome->seconds);
        }
        for (std::size_t i = 0; i < withoutDevice.size(); ++i) {
            all.count(standingOf(TestResult::CANNOTRUN()), 0);
        }
        return all;
    }
};

std::vector<Suite> suitesOf(const RunRecord& run) {
    std::vector<Suite> suites;
    const auto suiteOf = [&suites](const Test* test) -> Suite& {
        const auto known = std::find_if(suites.begin(), suites.end(),
                                        [test](const Suite& suite) { return suite.test == test; });
        return known != suites.end() ? *known : suites.emplace_back(Suite{test, {}, {}});
    };
    for (const Outcome& outcome : run.outcomes) {
        suiteOf(outcome.test).outcomes.push_back(&outcome);
    }
    for (const TestWithoutDevice& without : run.withoutDevice) {
        suiteOf(without.test).withoutDevice.push_back(&without);
    }
    return suites;
}

std::string secondsText(double seconds) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.3f", roundedToMilliseconds(seconds));
    return buffer;
}

XmlWriter::Attributes withCounts(XmlWriter::Attributes attributes, const Counts& counts) {
    attributes.insert(attributes.end(), {{"tests", std::to_string(counts.tests)},
                                         {"failures", std::to_string(counts.failures)},
                                         {"errors", std::to_string(counts.errors)},
                                         {"skipped", std::to_string(counts.skipped)},
                                         {"time", secondsText(counts.seconds)}});
    return attributes;
}

class Properties {
public:
    explicit Properties(XmlWriter& xml) : m_xml(xml) { m_xml.open("properties"); }
    Properties(const Properties&) = delete;
    Properties& operator=(const Properties&) = delete;
    ~Properties() { m_xml.close(); }

    void add(const std::string& name, const std::string& value) {
        m_xml.leaf("property", {{"name", name}, {"value", value}});
    }
    void add(const std::string& name, mrl::Uint32 value) { add(name, std::to_string(value)); }

private:
    XmlWriter& m_xml;
};

void writeMeasurement(Properties& properties, const Measurement& measurement) {
    const std::string name = "measurement." + measurement.name.utf8();
    properties.add(name, measurement.value);
    properties.add(name + ".unit", measurement.unit.utf8());
    properties.add(name + ".lowest", measurement.lowest);
    properties.add(name + ".highest", measurement.highest);
    for (const Limit& limit : measurement.limits) {
        const std::string limitName = name + ".limit." + limit.name.utf8();
        properties.add(limitName, limit.value);
        properties.add(limitName + ".severity", severityName(limit.severity));
    }
    if (const Limit* broken = measurement.brokenLimit()) {
        properties.add(name + ".brokenLimit", broken->name.utf8());
    }
}

void writeProperties(XmlWriter& xml, const Outcome& outcome) {
    Properties properties(xml);
    properties.add("result", outcome.result.name());
    properties.add("started", reportTime(outcome.time));
    properties.add("device", outcome.device->name().utf8());
    for (const auto& [name, value] : outcome.device->properties()) {
        properties.add("device." + name.utf8(), value.utf8());
    }
    for (const auto& [name, value] : outcome.parameters) {
        properties.add("parameter." + name.utf8(), value.valueString().utf8());
    }
    for (const Measurement& measurement : outcome.measurements) {
        writeMeasurement(properties, measurement);
    }
}

// The event that stands for a bad result: the first of the gravest, which caused the others.
const RaisedEvent* leadingEvent(const Outcome& outcome) {
    const auto leading = std::max_element(outcome.events.begin(), outcome.events.end(),
                                          [](const RaisedEvent& a, const RaisedEvent& b) {
                                              return a.severity == Severity::warning &&
                                                     b.severity == Severity::error;
                                          });
    return leading == outcome.events.end() ? nullptr : &*leading;
}

// Why there is no good result, in one line.
std::string reasonFor(const Outcome& outcome) {
    if (!outcome.failure.empty()) {
        return outcome.failure;
    }
    if (const RaisedEvent* event = leadingEvent(outcome)) {
        return event->text;
    }
    if (!outcome.started) {
        return message("REPORT_NOT_STARTED");
    }
    for (const Finding& finding : outcome.advice) {
        if (!finding.good) {
            return message(finding);
        }
    }
    return resultInWords(outcome.result);
}

std::vector<std::string> eventLines(const Outcome& outcome) {
    std::vector<std::string> lines;
    if (!outcome.failure.empty()) {
        lines.push_back(outcome.failure);
    }
    for (const RaisedEvent& event : outcome.events) {
        lines.push_back(std::string(severityName(event.severity)) + ": " + event.text);
        lines.push_back("  " + event.key.utf8() + " (" + event.file + ":" +
                        std::to_string(event.line) + ")");
        for (const auto& [name, value] : event.variables) {
            lines.push_back("  " + name.utf8() + " = " + value.valueString().utf8());
        }
    }
    return lines;
}

void writeVerdict(XmlWriter& xml, const Outcome& outcome) {
    const RaisedEvent* event = leadingEvent(outcome);
    const std::string type =
        event == nullptr || !outcome.failure.empty() ? outcome.result.name() : event->key.utf8();
    const std::vector<std::string> lines = eventLines(outcome);
    switch (standingOf(outcome.result)) {
    case Standing::passed:
        break;
    case Standing::skipped:
        xml.leaf("skipped", {{"message", reasonFor(outcome)}}, lines);
        break;
    case Standing::failed:
        xml.leaf("failure", {{"message", reasonFor(outcome)}, {"type", type}}, lines);
        break;
    case Standing::broken:
        xml.leaf("error", {{"message", reasonFor(outcome)}, {"type", type}}, lines);
        break;
    }
}

std::string qualified(const Test& test) {
    return std::string(moduleInfo().name) + "." + test.name().utf8();
}

// The name by which a server follows a test from one run to the next. Devices of one name are
// told apart by their order.
std::string caseName(const Suite& suite, const Outcome& outcome) {
    const std::string& device = outcome.device->name().utf8();
    std::size_t twins = 0;
    for (const Outcome* other : suite.outcomes) {
        twins += other->device->name().utf8() == device ? 1 : 0;
        if (other == &outcome) {
            break;
        }
    }
    return suite.test->name().utf8() + "[" + device +
           (twins > 1 ? " (" + std::to_string(twins) + ")" : "") + "]";
}

void writeCase(XmlWriter& xml, const Suite& suite, const Outcome& outcome) {
    xml.open("testcase", {{"classname", qualified(*suite.test)},
                          {"name", caseName(suite, outcome)},
                          {"time", secondsText(outcome.seconds)}});
    writeProperties(xml, outcome);
    writeVerdict(xml, outcome);
    std::vector<std::string> output = eventLines(outcome);
    for (const std::string& line : observationLines(outcome)) {
        output.push_back(line);
    }
    if (!output.empty()) {
        xml.leaf("system-out", {}, output);
    }
    xml.close();
}

void writeCase(XmlWriter& xml, const TestWithoutDevice& without) {
    std::vector<std::string> lines = without.reasons;
    for (const std::string& line : adviceLines(without.advice)) {
        lines.push_back(line);
    }
    xml.open("testcase", {{"classname", qualified(*without.test)},
                          {"name", without.test->name().utf8()},
                          {"time", secondsText(0)}});
    xml.leaf("skipped",
             {{"message", without.reasons.size() == 1
                              ? message("REPORT_NO_DEVICE") + " " + without.reasons.front()
                              : message("REPORT_NO_DEVICE")}},
             lines);
    xml.close();
}

void writeSuite(XmlWriter& xml, const Suite& suite, const RunRecord& run) {
    xml.open("testsuite",
             withCounts(
                 {{"name", qualified(*suite.test)},
                  {"timestamp", reportTime(suite.outcomes.empty() ? run.started
                                                                  : suite.outcomes.front()->time)}},
                 suite.counts()));
    {
        Properties properties(xml);
        properties.add("module", std::string(moduleInfo().name));
        properties.add("version", run.version.text());
        properties.add("build", run.version.build.utf8());
        properties.add("exit", std::to_string(run.exitValue));
        if (run.leftOut > 0) {
            properties.add("leftOut", std::to_string(run.leftOut));
        }
    }
    for (const Outcome* outcome : suite.outcomes) {
        writeCase(xml, suite, *outcome);
    }
    for (const TestWithoutDevice* without : suite.withoutDevice) {
        writeCase(xml, *without);
    }
    xml.close();
}

} // namespace

std::string junitReportOf(const RunRecord& run) {
    const std::vector<Suite> suites = suitesOf(run);
    Counts all;
    for (const Suite& suite : suites) {
        const Counts counts = suite.counts();
        all.tests += counts.tests;
        all.failures += counts.failures;
        all.errors += counts.errors;
        all.skipped += counts.skipped;
        all.seconds += counts.seconds;
    }
    XmlWriter xml;
    xml.open("testsuites", withCounts({{"name", std::string(moduleInfo().name)},
                                       {"timestamp", reportTime(run.started)}},
                                      all));
    for (const Suite& suite : suites) {
        writeSuite(xml, suite, run);
    }
    xml.close();
    return xml.text();
}

} // namespace tesk5
