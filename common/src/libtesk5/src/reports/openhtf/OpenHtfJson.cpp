#include "reports/openhtf/OpenHtfJson.h"

#include "reports/ReportJson.h"

namespace tesk5::openhtf {

namespace {

const char* nameOf(Outcome outcome) {
    constexpr const char* names[] = {"PASS", "FAIL", "ERROR", "TIMEOUT", "ABORTED"};
    return names[static_cast<int>(outcome)];
}

const char* nameOf(PhaseOutcome outcome) {
    constexpr const char* names[] = {"PASS", "FAIL", "SKIP", "ERROR"};
    return names[static_cast<int>(outcome)];
}

const char* nameOf(PhaseResult result) {
    constexpr const char* names[] = {"CONTINUE", "FAIL_AND_CONTINUE", "SKIP", "STOP"};
    return names[static_cast<int>(result)];
}

const char* nameOf(MeasurementOutcome outcome) {
    constexpr const char* names[] = {"PASS", "FAIL", "UNSET"};
    return names[static_cast<int>(outcome)];
}

Json jsonOf(const CodeInfo& code) {
    return {{"name", code.name}, {"docstring", code.docstring}, {"sourcecode", code.sourcecode}};
}

Json jsonOf(const Unit& unit) {
    return {{"name", unit.name},
            {"code", unit.code.empty() ? Json(nullptr) : Json(unit.code)},
            {"suffix", unit.suffix}};
}

Json jsonOf(const Measurement& measurement) {
    Json json;
    json["name"] = measurement.name;
    json["outcome"] = nameOf(measurement.outcome);
    if (!measurement.validators.empty()) {
        json["validators"] = measurement.validators;
    }
    if (measurement.dimension) {
        json["dimensions"] = Json::array({jsonOf(*measurement.dimension)});
    }
    if (measurement.units) {
        json["units"] = jsonOf(*measurement.units);
    }
    if (measurement.value) {
        json["measured_value"] = tesk5::jsonOf(*measurement.value);
    }
    for (const auto& [coordinate, value] : measurement.points) {
        json["measured_value"].push_back(
            Json::array({tesk5::jsonOf(coordinate), tesk5::jsonOf(value)}));
    }
    return json;
}

Json jsonOf(const Phase& phase) {
    Json json;
    json["descriptor_id"] = phase.descriptorId;
    json["name"] = phase.name;
    json["codeinfo"] = jsonOf(phase.codeinfo);
    json["measurements"] = Json::object();
    for (const Measurement& measurement : phase.measurements) {
        json["measurements"][measurement.name] = jsonOf(measurement);
    }
    json["start_time_millis"] = phase.startTimeMillis;
    json["end_time_millis"] = phase.endTimeMillis;
    json["attachments"] = Json::object();
    json["diagnosis_results"] = Json::array();
    json["failure_diagnosis_results"] = Json::array();
    json["result"] = {{"phase_result", nameOf(phase.result)}};
    json["outcome"] = nameOf(phase.outcome);
    json["marginal"] = phase.marginal;
    return json;
}

Json jsonOf(const OutcomeDetail& detail) {
    return {{"code", detail.code}, {"description", detail.description}};
}

Json jsonOf(const LogRecord& log) {
    return {{"level", log.level},
            {"logger_name", log.loggerName},
            {"source", log.source},
            {"lineno", log.lineno},
            {"timestamp_millis", log.timestampMillis},
            {"message", log.message}};
}

} // namespace

Json jsonOf(const TestRecord& record) {
    const auto toJson = [](const auto& part) { return jsonOf(part); };
    Json json;
    json["dut_id"] = record.dutId;
    json["station_id"] = record.stationId;
    json["start_time_millis"] = record.startTimeMillis;
    json["end_time_millis"] = record.endTimeMillis;
    json["outcome"] = nameOf(record.outcome);
    json["outcome_details"] = listOf(record.outcomeDetails, toJson);
    json["marginal"] = record.marginal;
    json["code_info"] = jsonOf(record.codeInfo);
    json["metadata"] = record.metadata;
    json["phases"] = listOf(record.phases, toJson);
    for (const char* none : {"subtests", "branches", "checkpoints", "diagnosers", "diagnoses"}) {
        json[none] = Json::array();
    }
    json["log_records"] = listOf(record.logRecords, toJson);
    return json;
}

} // namespace tesk5::openhtf
