// Reports broken invariants of the library's own data structures.
#pragma once

namespace mrl {

class AssertionFailure {
public:
    /// Logs `condition` of `header`, line `line`, at priority 5 to the logger "mrl.assertion".
    /// The caller raises the StructuredException. Any thread.
    static void logAssert(const char* header, int line, const char* condition);

    /// The code of the StructuredException that follows a logged assertion.
    static constexpr unsigned CODE = 7;
};

} // namespace mrl
