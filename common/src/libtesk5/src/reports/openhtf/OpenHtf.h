// The record of a test as OpenHTF's JSON callback writes it, as plain structures: a member for each
// of the format's that is written. Texts are in UTF-8.
#pragma once

#include <tesk5/Number.h>

#include <mrl/Json.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tesk5::openhtf {

enum class Outcome { pass, fail, error, timeout, aborted };
enum class PhaseOutcome { pass, fail, skip, error };
enum class PhaseResult { carriesOn, failsAndContinues, skip, stop };
enum class MeasurementOutcome { pass, fail, unset };

struct CodeInfo {
    std::string name;
    std::string docstring;
    std::string sourcecode;
};

struct Unit {
    std::string name;
    std::string code; ///< of UN/ECE recommendation 20; empty when it is unknown, which is null
    std::string suffix;
};

/// A value, or pairs of a coordinate and a value.
struct Measurement {
    std::string name;
    MeasurementOutcome outcome = MeasurementOutcome::pass;
    std::vector<std::string> validators;
    std::optional<Number> value;
    std::optional<Unit> units;
    std::optional<Unit> dimension; ///< of the coordinate; the value is then `points`
    std::vector<std::pair<Number, Number>> points;
};

struct Phase {
    std::uint64_t descriptorId = 0;
    std::string name;
    CodeInfo codeinfo;
    std::vector<Measurement> measurements; ///< no name twice
    std::int64_t startTimeMillis = 0;      ///< since 1970
    std::int64_t endTimeMillis = 0;
    PhaseResult result = PhaseResult::carriesOn;
    PhaseOutcome outcome = PhaseOutcome::pass;
    bool marginal = false;
};

struct OutcomeDetail {
    std::string code;
    std::string description;
};

struct LogRecord {
    int level = 0; ///< 30: warning, 40: error
    std::string loggerName;
    std::string source; ///< name of the source file
    int lineno = 0;
    std::int64_t timestampMillis = 0;
    std::string message;
};

struct TestRecord {
    std::string dutId;
    std::string stationId;
    std::int64_t startTimeMillis = 0;
    std::int64_t endTimeMillis = 0;
    Outcome outcome = Outcome::pass;
    std::vector<OutcomeDetail> outcomeDetails;
    bool marginal = false;
    CodeInfo codeInfo;
    mrl::Json metadata = mrl::Json::object();
    std::vector<Phase> phases;
    std::vector<LogRecord> logRecords;
};

} // namespace tesk5::openhtf
