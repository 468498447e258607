#include <support/SafeText.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <cstdio>

namespace test {

namespace {

struct Range {
    char32_t first, last;
};
constexpr Range unsafeRanges[] = {
    {0x0000, 0x001F}, // C0: bells, line ends, escape sequences
    {0x007F, 0x009F}, // DEL and C1: the one-character forms of escape sequences
    {0x00AD, 0x00AD}, // soft hyphen
    {0x061C, 0x061C}, // Arabic letter mark
    {0x200B, 0x200F}, // zero width, marks of direction
    {0x2028, 0x202E}, // line and paragraph separator, embeddings and overrides
    {0x2060, 0x206F}, // joiners, isolates
    {0xFEFF, 0xFEFF}, // byte order mark
    {0xFFF9, 0xFFFB}, // interlinear annotation
    {0xFFFE, 0xFFFF}, // no characters, and not allowed in XML
};

bool isUnsafe(char32_t codePoint) {
    return std::any_of(std::begin(unsafeRanges), std::end(unsafeRanges),
                       [codePoint](const Range& range) {
                           return codePoint >= range.first && codePoint <= range.last;
                       });
}

constexpr char32_t ILL_FORMED = 0xFFFFFFFF;

// Takes the next code point from well-formed UTF-8: the shortest form, no surrogates, nothing above
// U+10FFFF.
char32_t take(std::string_view& rest) {
    const auto byteAt = [&rest](std::size_t place) {
        return static_cast<std::uint8_t>(rest[place]);
    };
    const std::uint8_t lead = byteAt(0);
    const std::size_t length = lead < 0x80   ? 1
                               : lead < 0xC0 ? 0
                               : lead < 0xE0 ? 2
                               : lead < 0xF0 ? 3
                               : lead < 0xF8 ? 4
                                             : 0;
    if (length == 0 || rest.size() < length) {
        return ILL_FORMED;
    }
    char32_t codePoint = length == 1 ? lead : lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byteAt(i) & 0xC0U) != 0x80U) {
            return ILL_FORMED;
        }
        codePoint = codePoint << 6 | (byteAt(i) & 0x3FU);
    }
    constexpr std::array<char32_t, 5> LEAST = {0, 0, 0x80, 0x800, 0x10000};
    if (codePoint < LEAST[length] || codePoint > 0x10FFFF ||
        (codePoint >= 0xD800 && codePoint <= 0xDFFF)) {
        return ILL_FORMED;
    }
    rest.remove_prefix(length);
    return codePoint;
}

// The part of `text` from `place` up to `end`, without it; moves `place` behind `end`.
std::string_view takeUntil(std::string_view text, std::size_t& place, std::string_view end) {
    const std::size_t found = std::min(text.find(end, place), text.size());
    const std::string_view taken = text.substr(place, found - place);
    place = std::min(found + end.size(), text.size());
    return taken;
}

// The tag that begins at `place`, without the values of its attributes; moves `place` behind it.
std::string takeTag(std::string_view markup, std::size_t& place) {
    std::string tag;
    char quote = 0;
    while (place < markup.size()) {
        const char c = markup[place++];
        if (quote == 0 || c == quote) {
            tag += c;
        }
        if (quote != 0) {
            quote = c == quote ? '\0' : quote;
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == '>') {
            break;
        }
    }
    return tag;
}

} // namespace

std::string findUnsafe(std::string_view utf8) {
    for (std::string_view rest = utf8; !rest.empty();) {
        const std::size_t place = utf8.size() - rest.size();
        const char32_t codePoint = take(rest);
        if (codePoint == ILL_FORMED) {
            return "ill-formed UTF-8 at byte " + std::to_string(place);
        }
        if (isUnsafe(codePoint)) {
            char name[16];
            std::snprintf(name, sizeof name, "U+%04X", static_cast<unsigned>(codePoint));
            return std::string(name) + " at byte " + std::to_string(place);
        }
    }
    return {};
}

std::string findUnsafeInLines(std::string_view utf8) {
    if (!utf8.empty() && utf8.back() != '\n') {
        return "no line end at the end";
    }
    const std::vector<std::string> lines = linesOf(utf8);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::string found = findUnsafe(lines[i]);
        if (!found.empty()) {
            return found + " of line " + std::to_string(i + 1);
        }
    }
    return {};
}

std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines;
    for (std::size_t place = 0; place < text.size();) {
        lines.emplace_back(takeUntil(text, place, "\n"));
    }
    return lines;
}

std::string skeletonOf(std::string_view markup) {
    std::string skeleton;
    for (std::size_t place = markup.find('<'); place < markup.size();
         place = markup.find('<', place)) {
        const std::string tag = takeTag(markup, place);
        skeleton += tag + "\n";
        for (const std::string_view raw : {"script", "style"}) {
            if (tag.substr(1).starts_with(raw) && !tag.ends_with("/>")) {
                skeleton += takeUntil(markup, place, "</" + std::string(raw) + ">");
                skeleton += "\n";
            }
        }
    }
    return skeleton;
}

std::string findUnsafeInMarkup(std::string_view markup) {
    std::string shown(markup);
    for (const std::string_view raw : {"script", "style"}) {
        for (std::size_t open = shown.find("<" + std::string(raw)); open != std::string::npos;
             open = shown.find("<" + std::string(raw), open + 1)) {
            const std::size_t end = shown.find("</" + std::string(raw), open);
            shown.erase(open + 1, end == std::string::npos ? end : end - open - 1);
        }
    }
    for (std::size_t at = shown.find('&'); at != std::string::npos; at = shown.find('&', at + 1)) {
        const std::size_t end = std::min(shown.find(';', at), shown.size());
        const std::string name = shown.substr(at + 1, end - at - 1);
        const bool reference =
            !name.empty() && name.size() < 12 && std::all_of(name.begin(), name.end(), [](char c) {
                return c == '#' || std::isalnum(static_cast<unsigned char>(c)) != 0;
            });
        if (!reference) {
            return "a bare & at byte " + std::to_string(at);
        }
    }
    return findUnsafeInLines(shown);
}

} // namespace test
