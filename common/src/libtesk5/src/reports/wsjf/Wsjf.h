// A test report of the standard JSON format WSJF as plain structures: a member for each of the
// format's that is written, under its name. Texts are in UTF-8; an empty text or list stands for an
// optional member that is left out.
#pragma once

#include <tesk5/Number.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tesk5::wsjf {

/// Lengths that the format allows, in UTF-16 code units.
inline constexpr std::size_t LONGEST_TEXT = 100;
inline constexpr std::size_t LONGEST_COMMENT = 5000;
inline constexpr std::size_t LONGEST_VERSION = 30;

/// How a step or a report ended.
enum class Status { passed, failed, error, terminated, skipped };

struct SequenceCall {
    std::string path;
    std::string name;
    std::string version;
};

struct NumericMeasurement {
    std::string name;
    Status status = Status::passed;
    std::string compOp = "LOG"; ///< how the value is held against the limits; LOG: it is not
    Number value;
    std::string unit;
    std::optional<Number> lowLimit;
    std::optional<Number> highLimit;
};

struct ChartSeries {
    std::string name;
    std::string xdata; ///< numbers with ";" between them
    std::string ydata;
};

struct Chart {
    std::string label;
    std::string xLabel;
    std::string xUnit;
    std::string yLabel;
    std::string yUnit;
    std::vector<ChartSeries> series;
};

struct Step {
    std::uint64_t id = 0;
    std::string stepType; ///< "SequenceCall", or "ET_MNLT" for one with several numbers
    std::string name;
    std::string start; ///< with the offset from UTC
    Status status = Status::passed;
    double totTime = 0; ///< seconds
    bool causedUUTFailure = false;
    std::string errorMessage;
    std::string reportText;
    std::optional<SequenceCall> seqCall;
    std::vector<NumericMeasurement> numericMeas;
    std::optional<Chart> chart;
    std::vector<Step> steps;
};

struct MiscInfo {
    std::string description;
    std::string text;
};

struct Uut {
    std::string user;
    std::string batchSN;
    std::string fixtureId;
    std::string comment;
    std::string errorMessage;
    double execTime = 0; ///< seconds
};

struct Report {
    std::string id; ///< a GUID
    std::string pn;
    std::string sn;
    std::string rev;
    std::uint32_t processCode = 0;
    Status result = Status::passed;
    std::string machineName;
    std::string location;
    std::string purpose;
    std::string start; ///< with the offset from UTC
    std::string startUTC;
    Step root;
    Uut uut;
    std::vector<MiscInfo> miscInfos;
};

} // namespace tesk5::wsjf
