// The module's version.
#pragma once

#include <tesk5/TeskString.h>

#include <string>

namespace tesk5 {

struct ModuleVersion {
    unsigned major = 0;
    unsigned minor = 0;
    TeskString build;

    /// "6.5": as reports and the command line write it.
    std::string text() const { return std::to_string(major) + "." + std::to_string(minor); }
};

} // namespace tesk5
