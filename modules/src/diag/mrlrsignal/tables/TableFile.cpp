#include <tables/TableFile.h>

#include <tesk5/BadInput.h>
#include <tesk5/InputFile.h>
#include <tesk5/Texts.h>

namespace tables {

namespace {

using tesk5::message;

// A study of a thousand readings has some thirty kilobytes.
constexpr std::size_t LARGEST_FILE = 0x400000;

// In the order of TableFailure::Problem.
constexpr const char* PROBLEMS[] = {"TABLE_EMPTY",      "TABLE_FIELDS",   "TABLE_QUOTE",
                                    "TABLE_NO_NUMBER",  "TABLE_NO_NAMES", "TABLE_NOT_UTF8",
                                    "TABLE_NAME_TWICE", "TABLE_TOO_LARGE"};

[[noreturn]] void refuseTable(const std::string& path, const TableFailure& failure,
                              const char* key) {
    throw tesk5::BadInput{
        message("TABLE_UNUSABLE", {{"File", path},
                                   {"Line", failure.line},
                                   {"Column", failure.column},
                                   {"Problem", message(key, {{"Text", failure.detail}})}})};
}

[[noreturn]] void refuseTable(const std::string& path, const TableFailure& failure) {
    refuseTable(path, failure, PROBLEMS[static_cast<std::size_t>(failure.problem)]);
}

CsvTable tableIn(const std::string& path) {
    const std::string text = tesk5::readInputFile(path, LARGEST_FILE);
    if (text.starts_with('{')) {
        throw tesk5::BadInput{message("TABLE_IS_JSON", {{"File", path}})};
    }
    try {
        return CsvTable(text);
    } catch (const TableFailure& failure) {
        refuseTable(path, failure);
    }
}

} // namespace

TableFile::TableFile(std::string path) : m_path(std::move(path)), m_table(tableIn(m_path)) {}

std::size_t TableFile::column(const std::vector<std::string_view>& names) const {
    const std::optional<std::size_t> found = optionalColumn(names);
    if (!found) {
        throw tesk5::BadInput{
            message("TABLE_NO_COLUMN", {{"File", m_path}, {"Name", std::string(names.front())}})};
    }
    return *found;
}

std::optional<std::size_t>
TableFile::optionalColumn(const std::vector<std::string_view>& names) const {
    try {
        return m_table.column(names);
    } catch (const TableFailure& failure) {
        refuseTable(m_path, failure);
    }
}

std::vector<double> TableFile::numbers(std::size_t column) const {
    std::vector<double> numbers;
    numbers.reserve(m_table.rows());
    try {
        for (std::size_t row = 0; row < m_table.rows(); ++row) {
            numbers.push_back(m_table.number(row, column));
        }
    } catch (const TableFailure& failure) {
        refuseTable(m_path, failure);
    }
    return numbers;
}

void TableFile::refuse(std::size_t row, std::size_t column, const char* key) const {
    refuseTable(m_path, m_table.failureAt(row, column, TableFailure::Problem::NO_NUMBER), key);
}

} // namespace tables
