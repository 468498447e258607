#include <study/TypeOneReport.h>

#include <tesk5/Number.h>
#include <tesk5/Texts.h>

#include <gauge/Assumptions.h>
#include <gauge/TypeOne.h>
#include <statistics/Trend.h>

#include <algorithm>

namespace study {

namespace {

using gauge::TypeOne;
using tesk5::message;
using tesk5::Number;
using tesk5::Value;

Value decibels(double number) {
    return quantity(Number::rounded(number, 2), "dB");
}

Value plain(double number, int decimals) {
    return quantity(Number::rounded(number, decimals), "");
}

std::vector<std::string> warningsOf(statistics::Readings readings, double reference) {
    std::vector<std::string> lines;
    const auto [low, high] = std::minmax_element(readings.begin(), readings.end());
    if (reference < *low || reference > *high) {
        lines.push_back(message("TYPE1_OUTSIDE"));
    }
    std::vector<statistics::TimedReading> inOrder(readings.size());
    for (std::size_t i = 0; i < inOrder.size(); ++i) {
        inOrder[i] = {.seconds = static_cast<double>(i), .value = readings[i]};
    }
    const statistics::Trend trend = statistics::trend(inOrder);
    if (trend.pValue < gauge::WARNING_LEVEL) {
        lines.push_back(message(
            "TYPE1_DRIFTS", {{"Change", decibels(trend.change)}, {"P", plain(trend.pValue, 4)}}));
    }
    const double effective = statistics::effectiveReadings(readings);
    if (effective < static_cast<double>(readings.size()) / 2) {
        lines.push_back(message("TYPE1_CORRELATED", {{"Effective", plain(effective, 0)}}));
    }
    return lines;
}

const char* verdictOf(const TypeOne& study) {
    return study.cg->value < gauge::GOOD_CAPABILITY    ? "TYPE1_SCATTERS"
           : study.cgk->value < gauge::GOOD_CAPABILITY ? "TYPE1_IS_OFF"
                                                       : "TYPE1_GOOD";
}

} // namespace

std::vector<std::string> typeOneReport(const TypeOneResult& result) {
    const TypeOne& study = result.study;
    const statistics::Readings readings = result.data.readings.all();
    std::vector<std::string> lines = {
        message("TYPE1_READINGS", {{"Count", readings.size()},
                                   {"Mean", quantity(Number::rounded(study.mean, 2), "dBm")},
                                   {"Deviation", decibels(study.deviation)}})};
    if (!study.biasPValue) {
        lines.push_back(message("TYPE1_ALL_SAME"));
    } else {
        lines.push_back(message("TYPE1_BIAS", {{"Bias", decibels(study.bias)},
                                               {"Low", decibels(study.biasInterval.low)},
                                               {"High", decibels(study.biasInterval.high)}}));
    }
    const std::vector<std::string> warnings = warningsOf(readings, result.options.reference);
    lines.insert(lines.end(), warnings.begin(), warnings.end());
    if (study.cg) {
        lines.push_back(message("TYPE1_CAPABILITY", {{"Cg", plain(study.cg->value, 2)},
                                                     {"CgLeast", plain(study.cg->atLeast, 2)},
                                                     {"Cgk", plain(study.cgk->value, 2)},
                                                     {"CgkLeast", plain(study.cgk->atLeast, 2)}}));
        lines.push_back(message(verdictOf(study)));
    }
    return lines;
}

} // namespace study
