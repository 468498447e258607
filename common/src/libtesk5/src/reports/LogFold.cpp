// Short blocks are folded first, so that a long one is recognised by what is left of it: a poll
// that lists the same network twice repeats as a whole.
#include "reports/LogFold.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <string>
#include <string_view>

namespace tesk5 {

namespace {

// A poll of fifty networks takes about 500 lines.
constexpr std::size_t LONGEST_BLOCK = 1000;

constexpr std::string_view DECIMAL_DIGITS = "0123456789";

bool isDigit(char letter) {
    return DECIMAL_DIGITS.find(letter) != std::string_view::npos;
}

// Whether a digit beside `letter` belongs to a word. Letters beyond ASCII have bytes above it.
bool joins(char letter) {
    constexpr unsigned char FIRST_BEYOND_ASCII = 0x80;
    const auto byte = static_cast<unsigned char>(letter);
    return std::isalpha(byte) != 0 || byte >= FIRST_BEYOND_ASCII || letter == '_' || letter == '-';
}

// `text` with "#" for each number.
std::string withoutNumbers(std::string_view text) {
    std::string result;
    for (std::size_t begin = 0; begin < text.size();) {
        if (!isDigit(text[begin])) {
            result += text[begin++];
            continue;
        }
        const std::size_t end =
            std::min(text.find_first_not_of(DECIMAL_DIGITS, begin), text.size());
        const bool partOfWord =
            (begin > 0 && joins(text[begin - 1])) || (end < text.size() && joins(text[end]));
        result += partOfWord ? text.substr(begin, end - begin) : "#";
        begin = end;
    }
    return result;
}

// A line or a mark, and the number of its pattern. What has the same pattern repeats.
struct Entry {
    FoldedLine line;
    std::size_t pattern;
};
using Entries = std::vector<Entry>;

class Patterns {
public:
    std::size_t of(const LoggedLine& line) {
        return numberOf(std::to_string(line.priority) + " " + line.logger + ": " +
                        withoutNumbers(line.text));
    }
    /// Of the marks of blocks of that many lines.
    std::size_t ofMark(std::size_t block) { return numberOf("mark " + std::to_string(block)); }

private:
    std::size_t numberOf(const std::string& pattern) {
        return m_numbers.try_emplace(pattern, m_numbers.size()).first->second;
    }
    std::map<std::string, std::size_t> m_numbers;
};

// How often the `block` entries from `first` on are repeated directly behind them.
std::size_t repetitions(const Entries& entries, std::size_t first, std::size_t block) {
    std::size_t times = 0;
    const auto begin = entries.begin() + static_cast<std::ptrdiff_t>(first);
    const auto length = static_cast<std::ptrdiff_t>(block);
    for (auto next = begin + length; entries.end() - next >= length; next += length, ++times) {
        if (!std::equal(begin, begin + length, next,
                        [](const Entry& a, const Entry& b) { return a.pattern == b.pattern; })) {
            break;
        }
    }
    return times;
}

// `entries` with a mark for the repetitions of blocks of that length.
Entries foldedBy(std::size_t block, const Entries& entries, Patterns& patterns) {
    Entries result;
    for (std::size_t i = 0; i < entries.size();) {
        const std::size_t times = entries.size() - i > block ? repetitions(entries, i, block) : 0;
        if (times * block < 2) { // a mark in place of one line would save nothing
            result.push_back(entries[i++]);
            continue;
        }
        const auto first = entries.begin() + static_cast<std::ptrdiff_t>(i);
        result.insert(result.end(), first, first + static_cast<std::ptrdiff_t>(block));
        i += block * (times + 1);
        const FoldedLine mark{entries[i - 1].line.line, block, times};
        result.push_back({mark, patterns.ofMark(block)});
    }
    return result;
}

} // namespace

std::vector<FoldedLine> folded(const std::vector<const LoggedLine*>& lines) {
    Patterns patterns;
    Entries entries;
    for (const LoggedLine* line : lines) {
        entries.push_back({FoldedLine{line}, patterns.of(*line)});
    }
    for (std::size_t block = 1; block <= LONGEST_BLOCK && 2 * block <= entries.size(); ++block) {
        entries = foldedBy(block, entries, patterns);
    }
    std::vector<FoldedLine> result;
    for (const Entry& entry : entries) {
        result.push_back(entry.line);
    }
    return result;
}

} // namespace tesk5
