#include "reports/Report.h"

#include "reports/ReportJson.h"

namespace tesk5 {

namespace {
constexpr int SCHEMA = 1;
} // namespace

std::string reportOf(const RunRecord& run) {
    Json json;
    json["schema"] = SCHEMA;
    json["module"] = moduleJson(run.version);
    json["started"] = mrl::utcText(run.started);
    json["ended"] = mrl::utcText(run.ended);
    json["exit"] = run.exitValue;
    json["results"] = Json::array();
    for (const Outcome& outcome : run.outcomes) {
        json["results"].push_back(jsonOf(outcome));
    }
    json["withoutDevice"] = listOf(run.withoutDevice);
    return indentedJson(json);
}

} // namespace tesk5
