// A gauge study's readings from a table, and the study as programs read it.
#pragma once

#include <gauge/Assumptions.h>
#include <gauge/AverageRange.h>
#include <gauge/Study.h>
#include <gauge/TypeOne.h>

#include <mrl/Json.h>

#include <string>
#include <string_view>
#include <vector>

namespace study {

/// The version of the files that the command study writes.
inline constexpr int STUDY_VERSION = 1;
inline constexpr std::size_t LARGEST_STUDY = 0x1000000; ///< bytes

/// The readings of a study with the names of their parts and operators, in the order in which the
/// table has them first. A table without a column for operators has one, without a name.
struct StudyReadings {
    gauge::CrossedReadings readings;
    std::vector<std::string> parts;
    std::vector<std::string> operators;
};

/// A study and what was computed from its readings.
struct StudyResult {
    StudyResult(StudyReadings readings, const gauge::StudyOptions& given);

    StudyReadings data;
    gauge::StudyOptions options;
    gauge::Study study;
    gauge::AverageRange byHand;
    gauge::Assumptions assumptions;
};

/// The short study of one part whose level is known, and what was computed from its readings.
struct TypeOneResult {
    /// \param readings of one part by one operator
    TypeOneResult(StudyReadings readings, const gauge::TypeOneOptions& given);

    StudyReadings data;
    gauge::TypeOneOptions options;
    gauge::TypeOne study;
};

/// The names that a column of readings may have.
std::vector<std::string_view> levelColumns();

/// The readings in the table of the file `path` (UTF-8), with the columns part, operator and level;
/// the trials of a cell stand in their order.
/// Failure: throws tesk5::BadInput, also for cells with different numbers of readings
StudyReadings studyReadings(const std::string& path);

/// The readings of one part by one operator, in the order in which they were taken.
StudyReadings readingsOfOnePart(const std::vector<double>& levels);

/// Everything about a study that docs/schemas/study.schema.json describes.
mrl::Json studyJson(const StudyResult& result);
mrl::Json typeOneJson(const TypeOneResult& result);

/// The study's readings as a table that studyReadings() reads again.
std::string studyCsv(const StudyReadings& data);

/// The JSON of a file that the command study wrote.
/// Failure: throws tesk5::BadInput, also for a study of another version
mrl::Json studyIn(const std::string& path);

/// The deviation of the gauge, in dB, in a file that the command study wrote.
/// Failure: throws tesk5::BadInput, also for a study of another version
double gaugeDeviation(const std::string& path);

/// What the file calls a source of variation: "gauge".
const char* sourceName(gauge::Source source);
/// What it calls a rating: "good".
const char* ratingName(gauge::Rating rating);

} // namespace study
