#include <study/StudyFile.h>

#include <tables/TableFile.h>

#include <tesk5/BadInput.h>
#include <tesk5/InputFile.h>
#include <tesk5/Texts.h>

#include <algorithm>
#include <map>

namespace study {

namespace {

using gauge::AnovaRow;
using gauge::Estimate;
using mrl::Json;
using tesk5::BadInput;
using tesk5::message;

// Names in the order in which they came first.
class Names {
public:
    std::size_t placeOf(const std::string& name) {
        const auto [found, isNew] = m_places.try_emplace(name, m_names.size());
        if (isNew) {
            m_names.push_back(name);
        }
        return found->second;
    }
    const std::vector<std::string>& all() const { return m_names; }

private:
    std::vector<std::string> m_names;
    std::map<std::string, std::size_t> m_places;
};

// One reading of the table.
struct Record {
    std::size_t part = 0;
    std::size_t op = 0;
    double level = 0;
};

Json json(const std::optional<double>& number) {
    return number ? Json(*number) : Json(nullptr);
}

Json json(const Estimate& estimate) {
    return {{"value", estimate.value}, {"low", estimate.low}, {"high", estimate.high}};
}

Json json(const std::optional<Estimate>& estimate) {
    return estimate ? json(*estimate) : Json(nullptr);
}

Json json(const AnovaRow& row) {
    return {{"degreesOfFreedom", row.degrees},
            {"sumOfSquares", row.sumOfSquares},
            {"meanSquare", row.meanSquare},
            {"f", json(row.f)},
            {"p", json(row.pValue)}};
}

Json json(const gauge::AnovaTable& table) {
    return {{"parts", json(table.parts)},
            {"operators", json(table.operators)},
            {"interaction", json(table.interaction)},
            {"repeatability", json(table.repeatability)}};
}

Json json(const gauge::AverageRange& byHand) {
    return {{"meanRange", byHand.meanRange},
            {"operatorRange", byHand.operatorRange},
            {"partRange", byHand.partRange},
            {"repeatability", byHand.repeatability},
            {"reproducibility", byHand.reproducibility},
            {"gauge", byHand.gauge},
            {"parts", byHand.parts},
            {"total", byHand.total}};
}

Json json(const gauge::Assumptions& assumptions) {
    return {{"step", assumptions.step},
            {"differentReadings", assumptions.differentReadings},
            {"possibleRanges", assumptions.possibleRanges},
            {"tooFewValues", assumptions.hasTooFewValues()},
            {"rangeLimit", assumptions.rangeLimit},
            {"rangesAboveLimit", assumptions.rangesAboveLimit},
            {"driftPerTrial", assumptions.driftPerTrial},
            {"driftP", assumptions.driftPValue},
            {"operatorScatterP", assumptions.operatorScatterPValue},
            {"partScatterP", assumptions.partScatterPValue}};
}

Json variationsOf(const gauge::Study& study) {
    Json all = Json::object();
    for (std::size_t i = 0; i < gauge::SOURCES; ++i) {
        const gauge::Variation& variation = study.variations[i];
        all[sourceName(static_cast<gauge::Source>(i))] = {
            {"deviation", json(variation.deviation)},
            {"percentContribution", variation.contribution},
            {"percentStudyVariation", json(variation.ofStudy)},
            {"percentTolerance", json(variation.ofTolerance)}};
    }
    return all;
}

Json json(const std::optional<gauge::Capability>& capability) {
    return capability ? Json({{"value", capability->value}, {"atLeast", capability->atLeast}})
                      : Json(nullptr);
}

Json readingsOf(const StudyReadings& data) {
    Json all = Json::array();
    const gauge::Design& design = data.readings.design();
    for (std::size_t part = 0; part < design.parts; ++part) {
        for (std::size_t op = 0; op < design.operators; ++op) {
            all.push_back({{"part", data.parts[part]},
                           {"operator", data.operators[op]},
                           {"levels", data.readings.cell(part, op)}});
        }
    }
    return all;
}

// What the files of both kinds of study begin with.
Json beginning(const gauge::Design& design, double confidence, std::optional<double> tolerance) {
    return {{"studyVersion", STUDY_VERSION},
            {"unit", "dBm"},
            {"design",
             {{"parts", design.parts}, {"operators", design.operators}, {"trials", design.trials}}},
            {"confidence", confidence},
            {"tolerance", json(tolerance)}};
}

[[noreturn]] void refuseStudy(const std::string& path) {
    throw BadInput{message("STUDY_FILE_UNUSABLE", {{"File", path}})};
}

// A field of RFC 4180.
std::string quoted(const std::string& text) {
    std::string field = "\"";
    for (const char c : text) {
        field += c;
        if (c == '"') {
            field += c;
        }
    }
    return field + "\"";
}

} // namespace

StudyResult::StudyResult(StudyReadings readings, const gauge::StudyOptions& given)
    : data(std::move(readings)), options(given), study(evaluate(data.readings, options)),
      byHand(averageAndRange(data.readings)), assumptions(checkAssumptions(data.readings)) {}

TypeOneResult::TypeOneResult(StudyReadings readings, const gauge::TypeOneOptions& given)
    : data(std::move(readings)), options(given), study(typeOne(data.readings.all(), options)) {}

std::vector<std::string_view> levelColumns() {
    return {"level", "value", "dBm", "rssi"};
}

mrl::Json studyIn(const std::string& path) {
    const std::string text = tesk5::readInputFile(path, LARGEST_STUDY);
    try {
        Json study = mrl::parseJson(text);
        if (study.is_object() && study.contains("studyVersion") &&
            study["studyVersion"] == STUDY_VERSION) {
            return study;
        }
    } catch (const mrl::JsonFailure&) {
        // No study either.
    }
    refuseStudy(path);
}

double gaugeDeviation(const std::string& path) {
    const Json study = studyIn(path);
    const Json::json_pointer deviation("/variations/gauge/deviation/value");
    if (!study.contains(deviation) || !study[deviation].is_number() ||
        study[deviation].get<double>() < 0) {
        refuseStudy(path);
    }
    return study[deviation].get<double>();
}

const char* sourceName(gauge::Source source) {
    constexpr const char* NAMES[] = {
        "gauge", "repeatability", "reproducibility", "operators", "interaction", "parts", "total"};
    return NAMES[static_cast<std::size_t>(source)];
}

const char* ratingName(gauge::Rating rating) {
    constexpr const char* NAMES[] = {"good", "conditional", "unusable"};
    return NAMES[static_cast<std::size_t>(rating)];
}

StudyReadings studyReadings(const std::string& path) {
    const tables::TableFile file(path);
    const std::size_t partColumn = file.column({"part", "unit", "serial"});
    const std::optional<std::size_t> operatorColumn =
        file.optionalColumn({"operator", "appraiser"});
    const std::vector<double> levels = file.numbers(file.column(levelColumns()));
    Names partNames;
    Names operatorNames;
    std::vector<Record> records;
    records.reserve(levels.size());
    for (std::size_t row = 0; row < levels.size(); ++row) {
        records.push_back(
            {partNames.placeOf(file.table().text(row, partColumn)),
             operatorNames.placeOf(operatorColumn ? file.table().text(row, *operatorColumn) : ""),
             levels[row]});
    }
    const std::vector<std::string>& parts = partNames.all();
    const std::vector<std::string>& operators = operatorNames.all();
    gauge::Design design{.parts = parts.size(), .operators = operators.size(), .trials = 0};
    // Of the cells that are there: a wrong column can make far more of them than there are
    // readings.
    std::map<std::size_t, std::size_t> counts;
    for (const Record& record : records) {
        std::size_t& count = counts[record.part * design.operators + record.op];
        design.trials = std::max(design.trials, ++count);
    }
    if (design.parts < 2 || design.trials < 2) {
        throw BadInput{
            message("STUDY_TOO_SMALL",
                    {{"File", path}, {"Parts", design.parts}, {"Trials", design.trials}})};
    }
    for (std::size_t cell = 0; cell < design.cells(); ++cell) {
        if (counts[cell] != design.trials) {
            throw BadInput{
                message("STUDY_CELL_INCOMPLETE", {{"File", path},
                                                  {"Part", parts[cell / design.operators]},
                                                  {"Operator", operators[cell % design.operators]},
                                                  {"Count", counts[cell]},
                                                  {"Trials", design.trials}})};
        }
    }
    StudyReadings data{gauge::CrossedReadings(design), parts, operators};
    // From here on the trials that are still to come.
    for (const Record& record : records) {
        std::size_t& left = counts[record.part * design.operators + record.op];
        data.readings.at(record.part, record.op, design.trials - left) = record.level;
        --left;
    }
    return data;
}

StudyReadings readingsOfOnePart(const std::vector<double>& levels) {
    StudyReadings data{
        gauge::CrossedReadings({.parts = 1, .operators = 1, .trials = levels.size()}),
        {"1"},
        {"1"}};
    for (std::size_t trial = 0; trial < levels.size(); ++trial) {
        data.readings.at(0, 0, trial) = levels[trial];
    }
    return data;
}

std::string studyCsv(const StudyReadings& data) {
    std::string text = "part,operator,trial,level\r\n";
    const gauge::Design& design = data.readings.design();
    for (std::size_t part = 0; part < design.parts; ++part) {
        for (std::size_t op = 0; op < design.operators; ++op) {
            const auto cell = data.readings.cell(part, op);
            for (std::size_t trial = 0; trial < design.trials; ++trial) {
                text += quoted(data.parts[part]) + "," + quoted(data.operators[op]) + "," +
                        std::to_string(trial + 1) + "," + Json(cell[trial]).dump() + "\r\n";
            }
        }
    }
    return text;
}

Json studyJson(const StudyResult& result) {
    const auto& [data, options, study, byHand, assumptions] = result;
    const std::optional<gauge::Rating> inTolerance = ratingInTolerance(study);
    Json file = beginning(data.readings.design(), options.confidence, options.tolerance);
    file["anova"] = {{"crossed", json(study.anova.full)},
                     {"used", json(study.anova.used)},
                     {"interactionPooled", study.anova.isPooled}};
    file["variations"] = variationsOf(study);
    file["categories"] = {{"count", study.categories.count},
                          {"ratio", json(study.categories.ratio)}};
    file["rating"] = {
        {"inStudy", ratingName(ratingInStudy(study))},
        {"inTolerance", inTolerance ? Json(ratingName(*inTolerance)) : Json(nullptr)}};
    file["averageAndRange"] = json(byHand);
    file["assumptions"] = json(assumptions);
    file["readings"] = readingsOf(data);
    return file;
}

Json typeOneJson(const TypeOneResult& result) {
    const auto& [data, options, study] = result;
    Json file = beginning(data.readings.design(), options.confidence, options.tolerance);
    file["typeOne"] = {{"reference", options.reference},
                       {"mean", study.mean},
                       {"deviation", study.deviation},
                       {"bias",
                        {{"value", study.bias},
                         {"low", study.biasInterval.low},
                         {"high", study.biasInterval.high}}},
                       {"biasP", json(study.biasPValue)},
                       {"cg", json(study.cg)},
                       {"cgk", json(study.cgk)}};
    file["readings"] = readingsOf(data);
    return file;
}

} // namespace study
