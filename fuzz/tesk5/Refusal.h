// Unusable input: one clear line.
#pragma once

#include <support/Inert.h>
#include <support/Promise.h>

#include <texts/BadInput.h>

#include <mrl/Unicode.h>

namespace fuzz {

inline void promiseRefusal(const tesk5::BadInput& refused) {
    promise(!refused.line.empty(), "a refusal has words");
    promiseNone(test::offenceIn(mrl::escapeControls(refused.line)), "a refusal");
}

} // namespace fuzz
