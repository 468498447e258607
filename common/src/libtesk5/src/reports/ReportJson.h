// The parts of a run in JSON, the same in reports and on the stream of events.
#pragma once

#include "run/Runner.h"

#include <mrl/Json.h>

#include <string>

namespace tesk5 {

using mrl::Json;

/// A duration as reports write it.
double roundedToMilliseconds(double seconds);

/// A whole number without decimals, as a reader of the JSON finds it written.
Json jsonOf(const Number& number);
Json jsonOf(const Value& value);
Json jsonOf(const Event::Variables& variables);
Json jsonOf(const RaisedEvent& event);
Json jsonOf(const Measurement& measurement);
Json jsonOf(const Survey& survey);
Json jsonOf(const Series::Head& head);
Json jsonOf(const SeriesPoint& point);
Json jsonOf(const Series& series);
Json jsonOf(const Finding& finding);
Json jsonOf(const DiagDevice& device);
Json jsonOf(const Outcome& outcome);
Json jsonOf(const TestWithoutDevice& without);
/// Name, version and build of the program.
Json moduleJson(const ModuleVersion& version);
/// The parameters of a run with the values in force.
Json parametersJson(const std::vector<ParameterInForce>& parameters);

/// `json` as a line of ASCII with its line end: other characters are escaped, ill-formed UTF-8 is
/// replaced.
std::string asciiLine(const Json& json);

/// `json` in indented lines of UTF-8. Control characters and those that could deceive a reader are
/// escaped (\u202e); the value is the same.
std::string indentedJson(const Json& json);

/// The report of a whole run, which docs/report.md describes, in UTF-8.
std::string jsonReportOf(const RunRecord& run);

/// `toJson` of each of the `things`.
template <typename Things, typename ToJson>
Json listOf(const Things& things, ToJson toJson) {
    Json list = Json::array();
    for (const auto& thing : things) {
        list.push_back(toJson(thing));
    }
    return list;
}

/// jsonOf() of each of the `things`.
template <typename Things>
Json listOf(const Things& things) {
    return listOf(things, [](const auto& thing) { return jsonOf(thing); });
}

} // namespace tesk5
