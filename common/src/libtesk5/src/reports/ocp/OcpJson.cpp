#include "reports/ocp/OcpJson.h"

#include "reports/FormatJson.h"
#include "reports/ReportJson.h"

namespace tesk5::ocp {

namespace {

const char* nameOf(TestStatus status) {
    constexpr const char* names[] = {"COMPLETE", "ERROR", "SKIP"};
    return names[static_cast<int>(status)];
}

const char* nameOf(TestResult result) {
    constexpr const char* names[] = {"NOT_APPLICABLE", "PASS", "FAIL"};
    return names[static_cast<int>(result)];
}

const char* nameOf(DiagnosisType type) {
    constexpr const char* names[] = {"PASS", "FAIL", "UNKNOWN"};
    return names[static_cast<int>(type)];
}

const char* nameOf(Severity severity) {
    constexpr const char* names[] = {"INFO", "DEBUG", "WARNING", "ERROR", "FATAL"};
    return names[static_cast<int>(severity)];
}

const char* nameOf(SoftwareType type) {
    constexpr const char* names[] = {"UNSPECIFIED", "FIRMWARE", "SYSTEM", "APPLICATION"};
    return names[static_cast<int>(type)];
}

const char* nameOf(ValidatorType type) {
    constexpr const char* names[] = {"LESS_THAN_OR_EQUAL", "GREATER_THAN", "GREATER_THAN_OR_EQUAL"};
    return names[static_cast<int>(type)];
}

// A message and the name of the member that holds it.
struct Named {
    const char* name;
    Json json;
};

Json jsonOf(const PlatformInfo& platform) {
    return {{"info", platform.info}};
}

Json jsonOf(const SoftwareInfo& software) {
    Json json;
    json["softwareInfoId"] = software.softwareInfoId;
    addKnown(json, "computerSystem", software.computerSystem);
    json["name"] = software.name;
    addKnown(json, "version", software.version);
    addKnown(json, "revision", software.revision);
    json["softwareType"] = nameOf(software.softwareType);
    return json;
}

Json jsonOf(const HardwareInfo& hardware) {
    Json json;
    json["hardwareInfoId"] = hardware.hardwareInfoId;
    addKnown(json, "computerSystem", hardware.computerSystem);
    json["name"] = hardware.name;
    addKnown(json, "location", hardware.location);
    addKnown(json, "partNumber", hardware.partNumber);
    addKnown(json, "serialNumber", hardware.serialNumber);
    addKnown(json, "manufacturer", hardware.manufacturer);
    addKnown(json, "partType", hardware.partType);
    addKnown(json, "revision", hardware.revision);
    return json;
}

Json jsonOf(const DutInfo& dut) {
    const auto toJson = [](const auto& part) { return jsonOf(part); };
    Json json;
    json["dutInfoId"] = dut.dutInfoId;
    addKnown(json, "name", dut.name);
    addKnown(json, "platformInfos", dut.platformInfos, toJson);
    addKnown(json, "softwareInfos", dut.softwareInfos, toJson);
    addKnown(json, "hardwareInfos", dut.hardwareInfos, toJson);
    addKnown(json, "metadata", dut.metadata);
    return json;
}

Json jsonOf(const Validator& validator) {
    Json json;
    json["name"] = validator.name;
    json["type"] = nameOf(validator.type);
    json["value"] = tesk5::jsonOf(validator.value);
    addKnown(json, "metadata", validator.metadata);
    return json;
}

Named named(const SchemaVersion& version) {
    return {"schemaVersion", {{"major", version.major}, {"minor", version.minor}}};
}

Named named(const TestRunStart& start) {
    Json json;
    json["name"] = start.name;
    json["version"] = start.version;
    json["commandLine"] = start.commandLine;
    json["parameters"] = start.parameters;
    json["dutInfo"] = jsonOf(start.dutInfo);
    addKnown(json, "metadata", start.metadata);
    return {"testRunStart", json};
}

Named named(const TestRunEnd& end) {
    return {"testRunEnd", {{"status", nameOf(end.status)}, {"result", nameOf(end.result)}}};
}

Named named(const Log& log) {
    return {"log", {{"severity", nameOf(log.severity)}, {"message", log.message}}};
}

Named named(const Error& error) {
    Json json;
    json["symptom"] = error.symptom;
    addKnown(json, "message", error.message);
    addKnown(json, "softwareInfoIds", error.softwareInfoIds);
    return {"error", json};
}

Named named(const TestStepStart& start) {
    return {"testStepStart", {{"name", start.name}}};
}

Named named(const TestStepEnd& end) {
    return {"testStepEnd", {{"status", nameOf(end.status)}}};
}

Named named(const Measurement& measurement) {
    const auto toJson = [](const auto& part) { return jsonOf(part); };
    Json json;
    json["name"] = measurement.name;
    json["value"] = tesk5::jsonOf(measurement.value);
    addKnown(json, "unit", measurement.unit);
    addKnown(json, "validators", measurement.validators, toJson);
    addKnown(json, "hardwareInfoId", measurement.hardwareInfoId);
    addKnown(json, "metadata", measurement.metadata);
    return {"measurement", json};
}

Named named(const MeasurementSeriesStart& start) {
    Json json;
    json["measurementSeriesId"] = start.measurementSeriesId;
    json["name"] = start.name;
    addKnown(json, "unit", start.unit);
    addKnown(json, "hardwareInfoId", start.hardwareInfoId);
    return {"measurementSeriesStart", json};
}

Named named(const MeasurementSeriesElement& element) {
    Json json;
    json["index"] = element.index;
    json["measurementSeriesId"] = element.measurementSeriesId;
    json["value"] = tesk5::jsonOf(element.value);
    json["timestamp"] = mrl::utcText(element.timestamp);
    addKnown(json, "metadata", element.metadata);
    return {"measurementSeriesElement", json};
}

Named named(const MeasurementSeriesEnd& end) {
    return {"measurementSeriesEnd",
            {{"measurementSeriesId", end.measurementSeriesId}, {"totalCount", end.totalCount}}};
}

Named named(const Diagnosis& diagnosis) {
    Json json;
    json["verdict"] = diagnosis.verdict;
    json["type"] = nameOf(diagnosis.type);
    addKnown(json, "message", diagnosis.message);
    addKnown(json, "hardwareInfoId", diagnosis.hardwareInfoId);
    return {"diagnosis", json};
}

Named named(const Extension& extension) {
    return {"extension", {{"name", extension.name}, {"content", extension.content}}};
}

Named named(const TestRunArtifact& artifact);
Named named(const TestStepArtifact& artifact);

template <typename Artifact>
Json memberOf(const Artifact& artifact) {
    Json json;
    std::visit(
        [&json](const auto& message) {
            Named one = named(message);
            json[one.name] = std::move(one.json);
        },
        artifact);
    return json;
}

Named named(const TestRunArtifact& artifact) {
    return {"testRunArtifact", memberOf(artifact)};
}

Named named(const TestStepArtifact& artifact) {
    Json json;
    json["testStepId"] = artifact.testStepId;
    json.update(memberOf(artifact.artifact));
    return {"testStepArtifact", json};
}

} // namespace

Json jsonOf(const OutputArtifact& artifact) {
    Json json = memberOf(artifact.artifact);
    json["sequenceNumber"] = artifact.sequenceNumber;
    json["timestamp"] = mrl::utcText(artifact.timestamp);
    return json;
}

} // namespace tesk5::ocp
