#include <gauge/AverageRange.h>

#include <gauge/RangeConstants.h>
#include <statistics/Moments.h>

#include <algorithm>
#include <cmath>

namespace gauge {

namespace {

// With more ranges than this the published constants no longer depend on their number.
constexpr std::size_t MOST_GROUPS = 15;

double divisor(std::size_t size, std::size_t groups) {
    return groups > MOST_GROUPS ? meanRange(size) : meanRangeOfGroups(size, groups);
}

} // namespace

AverageRange averageAndRange(const CrossedReadings& readings) {
    const Design& design = readings.design();
    std::vector<double> ranges;
    std::vector<double> partMeans;
    std::vector<double> operatorMeans;
    for (std::size_t part = 0; part < design.parts; ++part) {
        partMeans.push_back(statistics::mean(readings.part(part)));
        for (std::size_t op = 0; op < design.operators; ++op) {
            ranges.push_back(statistics::range(readings.cell(part, op)));
        }
    }
    for (std::size_t op = 0; op < design.operators; ++op) {
        operatorMeans.push_back(statistics::mean(readings.byOperator(op)));
    }
    AverageRange found;
    found.meanRange = statistics::mean(ranges);
    found.operatorRange = statistics::range(operatorMeans);
    found.partRange = statistics::range(partMeans);
    found.repeatability = found.meanRange / divisor(design.trials, design.cells());
    if (design.operators > 1) {
        const double seen = found.operatorRange / divisor(design.operators, 1);
        // The operators' means scatter by repeatability too.
        const double byRepetition = found.repeatability * found.repeatability /
                                    static_cast<double>(design.parts * design.trials);
        found.reproducibility = std::sqrt(std::max(seen * seen - byRepetition, 0.0));
    }
    found.gauge = std::hypot(found.repeatability, found.reproducibility);
    found.parts = found.partRange / divisor(design.parts, 1);
    found.total = std::hypot(found.gauge, found.parts);
    return found;
}

} // namespace gauge
