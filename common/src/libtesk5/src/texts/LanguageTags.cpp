#include "texts/LanguageTags.h"

#include <algorithm>
#include <iterator>

namespace tesk5 {

namespace {

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}
char upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c;
}

std::vector<std::string> partsOf(std::string_view tag) {
    std::vector<std::string> parts(1);
    for (const char c : tag) {
        if (c == '-' || c == '_') {
            parts.emplace_back();
        } else {
            parts.back() += lower(c);
        }
    }
    return parts;
}

// A tag becomes a file name: only letters, digits and hyphens may be in it.
bool wellFormed(const std::vector<std::string>& parts) {
    constexpr std::size_t SHORTEST = 2;
    constexpr std::size_t LONGEST = 8;
    const std::string& language = parts.front();
    return language.size() >= SHORTEST && std::all_of(language.begin(), language.end(), isLetter) &&
           std::all_of(parts.begin(), parts.end(), [](const std::string& part) {
               return !part.empty() && part.size() <= LONGEST &&
                      std::all_of(part.begin(), part.end(),
                                  [](char c) { return isLetter(c) || isDigit(c); });
           });
}

struct ChineseRegion {
    const char* tag;
    const char* script;
};
constexpr ChineseRegion chineseRegions[] = {
    {"zh", "zh-Hans"},    {"zh-CN", "zh-Hans"}, {"zh-SG", "zh-Hans"},
    {"zh-TW", "zh-Hant"}, {"zh-HK", "zh-Hant"}, {"zh-MO", "zh-Hant"},
};

} // namespace

std::string canonicalTag(std::string_view tag) {
    tag = tag.substr(0, tag.find_first_of(".@"));
    std::vector<std::string> parts = partsOf(tag);
    if (!wellFormed(parts)) {
        return {};
    }
    constexpr std::size_t SCRIPT_LENGTH = 4;
    constexpr std::size_t REGION_LENGTH = 2;
    std::string canonical = parts.front();
    for (std::size_t i = 1; i < parts.size(); ++i) {
        std::string& part = parts[i];
        if (part.size() == SCRIPT_LENGTH && isLetter(part.front())) {
            part.front() = upper(part.front());
        } else if (part.size() == REGION_LENGTH) {
            std::transform(part.begin(), part.end(), part.begin(), upper);
        }
        canonical += "-" + part;
    }
    return canonical;
}

std::vector<std::string> fallbacksOf(std::string_view tag) {
    std::string rest = canonicalTag(tag);
    if (rest.empty()) {
        return {};
    }
    std::vector<std::string> tags = {rest};
    const auto* const region =
        std::find_if(std::begin(chineseRegions), std::end(chineseRegions),
                     [&rest](const ChineseRegion& candidate) { return rest == candidate.tag; });
    if (region != std::end(chineseRegions)) {
        tags.emplace_back(region->script);
    }
    for (std::size_t cut = rest.rfind('-'); cut != std::string::npos; cut = rest.rfind('-')) {
        rest.resize(cut);
        tags.push_back(rest);
    }
    return tags;
}

} // namespace tesk5
