#include <study/StudyText.h>

#include <tesk5/TextLayout.h>
#include <tesk5/Texts.h>

#include <mrl/DisplayWidth.h>

#include <algorithm>
#include <array>

namespace study {

namespace {

using gauge::Estimate;
using gauge::Rating;
using gauge::Source;
using gauge::Study;
using tesk5::message;
using tesk5::Number;
using tesk5::quantity;

constexpr int COLUMNS = 5;

using Row = std::array<std::string, COLUMNS>;

// In the order of gauge::Source.
constexpr const char* SOURCES[] = {
    "STUDY_GAUGE",     "STUDY_REPEATABILITY", "STUDY_REPRODUCIBILITY",
    "STUDY_OPERATORS", "STUDY_INTERACTION",   "STUDY_PARTS",
    "STUDY_TOTAL"};

Row rowOf(const Study& study, std::size_t source) {
    const gauge::Variation& variation = study.variations[source];
    return {message(SOURCES[source]), numberText(variation.deviation.value, 3),
            intervalText(variation.deviation, 3), numberText(variation.ofStudy.value, 1, "%"),
            variation.ofTolerance ? numberText(variation.ofTolerance->value, 1, "%") : ""};
}

std::vector<std::string> tableOf(const Study& study, const gauge::StudyOptions& options) {
    std::vector<Row> rows = {{message("STUDY_SOURCE"), message("STUDY_DEVIATION"),
                              numberText(100 * options.confidence, 0, "%"),
                              message("STUDY_OF_STUDY"),
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

void append(std::vector<std::string>& lines, const std::vector<std::string>& more) {
    lines.insert(lines.end(), more.begin(), more.end());
}

} // namespace

std::string numberText(const Number& number, const char* unit) {
    return tesk5::fillPlaceholders("{Number}", {{"Number", quantity(number, unit)}});
}

std::string numberText(double number, int decimals, const char* unit) {
    return numberText(Number::rounded(number, decimals), unit);
}

std::string intervalText(const Estimate& estimate, int decimals) {
    return message("STUDY_INTERVAL",
                   {{"Low", quantity(Number::rounded(estimate.low, decimals), "")},
                    {"High", quantity(Number::rounded(estimate.high, decimals), "")}});
}

std::string sourceText(Source source) {
    return unindented(message(SOURCES[static_cast<std::size_t>(source)]));
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

std::string byHandText(const gauge::AverageRange& byHand) {
    return message("STUDY_BY_HAND", {{"Gauge", quantity(Number::rounded(byHand.gauge, 3), "")},
                                     {"Parts", quantity(Number::rounded(byHand.parts, 3), "")}});
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
    // Percents of no variation say nothing.
    if (study[Source::TOTAL].deviation.value == 0) {
        return {message("STUDY_ALL_THE_SAME")};
    }
    if (study[Source::GAUGE].deviation.value == 0) {
        return {message("STUDY_NO_SCATTER")};
    }
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

std::string designText(const gauge::Design& design) {
    return message(
        "STUDY_DESIGN",
        {{"Parts", design.parts}, {"Operators", design.operators}, {"Trials", design.trials}});
}

std::vector<std::string> studyReport(const StudyResult& result) {
    std::vector<std::string> lines = {designText(result.data.readings.design()), ""};
    append(lines, tableOf(result.study, result.options));
    lines.emplace_back();
    append(lines, testsOf(result.study));
    lines.push_back(byHandText(result.byHand));
    append(lines, warningsOf(result.assumptions));
    lines.emplace_back();
    append(lines, verdictsOf(result.study));
    return lines;
}

} // namespace study
