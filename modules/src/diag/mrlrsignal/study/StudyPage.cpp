// Makes the values of res/study_page.html. Names from tables reach it as data, which is escaped.
#include <study/StudyPage.h>

#include <gauge/RangeConstants.h>
#include <study/StudyText.h>

#include <tesk5/ChartAxis.h>
#include <tesk5/Page.h>
#include <tesk5/Texts.h>

#include <mrl/DisplayWidth.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>
#include <span>
#include <utility>

namespace study {

namespace {

using gauge::Design;
using gauge::Source;
using mrl::Json;
using tesk5::message;
using tesk5::percentOf;

constexpr double WHOLE = 100;
constexpr double SIDE = 1000; // of the square that curves are drawn in
constexpr int DECIMALS = 2;

double mean(std::span<const double> values) {
    return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

double rangeOf(std::span<const double> values) {
    const auto [low, high] = std::minmax_element(values.begin(), values.end());
    return *high - *low;
}

// How each operator's line looks; from the seventh on they repeat.
std::string kindOf(std::size_t op) {
    constexpr std::size_t KINDS = 6;
    return "c" + std::to_string(op % KINDS + 1);
}

std::string place(double x, double y) {
    return std::to_string(std::lround(SIDE * x)) + " " + std::to_string(std::lround(SIDE * y));
}

struct Point {
    double x = 0; // share of the width
    double value = 0;
};

// A drawing of values over columns.
class Plot {
public:
    Plot(const char* title, const char* unit, const std::vector<double>& extent)
        : m_values(*std::min_element(extent.begin(), extent.end()),
                   *std::max_element(extent.begin(), extent.end())),
          m_json({{"title", message(title)},
                  {"unit", unit},
                  {"values", Json::array()},
                  {"borders", Json::array()},
                  {"columns", Json::array()},
                  {"limits", Json::array()},
                  {"middle", nullptr},
                  {"curves", Json::array()},
                  {"dots", ""},
                  {"facts", Json::array()},
                  {"names", Json::array()}}) {
        for (const tesk5::Number& tick : m_values.ticks()) {
            m_json["values"].push_back(
                {{"y", percentOf(WHOLE * y(tick.toDouble()))}, {"text", numberText(tick)}});
        }
    }

    void addColumn(double x, const std::string& text) {
        m_json["columns"].push_back({{"x", percentOf(WHOLE * x)}, {"text", text}});
    }
    void addBorder(double x) { m_json["borders"].push_back({{"x", percentOf(WHOLE * x)}}); }
    void addLimit(double value) {
        m_json["limits"].push_back({{"y", percentOf(WHOLE * y(value))}});
    }
    void setMiddle(double value) { m_json["middle"] = {{"y", percentOf(WHOLE * y(value))}}; }
    void addFact(const char* key, double value) {
        m_json["facts"].push_back(message(key, {{"Value", numberText(value, DECIMALS, "dB")}}));
    }
    void addName(const std::string& kind, const std::string& name) {
        m_json["names"].push_back({{"kind", kind}, {"name", name}});
    }
    void addCurve(const std::string& kind, const std::vector<Point>& points) {
        std::string path;
        for (const Point& point : points) {
            path += (path.empty() ? "M" : "L") + place(point.x, y(point.value));
        }
        m_json["curves"].push_back({{"kind", kind}, {"path", path}});
    }
    void addDots(const std::vector<Point>& points) {
        std::string dots = m_json["dots"].get<std::string>();
        for (const Point& point : points) {
            dots += "M" + place(point.x, y(point.value)) + "h0";
        }
        m_json["dots"] = dots;
    }

    const Json& json() const { return m_json; }

private:
    double y(double value) const { return 1 - m_values.share(value); }

    tesk5::ChartAxis m_values;
    Json m_json;
};

std::string operatorText(const StudyReadings& data, std::size_t op) {
    const std::string& name = data.operators[op];
    return name.empty() ? std::string() : message("STUDY_PAGE_OPERATOR_NAMED", {{"Name", name}});
}

// What stands below the operators' panels: where there are many, the beginnings of their names.
std::vector<std::string> panelTexts(const StudyReadings& data) {
    constexpr std::size_t OF_PAGE = 80; // columns of text that fit side by side
    const std::size_t fitting = std::max<std::size_t>(OF_PAGE / data.operators.size(), 2) - 1;
    std::vector<std::string> texts;
    for (std::size_t op = 0; op < data.operators.size(); ++op) {
        texts.push_back(operatorText(data, op));
    }
    if (std::ranges::any_of(
            texts, [fitting](const std::string& text) { return mrl::columnsOf(text) > fitting; })) {
        std::ranges::transform(data.operators, texts.begin(), [fitting](const std::string& name) {
            return mrl::fittedToColumns(name, fitting);
        });
    }
    return texts;
}

// A value of each cell, one panel an operator.
void addPanels(Plot& plot, const StudyReadings& data,
               const std::function<double(std::span<const double>)>& value) {
    const Design& design = data.readings.design();
    const double panel = 1 / static_cast<double>(design.operators);
    const std::vector<std::string> texts = panelTexts(data);
    for (std::size_t op = 0; op < design.operators; ++op) {
        const double begin = panel * static_cast<double>(op);
        std::vector<Point> points;
        for (std::size_t part = 0; part < design.parts; ++part) {
            points.push_back({.x = begin + panel * (static_cast<double>(part) + 0.5) /
                                               static_cast<double>(design.parts),
                              .value = value(data.readings.cell(part, op))});
        }
        plot.addColumn(begin + panel / 2, texts[op]);
        plot.addCurve(kindOf(op), points);
        plot.addDots(points);
        if (op > 0) {
            plot.addBorder(begin);
        }
    }
}

// The parts by their numbers; where there are many, not each has its number.
double columnOf(std::size_t part, const Design& design) {
    return (static_cast<double>(part) + 0.5) / static_cast<double>(design.parts);
}

void addPartNumbers(Plot& plot, const Design& design) {
    constexpr std::size_t MOST = 25;
    const std::size_t every = (design.parts + MOST - 1) / MOST;
    for (std::size_t part = 0; part < design.parts; part += every) {
        plot.addColumn(columnOf(part, design), std::to_string(part + 1));
    }
}

template <typename Value>
std::vector<double> ofCells(const gauge::CrossedReadings& readings, Value value) {
    std::vector<double> values;
    for (std::size_t part = 0; part < readings.design().parts; ++part) {
        for (std::size_t op = 0; op < readings.design().operators; ++op) {
            values.push_back(value(readings.cell(part, op)));
        }
    }
    return values;
}

Json rangesPlot(const StudyResult& result) {
    const double limit = result.assumptions.rangeLimit;
    std::vector<double> extent = ofCells(result.data.readings, &rangeOf);
    extent.insert(extent.end(), {0, limit});
    Plot plot("STUDY_PAGE_RANGES", "dB", extent);
    addPanels(plot, result.data, &rangeOf);
    plot.addLimit(limit);
    plot.setMiddle(result.byHand.meanRange);
    plot.addFact("STUDY_PAGE_MEAN_RANGE", result.byHand.meanRange);
    plot.addFact("STUDY_PAGE_LIMIT", limit);
    return plot.json();
}

// Averages outside the limits show what the bench tells apart: here it is good to have many.
Json averagesPlot(const StudyResult& result) {
    constexpr double DEVIATIONS = 3;
    const Design& design = result.data.readings.design();
    const double middle = mean(result.data.readings.all());
    const double distance = DEVIATIONS * result.byHand.meanRange / gauge::meanRange(design.trials) /
                            std::sqrt(static_cast<double>(design.trials));
    std::vector<double> averages = ofCells(result.data.readings, &mean);
    const auto outside = std::count_if(averages.begin(), averages.end(), [&](double average) {
        return std::abs(average - middle) > distance;
    });
    const double percent =
        WHOLE * static_cast<double>(outside) / static_cast<double>(design.cells());
    averages.insert(averages.end(), {middle - distance, middle + distance});
    Plot plot("STUDY_PAGE_AVERAGES", "dBm", averages);
    addPanels(plot, result.data, &mean);
    plot.addLimit(middle - distance);
    plot.addLimit(middle + distance);
    plot.setMiddle(middle);
    Json json = plot.json();
    json["facts"].push_back(
        message("STUDY_PAGE_OUTSIDE", {{"Percent", numberText(percent, 0, "%")}}));
    return json;
}

Json partsPlot(const StudyResult& result) {
    const gauge::CrossedReadings& readings = result.data.readings;
    const Design& design = readings.design();
    Plot plot("STUDY_PAGE_BY_PART", "dBm", {readings.all().begin(), readings.all().end()});
    addPartNumbers(plot, design);
    std::vector<Point> averages;
    for (std::size_t part = 0; part < design.parts; ++part) {
        averages.push_back({.x = columnOf(part, design), .value = mean(readings.part(part))});
        for (const double level : readings.part(part)) {
            plot.addDots({{.x = columnOf(part, design), .value = level}});
        }
    }
    plot.addCurve("", averages);
    return plot.json();
}

Json interactionPlot(const StudyResult& result) {
    const gauge::CrossedReadings& readings = result.data.readings;
    const Design& design = readings.design();
    Plot plot("STUDY_PAGE_INTERACTION", "dBm", ofCells(readings, &mean));
    addPartNumbers(plot, design);
    for (std::size_t op = 0; op < design.operators; ++op) {
        std::vector<Point> averages;
        for (std::size_t part = 0; part < design.parts; ++part) {
            averages.push_back(
                {.x = columnOf(part, design), .value = mean(readings.cell(part, op))});
        }
        plot.addCurve(kindOf(op), averages);
        plot.addName(kindOf(op), operatorText(result.data, op));
    }
    return plot.json();
}

Json sourcesJson(const StudyResult& result, bool mirrored) {
    Json sources = Json::array();
    for (std::size_t i = 0; i < gauge::SOURCES; ++i) {
        const gauge::Variation& variation = result.study.variations[i];
        const double width = std::clamp(variation.ofStudy.value, 0.0, WHOLE);
        sources.push_back(
            {{"name", sourceText(static_cast<Source>(i))},
             {"deviation", numberText(variation.deviation.value, 3)},
             {"interval", intervalText(variation.deviation, 3)},
             {"contribution", numberText(variation.contribution, 1, "%")},
             {"ofStudy", numberText(variation.ofStudy.value, 1, "%")},
             {"ofTolerance", variation.ofTolerance
                                 ? Json(numberText(variation.ofTolerance->value, 1, "%"))
                                 : Json(nullptr)},
             {"bar",
              {{"x", percentOf(mirrored ? WHOLE - width : 0)}, {"width", percentOf(width)}}}});
    }
    return sources;
}

Json anovaJson(const gauge::Anova& anova) {
    Json rows = Json::array();
    const auto add = [&rows](Source source, const gauge::AnovaRow& row) {
        const auto number = [](std::optional<double> value) {
            return value ? numberText(*value, 3) : std::string();
        };
        rows.push_back({{"name", sourceText(source)},
                        {"degrees", numberText(row.degrees, 0)},
                        {"squares", number(row.sumOfSquares)},
                        {"meanSquare", number(row.meanSquare)},
                        {"f", number(row.f)},
                        {"p", number(row.pValue)}});
    };
    const gauge::AnovaTable& table = anova.isPooled ? anova.used : anova.full;
    add(Source::PARTS, table.parts);
    add(Source::OPERATORS, table.operators);
    add(Source::INTERACTION, anova.full.interaction);
    add(Source::REPEATABILITY, table.repeatability);
    return rows;
}

Json cellsJson(const StudyReadings& data) {
    Json cells = Json::array();
    const Design& design = data.readings.design();
    for (std::size_t part = 0; part < design.parts; ++part) {
        for (std::size_t op = 0; op < design.operators; ++op) {
            std::string levels;
            for (const double level : data.readings.cell(part, op)) {
                levels += (levels.empty() ? "" : "; ") + numberText(level, DECIMALS);
            }
            cells.push_back({{"number", part + 1},
                             {"part", data.parts[part]},
                             {"operator", data.operators[op]},
                             {"levels", levels}});
        }
    }
    return cells;
}

// For the style sheet and for the mark.
void setKind(Json& json, const char* kind) {
    json["kind"] = kind;
    json["is"] = Json::object();
    for (const char* const known : {"good", "warning", "bad", "none"}) {
        json["is"][known] = std::string_view(known) == kind;
    }
}

} // namespace

std::string studyPage(const StudyResult& result) {
    struct Word {
        const char* kind;
        const char* key;
    };
    // In the order of gauge::Rating.
    constexpr Word WORDS[] = {{"good", "STUDY_PAGE_GOOD"},
                              {"warning", "STUDY_PAGE_CONDITIONAL"},
                              {"bad", "STUDY_PAGE_UNUSABLE"}};
    const Word& word = WORDS[static_cast<std::size_t>(ratingInStudy(result.study))];
    const gauge::Anova& anova = result.study.anova;
    Json page;
    setKind(page, word.kind);
    page["word"] = message(word.key);
    page["verdicts"] = verdictsOf(result.study);
    page["design"] = designText(result.data.readings.design());
    page["byHand"] = byHandText(result.byHand);
    page["warnings"] = Json::array();
    for (const std::string& sentence : warningsOf(result.assumptions)) {
        Json warning = {{"sentence", sentence}};
        setKind(warning, "warning");
        page["warnings"].push_back(std::move(warning));
    }
    page["confidence"] = numberText(WHOLE * result.options.confidence, 0, "%");
    page["hasTolerance"] = result.options.tolerance.has_value();
    page["sources"] = sourcesJson(result, tesk5::isPageMirrored());
    page["anova"] = anovaJson(anova);
    page["pooled"] = anova.isPooled && anova.full.interaction.pValue ? Json(message("STUDY_POOLED"))
                                                                     : Json(nullptr);
    page["plots"] = Json::array(
        {rangesPlot(result), averagesPlot(result), partsPlot(result), interactionPlot(result)});
    page["cells"] = cellsJson(result.data);
    return tesk5::pageOf(message("STUDY_PAGE_TITLE"), studyPageTemplate(), page);
}

} // namespace study
