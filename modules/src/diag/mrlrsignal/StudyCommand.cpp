#include "StudyCommand.h"

#include "CommandOptions.h"
#include "StudyFile.h"
#include "TableFile.h"
#include "TypeOneReport.h"

#include <tesk5/Number.h>
#include <tesk5/ReportFile.h>
#include <tesk5/RunContext.h>
#include <tesk5/TextLayout.h>
#include <tesk5/Texts.h>

#include <gauge/TypeOne.h>

#include <mrl/DisplayWidth.h>

#include <algorithm>
#include <array>

namespace {

using gauge::Estimate;
using gauge::Rating;
using gauge::Source;
using gauge::Study;
using tesk5::CommandCall;
using tesk5::message;
using tesk5::Number;

constexpr const char* TOLERANCE = "--tolerance";
constexpr const char* TYPE_ONE = "--type1";
constexpr const char* REFERENCE = "--reference";
constexpr const char* FILE_OPTION = "--file";
constexpr int WIDEST_TOLERANCE = 200;
constexpr int COLUMNS = 5;

using Row = std::array<std::string, COLUMNS>;

// As the language in force writes it.
std::string text(double number, int decimals, const char* unit = "") {
    return tesk5::fillPlaceholders("{Number}",
                                   {{"Number", quantity(Number::rounded(number, decimals), unit)}});
}

std::string interval(const Estimate& estimate, int decimals) {
    return message("STUDY_INTERVAL",
                   {{"Low", quantity(Number::rounded(estimate.low, decimals), "")},
                    {"High", quantity(Number::rounded(estimate.high, decimals), "")}});
}

// In the order of gauge::Source.
constexpr const char* SOURCES[] = {
    "STUDY_GAUGE",     "STUDY_REPEATABILITY", "STUDY_REPRODUCIBILITY",
    "STUDY_OPERATORS", "STUDY_INTERACTION",   "STUDY_PARTS",
    "STUDY_TOTAL"};

Row rowOf(const Study& study, std::size_t source) {
    const gauge::Variation& variation = study.variations[source];
    return {message(SOURCES[source]), text(variation.deviation.value, 3),
            interval(variation.deviation, 3), text(variation.ofStudy.value, 1, "%"),
            variation.ofTolerance ? text(variation.ofTolerance->value, 1, "%") : ""};
}

std::vector<std::string> tableOf(const Study& study, const gauge::StudyOptions& options) {
    std::vector<Row> rows = {{message("STUDY_SOURCE"), message("STUDY_DEVIATION"),
                              text(100 * options.confidence, 0, "%"), message("STUDY_OF_STUDY"),
                              options.tolerance ? message("STUDY_OF_TOLERANCE") : ""}};
    for (std::size_t source = 0; source < gauge::SOURCES; ++source) {
        rows.push_back(rowOf(study, source));
    }
    std::vector<std::string> lines(rows.size());
    for (std::size_t column = 0; column < COLUMNS; ++column) {
        std::size_t width = 0;
        for (const Row& row : rows) {
            width = std::max(width, mrl::columnsOf(row[column]));
        }
        for (std::size_t i = 0; i < rows.size(); ++i) {
            lines[i] += tesk5::padded(rows[i][column], width + 2);
        }
    }
    for (std::string& line : lines) {
        line.erase(line.find_last_not_of(' ') + 1);
    }
    return lines;
}

// The names of sources are indented for the table.
std::string unindented(const std::string& name) {
    return name.substr(std::min(name.find_first_not_of(' '), name.size()));
}

std::string testOf(const char* source, const gauge::AnovaRow& row) {
    return row.f ? message("STUDY_TEST", {{"Source", unindented(message(source))},
                                          {"F", quantity(Number::rounded(*row.f, 2), "")},
                                          {"P", quantity(Number::rounded(*row.pValue, 3), "")}})
                 : std::string();
}

std::vector<std::string> testsOf(const Study& study) {
    const gauge::AnovaTable& table = study.anova.isPooled ? study.anova.used : study.anova.full;
    std::vector<std::string> lines = {testOf("STUDY_PARTS", table.parts),
                                      testOf("STUDY_OPERATORS", table.operators),
                                      testOf("STUDY_INTERACTION", study.anova.full.interaction)};
    if (study.anova.isPooled && study.anova.full.interaction.pValue) {
        lines.push_back(message("STUDY_POOLED"));
    }
    std::erase(lines, std::string());
    return lines;
}

std::vector<std::string> warningsOf(const gauge::Assumptions& found) {
    std::vector<std::string> lines;
    const auto add = [&lines](bool fails, const char* key, const tesk5::Event::Variables& values) {
        if (fails) {
            lines.push_back(message(key, values));
        }
    };
    const auto p = [](double value) { return quantity(Number::rounded(value, 4), ""); };
    add(found.hasTooFewValues(), "STUDY_FEW_VALUES",
        {{"Step", quantity(Number::rounded(found.step, 2), "dB")},
         {"Count", found.possibleRanges}});
    add(found.drifts(), "STUDY_DRIFTS",
        {{"Change", quantity(Number::rounded(found.driftPerTrial, 2), "dB")},
         {"P", p(found.driftPValue)}});
    add(found.operatorsScatterDifferently(), "STUDY_OPERATORS_SCATTER",
        {{"P", p(found.operatorScatterPValue)}});
    add(found.partsScatterDifferently(), "STUDY_PARTS_SCATTER",
        {{"P", p(found.partScatterPValue)}});
    add(found.rangesAboveLimit > 0, "STUDY_RANGES_ABOVE",
        {{"Count", found.rangesAboveLimit},
         {"Limit", quantity(Number::rounded(found.rangeLimit, 2), "dB")}});
    return lines;
}

std::vector<std::string> verdictsOf(const Study& study) {
    // In the order of Rating.
    constexpr const char* IN_STUDY[] = {"STUDY_GOOD", "STUDY_CONDITIONAL", "STUDY_UNUSABLE"};
    const auto percent = [](double value) { return quantity(Number::rounded(value, 1), "%"); };
    const gauge::Variation& gauge = study[Source::GAUGE];
    std::vector<std::string> lines = {message(
        IN_STUDY[static_cast<std::size_t>(ratingInStudy(study))],
        {{"Percent", percent(gauge.ofStudy.value)}, {"Categories", study.categories.count}})};
    if (const std::optional<Rating> rating = ratingInTolerance(study)) {
        constexpr const char* IN_TOLERANCE[] = {
            "STUDY_TOLERANCE_GOOD", "STUDY_TOLERANCE_CONDITIONAL", "STUDY_TOLERANCE_UNUSABLE"};
        lines.push_back(message(IN_TOLERANCE[static_cast<std::size_t>(*rating)],
                                {{"Percent", percent(gauge.ofTolerance->value)}}));
    }
    return lines;
}

std::optional<double> toleranceOf(const CommandCall& call) {
    const std::optional<double> width =
        decimalOption(call, TOLERANCE, WIDEST_TOLERANCE, "STUDY_TOLERANCE_REFUSED");
    return width && *width > 0 ? width : std::nullopt;
}

double referenceOf(const CommandCall& call) {
    constexpr int LOWEST = -120;
    const std::optional<Number> number = Number::parse(givenOption(call, REFERENCE));
    if (!number || *number <= Number(LOWEST) || *number >= Number(0)) {
        throw tesk5::BadInput{message("TYPE1_REFERENCE_REFUSED")};
    }
    return number->toDouble();
}

int runTypeOne(const CommandCall& call, tesk5::RunContext& context) {
    const std::string path = neededOption(call, FROM_OPTION, "study");
    const double reference = referenceOf(call);
    const std::optional<double> tolerance = toleranceOf(call);
    const TableFile file(path);
    const std::vector<double> readings = file.numbers(file.column(levelColumns()));
    if (readings.size() < gauge::TYPE_ONE_READINGS) {
        throw tesk5::BadInput{message(
            "TYPE1_TOO_FEW",
            {{"File", path}, {"Least", gauge::TYPE_ONE_READINGS}, {"Count", readings.size()}})};
    }
    printLines(context, typeOneReport(readings, reference, tolerance));
    return 0;
}

int runStudy(const CommandCall& call, tesk5::RunContext& context) {
    if (call.options.contains(TYPE_ONE)) {
        return runTypeOne(call, context);
    }
    const StudyReadings data = studyReadings(neededOption(call, FROM_OPTION, "study"));
    gauge::StudyOptions options;
    options.tolerance = toleranceOf(call);
    std::optional<tesk5::ReportFile> file;
    const std::string path = givenOption(call, FILE_OPTION);
    if (!path.empty()) {
        file.emplace(path);
    }
    const Study study = evaluate(data.readings, options);
    const gauge::AverageRange byHand = averageAndRange(data.readings);
    const gauge::Assumptions assumptions = checkAssumptions(data.readings);
    if (file) {
        file->replace(studyJson(data, study, byHand, assumptions, options).dump(2) + "\n");
    }
    const gauge::Design& design = data.readings.design();
    printLines(context, {message("STUDY_DESIGN", {{"Parts", design.parts},
                                                  {"Operators", design.operators},
                                                  {"Trials", design.trials}}),
                         ""});
    printLines(context, tableOf(study, options));
    printLines(context, {""});
    printLines(context, testsOf(study));
    printLines(context, {message("STUDY_BY_HAND",
                                 {{"Gauge", quantity(Number::rounded(byHand.gauge, 3), "")},
                                  {"Parts", quantity(Number::rounded(byHand.parts, 3), "")}})});
    printLines(context, warningsOf(assumptions));
    printLines(context, {""});
    printLines(context, verdictsOf(study));
    if (file) {
        printLines(context, {message("COMMAND_WRITTEN", {{"File", path}})});
    }
    return 0;
}

} // namespace

tesk5::ModuleCommand studyCommand() {
    constexpr const char* TYPE_ONE_EXAMPLE = "study --type1 --reference=-50 --from readings.csv";
    return {
        .name = "study",
        .arguments = "",
        .help = "HELP_STUDY",
        .examples = {"study --from readings.csv --tolerance 20 --file bench.study.json",
                     TYPE_ONE_EXAMPLE},
        .run = &runStudy,
        .options = {{FROM_OPTION, "FILE", "HELP_FROM", FROM_EXAMPLE},
                    {TOLERANCE, "DB", "HELP_TOLERANCE", "study --from readings.csv --tolerance 20"},
                    {TYPE_ONE, nullptr, "HELP_TYPE1", TYPE_ONE_EXAMPLE},
                    {REFERENCE, "LEVEL", "HELP_REFERENCE", TYPE_ONE_EXAMPLE},
                    {FILE_OPTION, "FILE", "HELP_STUDY_FILE",
                     "study --from readings.csv --file bench.study.json"}},
        .parameters = {},
        .test = nullptr};
}
