// Lists inside a sentence, punctuated as the language in force does it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tesk5 {

/// `text` in quotation marks.
std::string inQuotes(std::string_view text);

/// "a, b, c"; empty for none.
std::string listed(const std::vector<std::string>& texts);

/// "a, b and c".
std::string listedWithAnd(std::vector<std::string> texts);

/// Each in quotation marks: `"a", "b"`.
std::string listInQuotes(std::vector<std::string> texts);

/// Phrases that may have commas in them: "a; b; c".
std::string phrasesListed(const std::vector<std::string>& phrases);

} // namespace tesk5
