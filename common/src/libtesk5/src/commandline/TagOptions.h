// The options and the keys of the configuration that are about tags.
#pragma once

#include "commandline/ConfigKeys.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tesk5 {

/// As OptionDescription::apply; the names of the last two may have commas between them.
/// Failure: throws BadInput
bool addTag(CommandLine& line, std::string_view option, const std::string& nameAndValue);
bool addTagPrompts(CommandLine& line, std::string_view option, const std::string& names);
bool addRequiredTags(CommandLine& line, std::string_view option, const std::string& names);

/// Tables of the configuration whose keys are names of tags.
inline constexpr const char* TAGS_TABLE = "tags";
inline constexpr const char* TAG_PATTERNS_TABLE = "tag-patterns";

/// The key `name` of one of these tables; nothing for another table.
std::optional<ConfigKey> tagKey(std::string_view table, const std::string& name);

/// The keys of the template: the tags with a fixed meaning, and a pattern.
std::vector<ConfigKey> tagKeys();

} // namespace tesk5
