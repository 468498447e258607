// Fills the page's template. Strangers' texts reach it as data, which the template engine escapes
// with inMarkup(); the two kinds of sentences that are markup already are made here.
#include "reports/HtmlReport.h"

#include <tesk5/ModuleInfo.h>
#include <tesk5/Texts.h>

#include "reports/Gauge.h"
#include "reports/Markup.h"
#include "reports/ReportJson.h"
#include "reports/ReportPage.h"
#include "run/ReportWords.h"
#include "texts/MeasurementText.h"

#include <kainjow/mustache.hpp>

#include <algorithm>
#include <cstdio>

namespace tesk5 {

namespace {

using Data = kainjow::mustache::data;

// How something stands, for colour and mark.
const char* const GOOD = "good";
const char* const WARNING = "warning";
const char* const BAD = "bad";
const char* const NONE = "none";

struct ResultKind {
    TestResult result;
    const char* kind;
};
const ResultKind resultKinds[] = {
    {TestResult::PASS(), GOOD}, {TestResult::COMPLETED(), GOOD}, {TestResult::WARN(), WARNING},
    {TestResult::FAIL(), BAD},  {TestResult::CANNOTRUN(), NONE}, {TestResult::USERABORTED(), NONE},
};

const char* kindOf(const TestResult& result) {
    const auto* const found =
        std::find_if(std::begin(resultKinds), std::end(resultKinds),
                     [&result](const ResultKind& row) { return row.result == result; });
    return found == std::end(resultKinds) ? BAD : found->kind;
}

const char* kindOf(Severity severity) {
    return severity == Severity::error ? BAD : WARNING;
}

// The template asks for a kind by name and, to draw its mark, whether it is the one.
void setKind(Data& data, const std::string& kind) {
    data.set("kind", kind);
    for (const char* other : {GOOD, WARNING, BAD, NONE}) {
        data.set(other, kind == other);
    }
}

bool readFromTheRight(const std::string& language) {
    constexpr std::string_view languages[] = {"ar", "fa", "he", "ur"};
    const std::string_view first = std::string_view(language).substr(0, language.find('-'));
    return std::find(std::begin(languages), std::end(languages), first) != std::end(languages);
}

Data timeData(mrl::Clock::UtcTime time) {
    const std::string machine = reportTime(time);
    constexpr std::size_t DATE = 10;
    constexpr std::size_t CLOCK = 8;
    Data data;
    data.set("machine", machine);
    data.set("people", machine.substr(0, DATE) + " " + machine.substr(DATE + 1, CLOCK) + " UTC");
    return data;
}

std::string secondsText(double seconds) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.1f", seconds);
    return message("REPORT_SECONDS", {{"Seconds", buffer}});
}

std::string percent(double share) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.2f%%", share);
    return buffer;
}

std::string withUnit(mrl::Uint32 value, const TeskString& unit) {
    constexpr const char* NO_BREAK_SPACE = "\xC2\xA0";
    return std::to_string(value) + NO_BREAK_SPACE + unit.utf8();
}

// Sets a list and whether there is anything in it: a heading stands once, or not at all.
void setList(Data& data, const char* has, const char* name, const Data& list) {
    data.set(has, list.is_non_empty_list());
    data.set(name, list);
}

// The sentence of a key with each variable's value isolated: a name that is read the other way
// leaves the rest of the sentence where it is.
std::string sentenceMarkup(const TeskString& key, const Event::Variables& variables) {
    Event::Variables isolated;
    for (const auto& [name, value] : variables) {
        const std::string text = fillPlaceholders("{" + name.utf8() + "}", {{name, value}});
        isolated.emplace_back(name, "<bdi>" + inMarkup(text) + "</bdi>");
    }
    return fillPlaceholders(inMarkup(translation(key).utf8()), isolated);
}

Data eventData(const RaisedEvent& event) {
    Data data;
    setKind(data, kindOf(event.severity));
    data.set("word",
             message(event.severity == Severity::error ? "REPORT_ERROR" : "REPORT_WARNING"));
    data.set("sentence", sentenceMarkup(event.key, event.variables));
    Data variables(Data::type::list);
    for (const auto& [name, value] : unspokenVariables(event)) {
        Data variable;
        variable.set("name", name.utf8());
        variable.set("value", value.valueString().utf8());
        variables << variable;
    }
    setList(data, "hasVariables", "variables", variables);
    return data;
}

Data adviceData(const Findings& advice) {
    Data list(Data::type::list);
    for (const Finding& finding : advice) {
        Data data;
        setKind(data, finding.good ? GOOD : WARNING);
        data.set("sentence", sentenceMarkup(finding.key, finding.variables));
        list << data;
    }
    return list;
}

Data zoneData(const Gauge::Zone& zone) {
    Data data;
    data.set("x", percent(zone.x));
    data.set("width", percent(zone.width));
    return data;
}

std::string limitText(const Limit& limit, const TeskString& unit) {
    return message(limit.severity == Severity::error ? "REPORT_LIMIT_FAILING"
                                                     : "REPORT_LIMIT_WARNING",
                   {{"Limit", limit.value}, {"Unit", unit}});
}

Data gaugeData(const Measurement& measurement, bool mirrored) {
    constexpr int FIRST_LABEL_Y = 72;
    constexpr int LABEL_HEIGHT = 18;
    const Gauge gauge = gaugeOf(measurement, mirrored);
    Data zones(Data::type::list);
    for (const Gauge::Zone& zone : gauge.zones) {
        Data data = zoneData(zone);
        data.set("kind", zone.severity                ? kindOf(*zone.severity)
                         : measurement.limits.empty() ? NONE
                                                      : GOOD);
        zones << data;
    }
    Data limits(Data::type::list);
    for (const double x : gauge.limits) {
        Data data;
        data.set("x", percent(x));
        limits << data;
    }
    Data labels(Data::type::list);
    for (const Gauge::Label& label : gauge.labels) {
        Data data;
        data.set("x", percent(label.x));
        data.set("y", std::to_string(FIRST_LABEL_Y + LABEL_HEIGHT * static_cast<int>(label.row)));
        data.set("side", sideOfText(label.x));
        data.set("text", withUnit(label.value, measurement.unit));
        labels << data;
    }
    Data pointer;
    pointer.set("x", percent(gauge.valueX));
    pointer.set("side", sideOfText(gauge.valueX));
    pointer.set("text", withUnit(measurement.value, measurement.unit));
    std::string words = measuredText(measurement);
    for (const Limit& limit : measurement.limits) {
        words += "; " + limitText(limit, measurement.unit);
    }
    Data data;
    data.set("height",
             std::to_string(FIRST_LABEL_Y + LABEL_HEIGHT * static_cast<int>(gauge.rows - 1) + 6));
    data.set("words", words);
    data.set("zones", zones);
    data.set("bar", zoneData(gauge.value));
    data.set("limits", limits);
    data.set("pointer", pointer);
    data.set("labels", labels);
    return data;
}

Data measurementData(const Measurement& measurement, bool mirrored) {
    const Limit* broken = measurement.brokenLimit();
    Data legend(Data::type::list);
    for (const Limit& limit : measurement.limits) {
        Data data;
        data.set("kind", kindOf(limit.severity));
        data.set("text", limitText(limit, measurement.unit));
        legend << data;
    }
    Data data;
    data.set("name", translation(measurement.name).utf8());
    data.set("value", withUnit(measurement.value, measurement.unit));
    data.set("comparison", comparisonText(measurement));
    data.set("kind", broken != nullptr            ? kindOf(broken->severity)
                     : measurement.limits.empty() ? NONE
                                                  : GOOD);
    data.set("gauge", gaugeData(measurement, mirrored));
    setList(data, "hasLimits", "legend", legend);
    return data;
}

Data surveyData(const Survey& survey, bool mirrored) {
    constexpr double WHOLE = 100;
    Data entries(Data::type::list);
    for (const Survey::Entry& entry : strongestFirst(survey)) {
        const double width = WHOLE * shareOfScale(entry.value, survey.lowest, survey.highest);
        Data data;
        data.set("name", entry.name.utf8());
        data.set("value", withUnit(entry.value, survey.unit));
        data.set("measured", entry.measured);
        data.set("x", percent(mirrored ? WHOLE - width : 0));
        data.set("width", percent(width));
        entries << data;
    }
    Data data;
    data.set("name", translation(survey.name).utf8());
    data.set("entries", entries);
    return data;
}

Data parametersData(const Outcome& outcome) {
    Data list(Data::type::list);
    for (const auto& [name, value] : outcome.parameters) {
        const std::string meaning = translation(name).utf8();
        const std::string text = value.valueString().utf8();
        Data data;
        data.set("name", name.utf8());
        data.set("meaning", meaning == name.utf8() ? Data(false) : Data(meaning));
        data.set("value", text.empty() ? Data(false) : Data(text));
        list << data;
    }
    return list;
}

Data propertiesData(const DiagDevice& device) {
    Data list(Data::type::list);
    for (const auto& [name, value] : device.properties()) {
        Data data;
        data.set("name", name.utf8());
        data.set("value", value.utf8());
        list << data;
    }
    return list;
}

Data resultData(const TestResult& result) {
    Data data;
    setKind(data, kindOf(result));
    data.set("word", resultInWords(result));
    data.set("code", result.name());
    return data;
}

// Says why nothing else does.
Data remarksOf(const Outcome& outcome) {
    Data remarks(Data::type::list);
    if (!outcome.started) {
        remarks << Data(message("REPORT_NOT_STARTED"));
    } else if (!outcome.failure.empty()) {
        remarks << Data(outcome.failure);
    } else if (!outcome.result.good() && outcome.events.empty() && outcome.advice.empty()) {
        remarks << Data(message("REPORT_NO_REASON"));
    }
    return remarks;
}

Data outcomeData(const Outcome& outcome, bool mirrored) {
    Data events(Data::type::list);
    for (const RaisedEvent& event : outcome.events) {
        events << eventData(event);
    }
    Data measurements(Data::type::list);
    for (const Measurement& measurement : outcome.measurements) {
        measurements << measurementData(measurement, mirrored);
    }
    Data surveys(Data::type::list);
    for (const Survey& survey : outcome.surveys) {
        surveys << surveyData(survey, mirrored);
    }
    Data data = resultData(outcome.result);
    data.set("test", translation(outcome.test->name()).utf8());
    data.set("device", outcome.device->name().utf8());
    data.set("started", timeData(outcome.time));
    data.set("duration", outcome.started ? Data(secondsText(outcome.seconds)) : Data(false));
    data.set("remarks", remarksOf(outcome));
    setList(data, "hasEvents", "events", events);
    data.set("measurements", measurements);
    data.set("surveys", surveys);
    setList(data, "hasAdvice", "advice", adviceData(outcome.advice));
    setList(data, "hasParameters", "parameters", parametersData(outcome));
    setList(data, "hasProperties", "properties", propertiesData(*outcome.device));
    return data;
}

Data withoutDeviceData(const TestWithoutDevice& without, const RunRecord& run) {
    Data remarks(Data::type::list);
    remarks << Data(message("REPORT_NO_DEVICE"));
    Data reasons(Data::type::list);
    for (const std::string& reason : without.reasons) {
        reasons << Data(reason);
    }
    Data data = resultData(TestResult::CANNOTRUN());
    data.set("test", translation(without.test->name()).utf8());
    data.set("device", false);
    data.set("started", timeData(run.started));
    data.set("duration", false);
    data.set("remarks", remarks);
    setList(data, "hasReasons", "reasons", reasons);
    setList(data, "hasAdvice", "advice", adviceData(without.advice));
    return data;
}

std::string logLine(const LoggedLine& line) {
    return reportTime(line.time) + " " + std::to_string(line.priority) + " " + line.logger + ": " +
           line.text;
}

Data logData(const KeptLog& log) {
    Data lines(Data::type::list);
    for (const LoggedLine& line : log.first) {
        lines << Data(logLine(line));
    }
    if (log.leftOut > 0) {
        lines << Data("... " +
                      message("REPORT_LOG_LEFT_OUT", {{"Count", std::to_string(log.leftOut)}}));
    }
    for (const LoggedLine& line : log.last) {
        lines << Data(logLine(line));
    }
    return lines;
}

Data partsOf(const RunRecord& run, bool mirrored) {
    Data parts(Data::type::list);
    int number = 0;
    const auto add = [&parts, &number](Data part) {
        part.set("anchor", "result-" + std::to_string(++number));
        parts << part;
    };
    for (const Outcome& outcome : run.outcomes) {
        add(outcomeData(outcome, mirrored));
    }
    for (const TestWithoutDevice& without : run.withoutDevice) {
        add(withoutDeviceData(without, run));
    }
    return parts;
}

// The tags in capitals are keys of texts.
void setTexts(Data& page, std::string_view tmpl) {
    constexpr std::string_view OPEN = "{{REPORT_";
    for (std::size_t tag = tmpl.find(OPEN); tag != std::string_view::npos;
         tag = tmpl.find(OPEN, tag + 1)) {
        const std::size_t start = tag + 2;
        const std::string key(tmpl.substr(start, tmpl.find("}}", start) - start));
        page.set(key, translation(TeskString(key)).utf8());
    }
}

std::string programText(const ModuleVersion& version) {
    return message("REPORT_PROGRAM", {{"Name", std::string(moduleInfo().name)},
                                      {"Version", version.text()},
                                      {"Build", version.build}});
}

} // namespace

std::string htmlReportOf(const RunRecord& run) {
    const std::string tag = language();
    const bool mirrored = readFromTheRight(tag);
    const TestResult overall = worstResult(run);
    Data page;
    setTexts(page, reportPage());
    page.set("lang", tag);
    page.set("dir", mirrored ? "rtl" : "ltr");
    page.set("title", message("REPORT_TITLE") + ": " + resultInWords(overall));
    page.set("program", programText(run.version));
    page.set("started", timeData(run.started));
    page.set("ended", timeData(run.ended));
    page.set("exit", message("REPORT_EXIT", {{"Value", std::to_string(run.exitValue)}}));
    const bool several = run.outcomes.size() + run.withoutDevice.size() > 1;
    page.set("overall", several ? resultData(overall) : Data(false));
    page.set("parts", partsOf(run, mirrored));
    page.set("leftOut", run.leftOut == 0 ? Data(false)
                                         : Data(message("REPORT_LEFT_OUT",
                                                        {{"Count", std::to_string(run.leftOut)}})));
    const std::size_t lines = run.log.first.size() + run.log.leftOut + run.log.last.size();
    page.set("logCount", message("REPORT_LOG_LINES", {{"Count", std::to_string(lines)}}));
    setList(page, "hasLog", "log", logData(run.log));
    page.set("mark", kainjow::mustache::partial([] { return std::string(reportMark()); }));

    kainjow::mustache::mustache tmpl{std::string(reportPage())};
    tmpl.set_custom_escape([](const std::string& text) { return inMarkup(text); });
    return tmpl.render(page);
}

} // namespace tesk5
