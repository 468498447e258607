#include "reports/Gauge.h"

#include "texts/NumberText.h"

#include <mrl/DisplayWidth.h>

#include <algorithm>
#include <cmath>

namespace tesk5 {

namespace {

constexpr double WHOLE_SCALE = 100;
// A character of a number, where the drawing is narrowest: on a phone.
constexpr double CHARACTER = 2.7;
constexpr double GAP = 2;

// Places on the scale, in percent from its left end.
class Scale {
public:
    Scale(const Measurement& measurement, bool mirrored)
        : m_measurement(measurement), m_mirrored(mirrored) {}

    double x(const Number& value) const {
        const double share =
            WHOLE_SCALE * shareOfScale(value, m_measurement.lowest, m_measurement.highest);
        return m_mirrored ? WHOLE_SCALE - share : share;
    }
    Gauge::Zone zone(const Number& from, const Number& to, std::optional<Severity> severity) const {
        return {std::min(x(from), x(to)), std::abs(x(to) - x(from)), severity};
    }

private:
    const Measurement& m_measurement;
    bool m_mirrored;
};

std::vector<Limit> sortedLimits(const Measurement& measurement) {
    std::vector<Limit> limits = measurement.limits;
    std::stable_sort(limits.begin(), limits.end(),
                     [](const Limit& a, const Limit& b) { return a.value < b.value; });
    return limits;
}

// What values between two limits mean that follow each other: they break the limits behind them
// that a value must be above, and those before them that it must not be above.
std::optional<Severity> meaningBefore(std::size_t next, const std::vector<Limit>& limits) {
    std::optional<Severity> gravest;
    for (std::size_t i = 0; i < limits.size(); ++i) {
        const bool upper = limits[i].kept == Limit::Kept::AT_MOST;
        if (upper == (i < next) && gravest != Severity::error) {
            gravest = limits[i].severity;
        }
    }
    return gravest;
}

std::vector<Gauge::Zone> zonesOf(const Measurement& measurement, const Scale& scale) {
    std::vector<Gauge::Zone> zones;
    const std::vector<Limit> limits = sortedLimits(measurement);
    Number from = measurement.lowest;
    for (std::size_t i = 0; i < limits.size(); ++i) {
        zones.push_back(scale.zone(from, limits[i].value, meaningBefore(i, limits)));
        from = limits[i].value;
    }
    zones.push_back(scale.zone(from, measurement.highest, meaningBefore(limits.size(), limits)));
    return zones;
}

// A number with its unit at `x`: the part of it that is there, and where it begins and ends.
struct Extent {
    Extent(double x, const Number& value, const TeskString& unit) {
        const std::string text = withUnit(value, unit);
        const double width = CHARACTER * static_cast<double>(mrl::columnsOf(text));
        if (x < width / 2) {
            side = "left";
            from = x;
        } else if (x > WHOLE_SCALE - width / 2) {
            side = "right";
            from = x - width;
        } else {
            side = "middle";
            from = x - width / 2;
        }
        to = from + width;
    }
    bool touches(const Extent& other) const {
        return from < other.to + GAP && other.from < to + GAP;
    }

    const char* side;
    double from;
    double to;
};

// The ends of the scale come first and so get the row next to it.
std::vector<Gauge::Label> labelsOf(const Measurement& measurement, const Scale& scale) {
    std::vector<Number> values = {measurement.lowest, measurement.highest};
    for (const Limit& limit : sortedLimits(measurement)) {
        if (std::find(values.begin(), values.end(), limit.value) == values.end()) {
            values.push_back(limit.value);
        }
    }
    std::vector<Gauge::Label> labels;
    for (const Number& value : values) {
        const Extent extent(scale.x(value), value, measurement.unit);
        Gauge::Label label{.x = scale.x(value), .side = extent.side, .value = value, .row = 0};
        const auto touched = [&](const Gauge::Label& other) {
            return other.row == label.row &&
                   extent.touches(Extent(other.x, other.value, measurement.unit));
        };
        while (std::any_of(labels.begin(), labels.end(), touched)) {
            ++label.row;
        }
        labels.push_back(label);
    }
    return labels;
}

} // namespace

Gauge gaugeOf(const Measurement& measurement, bool mirrored) {
    const Scale scale(measurement, mirrored);
    Gauge gauge{zonesOf(measurement, scale),
                scale.zone(measurement.lowest, measurement.value, std::nullopt),
                scale.x(measurement.value),
                Extent(scale.x(measurement.value), measurement.value, measurement.unit).side,
                labelsOf(measurement, scale),
                {},
                1};
    for (const Limit& limit : measurement.limits) {
        gauge.limits.push_back(scale.x(limit.value));
    }
    for (const Gauge::Label& label : gauge.labels) {
        gauge.rows = std::max(gauge.rows, label.row + 1);
    }
    return gauge;
}

} // namespace tesk5
