// What the module has told about itself, and what it asks of the run.
#pragma once

#include <tesk5/TeskString.h>

#include <atomic>
#include <string>
#include <vector>

namespace tesk5 {

struct ModuleState {
    std::string program;                ///< file name of the program, as people call it
    std::vector<std::string> arguments; ///< what follows it
    unsigned major = 0;
    unsigned minor = 0;
    TeskString build;
    void (*initialize)() = nullptr;
    std::atomic<bool> abortRequested = false;

    std::string version() const { return std::to_string(major) + "." + std::to_string(minor); }

    static ModuleState& instance();
};

} // namespace tesk5
