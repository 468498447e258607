#include "reports/Chart.h"

#include "texts/NumberText.h"

#include <algorithm>
#include <cmath>

namespace tesk5 {

namespace {

constexpr double WHOLE = 100;

// An axis from one tick to another, with ticks at round numbers: 1, 2 or 5 times a power of ten.
class Axis {
public:
    Axis(double lowest, double highest) {
        constexpr double MOST_STEPS = 6;
        constexpr double BASE = 10;
        if (highest <= lowest) {
            highest = lowest + 1;
        }
        // So that a tick differs from the next one as a double, however great both are.
        constexpr double FINEST = 1e-9;
        const double greatest = std::max(std::abs(lowest), std::abs(highest));
        const double least = std::max((highest - lowest) / MOST_STEPS, greatest * FINEST);
        const double power = std::pow(BASE, std::floor(std::log10(least)));
        for (const double factor : {1.0, 2.0, 5.0, BASE}) {
            m_step = factor * power;
            if (m_step >= least) {
                break;
            }
        }
        m_decimals = std::max(0, static_cast<int>(-std::floor(std::log10(m_step))));
        m_first = std::floor(lowest / m_step);
        m_last = std::ceil(highest / m_step);
    }

    // 0 to 1 from the axis' beginning to its end.
    double share(double value) const { return (value / m_step - m_first) / (m_last - m_first); }

    std::vector<Number> ticks() const {
        std::vector<Number> numbers;
        const auto steps = static_cast<int>(m_last - m_first);
        for (int i = 0; i <= steps; ++i) {
            numbers.push_back(Number::rounded((m_first + i) * m_step, m_decimals));
        }
        return numbers;
    }

private:
    double m_step = 1;
    int m_decimals = 0;
    double m_first = 0; ///< in steps
    double m_last = 1;
};

Axis valuesOf(const Series& series) {
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

Axis timesOf(const Series& series) {
    const auto last = std::max_element(
        series.points.begin(), series.points.end(),
        [](const SeriesPoint& a, const SeriesPoint& b) { return a.seconds < b.seconds; });
    return {0, last->seconds};
}

} // namespace

Chart chartOf(const Series& series, bool mirrored) {
    const Axis times = timesOf(series);
    const Axis values = valuesOf(series);
    const auto x = [&](double seconds) {
        const double share = times.share(seconds);
        return mirrored ? 1 - share : share;
    };
    const auto y = [&](const Number& value) { return 1 - values.share(value.toDouble()); };
    Chart chart;
    for (const Number& tick : times.ticks()) {
        chart.times.push_back({WHOLE * x(tick.toDouble()), tick});
    }
    for (const Number& tick : values.ticks()) {
        chart.values.push_back({WHOLE * y(tick), tick});
    }
    for (const Limit& limit : series.head.limits) {
        chart.limits.push_back({WHOLE * y(limit.value), limit.severity});
    }
    if (series.head.median) {
        chart.medianY = WHOLE * y(*series.head.median);
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
