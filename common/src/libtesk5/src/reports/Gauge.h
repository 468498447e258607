// Where everything lies in the drawing of a measurement: places in percent of its width.
#pragma once

#include <tesk5/Measurement.h>

#include <optional>
#include <string>
#include <vector>

namespace tesk5 {

/// A value on its scale with its limits, from left to right, or mirrored for languages that are
/// read from right to left.
struct Gauge {
    /// A stretch of the scale, by what a value in it means; nothing when that is well.
    struct Zone {
        double x;
        double width;
        std::optional<Severity> severity;
    };
    /// A number under the scale. Rows keep numbers apart that lie close together.
    struct Label {
        double x;
        mrl::Uint32 value;
        std::size_t row; ///< 0 is the one next to the scale
    };

    std::vector<Zone> zones;
    Zone value;                ///< from the scale's beginning to the value
    double valueX;             ///< of the value itself
    std::vector<Label> labels; ///< the ends of the scale and the limits
    std::vector<double> limits;
    std::size_t rows; ///< of labels
};

Gauge gaugeOf(const Measurement& measurement, bool mirrored);

/// "left", "middle" or "right": which part of a text of ordinary length belongs at `x`, so that it
/// stays inside.
const char* sideOfText(double x);

} // namespace tesk5
