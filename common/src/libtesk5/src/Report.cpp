#include "Report.h"

#include <tesk5/ModuleInfo.h>

#include "JsonFile.h"
#include "ModuleState.h"

#include <cmath>
#include <cstdio>

namespace tesk5 {

namespace {

constexpr int SCHEMA = 1;

Json jsonOf(const Value& value) {
    return value.type() == DataType::UINT32() ? Json(value.valueUint32())
                                              : Json(value.valueString().utf8());
}

// Named things become the members of an object, in their order.
template <typename Pairs, typename ToJson>
Json objectOf(const Pairs& pairs, ToJson toJson) {
    Json object = Json::object();
    for (const auto& [name, value] : pairs) {
        object[name.utf8()] = toJson(value);
    }
    return object;
}

Json jsonOf(const RaisedEvent& event) {
    Json json;
    json["key"] = event.key.utf8();
    json["severity"] = severityName(event.severity);
    json["text"] = event.text;
    json["variables"] = objectOf(event.variables, [](const Value& value) { return jsonOf(value); });
    json["file"] = event.file;
    json["line"] = event.line;
    json["time"] = reportTime(event.time);
    return json;
}

Json jsonOf(const DiagDevice& device) {
    Json json;
    json["name"] = device.name().utf8();
    json["properties"] =
        objectOf(device.properties(), [](const TeskString& text) { return Json(text.utf8()); });
    return json;
}

double roundedToMilliseconds(double seconds) {
    return std::round(seconds * 1000) / 1000;
}

Json jsonOf(const Outcome& outcome) {
    Json json;
    json["test"] = outcome.test->name().utf8();
    json["device"] = jsonOf(*outcome.device);
    json["result"] = outcome.result.name();
    json["value"] = outcome.result.value();
    json["started"] = reportTime(outcome.time);
    json["seconds"] = roundedToMilliseconds(outcome.seconds);
    json["parameters"] =
        objectOf(outcome.parameters, [](const Value& value) { return jsonOf(value); });
    json["events"] = Json::array();
    for (const RaisedEvent& event : outcome.events) {
        json["events"].push_back(jsonOf(event));
    }
    return json;
}

Json moduleJson() {
    const ModuleState& module = ModuleState::instance();
    Json json;
    json["name"] = moduleInfo().name;
    json["version"] = module.version();
    json["build"] = module.build.utf8();
    return json;
}

} // namespace

std::string reportTime(mrl::Clock::UtcTime time) {
    using namespace std::chrono;
    const auto milliseconds = floor<std::chrono::milliseconds>(time);
    const auto day = floor<days>(milliseconds);
    const year_month_day date(day);
    const hh_mm_ss clock(milliseconds - day);
    char buffer[64];
    std::snprintf(
        buffer, sizeof buffer, "%04d-%02u-%02uT%02d:%02d:%02d.%03dZ", static_cast<int>(date.year()),
        static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
        static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
        static_cast<int>(clock.seconds().count()), static_cast<int>(clock.subseconds().count()));
    return buffer;
}

std::string reportOf(const RunRecord& run) {
    Json json;
    json["schema"] = SCHEMA;
    json["module"] = moduleJson();
    json["started"] = reportTime(run.started);
    json["ended"] = reportTime(run.ended);
    json["exit"] = run.exitValue;
    json["results"] = Json::array();
    for (const Outcome& outcome : run.outcomes) {
        json["results"].push_back(jsonOf(outcome));
    }
    return json.dump(2) + "\n";
}

} // namespace tesk5
