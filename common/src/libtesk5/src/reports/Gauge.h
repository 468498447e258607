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
    /// A number under the scale, with its unit. Numbers that would overlap are in different rows.
    struct Label {
        double x;
        const char* side; ///< as of `valueSide`
        Number value;
        std::size_t row; ///< 0 is the one next to the scale
    };

    std::vector<Zone> zones;
    Zone value;    ///< from the scale's beginning to the value
    double valueX; ///< of the value itself
    /// The part of the value's text that is at `valueX`, so that the text stays inside the drawing:
    /// "left", "middle" or "right".
    const char* valueSide;
    std::vector<Label> labels; ///< the ends of the scale and the limits
    std::vector<double> limits;
    std::size_t rows; ///< of labels
};

Gauge gaugeOf(const Measurement& measurement, bool mirrored);

} // namespace tesk5
