// Fills the templates of reports: the wire form stands in a file of res/, the code makes the
// values.
#pragma once

#include <mrl/Json.h>

#include <map>
#include <string>
#include <string_view>

namespace tesk5 {

/// The Mustache template `text` with the members of `data` in its tags. Values are escaped with
/// inMarkup(), except in triple braces. null, false and an empty list leave a section out; a list
/// `events` also sets `hasEvents`, for what stands once around it.
/// \param parts templates that others include by name: {{>name}}
std::string filled(std::string_view text, const mrl::Json& data,
                   const std::map<std::string, std::string_view>& parts = {});

} // namespace tesk5
