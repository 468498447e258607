// What a fuzzer holds the code to, besides the sanitizers' rules.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace fuzz {

/// Ends the program when a promise is not kept; the fuzzer then saves its input.
inline void promise(bool kept, std::string_view what) {
    if (!kept) {
        std::fprintf(stderr, "promise broken: %.*s\n", static_cast<int>(what.size()), what.data());
        std::abort();
    }
}

/// The same for a check that names the offence it found.
inline void promiseNone(const std::string& offence, std::string_view where) {
    promise(offence.empty(), std::string(where) + ": " + offence);
}

} // namespace fuzz
