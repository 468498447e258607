#include "run/ReportWords.h"

#include <tesk5/ByteText.h>
#include <tesk5/Texts.h>

#include "run/Tags.h"
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

std::string meaningOf(const Tag& tag) {
    for (const KnownTag& known : knownTags()) {
        if (tag.name == known.name) {
            return message(known.meaning);
        }
    }
    return {};
}

std::string wordsOf(const InForce& inForce) {
    constexpr std::pair<InForce::Source, const char*> sources[] = {
        {InForce::Source::file, "IN_FORCE_FROM_FILE"},
        {InForce::Source::commandLine, "IN_FORCE_FROM_COMMAND_LINE"},
        {InForce::Source::standard, "IN_FORCE_DEFAULT"}};
    const auto* const source =
        std::find_if(std::begin(sources), std::end(sources),
                     [&inForce](const auto& row) { return row.first == inForce.source; });
    return phrasesListed({inForce.name + (inForce.version.empty() ? "" : " " + inForce.version),
                          nameAndValue("SHA-256", inForce.sha256), message(source->second)});
}

} // namespace

std::vector<FactInWords> identityWords(const RunIdentity& identity) {
    constexpr std::pair<std::string_view, const char*> pcFacts[] = {
        {"name", "PC_NAME"},     {"maker", "PC_MAKER"},   {"model", "PC_MODEL"},
        {"serial", "PC_SERIAL"}, {"system", "PC_SYSTEM"}, {"build", "PC_BUILD"}};
    std::vector<FactInWords> facts;
    for (const Tag& tag : identity.tags) {
        facts.push_back({.name = tag.name, .meaning = meaningOf(tag), .value = tag.value});
    }
    for (const auto& [fact, value] : identity.pc.value_or(PcIdentity()).facts()) {
        const auto* const known =
            std::find_if(std::begin(pcFacts), std::end(pcFacts),
                         [&fact = fact](const auto& row) { return row.first == fact; });
        facts.push_back({.name = message(known->second), .meaning = {}, .value = value});
    }
    for (const AdapterIdentity& adapter : identity.adapters) {
        std::vector<std::string> words = {adapter.device};
        for (const std::string& word : {adapter.driver, adapter.version, adapter.address}) {
            if (!word.empty()) {
                words.push_back(word);
            }
        }
        facts.push_back(
            {.name = message("PC_ADAPTER"), .meaning = {}, .value = phrasesListed(words)});
    }
    for (const InForce& limits : identity.limits) {
        facts.push_back(
            {.name = message("REPORT_LIMITS"), .meaning = {}, .value = wordsOf(limits)});
    }
    if (identity.calibration) {
        facts.push_back({.name = message("REPORT_CALIBRATION"),
                         .meaning = {},
                         .value = wordsOf(*identity.calibration)});
    }
    return facts;
}

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
