// Tables that people export from a spreadsheet: fields between separators, with decimal points or
// commas.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tables {

/// Why a text is no such table, at a place in it.
struct TableFailure {
    enum class Problem {
        EMPTY,     ///< no line behind the one with the names
        FIELDS,    ///< `detail` is how many there are instead of as many as in the first line
        QUOTE,     ///< a quotation mark is not closed, or something follows it
        NO_NUMBER, ///< `detail` is the text
        NO_NAMES,  ///< numbers in several columns, and no line that names them
        NOT_UTF8,  ///< bytes that are no UTF-8: another encoding
        TWICE,     ///< `detail` is the name of several columns
        TOO_LARGE, ///< `detail` is a number more than a million away from 0
    };
    Problem problem = Problem::EMPTY;
    std::size_t line = 1;   ///< from 1
    std::size_t column = 1; ///< in bytes of the line, from 1
    std::string detail;
};

/// A table of texts. The first line names the columns; a table of one column of numbers needs no
/// such line.
///
/// Fields are as in RFC 4180; empty lines do not count. The separator is what the first line has: a
/// semicolon, else a tab, else a comma. A decimal comma is understood where the comma is no
/// separator.
class CsvTable {
public:
    /// \param text in UTF-8, with or without its mark
    /// Failure: throws TableFailure
    explicit CsvTable(std::string_view text);

    /// The column of the first of `names` that there is, in any letter case; the only column when
    /// it has no name; none otherwise.
    /// Failure: throws TableFailure where several columns have that name
    std::optional<std::size_t> column(const std::vector<std::string_view>& names) const;

    std::size_t rows() const { return m_rows.size(); }

    /// The field as it stands, without spaces around it.
    const std::string& text(std::size_t row, std::size_t column) const;

    /// The field as a number: an optional sign (U+2212 too), digits, and a decimal point or comma
    /// with digits behind it.
    /// Failure: throws TableFailure
    double number(std::size_t row, std::size_t column) const;

    /// A failure at a field, for what only the caller can judge.
    TableFailure failureAt(std::size_t row, std::size_t column,
                           TableFailure::Problem problem) const;

private:
    struct Field {
        std::string text;
        std::size_t column = 1;
    };
    struct Row {
        std::size_t line = 1;
        std::vector<Field> fields;
    };

    Row rowOf(std::string_view line, std::size_t number) const;

    char m_separator = '\0'; // none in a table of one column
    Row m_names;
    std::vector<Row> m_rows;
};

} // namespace tables
