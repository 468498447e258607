#include "history/HistoryOutput.h"

#include <tesk5/Texts.h>

#include "reports/ReportJson.h"

namespace tesk5 {

namespace {

void setYield(Json& json, const Yield& yield) {
    json["runs"] = yield.runs;
    json["units"] = yield.units;
    json["withoutSerial"] = yield.withoutSerial;
    json["firstPass"] = yield.firstPass;
    json["finalPass"] = yield.finalPass;
    json["results"] = Json::object();
    for (const char* name : {"PASS", "WARN", "FAIL", "CANNOTRUN", "BADPARAMS", "INTERNALERROR",
                             "USERABORTED", "COMPLETED", "EXITEDABNORMALLY"}) {
        const auto value = static_cast<std::size_t>(TestResult::named(name)->value());
        if (yield.results[value] > 0) {
            json["results"][name] = yield.results[value];
        }
    }
}

Json limitsJson(const std::vector<NamedLimits>& limits) {
    return listOf(limits, [](const NamedLimits& named) -> Json {
        return {{"name", named.name}, {"version", named.version}, {"sha256", named.sha256}};
    });
}

template <typename Name>
Json rowsJson(const std::vector<HistoryRow>& rows, const char* member, Name name) {
    return listOf(rows, [&](const HistoryRow& row) {
        Json json = {{member, name(row)}};
        setYield(json, row.yield);
        return json;
    });
}

Json levelJson(const HistoryLevel& level) {
    return {{"started", mrl::utcText(level.started)},
            {"station", level.station},
            {"serial", level.serial},
            {"result", level.result.name()},
            {"measurement", jsonOf(level.measurement)}};
}

} // namespace

std::string historyJson(const HistorySummary& summary, const JournalRemains& remains,
                        const std::vector<std::string>& files) {
    constexpr int SCHEMA = 1;
    constexpr int INDENT = 2;
    const auto name = [](const HistoryRow& row) { return Json(row.name); };
    Json json = {{"schema", SCHEMA}, {"journals", files}};
    json["brokenLines"] = remains.brokenLines;
    json["laterLines"] = remains.laterLines;
    json["broken"] = listOf(remains.broken, [](const BrokenLine& broken) -> Json {
        return {{"file", broken.file}, {"line", broken.line}, {"text", message(broken.reason)}};
    });
    json["repeated"] = summary.repeated;
    const bool any = summary.all.runs > 0;
    json["first"] = any ? Json(mrl::utcText(summary.first)) : Json(nullptr);
    json["last"] = any ? Json(mrl::utcText(summary.last)) : Json(nullptr);
    setYield(json, summary.all);
    json["stations"] = rowsJson(summary.stations, "station", name);
    json["limits"] = rowsJson(summary.limits, "limits",
                              [](const HistoryRow& row) { return limitsJson(row.limits); });
    json["days"] = rowsJson(summary.days, "day", name);
    json["levels"] = listOf(summary.levels, [](const HistoryLevels& test) -> Json {
        return {{"test", test.test}, {"levels", listOf(test.levels, levelJson)}};
    });
    // ASCII: programs read pipes in different code pages.
    return json.dump(INDENT, ' ', true, Json::error_handler_t::replace) + "\n";
}

} // namespace tesk5
