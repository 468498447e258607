// How the structures of the open formats become JSON: what is not known has no member.
#pragma once

#include <mrl/Json.h>

#include <vector>

namespace tesk5 {

/// Adds `value` as a member; nothing for an empty text, list or object.
template <typename Value>
void addKnown(mrl::Json& json, const char* name, const Value& value) {
    if (!value.empty()) {
        json[name] = value;
    }
}

/// Adds `toJson` of each of the `values`; nothing when there are none.
template <typename Value, typename ToJson>
void addKnown(mrl::Json& json, const char* name, const std::vector<Value>& values, ToJson toJson) {
    for (const Value& value : values) {
        json[name].push_back(toJson(value));
    }
}

} // namespace tesk5
