// The length of a soak, and its line of figures.
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

/// Prints one line among GoogleTest's output.
inline void report(const std::string& line) {
    std::cout << "[ SOAK     ] " << line << std::endl;
}

} // namespace test
