// Makes the values of the template res/report.junit.xml.
#include "reports/JUnitReport.h"

#include <tesk5/ModuleInfo.h>
#include <tesk5/Texts.h>

#include "reports/Markup.h"
#include "reports/ReportJson.h"
#include "reports/ReportTemplates.h"
#include "reports/Template.h"
#include "run/ReportWords.h"
#include "texts/MeasurementText.h"
#include "texts/NumberText.h"

#include <algorithm>
#include <iterator>
#include <map>

namespace tesk5 {

namespace {

constexpr std::string_view FAILURE = "failure";
constexpr std::string_view ERROR_ELEMENT = "error";
constexpr std::string_view SKIPPED = "skipped";

struct ResultElement {
    TestResult result;
    std::string_view element;
};
// The element by which a case says that it did not pass; every other result maps to "error".
const ResultElement resultElements[] = {
    {TestResult::PASS(), {}},           {TestResult::WARN(), {}},
    {TestResult::COMPLETED(), {}},      {TestResult::FAIL(), FAILURE},
    {TestResult::CANNOTRUN(), SKIPPED},
};

std::string_view elementOf(const TestResult& result) {
    const auto* const found =
        std::find_if(std::begin(resultElements), std::end(resultElements),
                     [&result](const ResultElement& row) { return row.result == result; });
    return found == std::end(resultElements) ? ERROR_ELEMENT : found->element;
}

std::string secondsOf(double seconds) {
    constexpr int MILLISECONDS = 3;
    return fixedPoint(roundedToMilliseconds(seconds), MILLISECONDS);
}

class Counts {
public:
    void add(const TestResult& result, double seconds) {
        ++m_tests;
        ++m_byElement[elementOf(result)];
        m_seconds += seconds;
    }
    void add(const Counts& others) {
        m_tests += others.m_tests;
        for (const auto& [element, count] : others.m_byElement) {
            m_byElement[element] += count;
        }
        m_seconds += others.m_seconds;
    }
    void writeTo(Json& json) {
        json["tests"] = m_tests;
        json["failures"] = m_byElement[FAILURE];
        json["errors"] = m_byElement[ERROR_ELEMENT];
        json["skipped"] = m_byElement[SKIPPED];
        json["seconds"] = secondsOf(m_seconds);
    }

private:
    std::size_t m_tests = 0;
    std::map<std::string_view, std::size_t> m_byElement;
    double m_seconds = 0;
};

class Properties {
public:
    void add(const std::string& name, const std::string& value) {
        m_list.push_back({{"name", name}, {"value", value}});
    }
    void add(const std::string& name, const Number& value) { add(name, value.text()); }
    void add(const Measurement& measurement) {
        const std::string name = "measurement." + measurement.name.utf8();
        add(name, measurement.value);
        add(name + ".unit", measurement.unit.utf8());
        add(name + ".lowest", measurement.lowest);
        add(name + ".highest", measurement.highest);
        for (const Limit& limit : measurement.limits) {
            const std::string limitName = name + ".limit." + limit.name.utf8();
            add(limitName, limit.value);
            add(limitName + ".severity", severityName(limit.severity));
            if (limit.kept != Limit::Kept::ABOVE) {
                add(limitName + ".kept", keptName(limit.kept));
            }
        }
        if (const Limit* broken = measurement.brokenLimit()) {
            add(name + ".brokenLimit", broken->name.utf8());
        }
        for (const Figure& figure : measurement.figures) {
            const std::string figureName = name + ".figure." + figure.name.utf8();
            add(figureName, figure.value);
            add(figureName + ".unit", figure.unit.utf8());
        }
        for (const auto& [attribute, value] : measurement.attributes) {
            add(name + ".attribute." + attribute.utf8(), value.valueString().utf8());
        }
    }
    void add(const Series& series) {
        const std::string name = "series." + series.head.name.utf8();
        add(name + ".points", series.points.size());
        if (series.leftOut > 0) {
            add(name + ".leftOut", series.leftOut);
        }
    }
    const Json& list() const { return m_list; }

private:
    Json m_list = Json::array();
};

void add(Properties& properties, const std::string& name, const InForce& inForce) {
    properties.add(name + ".name", inForce.name);
    if (!inForce.version.empty()) {
        properties.add(name + ".version", inForce.version);
    }
    properties.add(name + ".sha256", inForce.sha256);
    properties.add(name + ".source", sourceName(inForce.source));
}

void add(Properties& properties, const RunIdentity& identity) {
    properties.add("runIdentifier", identity.identifier);
    for (const Tag& tag : identity.tags) {
        properties.add("tag." + tag.name, tag.value);
    }
    if (identity.pc) {
        for (const auto& [fact, value] : identity.pc->facts()) {
            properties.add("pc." + fact, value);
        }
    }
    for (const AdapterIdentity& adapter : identity.adapters) {
        const std::string name = "adapter." + adapter.device;
        properties.add(name + ".driver", adapter.driver);
        properties.add(name + ".version", adapter.version);
        properties.add(name + ".address", adapter.address);
    }
    std::size_t number = 0;
    for (const InForce& limits : identity.limits) {
        ++number;
        add(properties, number == 1 ? "limits" : "limits." + std::to_string(number), limits);
    }
    if (identity.calibration) {
        add(properties, "calibration", *identity.calibration);
    }
}

Json propertiesOf(const RunRecord& run) {
    Properties properties;
    properties.add("module", std::string(moduleInfo().name));
    properties.add("version", run.version.text());
    properties.add("build", run.version.build.utf8());
    add(properties, run.identity);
    properties.add("exit", std::to_string(run.exitValue));
    if (run.leftOut > 0) {
        properties.add("leftOut", std::to_string(run.leftOut));
    }
    return properties.list();
}

Json propertiesOf(const Outcome& outcome) {
    Properties properties;
    properties.add("result", outcome.result.name());
    properties.add("started", mrl::utcText(outcome.time));
    properties.add("device", outcome.device->name().utf8());
    for (const auto& [name, value] : outcome.device->properties()) {
        properties.add("device." + name.utf8(), value.utf8());
    }
    for (const ParameterInForce& parameter : outcome.parameters) {
        properties.add("parameter." + parameter.name.utf8(),
                       parameter.lacksNumber() ? std::string()
                                               : parameter.value.valueString().utf8());
    }
    for (const Measurement& measurement : outcome.measurements) {
        properties.add(measurement);
    }
    for (const Series& series : outcome.series) {
        properties.add(series);
    }
    return properties.list();
}

std::vector<std::string> eventLines(const Outcome& outcome) {
    std::vector<std::string> lines;
    if (!outcome.failure.empty()) {
        lines.push_back(outcome.failure);
    }
    for (const RaisedEvent& event : outcome.events) {
        lines.push_back(std::string(severityName(event.severity)) + ": " + eventText(event));
        lines.push_back("  " + event.key.utf8() + " (" + event.file + ":" +
                        std::to_string(event.line) + ")");
        for (const auto& [name, value] : event.variables) {
            lines.push_back("  " + name.utf8() + " = " + value.valueString().utf8());
        }
    }
    return lines;
}

// Lines as the content of an element; null for none.
Json contentOf(const std::vector<std::string>& lines) {
    std::string content;
    for (const std::string& line : lines) {
        content += (content.empty() ? "" : "\n") + inMarkup(line);
    }
    return lines.empty() ? Json(nullptr) : Json(content);
}

Json verdictOf(const Outcome& outcome) {
    const std::string_view element = elementOf(outcome.result);
    if (element.empty()) {
        return nullptr;
    }
    const RaisedEvent* event = leadingEvent(outcome);
    const bool named = event != nullptr && outcome.failure.empty();
    Json verdict;
    verdict["element"] = element;
    verdict["message"] = reasonFor(outcome);
    if (element != SKIPPED) {
        verdict["type"] = named ? event->key.utf8() : outcome.result.name();
    }
    verdict["text"] = contentOf(eventLines(outcome));
    return verdict;
}

std::string qualified(const Test& test) {
    return std::string(moduleInfo().name) + "." + test.name().utf8();
}

Json caseOf(const Outcome& outcome, const std::string& name) {
    std::vector<std::string> output = eventLines(outcome);
    const std::vector<std::string> observations = observationLines(outcome);
    output.insert(output.end(), observations.begin(), observations.end());
    Json json;
    json["class"] = qualified(*outcome.test);
    json["name"] = name;
    json["seconds"] = secondsOf(outcome.seconds);
    json["properties"] = propertiesOf(outcome);
    json["verdict"] = verdictOf(outcome);
    json["output"] = contentOf(output);
    return json;
}

Json caseOf(const TestWithoutDevice& without) {
    std::vector<std::string> lines = without.reasons;
    const std::vector<std::string> advice = adviceLines(without.advice);
    lines.insert(lines.end(), advice.begin(), advice.end());
    Json verdict;
    verdict["element"] = SKIPPED;
    verdict["message"] = message("REPORT_NO_DEVICE") +
                         (without.reasons.size() == 1 ? " " + without.reasons.front() : "");
    verdict["text"] = contentOf(lines);
    Json json;
    json["class"] = qualified(*without.test);
    json["name"] = without.test->name().utf8();
    json["seconds"] = secondsOf(0);
    json["properties"] = Json::array();
    json["verdict"] = verdict;
    json["output"] = nullptr;
    return json;
}

// One test with a case for each of its runs.
struct Suite {
    const Test* test;
    mrl::Clock::UtcTime started;
    Json cases = Json::array();
    Counts counts = {};
    std::map<std::string, std::size_t> devices = {}; ///< number of cases by the name of the device

    // The name by which a server recognises the case in later runs. Devices of the same name are
    // numbered in their order.
    std::string caseName(const Outcome& outcome) {
        const std::string& device = outcome.device->name().utf8();
        const std::size_t number = ++devices[device];
        return test->name().utf8() + "[" + device +
               (number > 1 ? " (" + std::to_string(number) + ")" : "") + "]";
    }
};

std::vector<Suite> suitesOf(const RunRecord& run) {
    std::vector<Suite> suites;
    const auto suiteOf = [&suites](const Test* test, mrl::Clock::UtcTime started) -> Suite& {
        const auto known = std::find_if(suites.begin(), suites.end(),
                                        [test](const Suite& suite) { return suite.test == test; });
        return known != suites.end() ? *known
                                     : suites.emplace_back(Suite{.test = test, .started = started});
    };
    for (const Outcome& outcome : run.outcomes) {
        Suite& suite = suiteOf(outcome.test, outcome.time);
        suite.cases.push_back(caseOf(outcome, suite.caseName(outcome)));
        suite.counts.add(outcome.result, outcome.seconds);
    }
    for (const TestWithoutDevice& without : run.withoutDevice) {
        Suite& suite = suiteOf(without.test, run.started);
        suite.cases.push_back(caseOf(without));
        suite.counts.add(TestResult::CANNOTRUN(), 0);
    }
    return suites;
}

} // namespace

std::string junitReportOf(const RunRecord& run) {
    Counts all;
    Json suites = Json::array();
    for (Suite& suite : suitesOf(run)) {
        Json json;
        json["name"] = qualified(*suite.test);
        json["started"] = mrl::utcText(suite.started);
        json["properties"] = propertiesOf(run);
        json["cases"] = suite.cases;
        suite.counts.writeTo(json);
        all.add(suite.counts);
        suites.push_back(std::move(json));
    }
    Json report;
    report["module"] = moduleInfo().name;
    report["started"] = mrl::utcText(run.started);
    report["suites"] = std::move(suites);
    all.writeTo(report);
    return filled(junitTemplate(), report);
}

} // namespace tesk5
