#include "reports/openhtf/OpenHtfReport.h"

#include <tesk5/ModuleInfo.h>
#include <tesk5/RunIdentityJson.h>
#include <tesk5/Texts.h>

#include "reports/FormatFacts.h"
#include "reports/ReportJson.h"
#include "reports/openhtf/OpenHtfJson.h"
#include "run/ReportWords.h"

#include <algorithm>
#include <iterator>

namespace tesk5 {

namespace {

struct OutcomeRow {
    TestResult result;
    openhtf::Outcome record;
    openhtf::PhaseOutcome phase;
    openhtf::PhaseResult returned; ///< by the phase
};
const OutcomeRow outcomeRows[] = {
    {TestResult::PASS(), openhtf::Outcome::pass, openhtf::PhaseOutcome::pass,
     openhtf::PhaseResult::carriesOn},
    {TestResult::WARN(), openhtf::Outcome::pass, openhtf::PhaseOutcome::pass,
     openhtf::PhaseResult::carriesOn},
    {TestResult::COMPLETED(), openhtf::Outcome::pass, openhtf::PhaseOutcome::pass,
     openhtf::PhaseResult::carriesOn},
    {TestResult::FAIL(), openhtf::Outcome::fail, openhtf::PhaseOutcome::fail,
     openhtf::PhaseResult::failsAndContinues},
    {TestResult::CANNOTRUN(), openhtf::Outcome::error, openhtf::PhaseOutcome::skip,
     openhtf::PhaseResult::skip},
    {TestResult::USERABORTED(), openhtf::Outcome::aborted, openhtf::PhaseOutcome::skip,
     openhtf::PhaseResult::skip},
    {TestResult::BADPARAMS(), openhtf::Outcome::error, openhtf::PhaseOutcome::error,
     openhtf::PhaseResult::stop},
    {TestResult::INTERNALERROR(), openhtf::Outcome::error, openhtf::PhaseOutcome::error,
     openhtf::PhaseResult::stop},
    {TestResult::EXITEDABNORMALLY(), openhtf::Outcome::error, openhtf::PhaseOutcome::error,
     openhtf::PhaseResult::stop},
};

const OutcomeRow& outcomesOf(const TestResult& result) {
    return rowFor(result, outcomeRows);
}

const openhtf::Unit SECONDS = {"second [unit of time]", "SEC", "s"};

std::optional<openhtf::Unit> unitOf(const TeskString& unit) {
    if (unit.empty()) {
        return std::nullopt;
    }
    constexpr std::pair<const char*, const char*> names[] = {
        {"%", "percent"}, {"dBm", "decibel-milliwatts"}, {"dB", "decibel"}};
    constexpr std::pair<const char*, const char*> codes[] = {
        {"%", "P1"}, {"dBm", "DBM"}, {"dB", "2N"}};
    const auto lookUp = [&unit](const auto& table, const std::string& otherwise) {
        const auto* const known =
            std::find_if(std::begin(table), std::end(table),
                         [&unit](const auto& row) { return unit.utf8() == row.first; });
        return known == std::end(table) ? otherwise : std::string(known->second);
    };
    return openhtf::Unit{lookUp(names, unit.utf8()), lookUp(codes, {}), unit.utf8()};
}

const char* comparison(const Limit& limit) {
    return limit.kept == Limit::Kept::ABOVE ? " < " : " <= ";
}

// "20 < Marginal:40 < x <= 90": the limits in one line as OpenHTF writes a range, those that only
// warn behind "Marginal:".
std::vector<std::string> rangeTextsOf(const std::vector<Limit>& limits) {
    const Bounds fail = boundsOf(limits, Severity::error);
    const Bounds warn = boundsOf(limits, Severity::warning);
    std::string text;
    const auto addLow = [&text](const Limit* limit, const char* mark) {
        if (limit != nullptr) {
            text += mark + limit->value.text() + comparison(*limit);
        }
    };
    const auto addHigh = [&text](const Limit* limit, const char* mark) {
        if (limit != nullptr) {
            text += comparison(*limit) + (mark + limit->value.text());
        }
    };
    constexpr const char* MARGINAL = "Marginal:";
    addLow(fail.low, "");
    addLow(warn.low, MARGINAL);
    text += "x";
    addHigh(warn.high, MARGINAL);
    addHigh(fail.high, "");
    return limits.empty() ? std::vector<std::string>() : std::vector<std::string>{text};
}

openhtf::Measurement figureOf(const std::string& name, const Number& value,
                              const TeskString& unit) {
    openhtf::Measurement one;
    one.name = name;
    one.value = value;
    one.units = unitOf(unit);
    return one;
}

openhtf::Measurement seriesOf(const Series& series) {
    openhtf::Measurement one;
    one.name = series.head.name.utf8() + ".Series";
    one.outcome = series.points.empty() ? openhtf::MeasurementOutcome::unset
                                        : openhtf::MeasurementOutcome::pass;
    one.units = unitOf(series.head.unit);
    one.dimension = SECONDS;
    for (const SeriesPoint& point : series.points) {
        constexpr int MILLISECONDS = 3;
        one.points.emplace_back(Number::rounded(point.seconds, MILLISECONDS), point.value);
    }
    return one;
}

std::vector<openhtf::Measurement> measurementsOf(const Outcome& outcome) {
    std::vector<openhtf::Measurement> all;
    // A name that comes again, in a second measurement of a test, gets a number.
    const auto add = [&all](openhtf::Measurement one) {
        const std::string name = one.name;
        const auto isTaken = [&all, &one] {
            return std::any_of(all.begin(), all.end(),
                               [&one](const auto& other) { return other.name == one.name; });
        };
        for (int number = 2; isTaken(); ++number) {
            one.name = name + " (" + std::to_string(number) + ")";
        }
        all.push_back(std::move(one));
    };
    for (const Measurement& measurement : outcome.measurements) {
        openhtf::Measurement one =
            figureOf(measurement.name.utf8(), measurement.value, measurement.unit);
        const Limit* const broken = measurement.brokenLimit();
        if (broken != nullptr && broken->severity == Severity::error) {
            one.outcome = openhtf::MeasurementOutcome::fail;
        }
        one.validators = rangeTextsOf(measurement.limits);
        add(std::move(one));
        for (const Figure& figure : measurement.figures) {
            add(figureOf(figureName(measurement, figure), figure.value, figure.unit));
        }
    }
    for (const Series& series : outcome.series) {
        add(seriesOf(series));
    }
    return all;
}

openhtf::CodeInfo codeOf(const Test& test) {
    return {.name = test.name().utf8(), .docstring = labelOf(test), .sourcecode = {}};
}

// The identifier of a test within a record.
std::uint64_t descriptorOf(const Test& test, std::vector<const Test*>& known) {
    const auto place = std::find(known.begin(), known.end(), &test);
    const auto index = static_cast<std::uint64_t>(place - known.begin());
    if (place == known.end()) {
        known.push_back(&test);
    }
    return index + 1;
}

std::vector<openhtf::Phase> phasesOf(const RunRecord& run) {
    std::vector<openhtf::Phase> phases;
    std::vector<const Test*> tests;
    for (const Outcome& outcome : run.outcomes) {
        const OutcomeRow& row = outcomesOf(outcome.result);
        phases.push_back({.descriptorId = descriptorOf(*outcome.test, tests),
                          .name = stepName(outcome),
                          .codeinfo = codeOf(*outcome.test),
                          .measurements = measurementsOf(outcome),
                          .startTimeMillis = millisecondsOf(outcome.time),
                          .endTimeMillis = millisecondsOf(endOf(outcome)),
                          .result = row.returned,
                          .outcome = row.phase,
                          .marginal = outcome.result == TestResult::WARN()});
    }
    for (const TestWithoutDevice& without : run.withoutDevice) {
        phases.push_back({.descriptorId = descriptorOf(*without.test, tests),
                          .name = without.test->name().utf8(),
                          .codeinfo = codeOf(*without.test),
                          .measurements = {},
                          .startTimeMillis = millisecondsOf(run.started),
                          .endTimeMillis = millisecondsOf(run.started),
                          .result = openhtf::PhaseResult::skip,
                          .outcome = openhtf::PhaseOutcome::skip,
                          .marginal = false});
    }
    return phases;
}

// Why the record did not pass, one detail for each run that did not.
std::vector<openhtf::OutcomeDetail> detailsOf(const RunRecord& run) {
    std::vector<openhtf::OutcomeDetail> details;
    for (const Outcome& outcome : run.outcomes) {
        if (outcome.result.good() || outcome.result == TestResult::WARN()) {
            continue;
        }
        const RaisedEvent* const event = leadingEvent(outcome);
        const bool named = event != nullptr && outcome.failure.empty();
        details.push_back({named ? event->key.utf8() : outcome.result.name(), reasonFor(outcome)});
    }
    for (std::size_t i = 0; i < run.withoutDevice.size(); ++i) {
        details.push_back({TestResult::CANNOTRUN().name(), message("REPORT_NO_DEVICE")});
    }
    return details;
}

std::vector<openhtf::LogRecord> logsOf(const RunRecord& run) {
    constexpr int WARNING_LEVEL = 30;
    constexpr int ERROR_LEVEL = 40;
    std::vector<openhtf::LogRecord> logs;
    for (const Outcome& outcome : run.outcomes) {
        for (const RaisedEvent& event : outcome.events) {
            logs.push_back(
                {.level = event.severity == Severity::error ? ERROR_LEVEL : WARNING_LEVEL,
                 .loggerName = std::string(moduleInfo().name) + "." + outcome.test->name().utf8(),
                 .source = event.file.substr(event.file.find_last_of('/') + 1),
                 .lineno = event.line,
                 .timestampMillis = millisecondsOf(event.time),
                 .message = event.key.utf8() + ": " + eventText(event)});
        }
    }
    return logs;
}

Json metadataOf(const RunRecord& run) {
    Json metadata;
    metadata["test_name"] = std::string(moduleInfo().name);
    metadata["test_version"] = run.version.text();
    metadata["run_name"] = run.identity.identifier;
    if (const std::string* const operatorName = run.identity.tag("operator")) {
        metadata["operator_name"] = *operatorName;
    }
    metadata["config"] = Json::object();
    for (const Outcome& outcome : run.outcomes) {
        addParameters(metadata["config"], *outcome.test, outcome.parameters);
    }
    metadata["exit"] = run.exitValue;
    metadata["leftOut"] = run.leftOut;
    metadata.update(identityJson(run.identity));
    return metadata;
}

std::string stationOf(const RunIdentity& identity) {
    const bool named = identity.pc && !identity.pc->name.empty();
    return tagOr(identity, "station", named ? identity.pc->name : "UNKNOWN_STATION");
}

} // namespace

std::string openHtfReportOf(const RunRecord& run) {
    const TestResult worst = worstResult(run);
    const openhtf::TestRecord record{.dutId = unitSerial(run.identity, "UNKNOWN_DUT"),
                                     .stationId = stationOf(run.identity),
                                     .startTimeMillis = millisecondsOf(run.started),
                                     .endTimeMillis = millisecondsOf(run.ended),
                                     .outcome = outcomesOf(worst).record,
                                     .outcomeDetails = detailsOf(run),
                                     .marginal = worst == TestResult::WARN(),
                                     .codeInfo = {.name = std::string(moduleInfo().name),
                                                  .docstring = run.version.build.utf8(),
                                                  .sourcecode = {}},
                                     .metadata = metadataOf(run),
                                     .phases = phasesOf(run),
                                     .logRecords = logsOf(run)};
    return indentedJson(openhtf::jsonOf(record));
}

} // namespace tesk5
