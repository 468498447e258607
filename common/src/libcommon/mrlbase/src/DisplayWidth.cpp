#include <mrl/DisplayWidth.h>

#include <mrl/Unicode.h>

#include <algorithm>
#include <iterator>

namespace mrl {

namespace {

struct WidthRange {
    char32_t first;
    char32_t last;
    std::size_t columns;
};

// The characters that are not one column wide, in ascending order. Whole blocks are enough, because
// terminals differ in the details.
constexpr WidthRange ranges[] = {
    {0x0300, 0x036F, 0},   // combining marks
    {0x0483, 0x0489, 0},   // Cyrillic combining marks
    {0x0591, 0x05BD, 0},   // Hebrew points
    {0x0610, 0x061A, 0},   // Arabic marks
    {0x064B, 0x065F, 0},   // Arabic vowel signs
    {0x1100, 0x115F, 2},   // Hangul initials
    {0x20D0, 0x20FF, 0},   // combining marks for symbols
    {0x2E80, 0x303E, 2},   // CJK radicals, punctuation
    {0x3041, 0x33FF, 2},   // kana, CJK symbols
    {0x3400, 0x4DBF, 2},   // CJK ideographs, extension A
    {0x4E00, 0x9FFF, 2},   // CJK ideographs
    {0xA000, 0xA4CF, 2},   // Yi
    {0xAC00, 0xD7A3, 2},   // Hangul syllables
    {0xF900, 0xFAFF, 2},   // CJK compatibility ideographs
    {0xFE00, 0xFE0F, 0},   // variation selectors
    {0xFE30, 0xFE6F, 2},   // CJK compatibility forms
    {0xFF00, 0xFF60, 2},   // full-width forms
    {0xFFE0, 0xFFE6, 2},   // full-width signs
    {0x1F300, 0x1F64F, 2}, // pictographs
    {0x1F680, 0x1F6FF, 2}, // transport symbols
    {0x1F900, 0x1F9FF, 2}, // more pictographs
    {0x20000, 0x3FFFD, 2}, // CJK ideographs, further extensions
};

std::size_t columnsOf(char32_t character) {
    const auto* const range =
        std::find_if(std::begin(ranges), std::end(ranges),
                     [character](const WidthRange& one) { return character <= one.last; });
    return range != std::end(ranges) && character >= range->first ? range->columns : 1;
}

} // namespace

std::size_t columnsOf(std::string_view text) {
    std::size_t columns = 0;
    for (const char32_t character : toUtf32(text)) {
        columns += columnsOf(character);
    }
    return columns;
}

std::string fittedToColumns(const std::string& text, std::size_t columns) {
    if (columnsOf(text) <= columns) {
        return text;
    }
    if (columns == 0) {
        return {};
    }
    const std::u32string characters = toUtf32(text);
    std::size_t taken = 0;
    const auto end = std::find_if(characters.begin(), characters.end(), [&](char32_t character) {
        taken += columnsOf(character);
        return taken > columns - 1;
    });
    return toUtf8(std::u32string(characters.begin(), end)) + "…";
}

} // namespace mrl
