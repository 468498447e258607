// The drawing of a measurement: where its parts are, in percent of its width.
#pragma once

#include <tesk5/Measurement.h>

#include <optional>
#include <string>
#include <vector>

namespace tesk5 {

/// A value on its scale with its limits, from left to right, or mirrored for languages that are
/// read from right to left.
struct Gauge {
    /// A part of the scale, with what a value in it means; no severity when the value is good.
    struct Zone {
        double x;
        double width;
        std::optional<Severity> severity;
    };
    /// A number under the scale. Numbers that would overlap are in different rows.
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

/// "left", "middle" or "right": the part of a short text that is placed at `x`, so that the text
/// stays inside the drawing.
const char* sideOfText(double x);

} // namespace tesk5
