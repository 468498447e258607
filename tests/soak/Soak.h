// How long a soak is, and what it says of itself.
#pragma once

#include <cstdlib>
#include <iostream>
#include <string>

namespace test {

/// The number in the environment variable `name`, or `usual` without one.
inline long soakLength(const char* name, long usual) {
    const char* const asked = std::getenv(name);
    return asked == nullptr ? usual : std::strtol(asked, nullptr, 10);
}

/// One line for the reader of a long run.
inline void report(const std::string& line) {
    std::cout << "[ SOAK     ] " << line << std::endl;
}

} // namespace test
