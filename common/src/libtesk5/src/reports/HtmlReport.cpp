// Makes the values of the template res/report.html. Texts from outside reach it as data, which is
// escaped; sentences, names and the log, which are markup already, are made here.
#include "reports/HtmlReport.h"

#include <tesk5/ByteText.h>
#include <tesk5/Page.h>
#include <tesk5/Texts.h>

#include "reports/Chart.h"
#include "reports/Gauge.h"
#include "reports/LogFold.h"
#include "reports/Markup.h"
#include "reports/PageHead.h"
#include "reports/ReportJson.h"
#include "reports/ReportTemplates.h"
#include "reports/Template.h"
#include "run/ReportWords.h"
#include "texts/Lists.h"
#include "texts/MeasurementText.h"
#include "texts/NumberText.h"

#include <algorithm>
#include <span>

namespace tesk5 {

namespace {

const char* kindOf(const Measurement& measurement, const std::optional<Severity>& severity) {
    if (severity) {
        return kindOf(*severity);
    }
    return measurement.limits.empty() ? kinds::NONE : kinds::GOOD;
}

// null for the empty text, which leaves its section out.
Json textOrNull(const std::string& text) {
    return text.empty() ? Json(nullptr) : Json(text);
}

Json eventJson(const RaisedEvent& event) {
    Json json;
    setKind(json, kindOf(event.severity));
    json["word"] = message(event.severity == Severity::error ? "REPORT_ERROR" : "REPORT_WARNING");
    json["sentence"] = sentenceMarkup(event.key, event.variables);
    json["times"] = event.count == 1
                        ? Json(nullptr)
                        : Json(message("REPORT_TIMES", {{"Count", std::to_string(event.count)}}));
    json["variables"] = listOf(unspokenVariables(event), [](const auto& variable) -> Json {
        return sentenceMarkup("LIST_NAME_AND_VALUE",
                              {{"Name", variable.first}, {"Value", variable.second}});
    });
    return json;
}

Json adviceJson(const Findings& advice) {
    return listOf(advice, [](const Finding& finding) {
        Json json;
        setKind(json, finding.good ? kinds::GOOD : kinds::WARNING);
        json["sentence"] = sentenceMarkup(finding.key, finding.variables);
        return json;
    });
}

Json gaugeJson(const Measurement& measurement, bool mirrored) {
    constexpr std::size_t FIRST_LABEL_Y = 72;
    constexpr std::size_t LABEL_HEIGHT = 18;
    constexpr std::size_t MARGIN = 6;
    const Gauge gauge = gaugeOf(measurement, mirrored);
    std::vector<std::string> words = {measuredText(measurement)};
    for (const Limit& limit : measurement.limits) {
        words.push_back(limitText(limit, measurement.unit));
    }
    Json json;
    json["height"] = FIRST_LABEL_Y + LABEL_HEIGHT * (gauge.rows - 1) + MARGIN;
    json["words"] = phrasesListed(words);
    json["zones"] = listOf(gauge.zones, [&measurement](const Gauge::Zone& zone) -> Json {
        return {{"kind", kindOf(measurement, zone.severity)},
                {"x", percentOf(zone.x)},
                {"width", percentOf(zone.width)}};
    });
    json["bar"] = {{"x", percentOf(gauge.value.x)}, {"width", percentOf(gauge.value.width)}};
    json["limits"] = listOf(gauge.limits, [](double x) {
        return Json::object({{"x", percentOf(x)}});
    });
    json["pointer"] = {{"x", percentOf(gauge.valueX)},
                       {"side", gauge.valueSide},
                       {"text", withUnit(measurement.value, measurement.unit)}};
    json["labels"] = listOf(gauge.labels, [&measurement](const Gauge::Label& label) -> Json {
        return {{"x", percentOf(label.x)},
                {"y", FIRST_LABEL_Y + LABEL_HEIGHT * label.row},
                {"side", label.side},
                {"text", withUnit(label.value, measurement.unit)}};
    });
    return json;
}

Json measurementJson(const Measurement& measurement, bool mirrored) {
    const Limit* broken = measurement.brokenLimit();
    Json json;
    json["name"] = translation(measurement.name).utf8();
    json["value"] = withUnit(measurement.value, measurement.unit);
    json["comparison"] = comparisonText(measurement, fillFor(measurement.unit));
    json["kind"] =
        kindOf(measurement, broken != nullptr ? std::optional(broken->severity) : std::nullopt);
    json["gauge"] = gaugeJson(measurement, mirrored);
    json["legend"] = limitsJson(measurement.limits, measurement.unit);
    json["figures"] = listOf(measurement.figures, [](const Figure& figure) -> Json {
        return {{"name", translation(figure.name).utf8()},
                {"value", withUnit(figure.value, figure.unit)}};
    });
    for (const auto& [attribute, value] : measurement.attributes) {
        json["figures"].push_back(
            {{"name", translation(attribute).utf8()}, {"value", value.valueString().utf8()}});
    }
    return json;
}

// What the readings of a series are, in words.
std::vector<std::string> readingsText(const Series& series, Fill fill = &message) {
    const auto [lowest, highest] = std::minmax_element(
        series.points.begin(), series.points.end(),
        [](const SeriesPoint& a, const SeriesPoint& b) { return a.value < b.value; });
    std::vector<std::string> words = {
        fill("REPORT_READINGS", {{"Count", countText(series.points.size())}})};
    if (!series.points.empty()) {
        const auto add = [&](const char* key, const SeriesPoint& point) {
            words.push_back(fill(key, {{"Value", withUnit(point.value, series.head.unit)}}));
        };
        add("REPORT_LOWEST", *lowest);
        add("REPORT_HIGHEST", *highest);
    }
    if (series.leftOut > 0) {
        words.push_back(fill("REPORT_READINGS_LEFT_OUT", {{"Count", countText(series.leftOut)}}));
    }
    return words;
}

std::string medianText(const Series& series, Fill fill = &message) {
    return fill("REPORT_MEDIAN", {{"Value", withUnit(*series.head.median, series.head.unit)}});
}

std::string secondsInTick(const Number& seconds) {
    return secondsText(seconds);
}

Json chartJson(const Series& series, bool mirrored) {
    const Chart chart = chartOf(series, mirrored);
    std::vector<std::string> words = {translation(series.head.name).utf8()};
    for (const std::string& word : readingsText(series)) {
        words.push_back(word);
    }
    if (series.head.median) {
        words.push_back(medianText(series));
    }
    for (const Limit& limit : series.head.limits) {
        words.push_back(limitText(limit, series.head.unit));
    }
    Json json = chartJson(chart, mirrored, &secondsInTick);
    json["words"] = phrasesListed(words);
    return json;
}

// The readings of a series as a table; a column for each attribute that one of them has. Of very
// many the first ones: a person reads no more, and a browser shows no more at once.
Json readingsJson(const Series& series) {
    constexpr std::size_t MOST_ROWS = 1000;
    const std::span shown =
        std::span(series.points).first(std::min(MOST_ROWS, series.points.size()));
    std::vector<TeskString> columns;
    for (const SeriesPoint& point : shown) {
        for (const auto& [name, value] : point.attributes) {
            if (std::find(columns.begin(), columns.end(), name) == columns.end()) {
                columns.push_back(name);
            }
        }
    }
    constexpr int HUNDREDTHS = 2;
    Json json;
    json["columns"] =
        listOf(columns, [](const TeskString& name) { return Json(translation(name).utf8()); });
    json["cut"] = shown.size() == series.points.size()
                      ? Json(nullptr)
                      : Json(message("REPORT_TABLE_CUT", {{"Count", countText(shown.size())}}));
    json["rows"] = listOf(shown, [&](const SeriesPoint& point) -> Json {
        const auto cell = [&point](const TeskString& column) {
            const auto found = std::find_if(
                point.attributes.begin(), point.attributes.end(),
                [&column](const auto& attribute) { return attribute.first == column; });
            return Json(found == point.attributes.end()
                            ? std::string()
                            : withUtf8Reading(found->second.shownString().utf8()));
        };
        return {{"seconds", secondsText(Number::rounded(point.seconds, HUNDREDTHS))},
                {"value", withUnit(point.value, series.head.unit)},
                {"cells", listOf(columns, cell)}};
    });
    return json;
}

Json seriesJson(const Series& series, bool mirrored) {
    const bool drawn = !series.points.empty();
    Json json;
    json["name"] = translation(series.head.name).utf8();
    json["unit"] = textOrNull(series.head.unit.utf8());
    json["chart"] = drawn ? chartJson(series, mirrored) : Json(nullptr);
    json["median"] =
        series.head.median ? Json(medianText(series, fillFor(series.head.unit))) : Json(nullptr);
    json["limits"] = limitsJson(series.head.limits, series.head.unit);
    json["facts"] = readingsText(series, fillFor(series.head.unit));
    json["readings"] = drawn ? readingsJson(series) : Json(nullptr);
    return json;
}

Json surveyJson(const Survey& survey, bool mirrored) {
    return {{"name", translation(survey.name).utf8()},
            {"entries", listOf(strongestFirst(survey), [&](const Survey::Entry& entry) -> Json {
                 constexpr double WHOLE = 100;
                 const double width =
                     WHOLE * shareOfScale(entry.value, survey.lowest, survey.highest);
                 return {{"name", withUtf8Reading(entry.name.utf8())},
                         {"value", withUnit(entry.value, survey.unit)},
                         {"measured", entry.measured},
                         {"x", percentOf(mirrored ? WHOLE - width : 0)},
                         {"width", percentOf(width)}};
             })}};
}

// A name that is one word in a program: a narrow page breaks it before a capital letter.
std::string nameMarkup(const std::string& name) {
    const auto isWithin = [](char letter, char first, char last) {
        return letter >= first && letter <= last;
    };
    std::string markup;
    std::size_t begin = 0;
    for (std::size_t i = 1; i < name.size(); ++i) {
        if (isWithin(name[i - 1], 'a', 'z') && isWithin(name[i], 'A', 'Z')) {
            markup += inMarkup(name.substr(begin, i - begin)) + "<wbr>";
            begin = i;
        }
    }
    return markup + inMarkup(name.substr(begin));
}

// The test's name for people, and its identifier where that is another.
void setTest(Json& json, const Test& test) {
    const TeskString name = translation(test.name());
    json["test"] = nameMarkup(name.utf8());
    json["identifier"] = name == test.name() ? Json(nullptr) : Json(nameMarkup(test.name().utf8()));
}

Json parametersJson(const Outcome& outcome) {
    return listOf(outcome.parameters, [](const ParameterInForce& parameter) -> Json {
        const std::string& name = parameter.name.utf8();
        const std::string meaning = translation(parameter.name).utf8();
        const std::string value = withUtf8Reading(parameter.value.shownString().utf8());
        return {{"name", nameMarkup(name)},
                {"meaning", textOrNull(meaning == name ? "" : meaning)},
                {"value", textOrNull(parameter.isSet ? value : "")}};
    });
}

Json propertiesJson(const DiagDevice& device) {
    return listOf(device.properties(), [](const auto& property) -> Json {
        return {{"name", nameMarkup(property.first.utf8())}, {"value", property.second.utf8()}};
    });
}

Json resultJson(const TestResult& result) {
    Json json;
    setKind(json, kindOf(result));
    json["word"] = resultInWords(result);
    json["code"] = result.name();
    return json;
}

// Why the run has its result, where neither events nor advice say so.
Json remarksOn(const Outcome& outcome) {
    Json remarks = Json::array();
    if (!outcome.started) {
        remarks.push_back(message("REPORT_NOT_STARTED"));
    } else if (!outcome.failure.empty()) {
        remarks.push_back(outcome.failure);
    } else if (!outcome.result.good() && outcome.events.empty() && outcome.advice.empty()) {
        remarks.push_back(message("REPORT_NO_REASON"));
    }
    return remarks;
}

Json partJson(const Outcome& outcome, bool mirrored) {
    const Json duration = outcome.started ? Json(secondsText(outcome.seconds)) : Json(nullptr);
    Json json = resultJson(outcome.result);
    if (outcome.result.good() && !plainlyGood(outcome)) {
        setKind(json, kinds::WARNING);
    }
    setTest(json, *outcome.test);
    json["device"] = outcome.device->name().utf8();
    json["started"] = timeJson(outcome.time);
    json["duration"] = duration;
    json["remarks"] = remarksOn(outcome);
    json["events"] = listOf(outcome.events, eventJson);
    json["measurements"] = listOf(outcome.measurements, [mirrored](const Measurement& measurement) {
        return measurementJson(measurement, mirrored);
    });
    json["series"] = listOf(
        outcome.series, [mirrored](const Series& series) { return seriesJson(series, mirrored); });
    json["surveys"] = listOf(
        outcome.surveys, [mirrored](const Survey& survey) { return surveyJson(survey, mirrored); });
    json[adviceExplains(outcome) ? "causes" : "advice"] = adviceJson(outcome.advice);
    json["parameters"] = parametersJson(outcome);
    json["properties"] = propertiesJson(*outcome.device);
    return json;
}

Json partJson(const TestWithoutDevice& without, const RunRecord& run) {
    Json json = resultJson(TestResult::CANNOTRUN());
    setTest(json, *without.test);
    json["device"] = nullptr;
    json["started"] = timeJson(run.started);
    json["duration"] = nullptr;
    json["remarks"] = Json::array({message("REPORT_NO_DEVICE")});
    json["reasons"] = without.reasons;
    json["advice"] = adviceJson(without.advice);
    return json;
}

Json partsOf(const RunRecord& run, bool mirrored) {
    Json parts = Json::array();
    const auto add = [&parts](Json part) {
        part["anchor"] = "result-" + std::to_string(parts.size() + 1);
        parts.push_back(std::move(part));
    };
    for (const Outcome& outcome : run.outcomes) {
        add(partJson(outcome, mirrored));
    }
    for (const TestWithoutDevice& without : run.withoutDevice) {
        add(partJson(without, run));
    }
    return parts;
}

std::string logLine(const LoggedLine& line) {
    return mrl::utcText(line.time) + " " + std::to_string(line.priority) + " " + line.logger +
           ": " + line.text;
}

std::string logLine(const FoldedLine& folded) {
    if (folded.block == 0) {
        return logLine(*folded.line);
    }
    return "... " + message("REPORT_LOG_REPEATED", {{"Lines", countText(folded.block)},
                                                    {"Count", countText(folded.times)},
                                                    {"Time", mrl::utcText(folded.line->time)}});
}

std::string logMarkup(const std::vector<const LoggedLine*>& lines, bool full) {
    std::string text;
    if (full) {
        for (const LoggedLine* line : lines) {
            text += inMarkup(logLine(*line)) + "\n";
        }
        return text;
    }
    for (const FoldedLine& line : folded(lines)) {
        text += inMarkup(logLine(line)) + "\n";
    }
    return text;
}

std::string logMarkup(const KeptLog& log, bool full) {
    std::vector<const LoggedLine*> lines;
    for (const LoggedLine& line : log.first) {
        lines.push_back(&line);
    }
    std::string text;
    if (log.leftOut > 0) {
        text = logMarkup(lines, full) + "... " +
               inMarkup(message("REPORT_LOG_LEFT_OUT", {{"Count", countText(log.leftOut)}})) + "\n";
        lines.clear();
    }
    for (const LoggedLine& line : log.last) {
        lines.push_back(&line);
    }
    return text + logMarkup(lines, full);
}

void setLog(Json& page, const KeptLog& log, bool full) {
    const std::size_t lines = log.first.size() + log.leftOut + log.last.size();
    const std::string text = logMarkup(log, full);
    page["logCount"] = message("REPORT_LOG_LINES", {{"Count", countText(lines)}});
    page["log"] = textOrNull(text);
    const auto shown = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
    page["folded"] = !full && shown < lines;
}

Json factsJson(const RunIdentity& identity) {
    return listOf(identityWords(identity), [](const FactInWords& fact) -> Json {
        return {{"name", fact.meaning.empty() ? fact.name : fact.meaning}, {"value", fact.value}};
    });
}

// What a browser shows on its tab and in its history.
std::string titleOf(const RunRecord& run) {
    std::vector<std::string> parts = {resultInWords(worstResult(run))};
    const std::size_t runs = run.outcomes.size() + run.withoutDevice.size();
    if (runs > 1) {
        parts.push_back(message("CONSOLE_RUNS", {{"Count", std::to_string(runs)}}));
    } else if (!run.outcomes.empty()) {
        parts.push_back(run.outcomes.front().device->name().utf8());
    }
    parts.push_back(message("REPORT_TITLE"));
    std::string title;
    for (const std::string& part : parts) {
        title += (title.empty() ? "" : " · ") + part;
    }
    return title;
}

} // namespace

std::string htmlReportOf(const RunRecord& run) {
    const bool mirrored = isPageMirrored();
    const TestResult overall = worstResult(run);
    const bool several = run.outcomes.size() + run.withoutDevice.size() > 1;
    Json page = pageHead(titleOf(run), run.version);
    setTexts(page, reportTemplate());
    page["started"] = timeJson(run.started);
    page["ended"] = timeJson(run.ended);
    page["exit"] = message("REPORT_EXIT", {{"Value", std::to_string(run.exitValue)}});
    page["overall"] = several ? resultJson(overall) : Json(nullptr);
    if (several && overall.good() &&
        !std::all_of(run.outcomes.begin(), run.outcomes.end(), &plainlyGood)) {
        setKind(page["overall"], kinds::WARNING);
    }
    page["identifier"] = run.identity.identifier;
    // Who and what the run is about comes first on the page, the rest of its facts last.
    RunIdentity others = run.identity;
    RunIdentity tagged;
    tagged.tags.swap(others.tags);
    page["hasTags"] = !tagged.tags.empty();
    page["tags"] = factsJson(tagged);
    page["facts"] = factsJson(others);
    page["parts"] = partsOf(run, mirrored);
    page["leftOut"] =
        run.leftOut == 0
            ? Json(nullptr)
            : Json(message("REPORT_LEFT_OUT", {{"Count", std::to_string(run.leftOut)}}));
    setLog(page, run.log, run.fullLog);
    return filled(
        reportTemplate(), page,
        {{"head", headTemplate()}, {"mark", markTemplate()}, {"drawing", chartTemplate()}});
}

} // namespace tesk5
