// Tables of measurements that a command's options name.
#pragma once

#include <tables/CsvTable.h>

#include <string>
#include <vector>

namespace tables {

/// The table in the file `path` (UTF-8), with what is wrong with it in words.
class TableFile {
public:
    /// Failure: throws tesk5::BadInput
    explicit TableFile(std::string path);

    const CsvTable& table() const { return m_table; }

    /// The first of `names` that is a column.
    /// Failure: throws tesk5::BadInput
    std::size_t column(const std::vector<std::string_view>& names) const;
    /// The same; none where there is no such column.
    std::optional<std::size_t> optionalColumn(const std::vector<std::string_view>& names) const;

    /// The numbers of a column, in the order of the rows.
    /// Failure: throws tesk5::BadInput
    std::vector<double> numbers(std::size_t column) const;

    /// Refuses the field with a text of its own, whose placeholder {Text} is the field.
    [[noreturn]] void refuse(std::size_t row, std::size_t column, const char* key) const;

private:
    std::string m_path;
    CsvTable m_table;
};

} // namespace tables
