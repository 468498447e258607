#include "run/ReportWords.h"

#include <tesk5/ByteText.h>
#include <tesk5/Texts.h>

#include "texts/Lists.h"
#include "texts/MeasurementText.h"
#include "texts/NumberText.h"

#include <algorithm>

namespace tesk5 {

namespace {

void append(std::vector<std::string>& lines, const std::vector<std::string>& more) {
    lines.insert(lines.end(), more.begin(), more.end());
}

std::vector<std::string> surveyLines(const Survey& survey) {
    std::vector<std::string> lines = {heading(translation(survey.name).utf8())};
    for (const Survey::Entry& entry : strongestFirst(survey)) {
        lines.push_back("  " + withUnit(entry.value, survey.unit) + "  " +
                        withUtf8Reading(entry.name.utf8()) +
                        (entry.measured ? "  (" + message("REPORT_MEASURED") + ")" : ""));
    }
    return lines;
}

} // namespace

std::string resultInWords(const TestResult& result) {
    return translation(TeskString(std::string("REPORT_RESULT_") + result.name())).utf8();
}

std::string labelOf(const Test& test) {
    const TeskString name = translation(test.name());
    return name == test.name()
               ? name.utf8()
               : message("REPORT_TEST_NAMED", {{"Test", test.name()}, {"Name", name}});
}

std::vector<std::string> measurementLines(const Measurement& measurement) {
    std::vector<std::string> lines = {measurementLine(measurement)};
    for (const Figure& figure : measurement.figures) {
        lines.push_back("  " + figureText(figure));
    }
    for (const auto& [attribute, value] : measurement.attributes) {
        lines.push_back(
            "  " + message("MEASUREMENT", {{"Name", translation(attribute)}, {"Value", value}}));
    }
    return lines;
}

std::vector<std::string> observationLines(const Outcome& outcome) {
    std::vector<std::string> lines;
    for (const Measurement& measurement : outcome.measurements) {
        append(lines, measurementLines(measurement));
    }
    for (const Survey& survey : outcome.surveys) {
        append(lines, surveyLines(survey));
    }
    append(lines, adviceLines(outcome.advice));
    return lines;
}

std::string eventText(const RaisedEvent& event) {
    return event.count == 1
               ? event.text
               : message("REPORT_TEXT_TIMES",
                         {{"Text", event.text}, {"Count", std::to_string(event.count)}});
}

bool adviceExplains(const Outcome& outcome) {
    return !outcome.advice.empty() && outcome.measurements.empty();
}

bool plainlyGood(const Outcome& outcome) {
    return outcome.result.good() && outcome.advice.empty();
}

Event::Variables unspokenVariables(const RaisedEvent& event) {
    const std::string pattern = translation(event.key).utf8();
    Event::Variables unspoken;
    for (const auto& [name, value] : event.variables) {
        if (pattern.find("{" + name.utf8() + "}") == std::string::npos) {
            unspoken.emplace_back(name, value);
        }
    }
    return unspoken;
}

const RaisedEvent* leadingEvent(const Outcome& outcome) {
    const auto leading = std::max_element(outcome.events.begin(), outcome.events.end(),
                                          [](const RaisedEvent& a, const RaisedEvent& b) {
                                              return a.severity == Severity::warning &&
                                                     b.severity == Severity::error;
                                          });
    return leading == outcome.events.end() ? nullptr : &*leading;
}

std::string reasonFor(const Outcome& outcome) {
    if (!outcome.failure.empty()) {
        return outcome.failure;
    }
    if (adviceExplains(outcome)) {
        return adviceLines(outcome.advice).front();
    }
    if (const RaisedEvent* event = leadingEvent(outcome)) {
        return event->text;
    }
    return outcome.started ? resultInWords(outcome.result) : message("REPORT_NOT_STARTED");
}

std::vector<std::string> adviceLines(const Findings& advice) {
    std::vector<std::string> lines;
    for (const Finding& finding : advice) {
        if (!finding.good) {
            lines.push_back(message(finding));
        }
    }
    return lines;
}

std::vector<Survey::Entry> strongestFirst(const Survey& survey) {
    std::vector<Survey::Entry> entries = survey.entries;
    std::stable_sort(
        entries.begin(), entries.end(),
        [](const Survey::Entry& a, const Survey::Entry& b) { return a.value > b.value; });
    return entries;
}

} // namespace tesk5
