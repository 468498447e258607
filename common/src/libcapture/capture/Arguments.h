// How arguments of a call are written down, in captures and in the simulator's record of calls.
#pragma once

#include <nativewifi/Guid.h>

#include <mrl/Json.h>
#include <mrl/Unicode.h>

#include <utility>

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

/// Those of WlanRegisterNotification; `handle` is the client handle as it is written down.
inline mrl::Json registrationArguments(mrl::Json handle, DWORD source, BOOL ignoreDuplicate,
                                       WLAN_NOTIFICATION_CALLBACK callback, const void* context,
                                       const void* reserved, const DWORD* previousSource) {
    return {{"handle", std::move(handle)},
            {"source", source},
            {"ignoreDuplicate", ignoreDuplicate != FALSE},
            {"callback", callback == nullptr ? mrl::Json(nullptr) : mrl::Json("set")},
            {"context", pointer(context)},
            {"reserved", pointer(reserved)},
            {"previousSource", pointer(previousSource)}};
}

} // namespace capture
