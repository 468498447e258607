#include <mrl/Unicode.h>

#include <algorithm>
#include <cstdio>

namespace mrl {

namespace {

constexpr char32_t REPLACEMENT = 0xFFFD;

constexpr bool isHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool isLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

// Takes the next code point from a text and drops its units; ill-formed input gives U+FFFD and
// drops what cannot be the start of anything better.
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

// The well-formed UTF-8 sequences: by lead byte, the range that the second byte must lie in and
// the number of bytes that follow the lead.
struct LeadRange {
    Uint8 firstLead, lastLead;
    Uint8 secondMin, secondMax;
    Uint8 followers;
};
constexpr LeadRange leadRanges[] = {
    {0xC2, 0xDF, 0x80, 0xBF, 1}, {0xE0, 0xE0, 0xA0, 0xBF, 2}, {0xE1, 0xEC, 0x80, 0xBF, 2},
    {0xED, 0xED, 0x80, 0x9F, 2}, {0xEE, 0xEF, 0x80, 0xBF, 2}, {0xF0, 0xF0, 0x90, 0xBF, 3},
    {0xF1, 0xF3, 0x80, 0xBF, 3}, {0xF4, 0xF4, 0x80, 0x8F, 3},
};

char32_t takeCodePoint(std::string_view& text) {
    const auto lead = static_cast<Uint8>(text.front());
    text.remove_prefix(1);
    if (lead < 0x80) {
        return lead;
    }
    const auto* range = std::find_if(
        std::begin(leadRanges), std::end(leadRanges), [lead](const LeadRange& candidate) {
            return lead >= candidate.firstLead && lead <= candidate.lastLead;
        });
    if (range == std::end(leadRanges)) {
        return REPLACEMENT;
    }
    char32_t codePoint = lead & (0x3FU >> range->followers);
    for (int i = 0; i < range->followers; ++i) {
        const Uint8 least = i == 0 ? range->secondMin : 0x80;
        const Uint8 most = i == 0 ? range->secondMax : 0xBF;
        if (text.empty() || static_cast<Uint8>(text.front()) < least ||
            static_cast<Uint8>(text.front()) > most) {
            return REPLACEMENT; // the offending byte may start a sequence of its own
        }
        codePoint = (codePoint << 6) | (static_cast<Uint8>(text.front()) & 0x3FU);
        text.remove_prefix(1);
    }
    return codePoint;
}

void appendUtf8(std::string& out, char32_t codePoint) {
    const auto byte = [&out](char32_t value) { out += static_cast<char>(value); };
    if (codePoint < 0x80) {
        byte(codePoint);
    } else if (codePoint < 0x800) {
        byte(0xC0 | (codePoint >> 6));
        byte(0x80 | (codePoint & 0x3F));
    } else if (codePoint < 0x10000) {
        byte(0xE0 | (codePoint >> 12));
        byte(0x80 | ((codePoint >> 6) & 0x3F));
        byte(0x80 | (codePoint & 0x3F));
    } else {
        byte(0xF0 | (codePoint >> 18));
        byte(0x80 | ((codePoint >> 12) & 0x3F));
        byte(0x80 | ((codePoint >> 6) & 0x3F));
        byte(0x80 | (codePoint & 0x3F));
    }
}

void appendUtf16(CharString& out, char32_t codePoint) {
    if (codePoint < 0x10000) {
        out += static_cast<Char>(codePoint);
    } else {
        out += static_cast<Char>(0xD800 + ((codePoint - 0x10000) >> 10));
        out += static_cast<Char>(0xDC00 + ((codePoint - 0x10000) & 0x3FF));
    }
}

constexpr bool within(char32_t value, char32_t first, char32_t last) {
    return value >= first && value <= last;
}

// Characters that show nothing themselves but change how the rest is read.
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
        appendUtf8(out, codePoint);
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

// Appends what `text` begins with, as long as it is printable ASCII, and drops it there: nearly all
// of nearly every text, and the same in both encodings and for every reader.
template <typename Out, typename View>
void takePlain(Out& out, View& text) {
    const auto plain = [](auto unit) { return unit >= 0x20 && unit < 0x7F; };
    const auto end = std::find_if_not(text.begin(), text.end(), plain);
    out.append(text.begin(), end);
    text.remove_prefix(static_cast<std::size_t>(end - text.begin()));
}

} // namespace

std::string toUtf8(CharView text) {
    std::string out;
    out.reserve(text.size());
    for (takePlain(out, text); !text.empty(); takePlain(out, text)) {
        appendUtf8(out, takeCodePoint(text));
    }
    return out;
}

CharString toUtf16(std::string_view text) {
    CharString out;
    out.reserve(text.size());
    for (takePlain(out, text); !text.empty(); takePlain(out, text)) {
        appendUtf16(out, takeCodePoint(text));
    }
    return out;
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

bool equalNoCase(CharView a, CharView b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](Char left, Char right) { return foldCase(left) == foldCase(right); });
}

bool deceivesReaders(char32_t codePoint) {
    return isControl(codePoint) || changesReading(codePoint);
}

std::string escapeControls(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size());
    for (takePlain(out, utf8); !utf8.empty(); takePlain(out, utf8)) {
        appendEscaped(out, takeCodePoint(utf8));
    }
    return out;
}

} // namespace mrl
