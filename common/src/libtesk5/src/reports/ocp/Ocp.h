// The messages of the Open Compute Project's test and validation output, version 2.0, as plain
// structures: a member for each of the format's, under its name. Texts are in UTF-8; an empty text
// or list stands for an optional member that is left out.
#pragma once

#include <tesk5/Number.h>

#include <mrl/Clock.h>
#include <mrl/Json.h>

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace tesk5::ocp {

enum class TestStatus { complete, error, skip };
enum class TestResult { notApplicable, pass, fail };
enum class DiagnosisType { pass, fail, unknown };
enum class Severity { info, debug, warning, error, fatal };
enum class SoftwareType { unspecified, firmware, system, application };
enum class ValidatorType { lessThanOrEqual, greaterThan, greaterThanOrEqual };

struct SchemaVersion {
    int major = 2;
    int minor = 0;
};

struct PlatformInfo {
    std::string info;
};

struct SoftwareInfo {
    std::string softwareInfoId;
    std::string computerSystem;
    std::string name;
    std::string version;
    std::string revision;
    SoftwareType softwareType = SoftwareType::unspecified;
};

struct HardwareInfo {
    std::string hardwareInfoId;
    std::string computerSystem;
    std::string name;
    std::string location;
    std::string partNumber;
    std::string serialNumber;
    std::string manufacturer;
    std::string partType;
    std::string revision;
};

struct DutInfo {
    std::string dutInfoId;
    std::string name;
    std::vector<PlatformInfo> platformInfos;
    std::vector<SoftwareInfo> softwareInfos;
    std::vector<HardwareInfo> hardwareInfos;
    mrl::Json metadata = mrl::Json::object();
};

struct TestRunStart {
    std::string name;
    std::string version;
    std::string commandLine;
    mrl::Json parameters = mrl::Json::object();
    DutInfo dutInfo;
    mrl::Json metadata = mrl::Json::object();
};

struct TestRunEnd {
    TestStatus status;
    TestResult result;
};

struct Log {
    Severity severity;
    std::string message;
};

struct Error {
    std::string symptom;
    std::string message;
    std::vector<std::string> softwareInfoIds;
};

struct TestStepStart {
    std::string name;
};

struct TestStepEnd {
    TestStatus status;
};

struct Validator {
    std::string name;
    ValidatorType type;
    Number value;
    mrl::Json metadata = mrl::Json::object();
};

struct Measurement {
    std::string name;
    Number value;
    std::string unit;
    std::vector<Validator> validators;
    std::string hardwareInfoId;
    mrl::Json metadata = mrl::Json::object();
};

struct MeasurementSeriesStart {
    std::string measurementSeriesId;
    std::string name;
    std::string unit;
    std::string hardwareInfoId;
};

struct MeasurementSeriesElement {
    std::uint64_t index;
    std::string measurementSeriesId;
    Number value;
    mrl::Clock::UtcTime timestamp;
    mrl::Json metadata = mrl::Json::object();
};

struct MeasurementSeriesEnd {
    std::string measurementSeriesId;
    std::uint64_t totalCount;
};

struct Diagnosis {
    std::string verdict;
    DiagnosisType type;
    std::string message;
    std::string hardwareInfoId;
};

struct Extension {
    std::string name;
    mrl::Json content = mrl::Json::object();
};

using TestRunArtifact = std::variant<TestRunStart, TestRunEnd, Log, Error>;

struct TestStepArtifact {
    std::string testStepId;
    std::variant<TestStepStart, TestStepEnd, Measurement, MeasurementSeriesStart,
                 MeasurementSeriesElement, MeasurementSeriesEnd, Diagnosis, Error, Log, Extension>
        artifact;
};

/// One line of the output.
struct OutputArtifact {
    std::variant<SchemaVersion, TestRunArtifact, TestStepArtifact> artifact;
    std::uint64_t sequenceNumber; ///< from 0
    mrl::Clock::UtcTime timestamp;
};

} // namespace tesk5::ocp
