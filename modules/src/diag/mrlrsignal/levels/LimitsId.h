// By which name a report says which limits it was made with.
#pragma once

#include <statistics/LevelRating.h>

#include <string>
#include <string_view>

namespace levels {

/// "Lab 2 9f86...": the name, the revision, and the SHA-256 of both with the limits. A report that
/// carries it was made with these limits and no others.
/// \param name as isLimitsName() allows it
std::string limitsId(const std::string& name, int revision, const statistics::LevelLimits& limits);

/// Whether `id` is that of `limits`, compared in tenths.
bool isIdOf(std::string_view id, const statistics::LevelLimits& limits);

/// Whether limits can have the name: 1 to 40 ASCII letters, digits, dots, hyphens and underscores.
bool isLimitsName(std::string_view name);

} // namespace levels
