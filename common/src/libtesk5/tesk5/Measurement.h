// What a test has measured, apart from its verdict.
#pragma once

#include <tesk5/Event.h>

#include <vector>

namespace tesk5 {

/// A value that a measured one should be above.
struct Limit {
    TeskString name; ///< as the parameter that sets it: "WarningSignalStrength"
    mrl::Uint32 value = 0;
    Severity severity = Severity::error; ///< what a value at or below it means
};

/// One measured value on a scale, with the limits that were in force.
struct Measurement {
    TeskString name; ///< for programs, and the key of its text for people
    mrl::Uint32 value = 0;
    TeskString unit; ///< as people write it after a number: "%"
    mrl::Uint32 lowest = 0;
    mrl::Uint32 highest = 100;
    std::vector<Limit> limits;

    /// The most severe limit that the value is not above; null when it is above all of them. Of two
    /// equally severe ones the lower counts.
    const Limit* brokenLimit() const;
};

/// What else could have been measured: values of one kind. The names come from outside the program.
struct Survey {
    struct Entry {
        TeskString name;
        mrl::Uint32 value = 0;
        bool measured = false; ///< the one that the test is about
    };

    TeskString name; ///< for programs, and the key of its text for people
    TeskString unit;
    mrl::Uint32 lowest = 0;
    mrl::Uint32 highest = 100;
    std::vector<Entry> entries;
};

/// Where `value` is between `lowest` and `highest`: 0 to 1, also for a value outside the scale.
double shareOfScale(mrl::Uint32 value, mrl::Uint32 lowest, mrl::Uint32 highest);

} // namespace tesk5
