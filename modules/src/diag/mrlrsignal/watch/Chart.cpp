#include <watch/Chart.h>

#include <algorithm>
#include <cmath>

namespace watch {

namespace {

constexpr int TEN = 10;
constexpr int NARROWEST = 20;
constexpr Range WHOLE = {.low = -100, .high = -20};
// Halves of a row.
constexpr std::size_t HALVES = 2;

// How many halves of rows, from the bottom, reach up to `level`: one at the lower end.
std::size_t heightOf(double level, std::size_t rows, Range range) {
    const double share = (level - range.low) / (range.high - range.low);
    const double highest = static_cast<double>(rows * HALVES - 1);
    return 1 + static_cast<std::size_t>(std::lround(std::clamp(share, 0.0, 1.0) * highest));
}

// The row, counted from the top, in which the highest half of `height` lies.
std::size_t rowOf(std::size_t height, std::size_t rows) {
    return rows - 1 - (height - 1) / HALVES;
}

// The names of the axis by row, empty where there is none. The ends have one, and as many of the
// tens between as there is room for.
std::vector<std::string> axisOf(std::size_t rows, Range range) {
    std::vector<std::string> names(rows);
    for (const int step : {TEN, 2 * TEN, range.high - range.low}) {
        std::vector<std::string> trial(rows);
        bool crowded = false;
        for (int level = range.low; level <= range.high; level += step) {
            std::string& name = trial[rowOf(heightOf(level, rows, range), rows)];
            crowded = crowded || !name.empty();
            name = std::to_string(level);
        }
        if (!crowded && (range.high - range.low) % step == 0) {
            return trial;
        }
    }
    return names;
}

} // namespace

Range rangeOf(const std::vector<std::optional<double>>& levels, std::optional<double> reference) {
    std::optional<double> low = reference;
    std::optional<double> high = reference;
    for (const std::optional<double>& level : levels) {
        if (level) {
            low = std::min(low.value_or(*level), *level);
            high = std::max(high.value_or(*level), *level);
        }
    }
    if (!low) {
        return WHOLE;
    }
    Range range{.low = static_cast<int>(std::floor(*low / TEN)) * TEN,
                .high = static_cast<int>(std::ceil(*high / TEN)) * TEN};
    while (range.high - range.low < NARROWEST) {
        // On the side where the levels are nearer to the edge.
        if (*low - range.low < range.high - *high) {
            range.low -= TEN;
        } else {
            range.high += TEN;
        }
    }
    return range;
}

std::vector<StyledLine> chart(const std::vector<std::optional<double>>& levels, std::size_t rows,
                              Range range, std::optional<double> reference) {
    const std::vector<std::string> axis = axisOf(rows, range);
    std::vector<StyledLine> lines;
    for (std::size_t row = 0; row < rows; ++row) {
        StyledLine line;
        line.add(std::string(AXIS_COLUMNS - 2 - std::min(axis[row].size(), AXIS_COLUMNS - 2), ' '))
            .add(axis[row], Style::FAINT)
            .add(axis[row].empty() ? " │" : " ┤", Style::FAINT);
        // The halves up to the lower one of this row.
        const std::size_t below = (rows - 1 - row) * HALVES;
        const bool isReference = reference && rowOf(heightOf(*reference, rows, range), rows) == row;
        std::string piece;
        Style style = Style::TRACE;
        const auto put = [&](std::string_view cell, Style of) {
            if (of != style) {
                line.add(piece, style);
                piece.clear();
                style = of;
            }
            piece += cell;
        };
        for (const std::optional<double>& level : levels) {
            const std::size_t height = level ? heightOf(*level, rows, range) : 0;
            if (height > below) {
                put(height > below + 1 ? "█" : "▄", Style::TRACE);
            } else if (isReference) {
                put("─", Style::REFERENCE);
            } else {
                put(" ", style);
            }
        }
        line.add(piece, style);
        lines.push_back(std::move(line));
    }
    return lines;
}

} // namespace watch
