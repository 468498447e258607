// Pages for people that commands of the module write.
#pragma once

#include <mrl/Json.h>

#include <map>
#include <string>
#include <string_view>

namespace tesk5 {

/// A self-contained page in the form of the HTML report, in UTF-8 and in the language in force. It
/// has no script and loads nothing, and prints.
/// \param content Mustache template of its main part. Tags in capitals are keys of texts; {{>mark}}
/// draws the mark of the member `is` with one of `good`, `warning`, `bad` and `none`. Values are
/// escaped, except in triple braces. null, false and an empty list leave a section out
/// \param data the values of its tags
/// \param parts further templates that `content` includes by name
std::string pageOf(const std::string& title, std::string_view content, const mrl::Json& data,
                   const std::map<std::string, std::string_view>& parts = {});

/// A share of 0 to 100 as drawings write it: "12.50%".
std::string percentOf(double share);

/// Whether the page is mirrored: in languages that are read from right to left.
bool isPageMirrored();

} // namespace tesk5
