#include <tesk5/TextLayout.h>

#include <mrl/DisplayWidth.h>
#include <mrl/Unicode.h>

#include <algorithm>

namespace tesk5 {

namespace {

// The UTF-8 character that begins at `place`.
std::string_view characterAt(std::string_view text, std::size_t place) {
    std::size_t end = place + 1;
    while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) {
        ++end;
    }
    return text.substr(place, end - place);
}

bool isOneOf(std::string_view character, std::string_view all) {
    return all.find(character) != std::string_view::npos;
}

// Between two characters of which one is East Asian a line may end, unless closing punctuation
// would begin the next line or opening punctuation end this one.
bool mayPart(std::string_view before, std::string_view after) {
    constexpr std::string_view NEVER_FIRST =
        "、。，．：；！？）］｝」』】》〉”’ー～ぁぃぅぇぉっゃゅょ"
        "ァィゥェォッャュョ)]},.:;!?%\"'";
    constexpr std::string_view NEVER_LAST = "（［｛「『【《〈“‘([{\"'";
    const bool eastAsian = mrl::columnsOf(before) > 1 || mrl::columnsOf(after) > 1;
    return eastAsian && !isOneOf(after, NEVER_FIRST) && !isOneOf(before, NEVER_LAST);
}

// The pieces that are not broken; a space is one of its own.
std::vector<std::string> piecesOf(std::string_view text) {
    std::vector<std::string> pieces;
    std::string_view before = " ";
    for (std::size_t place = 0; place < text.size();) {
        const std::string_view character = characterAt(text, place);
        if (before == " " || character == " " || mayPart(before, character)) {
            pieces.emplace_back();
        }
        pieces.back() += character;
        before = character;
        place += character.size();
    }
    return pieces;
}

} // namespace

std::string padded(std::string text, std::size_t columns) {
    const std::size_t taken = mrl::columnsOf(text);
    text.append(std::max(columns, taken + 1) - taken, ' ');
    return text;
}

std::vector<std::string> wrapped(std::string_view text, std::size_t columns) {
    std::vector<std::string> lines(1);
    std::string spaces;
    for (const std::string& piece : piecesOf(text)) {
        if (piece == " ") {
            spaces += piece;
            continue;
        }
        std::string longer = lines.back();
        longer.append(spaces).append(piece);
        if (lines.back().empty()) {
            lines.back() = piece;
        } else if (mrl::columnsOf(longer) <= columns) {
            lines.back() = std::move(longer);
        } else {
            lines.push_back(piece);
        }
        spaces.clear();
    }
    return lines;
}

std::string wrappedForTerminal(const std::string& text, std::size_t columns) {
    if (columns == 0) {
        return text;
    }
    const std::string indent(std::min(text.find_first_not_of(' '), text.size()), ' ');
    const std::size_t room = columns - std::min(columns, indent.size() + 1);
    std::string all;
    for (const std::string& line : wrapped(text, room)) {
        all += all.empty() ? "" : "\n";
        all += indent;
        all += line;
    }
    return all;
}

std::string linesFor(const mrl::OutputStream& stream, const std::string& text) {
    return wrappedForTerminal(mrl::escapeControls(text), stream.columns()) + "\n";
}

void writeLine(mrl::OutputStream& stream, const std::string& text) {
    stream << linesFor(stream, text);
    stream.flush();
}

} // namespace tesk5
