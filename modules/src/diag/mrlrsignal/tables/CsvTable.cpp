#include <tables/CsvTable.h>

#include <mrl/Unicode.h>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace tables {

namespace {

constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";
constexpr std::string_view MINUS_SIGN = "\xE2\x88\x92"; // U+2212

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view SPACES = " \t";
    const std::size_t begin = text.find_first_not_of(SPACES);
    return begin == std::string_view::npos
               ? std::string_view()
               : text.substr(begin, text.find_last_not_of(SPACES) - begin + 1);
}

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

char lowered(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                                : character;
}

bool isSameName(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lowered(x) == lowered(y); });
}

// The number that `text` spells with `point` before its decimals.
std::optional<double> parse(std::string_view text, char point) {
    std::string spelled;
    if (text.starts_with(MINUS_SIGN)) {
        spelled = "-";
        text.remove_prefix(MINUS_SIGN.size());
    } else if (text.starts_with('-') || text.starts_with('+')) {
        spelled = text.front() == '-' ? "-" : "";
        text.remove_prefix(1);
    }
    const std::size_t whole = std::min(text.find(point), text.size());
    const bool isPlain =
        std::all_of(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(whole), isDigit) &&
        (whole == text.size() ||
         std::all_of(text.begin() + static_cast<std::ptrdiff_t>(whole) + 1, text.end(), isDigit));
    if (!isPlain || whole == 0 || whole + 1 == text.size()) {
        return std::nullopt;
    }
    spelled += text;
    std::replace(spelled.begin(), spelled.end(), point, '.');
    double number = 0;
    const auto [end, error] =
        std::from_chars(spelled.data(), spelled.data() + spelled.size(), number);
    return error == std::errc() ? std::optional(number) : std::nullopt;
}

std::optional<double> parseEither(std::string_view text) {
    const std::optional<double> number = parse(text, '.');
    return number ? number : parse(text, ',');
}

// Where the bytes of a line stop being UTF-8; its size where they do not.
std::size_t endOfUtf8(std::string_view line) {
    const std::string kept = mrl::toUtf8(mrl::toUtf16(line));
    return static_cast<std::size_t>(
        std::mismatch(line.begin(), line.end(), kept.begin(), kept.end()).first - line.begin());
}

char separatorOf(std::string_view line) {
    constexpr std::string_view SEPARATORS = ";\t,";
    const auto* const found = std::find_if(SEPARATORS.begin(), SEPARATORS.end(), [line](char one) {
        return line.find(one) != std::string_view::npos;
    });
    return found == SEPARATORS.end() ? '\0' : *found;
}

} // namespace

CsvTable::CsvTable(std::string_view text) {
    if (text.starts_with(BYTE_ORDER_MARK)) {
        text.remove_prefix(BYTE_ORDER_MARK.size());
    }
    bool isFirst = true;
    for (std::size_t number = 1; !text.empty(); ++number) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        if (trimmed(line).empty()) {
            continue;
        }
        if (const std::size_t column = endOfUtf8(line); column < line.size()) {
            throw TableFailure{TableFailure::Problem::NOT_UTF8, number, column + 1, {}};
        }
        if (isFirst) {
            m_separator = separatorOf(line);
        }
        Row row = rowOf(line, number);
        const bool isNamed = isFirst && !parseEither(row.fields.front().text);
        if (isFirst && !isNamed && row.fields.size() > 1) {
            throw TableFailure{TableFailure::Problem::NO_NAMES, number, 1, {}};
        }
        isFirst = false;
        if (isNamed) {
            m_names = std::move(row);
        } else if (row.fields.size() != std::max<std::size_t>(m_names.fields.size(), 1)) {
            throw TableFailure{TableFailure::Problem::FIELDS, number, row.fields.back().column,
                               std::to_string(row.fields.size())};
        } else {
            m_rows.push_back(std::move(row));
        }
    }
    if (m_rows.empty()) {
        throw TableFailure{};
    }
}

CsvTable::Row CsvTable::rowOf(std::string_view line, std::size_t number) const {
    Row row{.line = number, .fields = {}};
    for (std::size_t at = 0;;) {
        Field field{.text = {}, .column = at + 1};
        const std::size_t begin = line.find_first_not_of(' ', at);
        if (begin != std::string_view::npos && line[begin] == '"') {
            std::size_t next = begin + 1;
            for (bool isOpen = true; isOpen; ++next) {
                const std::size_t mark = line.find('"', next);
                if (mark == std::string_view::npos) {
                    throw TableFailure{TableFailure::Problem::QUOTE, number, begin + 1, {}};
                }
                field.text += line.substr(next, mark - next);
                next = mark;
                // Two marks stand for one.
                isOpen = line.substr(mark).starts_with("\"\"");
                if (isOpen) {
                    field.text += '"';
                    ++next;
                }
            }
            at = std::min(line.find_first_not_of(' ', next), line.size());
            if (at < line.size() && line[at] != m_separator) {
                throw TableFailure{TableFailure::Problem::QUOTE, number, at + 1, {}};
            }
        } else {
            const std::size_t end = m_separator == '\0'
                                        ? line.size()
                                        : std::min(line.find(m_separator, at), line.size());
            field.text = trimmed(line.substr(at, end - at));
            at = end;
        }
        row.fields.push_back(std::move(field));
        if (at >= line.size()) {
            return row;
        }
        ++at;
    }
}

std::optional<std::size_t> CsvTable::column(const std::vector<std::string_view>& names) const {
    const std::vector<Field>& columns = m_names.fields;
    if (columns.empty()) {
        return 0;
    }
    for (const std::string_view name : names) {
        const auto isMeant = [name](const Field& field) { return isSameName(field.text, name); };
        const auto found = std::ranges::find_if(columns, isMeant);
        if (found == columns.end()) {
            continue;
        }
        const auto second = std::find_if(found + 1, columns.end(), isMeant);
        if (second != columns.end()) {
            throw TableFailure{TableFailure::Problem::TWICE, m_names.line, second->column,
                               second->text};
        }
        return static_cast<std::size_t>(found - columns.begin());
    }
    return std::nullopt;
}

const std::string& CsvTable::text(std::size_t row, std::size_t column) const {
    return m_rows[row].fields[column].text;
}

double CsvTable::number(std::size_t row, std::size_t column) const {
    const std::string& field = text(row, column);
    const std::optional<double> value = m_separator == ',' ? parse(field, '.') : parseEither(field);
    if (!value) {
        throw failureAt(row, column, TableFailure::Problem::NO_NUMBER);
    }
    // Squares of more leave nothing of the readings beside them.
    constexpr double LARGEST = 1e6;
    if (std::abs(*value) > LARGEST) {
        throw failureAt(row, column, TableFailure::Problem::TOO_LARGE);
    }
    return *value;
}

TableFailure CsvTable::failureAt(std::size_t row, std::size_t column,
                                 TableFailure::Problem problem) const {
    const Field& field = m_rows[row].fields[column];
    return {problem, m_rows[row].line, field.column, field.text};
}

} // namespace tables
