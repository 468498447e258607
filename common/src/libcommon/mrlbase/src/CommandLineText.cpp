#include <mrl/CommandLineText.h>

#include <algorithm>

namespace mrl {

namespace {

constexpr Char QUOTE = MRL_TEXT('"');
constexpr Char BACKSLASH = MRL_TEXT('\\');

bool isBlank(Char unit) {
    return unit == MRL_TEXT(' ') || unit == MRL_TEXT('\t');
}

// How many times `unit` stands at the beginning of `text`.
std::size_t countAtStart(CharView text, Char unit) {
    return std::min(text.find_first_not_of(unit), text.size());
}

void skipBlanks(CharView& line) {
    line.remove_prefix(static_cast<std::size_t>(
        std::find_if_not(line.begin(), line.end(), isBlank) - line.begin()));
}

CharString takeName(CharView& line) {
    const bool quoted = line.front() == QUOTE;
    if (quoted) {
        line.remove_prefix(1);
    }
    const auto end = quoted ? std::find(line.begin(), line.end(), QUOTE)
                            : std::find_if(line.begin(), line.end(), isBlank);
    CharString name(line.begin(), end);
    line.remove_prefix(name.size());
    if (quoted && !line.empty()) {
        line.remove_prefix(1);
    }
    return name;
}

// Quotes in a row, of which those that open or close come first; `open` tells whether the text
// before them is in quotes, and after that the text behind them.
std::size_t charactersAmong(std::size_t quotes, bool& open) {
    const std::size_t all = quotes + (open ? 1 : 0);
    open = all % 3 == 1;
    return all / 3;
}

CharString takeArgument(CharView& line) {
    CharString argument;
    bool open = false;
    while (!line.empty() && (open || !isBlank(line.front()))) {
        const std::size_t backslashes = countAtStart(line, BACKSLASH);
        line.remove_prefix(backslashes);
        const bool quoteNext = !line.empty() && line.front() == QUOTE;
        argument.append(quoteNext ? backslashes / 2 : backslashes, BACKSLASH);
        if (quoteNext && backslashes % 2 != 0) {
            argument += QUOTE;
            line.remove_prefix(1);
        } else if (quoteNext) {
            const std::size_t quotes = countAtStart(line, QUOTE);
            line.remove_prefix(quotes);
            argument.append(charactersAmong(quotes, open), QUOTE);
        } else if (backslashes == 0) {
            argument += line.front();
            line.remove_prefix(1);
        }
    }
    return argument;
}

} // namespace

std::vector<CharString> splitCommandLine(CharView line) {
    std::vector<CharString> texts;
    if (line.empty()) {
        return texts;
    }
    texts.push_back(takeName(line));
    for (skipBlanks(line); !line.empty(); skipBlanks(line)) {
        texts.push_back(takeArgument(line));
    }
    return texts;
}

} // namespace mrl
