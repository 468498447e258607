// How arguments of a call are written down, in captures and in the simulator's record of calls.
#pragma once

#include <nativewifi/Guid.h>

#include <mrl/Json.h>
#include <mrl/Unicode.h>

namespace capture {

/// Whether there is something: "set" or null.
inline mrl::Json pointer(const void* value) {
    return value == nullptr ? mrl::Json(nullptr) : mrl::Json("set");
}

/// 36 characters in lower case, or null.
inline mrl::Json guid(const GUID* value) {
    return value == nullptr ? mrl::Json(nullptr)
                            : mrl::Json(mrl::toUtf8(nativewifi::guidText(*value).view()));
}

/// A terminated text, or null.
inline mrl::Json text(const mrl::Char* value) {
    return value == nullptr ? mrl::Json(nullptr) : mrl::Json(mrl::toUtf8(mrl::CharView(value)));
}

} // namespace capture
