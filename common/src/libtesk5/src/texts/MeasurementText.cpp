#include "texts/MeasurementText.h"

#include "texts/Lists.h"
#include "texts/NumberText.h"

#include <algorithm>
#include <cmath>

namespace tesk5 {

namespace {

// The texts about a limit, by its severity and by where a value keeps it.
struct LimitWords {
    Severity severity;
    Limit::Kept where;
    const char* limit;
    const char* kept;
    const char* broken;
};
using enum Limit::Kept;
constexpr LimitWords limitWords[] = {
    {Severity::warning, ABOVE, "REPORT_LIMIT_WARNING", "MEASUREMENT_ABOVE_WARNING",
     "MEASUREMENT_AT_WARNING"},
    {Severity::warning, AT_LEAST, "REPORT_LIMIT_WARNING_BELOW", "MEASUREMENT_AT_LEAST_WARNING",
     "MEASUREMENT_BELOW_WARNING"},
    {Severity::warning, AT_MOST, "REPORT_LIMIT_WARNING_ABOVE", "MEASUREMENT_AT_WARNING",
     "MEASUREMENT_ABOVE_WARNING"},
    {Severity::error, ABOVE, "REPORT_LIMIT_FAILING", "MEASUREMENT_ABOVE_FAILING",
     "MEASUREMENT_AT_FAILING"},
    {Severity::error, AT_LEAST, "REPORT_LIMIT_FAILING_BELOW", "MEASUREMENT_AT_LEAST_FAILING",
     "MEASUREMENT_BELOW_FAILING"},
    {Severity::error, AT_MOST, "REPORT_LIMIT_FAILING_ABOVE", "MEASUREMENT_AT_FAILING",
     "MEASUREMENT_ABOVE_FAILING"},
};

std::string wordsOn(const Limit& limit, const TeskString& unit, const char* LimitWords::*words,
                    Fill fill) {
    const auto* const found =
        std::find_if(std::begin(limitWords), std::end(limitWords), [&limit](const auto& row) {
            return row.severity == limit.severity && row.where == limit.kept;
        });
    return fill(found->*words, {{"Limit", withUnit(limit.value, unit)}});
}

} // namespace

std::string measuredText(const Measurement& measurement) {
    return message("MEASUREMENT", {{"Name", translation(measurement.name)},
                                   {"Value", withUnit(measurement.value, measurement.unit)}});
}

std::string comparisonText(const Measurement& measurement, Fill fill) {
    if (const Limit* broken = measurement.brokenLimit()) {
        return wordsOn(*broken, measurement.unit, &LimitWords::broken, fill);
    }
    // The nearest limit suffices: a value that keeps it keeps the others on its side too.
    const Limit* const nearest = measurement.nearestLimit();
    return nearest == nullptr ? std::string()
                              : wordsOn(*nearest, measurement.unit, &LimitWords::kept, fill);
}

std::string figureText(const Figure& figure) {
    return message("MEASUREMENT", {{"Name", translation(figure.name)},
                                   {"Value", withUnit(figure.value, figure.unit)}});
}

std::string limitText(const Limit& limit, const TeskString& unit, Fill fill) {
    return wordsOn(limit, unit, &LimitWords::limit, fill);
}

std::string measurementBar(const Measurement& measurement, std::size_t cells) {
    const auto share = [&measurement](const Number& value) {
        return shareOfScale(value, measurement.lowest, measurement.highest);
    };
    const double length = static_cast<double>(cells);
    const auto filled = static_cast<std::size_t>(std::lround(share(measurement.value) * length));
    std::string bar(filled, '#');
    bar.resize(cells, '.');
    for (const Limit& limit : measurement.limits) {
        const auto place = static_cast<std::size_t>(share(limit.value) * length);
        bar[std::min(place, cells - 1)] = '|';
    }
    return "[" + bar + "]";
}

std::string measurementLine(const Measurement& measurement) {
    constexpr std::size_t CELLS = 25;
    const std::string comparison = comparisonText(measurement);
    return measuredText(measurement) + " " + measurementBar(measurement, CELLS) +
           (comparison.empty() ? "" : " " + comparison);
}

} // namespace tesk5
