#include "texts/Lists.h"

#include <tesk5/Texts.h>

#include <algorithm>

namespace tesk5 {

namespace {

// `key` is that of a text with {List} and {Item}, which joins the list so far and the next item.
std::string joinedBy(const char* key, const std::vector<std::string>& texts) {
    std::string all;
    for (const std::string& text : texts) {
        all = all.empty() ? text : message(key, {{"List", all}, {"Item", text}});
    }
    return all;
}

} // namespace

std::string inQuotes(std::string_view text) {
    return message("LIST_QUOTED", {{"Text", std::string(text)}});
}

std::string listed(const std::vector<std::string>& texts) {
    return joinedBy("LIST_COMMA", texts);
}

std::string listedWithAnd(std::vector<std::string> texts) {
    if (texts.size() < 2) {
        return listed(texts);
    }
    const std::string last = texts.back();
    texts.pop_back();
    return joinedBy("LIST_AND", {listed(texts), last});
}

std::string listInQuotes(std::vector<std::string> texts) {
    std::transform(texts.begin(), texts.end(), texts.begin(),
                   [](const std::string& text) { return inQuotes(text); });
    return listed(texts);
}

std::string nameAndValue(const std::string& name, const std::string& value) {
    return message("LIST_NAME_AND_VALUE", {{"Name", name}, {"Value", value}});
}

std::string heading(const std::string& text) {
    return message("LIST_HEADING", {{"Text", text}});
}

std::string phrasesListed(const std::vector<std::string>& phrases) {
    return joinedBy("LIST_SEMICOLON", phrases);
}

} // namespace tesk5
