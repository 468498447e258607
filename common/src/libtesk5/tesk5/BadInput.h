// An input that cannot be used: the line that the console shows for it.
#pragma once

#include <string>

namespace tesk5 {

/// Thrown before anything has run or been written, by the framework and by commands of the module.
/// start() prints the line behind the module's name and returns VALUE. Not for test functions.
struct BadInput {
    /// Names the input, says what is wrong with it, and what to do instead.
    std::string line;

    static constexpr int VALUE = 64;
};

} // namespace tesk5
