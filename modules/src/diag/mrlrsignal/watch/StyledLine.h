// A line of a frame: pieces of text, each with a style, cut to the columns that there are.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace watch {

/// What a piece of text is; without colours all look the same.
enum class Style : std::uint8_t { PLAIN, STRONG, FAINT, TRACE, REFERENCE, PROBLEM };

class StyledLine {
public:
    StyledLine() = default;
    /// As add() does.
    StyledLine(std::string_view text, Style style = Style::PLAIN) { add(text, style); }

    /// Appends text, which may come from outside: what could move the cursor is escaped.
    StyledLine& add(std::string_view text, Style style = Style::PLAIN);
    /// The pieces of another line.
    StyledLine& add(const StyledLine& line);
    /// Appends spaces until the line has `columns`.
    StyledLine& padTo(std::size_t columns);

    std::size_t columns() const { return m_columns; }
    /// The line as a terminal gets it. What does not fit into `columns` is cut, with an ellipsis.
    std::string text(std::size_t columns, bool colours) const;

private:
    struct Piece {
        std::string text;
        Style style;
    };

    std::vector<Piece> m_pieces;
    std::size_t m_columns = 0;
};

} // namespace watch
