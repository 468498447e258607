// Lists inside a sentence and labelled texts, punctuated as the language in force does it.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tesk5 {

/// `toText` of each of the `things`: a function, a member or an operation of theirs.
template <typename Things, typename ToText>
std::vector<std::string> textsOf(const Things& things, ToText toText) {
    std::vector<std::string> texts;
    texts.reserve(things.size());
    for (const auto& thing : things) {
        texts.emplace_back(std::invoke(toText, thing));
    }
    return texts;
}

/// `text` in quotation marks.
std::string inQuotes(std::string_view text);

/// "a, b, c"; empty for none.
std::string listed(const std::vector<std::string>& texts);

/// "a, b and c".
std::string listedWithAnd(std::vector<std::string> texts);

/// Each in quotation marks: `"a", "b"`.
std::string listInQuotes(std::vector<std::string> texts);

/// A label and what it stands for: "name: value". Languages differ in the blank before the colon.
std::string nameAndValue(const std::string& name, const std::string& value);

/// `text` as the line above what it names: "text:".
std::string heading(const std::string& text);

/// Phrases that may have commas in them: "a; b; c".
std::string phrasesListed(const std::vector<std::string>& phrases);

} // namespace tesk5
