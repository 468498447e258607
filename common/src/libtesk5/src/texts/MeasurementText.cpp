#include "texts/MeasurementText.h"

#include <tesk5/Texts.h>

#include "texts/NumberText.h"

#include <algorithm>
#include <cmath>

namespace tesk5 {

namespace {

// The texts about a limit, by its severity.
struct LimitWords {
    Severity severity;
    const char* limit;
    const char* kept;
    const char* broken;
};
constexpr LimitWords limitWords[] = {
    {Severity::warning, "REPORT_LIMIT_WARNING", "MEASUREMENT_ABOVE_WARNING",
     "MEASUREMENT_AT_WARNING"},
    {Severity::error, "REPORT_LIMIT_FAILING", "MEASUREMENT_ABOVE_FAILING",
     "MEASUREMENT_AT_FAILING"},
};

std::string wordsOn(const Limit& limit, const TeskString& unit, const char* LimitWords::*words) {
    const auto* const found =
        std::find_if(std::begin(limitWords), std::end(limitWords),
                     [&limit](const auto& row) { return row.severity == limit.severity; });
    return message(found->*words, {{"Limit", withUnit(limit.value, unit)}});
}

} // namespace

std::string measuredText(const Measurement& measurement) {
    return message("MEASUREMENT", {{"Name", translation(measurement.name)},
                                   {"Value", withUnit(measurement.value, measurement.unit)}});
}

std::string comparisonText(const Measurement& measurement) {
    if (const Limit* broken = measurement.brokenLimit()) {
        return wordsOn(*broken, measurement.unit, &LimitWords::broken);
    }
    // The highest limit suffices: a value above it is above the others too.
    const auto nearest =
        std::max_element(measurement.limits.begin(), measurement.limits.end(),
                         [](const Limit& a, const Limit& b) { return a.value < b.value; });
    return nearest == measurement.limits.end()
               ? std::string()
               : wordsOn(*nearest, measurement.unit, &LimitWords::kept);
}

std::string limitText(const Limit& limit, const TeskString& unit) {
    return wordsOn(limit, unit, &LimitWords::limit);
}

std::string measurementBar(const Measurement& measurement, std::size_t cells) {
    const auto share = [&measurement](mrl::Uint32 value) {
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
