// The fuzzers' own checks, besides those of the sanitizers.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace fuzz {

/// Ends the program when `condition` is false, after printing `requirement`; the fuzzing engine
/// then saves the input.
inline void require(bool condition, std::string_view requirement) {
    if (!condition) {
        std::fprintf(stderr, "not met: %.*s\n", static_cast<int>(requirement.size()),
                     requirement.data());
        std::abort();
    }
}

/// The same for a check of `where` that returns what it found, and the empty text for no fault.
inline void requireNone(const std::string& found, std::string_view where) {
    require(found.empty(), std::string(where) + ": " + found);
}

} // namespace fuzz
