// The level over time as blocks, with an axis. Of block characters only those are used that
// consoles have had since their first code pages: whole, upper half and lower half.
#pragma once

#include <watch/StyledLine.h>

#include <optional>
#include <vector>

namespace watch {

/// Columns that the axis takes on the left: "-100 ┤".
inline constexpr std::size_t AXIS_COLUMNS = 6;

/// The range that a chart shows, in dBm: whole tens.
struct Range {
    int low = 0;
    int high = 0;
};

/// A range of at least 20 dB that holds every level and the reference; -100 to -20 without any.
Range rangeOf(const std::vector<std::optional<double>>& levels, std::optional<double> reference);

/// The rows of the drawing, from the top: each level as a column that ends at its height, and the
/// reference as a line where no column covers it. Every row begins with the axis, which names
/// the tens that have a row of their own. A level at the lower end is half a row high.
/// \param levels from the left to the right; nothing leaves a gap
/// \param rows at least 2
std::vector<StyledLine> chart(const std::vector<std::optional<double>>& levels, std::size_t rows,
                              Range range, std::optional<double> reference);

} // namespace watch
