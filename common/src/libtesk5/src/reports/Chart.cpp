#include "reports/Chart.h"

#include <tesk5/ChartAxis.h>

#include "texts/NumberText.h"

#include <algorithm>

namespace tesk5 {

namespace {

constexpr double WHOLE_SIDE = 100;

ChartAxis valuesOf(const Series& series) {
    std::vector<double> values;
    for (const SeriesPoint& point : series.points) {
        values.push_back(point.value.toDouble());
    }
    for (const Limit& limit : series.head.limits) {
        values.push_back(limit.value.toDouble());
    }
    if (series.head.median) {
        values.push_back(series.head.median->toDouble());
    }
    const auto [lowest, highest] = std::minmax_element(values.begin(), values.end());
    return {*lowest, *highest};
}

ChartAxis timesOf(const Series& series) {
    const auto last = std::max_element(
        series.points.begin(), series.points.end(),
        [](const SeriesPoint& a, const SeriesPoint& b) { return a.seconds < b.seconds; });
    return {0, last->seconds};
}

} // namespace

Chart chartOf(const Series& series, bool mirrored) {
    const ChartAxis times = timesOf(series);
    const ChartAxis values = valuesOf(series);
    const auto x = [&](double seconds) {
        const double share = times.share(seconds);
        return mirrored ? 1 - share : share;
    };
    const auto y = [&](const Number& value) { return 1 - values.share(value.toDouble()); };
    Chart chart;
    for (const Number& tick : times.ticks()) {
        chart.times.push_back({WHOLE_SIDE * x(tick.toDouble()), tick});
    }
    for (const Number& tick : values.ticks()) {
        chart.values.push_back({WHOLE_SIDE * y(tick), tick});
    }
    for (const Limit& limit : series.head.limits) {
        chart.limits.push_back({WHOLE_SIDE * y(limit.value), limit.severity});
    }
    if (series.head.median) {
        chart.medianY = WHOLE_SIDE * y(*series.head.median);
    }
    for (const SeriesPoint& point : series.points) {
        const std::string place = fixedPoint(Chart::SIDE * x(point.seconds), 1) + " " +
                                  fixedPoint(Chart::SIDE * y(point.value), 1);
        chart.curve += (chart.curve.empty() ? "M" : "L") + place;
        if (series.points.size() <= Chart::MOST_DOTS) {
            chart.dots += "M" + place + "h0";
        }
    }
    return chart;
}

} // namespace tesk5
