// The requirements on the line that refuses unusable input.
#pragma once

#include <support/Require.h>
#include <support/SafeText.h>

#include <tesk5/BadInput.h>

#include <mrl/Unicode.h>

namespace fuzz {

inline void requireReadableRefusal(const tesk5::BadInput& refused) {
    require(!refused.line.empty(), "a refusal has a text");
    requireNone(test::findUnsafe(mrl::escapeControls(refused.line)), "a refusal");
}

} // namespace fuzz
