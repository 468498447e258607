// What a test has measured, apart from its verdict.
#pragma once

#include <tesk5/Event.h>
#include <tesk5/Number.h>

#include <optional>
#include <vector>

namespace tesk5 {

/// A value that a measured one is held against.
struct Limit {
    /// Where a measured value keeps the limit.
    enum class Kept {
        ABOVE,    ///< the limit itself breaks it
        AT_LEAST, ///< at the limit or above
        AT_MOST,  ///< at the limit or below
    };

    TeskString name; ///< as the parameter that sets it: "WarningSignalStrength"
    Number value;
    Severity severity = Severity::error; ///< what it means that the limit is broken
    Kept kept = Kept::ABOVE;

    bool brokenBy(const Number& measured) const;
};

/// "above", "atLeast" or "atMost", as reports write it.
const char* keptName(Limit::Kept kept);

/// A number beside a measurement that has no scale and no limits: a spread, an offset.
struct Figure {
    TeskString name; ///< for programs, and the key of its text for people
    Number value;
    TeskString unit;
};

/// One measured value on a scale, with the limits that were in force.
struct Measurement {
    TeskString name; ///< for programs, and the key of its text for people
    Number value;    ///< shown with its decimals
    TeskString unit; ///< as people write it after a number: "%"
    Number lowest = 0;
    Number highest = 100;
    std::vector<Limit> limits;
    std::vector<Figure> figures = {};
    /// What else is known of it, each under its name: the calibration that it was made with.
    Event::Variables attributes = {};

    /// The most severe limit that the value breaks; null when it keeps all of them. Of two equally
    /// severe ones the lower counts, or the higher of two that a value must not be above.
    const Limit* brokenLimit() const;
    /// The limit that the value is nearest to, the first of several; null without limits.
    const Limit* nearestLimit() const;
};

/// What else could have been measured: values of one kind. The names come from outside the program.
struct Survey {
    struct Entry {
        TeskString name;
        Number value;
        bool measured = false; ///< the one that the test is about
    };

    TeskString name; ///< for programs, and the key of its text for people
    TeskString unit;
    Number lowest = 0;
    Number highest = 100;
    std::vector<Entry> entries;
};

/// Where `value` is between `lowest` and `highest`: 0 to 1, also for a value outside the scale.
double shareOfScale(const Number& value, const Number& lowest, const Number& highest);

} // namespace tesk5
