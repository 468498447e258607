// Makes the values of res/history_page.html. Texts from journals reach it as data, which is
// escaped.
#include "history/HistoryOutput.h"

#include <tesk5/Page.h>
#include <tesk5/Series.h>
#include <tesk5/Texts.h>

#include "reports/PageHead.h"
#include "reports/ReportJson.h"
#include "reports/ReportTemplates.h"
#include "run/ReportWords.h"
#include "texts/Lists.h"
#include "texts/MeasurementText.h"
#include "texts/NumberText.h"

namespace tesk5 {

namespace {

Json yieldJson(const Yield& yield) {
    return {{"runs", countText(yield.runs)},
            {"units", countText(yield.units)},
            {"firstPass", shareText(yield.firstPass, yield.units)},
            {"finalPass", shareText(yield.finalPass, yield.units)},
            {"results", resultsText(yield)}};
}

// `member`: whether the rows have a "name" or a "day".
template <typename NameOf>
Json tableJson(const char* caption, const char* member, const std::vector<HistoryRow>& rows,
               NameOf nameOf) {
    return {{"caption", message(caption)},
            {"rows", listOf(rows, [member, &nameOf](const HistoryRow& row) {
                 Json json = yieldJson(row.yield);
                 json[member] = nameOf(row);
                 return json;
             })}};
}

Json readingJson(const HistoryLevel& level, std::size_t number) {
    Json json = {{"number", number},
                 {"started", timeJson(level.started)},
                 {"station", stationName(level.station)},
                 {"serial", level.serial},
                 {"value", withUnit(level.measurement.value, level.measurement.unit)},
                 {"word", resultInWords(level.result)}};
    setKind(json, kindOf(level.result));
    return json;
}

// The values over their numbers, with the limits of the last one.
Json levelsJson(const HistoryLevels& test) {
    const Measurement& latest = test.levels.back().measurement;
    Series series;
    series.head = {.name = latest.name, .unit = latest.unit, .limits = latest.limits, .median = {}};
    Json readings = Json::array();
    for (const HistoryLevel& level : test.levels) {
        readings.push_back(readingJson(level, readings.size() + 1));
        series.points.push_back({.seconds = static_cast<double>(readings.size()),
                                 .value = level.measurement.value,
                                 .attributes = {}});
    }
    const bool mirrored = isPageMirrored();
    Chart chart = chartOf(series, mirrored);
    // The numbers of readings; few of them leave room for ticks in between.
    std::erase_if(chart.times, [](const Chart::Tick& tick) {
        return tick.number < Number(1) || tick.number != Number::rounded(tick.number.toDouble(), 0);
    });
    Json json = chartJson(chart, mirrored, [](const Number& tick) {
        return numberText(Number::rounded(tick.toDouble(), 0));
    });
    const Event::Variables variables = {{"Test", test.test},
                                        {"Name", translation(latest.name)},
                                        {"Count", countText(test.levels.size())}};
    json["heading"] = sentenceMarkup("HISTORY_LEVELS_OF", variables);
    std::vector<std::string> words = {message("HISTORY_LEVELS_OF", variables)};
    for (const Limit& limit : latest.limits) {
        words.push_back(limitText(limit, latest.unit));
    }
    json["words"] = phrasesListed(words);
    json["lines"] = limitsJson(latest.limits, latest.unit);
    json["readings"] = std::move(readings);
    return json;
}

} // namespace

std::string historyPage(const HistorySummary& summary, const JournalRemains& remains) {
    const bool any = summary.all.runs > 0;
    Json page;
    page["all"] = yieldJson(summary.all);
    page["period"] =
        any ? Json({{"first", minuteText(summary.first)}, {"last", minuteText(summary.last)}})
            : Json(nullptr);
    page["remarks"] = historyRemarks(summary);
    page["problems"] = listOf(journalProblems(remains), [](const std::string& problem) {
        Json json = {{"text", problem}};
        setKind(json, kinds::WARNING);
        return json;
    });
    page["tables"] = Json::array();
    if (any) {
        page["tables"].push_back(
            tableJson("HISTORY_STATION", "name", summary.stations,
                      [](const HistoryRow& row) { return stationName(row.name); }));
        page["tables"].push_back(
            tableJson("HISTORY_LIMITS", "name", summary.limits,
                      [](const HistoryRow& row) { return limitsName(row.limits); }));
        page["tables"].push_back(tableJson("HISTORY_DAY", "day", summary.days,
                                           [](const HistoryRow& row) { return row.name; }));
    }
    page["levels"] = listOf(summary.levels, &levelsJson);
    return pageOf(message("HISTORY_TITLE"), historyTemplate(), page,
                  {{"drawing", chartTemplate()}});
}

} // namespace tesk5
