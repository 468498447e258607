// What stands in the way of a test, and what to do about it, in words for a technician.
#pragma once

#include <tesk5/Event.h>

#include <string>
#include <vector>

namespace tesk5 {

/// One thing that was looked at.
struct Finding {
    TeskString key; ///< for programs, and the key of its text
    bool good;      ///< whether it is as it should be
    Event::Variables variables;

    /// The finding in the language in force: what is wrong, and the remedy.
    std::string text() const;
};

using Findings = std::vector<Finding>;

} // namespace tesk5
