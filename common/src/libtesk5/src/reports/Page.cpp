#include <tesk5/Page.h>

#include <tesk5/Language.h>
#include <tesk5/ModuleInfo.h>
#include <tesk5/Texts.h>

#include "reports/Markup.h"
#include "reports/PageHead.h"
#include "reports/ReportJson.h"
#include "reports/ReportTemplates.h"
#include "reports/Template.h"
#include "texts/NumberText.h"

#include <mrl/Languages.h>

#include <algorithm>
#include <cctype>
#include <iterator>

namespace tesk5 {

namespace {

struct ResultKind {
    TestResult result;
    const char* kind;
};
const ResultKind resultKinds[] = {
    {TestResult::PASS(), kinds::GOOD},      {TestResult::COMPLETED(), kinds::GOOD},
    {TestResult::WARN(), kinds::WARNING},   {TestResult::FAIL(), kinds::BAD},
    {TestResult::CANNOTRUN(), kinds::NONE}, {TestResult::USERABORTED(), kinds::NONE},
};

bool isKind(const char* kind, std::string_view other) {
    return kind == other;
}

std::string plainMarkup(const TeskString& key, const Event::Variables& variables) {
    return inMarkup(message(key, variables));
}

} // namespace

const char* kindOf(const TestResult& result) {
    const auto* const found =
        std::find_if(std::begin(resultKinds), std::end(resultKinds),
                     [&result](const ResultKind& row) { return row.result == result; });
    return found == std::end(resultKinds) ? kinds::BAD : found->kind;
}

const char* kindOf(Severity severity) {
    return severity == Severity::error ? kinds::BAD : kinds::WARNING;
}

void setKind(mrl::Json& json, const char* kind) {
    json["kind"] = kind;
    json["is"] = {{kinds::GOOD, isKind(kind, kinds::GOOD)},
                  {kinds::WARNING, isKind(kind, kinds::WARNING)},
                  {kinds::BAD, isKind(kind, kinds::BAD)},
                  {kinds::NONE, isKind(kind, kinds::NONE)}};
}

bool isPageMirrored() {
    return mrl::isRightToLeft(Language::current().tag());
}

mrl::Json pageHead(const std::string& title, const ModuleVersion& version) {
    return {{"lang", Language::current().tag()},
            {"dir", isPageMirrored() ? "rtl" : "ltr"},
            {"title", title},
            {"program", message("REPORT_PROGRAM", {{"Name", std::string(moduleInfo().name)},
                                                   {"Version", version.text()},
                                                   {"Build", version.build}})}};
}

void setTexts(mrl::Json& page, std::string_view text) {
    constexpr std::string_view OPEN = "{{";
    for (std::size_t tag = text.find(OPEN); tag != std::string_view::npos;
         tag = text.find(OPEN, tag + 1)) {
        const std::size_t start = tag + OPEN.size();
        const std::string key(text.substr(start, text.find("}}", start) - start));
        if (!key.empty() && std::isupper(static_cast<unsigned char>(key.front())) != 0) {
            page[key] = translation(TeskString(key)).utf8();
        }
    }
}

mrl::Json timeJson(mrl::Clock::UtcTime time) {
    return {{"machine", mrl::utcText(time)}, {"people", localTimeText(time)}};
}

std::string pageOf(const std::string& title, std::string_view content, const mrl::Json& data,
                   const std::map<std::string, std::string_view>& parts) {
    mrl::Json page = data;
    page.update(pageHead(title, RunContext::current().version));
    page["made"] = timeJson(mrl::Clock::current().utcNow());
    std::map<std::string, std::string_view> all = parts;
    all["head"] = headTemplate();
    all["mark"] = markTemplate();
    all["content"] = content;
    for (const auto& [name, part] : all) {
        setTexts(page, part);
    }
    return filled(pageTemplate(), page, all);
}

std::string sentenceMarkup(const TeskString& key, const Event::Variables& variables) {
    Event::Variables isolated;
    for (const auto& [name, value] : variables) {
        const std::string text = fillPlaceholders("{" + name.utf8() + "}", {{name, value}});
        isolated.emplace_back(name, "<bdi>" + inMarkup(text) + "</bdi>");
    }
    return fillPlaceholders(inMarkup(translation(key).utf8()), isolated);
}

Fill fillFor(const TeskString& unit) {
    return unit == "%" ? &plainMarkup : &sentenceMarkup;
}

mrl::Json limitsJson(const std::vector<Limit>& limits, const TeskString& unit) {
    return listOf(limits, [&unit](const Limit& limit) -> Json {
        return {{"kind", kindOf(limit.severity)}, {"text", limitText(limit, unit, fillFor(unit))}};
    });
}

mrl::Json chartJson(const Chart& chart, bool mirrored,
                    std::string (*timeText)(const Number& tick)) {
    Json json;
    json["left"] = percentOf(mirrored ? 2 : 10);
    json["side"] = mirrored ? "left" : "right";
    json["labelX"] = percentOf(mirrored ? 101 : -1);
    json["values"] = listOf(chart.values, [](const Chart::Tick& tick) -> Json {
        return {{"y", percentOf(tick.at)}, {"text", numberText(tick.number)}};
    });
    json["times"] = listOf(chart.times, [timeText](const Chart::Tick& tick) -> Json {
        return {{"x", percentOf(tick.at)}, {"text", timeText(tick.number)}};
    });
    json["limits"] = listOf(chart.limits, [](const Chart::LimitLine& limit) -> Json {
        return {{"kind", kindOf(limit.severity)}, {"y", percentOf(limit.y)}};
    });
    json["median"] = chart.medianY ? Json({{"y", percentOf(*chart.medianY)}}) : Json(nullptr);
    json["box"] = "0 0 " + fixedPoint(Chart::SIDE, 0) + " " + fixedPoint(Chart::SIDE, 0);
    json["curve"] = chart.curve;
    json["dots"] = chart.dots;
    return json;
}

std::string percentOf(double share) {
    constexpr int DIGITS = 2;
    return fixedPoint(share, DIGITS) + "%";
}

} // namespace tesk5
