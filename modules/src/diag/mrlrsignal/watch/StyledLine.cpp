#include <watch/StyledLine.h>

#include <mrl/DisplayWidth.h>
#include <mrl/Unicode.h>

#include <algorithm>

namespace watch {

namespace {

constexpr std::string_view END = "\x1b[0m";

constexpr std::string_view beginOf(Style style) {
    switch (style) {
    case Style::STRONG:
        return "\x1b[1m";
    case Style::FAINT:
        return "\x1b[2m";
    case Style::TRACE:
        return "\x1b[36m";
    case Style::REFERENCE:
        return "\x1b[33m";
    case Style::PROBLEM:
        return "\x1b[31m";
    case Style::PLAIN:
        break;
    }
    return "";
}

} // namespace

StyledLine& StyledLine::add(std::string_view text, Style style) {
    if (!text.empty()) {
        m_pieces.push_back({mrl::escapeControls(text), style});
        m_columns += mrl::columnsOf(m_pieces.back().text);
    }
    return *this;
}

StyledLine& StyledLine::add(const StyledLine& line) {
    m_pieces.insert(m_pieces.end(), line.m_pieces.begin(), line.m_pieces.end());
    m_columns += line.m_columns;
    return *this;
}

StyledLine& StyledLine::padTo(std::size_t columns) {
    return add(std::string(columns - std::min(columns, m_columns), ' '));
}

std::string StyledLine::text(std::size_t columns, bool colours) const {
    std::string all;
    std::size_t left = columns;
    bool fits = m_columns <= columns;
    for (const Piece& piece : m_pieces) {
        const std::size_t width = mrl::columnsOf(piece.text);
        // A piece that ends where the line does is cut too when more follows.
        const bool last = !fits && width >= left;
        const std::string shown = last ? mrl::fittedToColumns(piece.text + " ", left) : piece.text;
        const std::string_view begin = colours ? beginOf(piece.style) : "";
        all.append(begin).append(shown).append(begin.empty() ? "" : END);
        if (last) {
            break;
        }
        left -= width;
    }
    return all;
}

} // namespace watch
