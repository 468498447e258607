#include "reports/wsjf/WsjfReport.h"

#include <tesk5/BadInput.h>
#include <tesk5/ModuleInfo.h>
#include <tesk5/Texts.h>

#include "model/Decimal.h"
#include "reports/FormatFacts.h"
#include "reports/ReportJson.h"
#include "reports/wsjf/WsjfJson.h"
#include "run/ReportWords.h"
#include "texts/Lists.h"

#include <mrl/Unicode.h>

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace tesk5 {

namespace {

// The tags that become members of the report. The format requires all but the last two.
constexpr std::string_view PROCESS = "process";
constexpr std::string_view requiredTags[] = {"serial",   "part",  "revision", "station",
                                             "operator", PROCESS, "location", "purpose"};
constexpr std::string_view optionalTags[] = {"batch", "fixture"};

struct StatusRow {
    TestResult result;
    wsjf::Status report;
    wsjf::Status step;
};
const StatusRow statusRows[] = {
    {TestResult::PASS(), wsjf::Status::passed, wsjf::Status::passed},
    {TestResult::WARN(), wsjf::Status::passed, wsjf::Status::passed},
    {TestResult::COMPLETED(), wsjf::Status::passed, wsjf::Status::passed},
    {TestResult::FAIL(), wsjf::Status::failed, wsjf::Status::failed},
    {TestResult::CANNOTRUN(), wsjf::Status::error, wsjf::Status::skipped}, // no report is skipped
    {TestResult::USERABORTED(), wsjf::Status::terminated, wsjf::Status::terminated},
    {TestResult::BADPARAMS(), wsjf::Status::error, wsjf::Status::error},
    {TestResult::INTERNALERROR(), wsjf::Status::error, wsjf::Status::error},
    {TestResult::EXITEDABNORMALLY(), wsjf::Status::error, wsjf::Status::error},
};

const StatusRow& statusesOf(const TestResult& result) {
    return rowFor(result, statusRows);
}

std::optional<mrl::Uint32> processCode(const RunIdentity& identity) {
    constexpr mrl::Uint32 GREATEST = 0x7FFF; // the format has 16 bits with a sign
    const std::optional<mrl::Uint32> code = parseUint32(tagOr(identity, PROCESS, {}));
    return code && *code <= GREATEST ? code : std::nullopt;
}

bool isMember(std::string_view tag) {
    const auto among = [tag](const auto& tags) {
        return std::find(std::begin(tags), std::end(tags), tag) != std::end(tags);
    };
    return among(requiredTags) || among(optionalTags);
}

bool isTooLong(const std::string& text) {
    return mrl::toUtf16(text).size() > wsjf::LONGEST_TEXT;
}

// The first `most` units of a text; a character that needs two is not cut in the middle.
std::string cut(const std::string& text, std::size_t most = wsjf::LONGEST_TEXT) {
    mrl::CharString units = mrl::toUtf16(text);
    if (units.size() > most) {
        constexpr unsigned HIGH_SURROGATES = 0xD800;
        constexpr unsigned LOW_SURROGATES = 0xDC00;
        const auto last = static_cast<unsigned>(units[most - 1]);
        units.resize(last >= HIGH_SURROGATES && last < LOW_SURROGATES ? most - 1 : most);
    }
    return mrl::toUtf8(units);
}

// "2026-11-20T20:55:01.123+01:00": by this PC's time zone.
std::string localStart(mrl::Clock::UtcTime time) {
    constexpr int HOUR = 60;
    const int offset = static_cast<int>(mrl::Clock::current().utcOffset(time).count());
    const int distance = std::abs(offset);
    std::string text = mrl::utcText(time + std::chrono::minutes(offset));
    text.pop_back(); // the Z
    char zone[16];
    std::snprintf(zone, sizeof zone, "%c%02d:%02d", offset < 0 ? '-' : '+', distance / HOUR,
                  distance % HOUR);
    return text + zone;
}

std::string compOpOf(const Bounds& bounds) {
    const std::string low = bounds.low == nullptr                    ? ""
                            : bounds.low->kept == Limit::Kept::ABOVE ? "GT"
                                                                     : "GE";
    const std::string both = low + (bounds.high == nullptr ? "" : "LE");
    return both.empty() ? "LOG" : both;
}

wsjf::NumericMeasurement valueOf(const Measurement& measurement) {
    const Bounds bounds = boundsOf(measurement.limits, Severity::error);
    const Limit* const broken = measurement.brokenLimit();
    wsjf::NumericMeasurement value;
    value.name = cut(measurement.name.utf8());
    value.status = broken != nullptr && broken->severity == Severity::error ? wsjf::Status::failed
                                                                            : wsjf::Status::passed;
    value.compOp = compOpOf(bounds);
    value.value = measurement.value;
    value.unit = measurement.unit.utf8();
    if (bounds.low != nullptr) {
        value.lowLimit = bounds.low->value;
    }
    if (bounds.high != nullptr) {
        value.highLimit = bounds.high->value;
    }
    return value;
}

wsjf::NumericMeasurement logged(const std::string& name, const Number& value,
                                const TeskString& unit) {
    wsjf::NumericMeasurement one;
    one.name = cut(name);
    one.value = value;
    one.unit = unit.utf8();
    return one;
}

// The value with its limits. A limit that only warns has no place in the format: it is a value that
// is logged, as the figures are.
std::vector<wsjf::NumericMeasurement> numbersOf(const Measurement& measurement) {
    std::vector<wsjf::NumericMeasurement> numbers = {valueOf(measurement)};
    for (const Limit& limit : measurement.limits) {
        if (limit.severity == Severity::warning) {
            numbers.push_back(logged(limit.name.utf8(), limit.value, measurement.unit));
        }
    }
    for (const Figure& figure : measurement.figures) {
        numbers.push_back(logged(figureName(measurement, figure), figure.value, figure.unit));
    }
    return numbers;
}

std::optional<wsjf::Chart> chartOf(const Outcome& outcome) {
    if (outcome.series.empty()) {
        return std::nullopt;
    }
    const TeskString& name = outcome.series.front().head.name;
    const std::string& unit = outcome.series.front().head.unit.utf8();
    wsjf::Chart chart{.label = cut(outcome.test->name().utf8()),
                      .xLabel = "Time",
                      .xUnit = "s",
                      .yLabel = cut(name.utf8()),
                      .yUnit = unit,
                      .series = {}};
    for (const Series& series : outcome.series) {
        wsjf::ChartSeries& curve =
            chart.series.emplace_back(wsjf::ChartSeries{cut(series.head.name.utf8()), {}, {}});
        for (const SeriesPoint& point : series.points) {
            const char* const between = curve.xdata.empty() ? "" : ";";
            constexpr int MILLISECONDS = 3;
            curve.xdata += between + Number::rounded(point.seconds, MILLISECONDS).text();
            curve.ydata += between + point.value.text();
        }
    }
    return chart;
}

// The steps of a report, numbered in their order.
class Steps {
public:
    explicit Steps(const RunRecord& run) : m_run(run) {}

    wsjf::Step root() {
        wsjf::Step step = sequence(std::string(moduleInfo().name), m_run.started);
        step.status = statusesOf(worstResult(m_run)).report;
        step.totTime = secondsOfRun();
        for (const Outcome& outcome : m_run.outcomes) {
            step.steps.push_back(stepOf(outcome));
        }
        for (const TestWithoutDevice& without : m_run.withoutDevice) {
            step.steps.push_back(stepOf(without));
        }
        return step;
    }

    double secondsOfRun() const {
        return roundedToMilliseconds(
            std::chrono::duration<double>(m_run.ended - m_run.started).count());
    }

private:
    wsjf::Step sequence(const std::string& name, mrl::Clock::UtcTime start) {
        wsjf::Step step;
        step.id = m_next++;
        step.stepType = "SequenceCall";
        step.name = cut(name);
        step.start = localStart(start);
        const std::string module(moduleInfo().name);
        step.seqCall = wsjf::SequenceCall{
            .path = module,
            .name = module,
            .version = cut(m_run.version.text() + "." + m_run.version.build.utf8(),
                           wsjf::LONGEST_VERSION)};
        return step;
    }

    wsjf::Step stepOf(const Outcome& outcome) {
        wsjf::Step step = sequence(stepName(outcome), outcome.time);
        step.status = statusesOf(outcome.result).step;
        step.totTime = roundedToMilliseconds(outcome.seconds);
        step.causedUUTFailure = outcome.result == TestResult::FAIL();
        if (!plainlyGood(outcome)) {
            step.errorMessage = cut(reasonFor(outcome));
        }
        std::string text;
        for (const RaisedEvent& event : outcome.events) {
            text += (text.empty() ? "" : "\n") + eventText(event);
        }
        step.reportText = cut(text, wsjf::LONGEST_COMMENT);
        step.chart = chartOf(outcome);
        for (const Measurement& measurement : outcome.measurements) {
            step.steps.push_back(stepOf(measurement, outcome));
        }
        return step;
    }

    wsjf::Step stepOf(const Measurement& measurement, const Outcome& outcome) {
        wsjf::Step step;
        step.id = m_next++;
        step.stepType = "ET_MNLT";
        step.name = cut(measurement.name.utf8());
        step.start = localStart(outcome.time);
        step.numericMeas = numbersOf(measurement);
        step.status = step.numericMeas.front().status;
        return step;
    }

    wsjf::Step stepOf(const TestWithoutDevice& without) {
        wsjf::Step step = sequence(without.test->name().utf8(), m_run.started);
        step.status = wsjf::Status::skipped;
        step.errorMessage = cut(message("REPORT_NO_DEVICE"));
        step.reportText = cut(phrasesListed(without.reasons), wsjf::LONGEST_COMMENT);
        return step;
    }

    const RunRecord& m_run;
    std::uint64_t m_next = 0;
};

void add(std::vector<wsjf::MiscInfo>& infos, const std::string& name, const std::string& text) {
    if (!text.empty()) {
        infos.push_back({cut(name), cut(text)});
    }
}

void add(std::vector<wsjf::MiscInfo>& infos, const std::string& name, const InForce& inForce) {
    add(infos, name, inForce.name + (inForce.version.empty() ? "" : " " + inForce.version));
    add(infos, name + ".sha256", inForce.sha256);
}

// What the report says besides the format's own members.
std::vector<wsjf::MiscInfo> infosOf(const RunIdentity& identity) {
    std::vector<wsjf::MiscInfo> infos;
    for (const Tag& tag : identity.tags) {
        if (!isMember(tag.name)) {
            add(infos, tag.name, tag.value);
        }
    }
    if (identity.pc) {
        for (const auto& [fact, value] : identity.pc->facts()) {
            add(infos, "pc." + fact, value);
        }
    }
    for (const InForce& limits : identity.limits) {
        add(infos, "limits", limits);
    }
    if (identity.calibration) {
        add(infos, "calibration", *identity.calibration);
    }
    return infos;
}

// The line about the worst run, for lists of reports.
std::string errorOf(const RunRecord& run) {
    const TestResult worst = worstResult(run);
    for (const Outcome& outcome : run.outcomes) {
        if (outcome.result == worst && !plainlyGood(outcome)) {
            return reasonFor(outcome);
        }
    }
    return run.withoutDevice.empty() ? std::string() : message("REPORT_NO_DEVICE");
}

} // namespace

void refuseWithoutWsjfTags(const RunIdentity& identity) {
    std::vector<std::string> missing;
    for (const std::string_view tag : requiredTags) {
        if (identity.tag(tag) == nullptr) {
            missing.emplace_back(tag);
        }
    }
    if (!missing.empty()) {
        throw BadInput{message("INPUT_WSJF_TAGS",
                               {{"Tags", listedWithAnd(missing)}, {"Example", missing.front()}})};
    }
    for (const Tag& tag : identity.tags) {
        if (isMember(tag.name) && isTooLong(tag.value)) {
            throw BadInput{
                message("INPUT_WSJF_TAG_LONG",
                        {{"Tag", tag.name}, {"Most", std::to_string(wsjf::LONGEST_TEXT)}})};
        }
    }
    const std::string& process = *identity.tag(PROCESS);
    if (!process.empty() && !processCode(identity)) {
        throw BadInput{message("INPUT_WSJF_PROCESS", {{"Value", process}})};
    }
}

std::string wsjfReportOf(const RunRecord& run) {
    const RunIdentity& identity = run.identity;
    Steps steps(run);
    const wsjf::Report report{
        .id = identity.identifier,
        .pn = tagOr(identity, "part", {}),
        .sn = tagOr(identity, "serial", {}),
        .rev = tagOr(identity, "revision", {}),
        .processCode = processCode(identity).value_or(0),
        .result = statusesOf(worstResult(run)).report,
        .machineName = tagOr(identity, "station", {}),
        .location = tagOr(identity, "location", {}),
        .purpose = tagOr(identity, "purpose", {}),
        .start = localStart(run.started),
        .startUTC = mrl::utcText(run.started),
        .root = steps.root(),
        .uut = {.user = tagOr(identity, "operator", {}),
                .batchSN = tagOr(identity, "batch", {}),
                .fixtureId = tagOr(identity, "fixture", {}),
                .comment = run.leftOut == 0 ? std::string()
                                            : message("REPORT_LEFT_OUT",
                                                      {{"Count", std::to_string(run.leftOut)}}),
                .errorMessage = cut(errorOf(run)),
                .execTime = steps.secondsOfRun()},
        .miscInfos = infosOf(identity)};
    return indentedJson(wsjf::jsonOf(report));
}

} // namespace tesk5
