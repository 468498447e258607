// A file of texts: one JSON object of keys and texts.
#pragma once

#include <string>
#include <unordered_map>

namespace tesk5 {

/// Texts by key, both in UTF-8.
using TextsByKey = std::unordered_map<std::string, std::string>;

/// The texts that `json` spells.
/// Failure: throws JsonFailure for ill-formed JSON, for an object that names a member twice and for
/// anything but one object of texts
TextsByKey textsOf(const std::string& json);

} // namespace tesk5
