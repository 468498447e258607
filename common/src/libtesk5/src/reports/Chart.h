// The drawing of a series over time: where its parts are, in percent of its width and height.
#pragma once

#include <tesk5/Series.h>

#include <optional>
#include <string>
#include <vector>

namespace tesk5 {

/// Values upwards over time from left to right, or mirrored for languages that are read from right
/// to left.
struct Chart {
    /// Side of the square that `curve` and `dots` are drawn in.
    static constexpr double SIDE = 1000;
    /// Points up to which each has its dot; more would be a band.
    static constexpr std::size_t MOST_DOTS = 500;

    /// A number beside an axis.
    struct Tick {
        double at; ///< percent from the left, or from the top
        Number number;
    };
    struct LimitLine {
        double y;
        Severity severity;
    };

    std::vector<Tick> times; ///< in seconds
    std::vector<Tick> values;
    std::vector<LimitLine> limits;
    std::optional<double> medianY;
    std::string curve; ///< path data of the line through all points
    std::string dots;  ///< path data of a line of no length at each point; empty for many points
};

/// The drawing of `series`, which has a point at least. Its scale includes limits and median.
Chart chartOf(const Series& series, bool mirrored);

} // namespace tesk5
