#include "reports/ReportJson.h"

#include <tesk5/ModuleInfo.h>
#include <tesk5/RunIdentityJson.h>
#include <tesk5/Texts.h>

#include <mrl/Unicode.h>

#include <cmath>
#include <cstdio>

namespace tesk5 {

namespace {

// Named things become the members of an object, in their order.
template <typename Pairs, typename ToJson>
Json objectOf(const Pairs& pairs, ToJson toJson) {
    Json object = Json::object();
    for (const auto& [name, value] : pairs) {
        object[name.utf8()] = toJson(value);
    }
    return object;
}

Json jsonOf(const Limit& limit) {
    Json json = {{"name", limit.name.utf8()},
                 {"value", jsonOf(limit.value)},
                 {"severity", severityName(limit.severity)}};
    if (limit.kept != Limit::Kept::ABOVE) {
        json["kept"] = keptName(limit.kept);
    }
    return json;
}

Json jsonOf(const Figure& figure) {
    return {{"name", figure.name.utf8()},
            {"value", jsonOf(figure.value)},
            {"unit", figure.unit.utf8()}};
}

} // namespace

Json jsonOf(const Number& number) {
    const double value = number.toDouble();
    return number.decimals() == 0 ? Json(static_cast<std::int64_t>(value)) : Json(value);
}

Json jsonOf(const Value& value) {
    if (value.isNumber()) {
        return jsonOf(value.valueNumber());
    }
    return value.type() == DataType::UINT32() ? Json(value.valueUint32())
                                              : Json(value.valueString().utf8());
}

Json jsonOf(const Event::Variables& variables) {
    return objectOf(variables, [](const Value& value) { return jsonOf(value); });
}

double roundedToMilliseconds(double seconds) {
    return std::round(seconds * 1000) / 1000;
}

Json jsonOf(const RaisedEvent& event) {
    Json json;
    json["key"] = event.key.utf8();
    json["severity"] = severityName(event.severity);
    json["text"] = event.text;
    json["variables"] = jsonOf(event.variables);
    json["file"] = event.file;
    json["line"] = event.line;
    json["time"] = mrl::utcText(event.time);
    if (event.count > 1) {
        json["count"] = event.count;
    }
    return json;
}

Json jsonOf(const Measurement& measurement) {
    Json json;
    json["name"] = measurement.name.utf8();
    json["value"] = jsonOf(measurement.value);
    if (measurement.value.decimals() > 0) {
        json["decimals"] = measurement.value.decimals();
    }
    json["unit"] = measurement.unit.utf8();
    json["lowest"] = jsonOf(measurement.lowest);
    json["highest"] = jsonOf(measurement.highest);
    json["limits"] = listOf(measurement.limits, [](const Limit& limit) { return jsonOf(limit); });
    const Limit* broken = measurement.brokenLimit();
    json["brokenLimit"] = broken == nullptr ? Json(nullptr) : Json(broken->name.utf8());
    if (!measurement.figures.empty()) {
        json["figures"] =
            listOf(measurement.figures, [](const Figure& figure) { return jsonOf(figure); });
    }
    if (!measurement.attributes.empty()) {
        json["attributes"] = jsonOf(measurement.attributes);
    }
    return json;
}

Json jsonOf(const Survey& survey) {
    Json json;
    json["name"] = survey.name.utf8();
    json["unit"] = survey.unit.utf8();
    json["lowest"] = jsonOf(survey.lowest);
    json["highest"] = jsonOf(survey.highest);
    json["entries"] = Json::array();
    for (const Survey::Entry& entry : survey.entries) {
        json["entries"].push_back({{"name", entry.name.utf8()},
                                   {"value", jsonOf(entry.value)},
                                   {"measured", entry.measured}});
    }
    return json;
}

Json jsonOf(const Series::Head& head) {
    Json json;
    json["name"] = head.name.utf8();
    json["unit"] = head.unit.utf8();
    json["limits"] = listOf(head.limits, [](const Limit& limit) { return jsonOf(limit); });
    json["median"] = head.median ? jsonOf(*head.median) : Json(nullptr);
    return json;
}

Json jsonOf(const SeriesPoint& point) {
    return {{"seconds", roundedToMilliseconds(point.seconds)},
            {"value", jsonOf(point.value)},
            {"attributes", jsonOf(point.attributes)}};
}

Json jsonOf(const Series& series) {
    Json json = jsonOf(series.head);
    json["points"] = listOf(series.points);
    json["leftOut"] = series.leftOut;
    return json;
}

Json jsonOf(const Finding& finding) {
    Json json;
    json["key"] = finding.key.utf8();
    json["good"] = finding.good;
    json["text"] = message(finding);
    json["variables"] = jsonOf(finding.variables);
    return json;
}

Json jsonOf(const DiagDevice& device) {
    Json json;
    json["name"] = device.name().utf8();
    json["properties"] =
        objectOf(device.properties(), [](const TeskString& text) { return Json(text.utf8()); });
    return json;
}

Json jsonOf(const Outcome& outcome) {
    Json json;
    json["test"] = outcome.test->name().utf8();
    json["device"] = jsonOf(*outcome.device);
    json["result"] = outcome.result.name();
    json["value"] = outcome.result.value();
    if (!outcome.failure.empty()) {
        json["failure"] = outcome.failure;
    }
    json["started"] = mrl::utcText(outcome.time);
    json["seconds"] = roundedToMilliseconds(outcome.seconds);
    json["parameters"] = parametersJson(outcome.parameters);
    json["events"] = listOf(outcome.events);
    json["measurements"] = listOf(outcome.measurements);
    json["surveys"] = listOf(outcome.surveys);
    if (!outcome.series.empty()) {
        json["series"] = listOf(outcome.series);
    }
    json["advice"] = listOf(outcome.advice);
    return json;
}

Json jsonOf(const TestWithoutDevice& without) {
    return {{"test", without.test->name().utf8()},
            {"reasons", without.reasons},
            {"advice", listOf(without.advice)}};
}

Json moduleJson(const ModuleVersion& version) {
    return {
        {"name", moduleInfo().name}, {"version", version.text()}, {"build", version.build.utf8()}};
}

Json parametersJson(const std::vector<ParameterInForce>& parameters) {
    Json object = Json::object();
    for (const ParameterInForce& parameter : parameters) {
        object[parameter.name.utf8()] =
            parameter.lacksNumber() ? Json(nullptr) : jsonOf(parameter.value);
    }
    return object;
}

std::string asciiLine(const Json& json) {
    constexpr int NO_INDENT = -1;
    return json.dump(NO_INDENT, ' ', true, Json::error_handler_t::replace) + "\n";
}

std::string indentedJson(const Json& json) {
    constexpr int INDENT = 2;
    mrl::CharString text;
    for (const mrl::Char unit :
         mrl::toUtf16(json.dump(INDENT, ' ', false, Json::error_handler_t::replace))) {
        // Line ends are the layout's own: those of names are escaped by now.
        if (unit == '\n' || !mrl::isUnsafeToShow(unit)) {
            text += unit;
            continue;
        }
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(unit));
        text.append(escape, escape + std::char_traits<char>::length(escape));
    }
    return mrl::toUtf8(text) + "\n";
}

std::string jsonReportOf(const RunRecord& run) {
    constexpr int SCHEMA = 1;
    Json json;
    json["schema"] = SCHEMA;
    json["module"] = moduleJson(run.version);
    json.update(identityJson(run.identity));
    json["started"] = mrl::utcText(run.started);
    json["ended"] = mrl::utcText(run.ended);
    json["exit"] = run.exitValue;
    json["results"] = listOf(run.outcomes);
    json["withoutDevice"] = listOf(run.withoutDevice);
    return indentedJson(json);
}

} // namespace tesk5
