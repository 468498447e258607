#include <mrl/Unicode.h>

#include <utf8cpp/utf8.h>

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace mrl {

namespace {

constexpr char32_t REPLACEMENT = 0xFFFD;
constexpr std::string_view REPLACEMENT_UTF8 = "\xEF\xBF\xBD";

// Whether `bytes` can begin a character: with the least or the greatest of the bytes that may
// follow them, they are well-formed.
bool beginsCharacter(std::string_view bytes) {
    constexpr std::size_t LONGEST = 4;
    for (const char following : {'\x80', '\xBF'}) {
        for (std::string filled(bytes); filled.size() <= LONGEST; filled += following) {
            if (utf8::is_valid(filled)) {
                return true;
            }
        }
    }
    return false;
}

// How many bytes of `text`, which begins ill-formed, become one replacement character: the longest
// beginning of a character, as the Unicode Standard recommends and as browsers do.
std::size_t illFormedLength(std::string_view text) {
    std::size_t length = 1;
    while (length < text.size() && beginsCharacter(text.substr(0, length + 1))) {
        ++length;
    }
    return length;
}

std::string withReplacements(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (;;) {
        const std::size_t wellFormed = utf8::find_invalid(text);
        out += text.substr(0, wellFormed);
        if (wellFormed == std::string_view::npos) {
            return out;
        }
        text.remove_prefix(wellFormed);
        out += REPLACEMENT_UTF8;
        text.remove_prefix(illFormedLength(text));
    }
}

constexpr bool isHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool isLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

// Takes the next code point from a text and drops its units.
char32_t takeCodePoint(CharView& text) {
    const char32_t first = static_cast<Uint16>(text.front());
    text.remove_prefix(1);
    if (isHighSurrogate(first) && !text.empty()) {
        const char32_t second = static_cast<Uint16>(text.front());
        if (isLowSurrogate(second)) {
            text.remove_prefix(1);
            return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
        }
    }
    return isHighSurrogate(first) || isLowSurrogate(first) ? REPLACEMENT : first;
}

constexpr bool within(char32_t value, char32_t first, char32_t last) {
    return value >= first && value <= last;
}

// Characters without a shape of their own that change how the rest is read.
constexpr bool changesReading(char32_t codePoint) {
    return codePoint == 0x00AD || codePoint == 0x061C || within(codePoint, 0x200B, 0x200F) ||
           within(codePoint, 0x2028, 0x202E) || within(codePoint, 0x2060, 0x206F) ||
           codePoint == 0xFEFF || within(codePoint, 0xFFF9, 0xFFFB) ||
           within(codePoint, 0xFFFE, 0xFFFF);
}

constexpr bool isControl(char32_t codePoint) {
    return codePoint < 0x20 || within(codePoint, 0x7F, 0x9F);
}

void appendEscaped(std::string& out, char32_t codePoint) {
    char buffer[12];
    switch (codePoint) {
    case '\n':
        out += "\\n";
        return;
    case '\r':
        out += "\\r";
        return;
    case '\t':
        out += "\\t";
        return;
    default:
        break;
    }
    if (isControl(codePoint)) {
        std::snprintf(buffer, sizeof buffer, "\\x%02X", static_cast<unsigned>(codePoint));
        out += buffer;
    } else if (changesReading(codePoint)) {
        std::snprintf(buffer, sizeof buffer, "\\u%04X", static_cast<unsigned>(codePoint));
        out += buffer;
    } else {
        utf8::append(codePoint, out);
    }
}

// Ranges in which upper and lower case lie a fixed distance apart.
struct ShiftedRange {
    char32_t first, last;
    Uint16 distance;
};
constexpr ShiftedRange shiftedRanges[] = {
    {'A', 'Z', 32},       {0x00C0, 0x00D6, 32}, {0x00D8, 0x00DE, 32}, {0x0386, 0x0386, 38},
    {0x0388, 0x038A, 37}, {0x038C, 0x038C, 64}, {0x038E, 0x038F, 63}, {0x0391, 0x03A1, 32},
    {0x03A3, 0x03AB, 32}, {0x0400, 0x040F, 80}, {0x0410, 0x042F, 32}, {0x04C0, 0x04C0, 15},
    {0xFF21, 0xFF3A, 32},
};

// Ranges of neighbours: upper case has the parity of the first, lower case follows at once.
struct PairedRange {
    char32_t first, last;
};
constexpr PairedRange pairedRanges[] = {
    {0x0100, 0x012F}, {0x0132, 0x0137}, {0x0139, 0x0148}, {0x014A, 0x0177}, {0x0179, 0x017E},
    {0x0460, 0x0481}, {0x048A, 0x04BF}, {0x04C1, 0x04CE}, {0x04D0, 0x052F},
};

} // namespace

std::string toUtf8(CharView text) {
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        utf8::append(takeCodePoint(text), out);
    }
    return out;
}

std::string toUtf8(std::u32string_view text) {
    return utf8::utf32to8(text);
}

CharString toUtf16(std::string_view text) {
    const std::string wellFormed = withReplacements(text);
    CharString out;
    out.reserve(wellFormed.size());
    utf8::unchecked::utf8to16(wellFormed.begin(), wellFormed.end(), std::back_inserter(out));
    return out;
}

std::u32string toUtf32(std::string_view text) {
    return utf8::utf8to32(withReplacements(text));
}

Char foldCase(Char unit) {
    const char32_t value = static_cast<Uint16>(unit);
    for (const ShiftedRange& range : shiftedRanges) {
        if (within(value, range.first, range.last)) {
            return static_cast<Char>(value + range.distance);
        }
    }
    for (const PairedRange& range : pairedRanges) {
        if (within(value, range.first, range.last) && (value - range.first) % 2 == 0) {
            return static_cast<Char>(value + 1);
        }
    }
    return value == 0x0178 ? static_cast<Char>(0x00FF) : unit;
}

CharString foldedCase(CharView text) {
    CharString folded(text);
    std::transform(folded.begin(), folded.end(), folded.begin(), foldCase);
    return folded;
}

bool equalNoCase(CharView a, CharView b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](Char left, Char right) { return foldCase(left) == foldCase(right); });
}

bool isUnsafeToShow(char32_t codePoint) {
    return isControl(codePoint) || changesReading(codePoint);
}

std::string escapeControls(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size());
    for (const char32_t codePoint : toUtf32(utf8)) {
        appendEscaped(out, codePoint);
    }
    return out;
}

} // namespace mrl
