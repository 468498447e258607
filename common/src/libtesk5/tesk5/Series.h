// A value over time: the readings that a measurement was made of.
#pragma once

#include <tesk5/Measurement.h>

#include <optional>
#include <vector>

namespace tesk5 {

/// One reading.
struct SeriesPoint {
    double seconds = 0; ///< since the test's start
    Number value;
    /// What else is known of it, texts or numbers: {"Source", "scan"}, {"Channel", 36}. Names are
    /// for programs, and keys of their texts for people.
    Event::Variables attributes;
};

/// Readings in the order in which they came.
struct Series {
    /// What holds for all points. It may become known after them.
    struct Head {
        TeskString name; ///< for programs, and the key of its text for people
        TeskString unit; ///< as people write it after a number: "dBm"
        std::vector<Limit> limits;
        std::optional<Number> median;
    };

    /// Points that are kept; the first ones of more.
    static constexpr std::size_t MOST_POINTS = 10'000;

    Head head;
    std::vector<SeriesPoint> points;
    std::size_t leftOut = 0; ///< points beyond MOST_POINTS
};

} // namespace tesk5
