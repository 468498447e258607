// What keeps a test from working, and what to do about it, for a technician.
#pragma once

#include <tesk5/Event.h>

#include <vector>

namespace tesk5 {

/// The result of one check. message() puts it into words: what is wrong, and the remedy.
struct Finding {
    TeskString key; ///< for programs, and the key of its text
    bool good;      ///< whether it is as it should be
    Event::Variables variables;
};

using Findings = std::vector<Finding>;

/// Adds `finding` unless `findings` have one with the same key and variables.
void addOnce(Finding finding, Findings& findings);

} // namespace tesk5
