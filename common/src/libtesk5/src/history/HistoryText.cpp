#include "history/HistoryOutput.h"

#include <tesk5/Texts.h>

#include "texts/Lists.h"
#include "texts/MeasurementText.h"
#include "texts/NumberText.h"

#include <mrl/DisplayWidth.h>
#include <mrl/Unicode.h>

#include <algorithm>
#include <cmath>

namespace tesk5 {

namespace {

constexpr std::size_t GAP = 2;

// Rows of cells, in columns as wide as their widest cell.
class Table {
public:
    using Cells = std::vector<std::string>;

    void add(Cells cells) {
        for (std::string& cell : cells) {
            cell = mrl::escapeControls(cell);
        }
        m_rows.push_back(std::move(cells));
    }
    void addLine(const std::string& text) { m_rows.push_back({text}); }

    // \param numbers how many cells are aligned at their end, from the second on
    // \param columns of the terminal, into which the rows are cut; 0: as wide as needed
    std::vector<std::string> lines(std::size_t numbers, std::size_t columns) const {
        const std::vector<std::size_t> widths = widthsIn(columns);
        std::vector<std::string> lines;
        for (const Cells& row : m_rows) {
            std::string line = row.size() == 1 ? row.front() : std::string();
            for (std::size_t i = 0; row.size() > 1 && i < row.size(); ++i) {
                const std::string cell = mrl::fittedToColumns(row[i], widths[i]);
                const std::string space(widths[i] - mrl::columnsOf(cell), ' ');
                line += i == 0 ? std::string() : std::string(GAP, ' ');
                line += i > 0 && i <= numbers ? space + cell : cell + space;
            }
            line.erase(line.find_last_not_of(' ') + 1);
            lines.push_back(std::move(line));
        }
        return lines;
    }

private:
    // In a narrow terminal the first cells are cut, then the last ones.
    std::vector<std::size_t> widthsIn(std::size_t columns) const {
        constexpr std::size_t WIDEST_NAME = 34;
        constexpr std::size_t NARROWEST = 12;
        std::vector<std::size_t> widths(1);
        for (const Cells& row : m_rows) {
            widths.resize(std::max(widths.size(), row.size()));
            for (std::size_t i = 0; row.size() > 1 && i < row.size(); ++i) {
                widths[i] = std::max(widths[i], mrl::columnsOf(row[i]));
            }
        }
        widths.front() = std::min(widths.front(), WIDEST_NAME);
        std::size_t whole = 1; // after the last column some terminals wrap
        for (const std::size_t width : widths) {
            whole += width + GAP;
        }
        for (std::size_t* const width : {&widths.front(), &widths.back()}) {
            const std::size_t tooMuch = columns == 0 ? 0 : whole - std::min(whole, columns + GAP);
            const std::size_t cut = std::min(tooMuch, *width - std::min(*width, NARROWEST));
            *width -= cut;
            whole -= cut;
        }
        return widths;
    }

    std::vector<Cells> m_rows;
};

Table::Cells cellsOf(const std::string& name, const Yield& yield) {
    return {name,
            countText(yield.runs),
            countText(yield.units),
            shareText(yield.firstPass, yield.units),
            shareText(yield.finalPass, yield.units),
            resultsText(yield)};
}

// Many rows would push the figures out of the terminal: the last ones are shown.
template <typename NameOf>
void addRows(Table& table, const char* heading, const std::vector<HistoryRow>& rows,
             NameOf nameOf) {
    constexpr std::size_t MOST_ROWS = 31;
    const std::size_t left = rows.size() - std::min(rows.size(), MOST_ROWS);
    table.addLine("");
    table.addLine(message(heading));
    if (left > 0) {
        table.addLine("  " + message("HISTORY_MORE_ROWS", {{"Count", countText(left)}}));
    }
    for (std::size_t i = left; i < rows.size(); ++i) {
        table.add(cellsOf("  " + nameOf(rows[i]), rows[i].yield));
    }
}

std::vector<std::string> levelLines(const HistoryLevels& test, bool withStation,
                                    std::size_t columns) {
    constexpr std::size_t WIDEST_BAR = 25;
    constexpr std::size_t NARROWEST_BAR = 10;
    constexpr std::size_t WIDEST_NAME = 16;
    Table table;
    for (const HistoryLevel& level : test.levels) {
        Table::Cells cells = {minuteText(level.started)};
        if (withStation) {
            cells.push_back(mrl::fittedToColumns(stationName(level.station), WIDEST_NAME));
        }
        cells.push_back(mrl::fittedToColumns(level.serial, WIDEST_NAME));
        cells.emplace_back(level.result.name());
        cells.push_back(withUnit(level.measurement.value, level.measurement.unit));
        table.add(std::move(cells));
    }
    std::vector<std::string> lines = table.lines(0, 0);
    std::size_t widest = 0;
    for (const std::string& line : lines) {
        widest = std::max(widest, mrl::columnsOf(line));
    }
    constexpr std::size_t AROUND = 6; // indent, gap, brackets, and the last column
    const std::size_t room = columns - std::min(columns, widest + AROUND);
    const std::size_t bar = columns == 0 ? WIDEST_BAR : std::clamp(room, NARROWEST_BAR, WIDEST_BAR);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        lines[i] = "  " + lines[i] + std::string(widest - mrl::columnsOf(lines[i]) + GAP, ' ') +
                   measurementBar(test.levels[i].measurement, bar);
    }
    return lines;
}

} // namespace

std::string shareText(std::size_t part, std::size_t whole) {
    if (whole == 0) {
        return "-";
    }
    constexpr double WHOLE = 100;
    constexpr double TENTHS = 10;
    const double share = WHOLE * static_cast<double>(part) / static_cast<double>(whole);
    return withUnit(Number::rounded(std::floor(share * TENTHS) / TENTHS, 1), "%");
}

std::string resultsText(const Yield& yield) {
    std::vector<std::string> texts;
    for (const char* name : {"PASS", "COMPLETED", "WARN", "FAIL", "CANNOTRUN", "USERABORTED",
                             "BADPARAMS", "INTERNALERROR", "EXITEDABNORMALLY"}) {
        const auto value = static_cast<std::size_t>(TestResult::named(name)->value());
        if (yield.results[value] > 0) {
            texts.push_back(std::string(name) + " " + countText(yield.results[value]));
        }
    }
    return listed(texts);
}

std::string minuteText(mrl::Clock::UtcTime time) {
    constexpr std::size_t MINUTES = 16; // "2026-11-20T19:55"
    std::string text = mrl::utcText(time + mrl::Clock::current().utcOffset(time));
    text.resize(MINUTES);
    text[text.find('T')] = ' ';
    return text;
}

std::string limitsName(const std::vector<NamedLimits>& limits) {
    std::vector<std::string> names;
    for (const NamedLimits& named : limits) {
        constexpr std::size_t DIGITS = 8; // that tell one file from another
        std::string name;
        for (const std::string& part :
             {named.name, named.version, named.sha256.substr(0, DIGITS)}) {
            name += (name.empty() || part.empty() ? "" : " / ") + part;
        }
        names.push_back(name);
    }
    return names.empty() ? message("HISTORY_NO_LIMITS") : listed(names);
}

std::string stationName(const std::string& station) {
    return station.empty() ? message("HISTORY_NO_STATION") : station;
}

std::vector<std::string> historyRemarks(const HistorySummary& summary) {
    std::vector<std::string> remarks = {message("HISTORY_RULE")};
    if (summary.all.withoutSerial > 0) {
        remarks.push_back(
            message("HISTORY_WITHOUT_SERIAL", {{"Count", countText(summary.all.withoutSerial)}}));
    }
    if (summary.repeated > 0) {
        remarks.push_back(message("HISTORY_REPEATED", {{"Count", countText(summary.repeated)}}));
    }
    return remarks;
}

std::vector<std::string> journalProblems(const JournalRemains& remains) {
    std::vector<std::string> problems;
    for (const BrokenLine& broken : remains.broken) {
        problems.push_back(message("HISTORY_BROKEN_LINE", {{"File", broken.file},
                                                           {"Line", countText(broken.line)},
                                                           {"Reason", message(broken.reason)}}));
    }
    if (remains.brokenLines > remains.broken.size()) {
        problems.push_back(
            message("HISTORY_BROKEN_MORE",
                    {{"Count", countText(remains.brokenLines - remains.broken.size())}}));
    }
    if (remains.laterLines > 0) {
        problems.push_back(message("HISTORY_LATER", {{"Count", countText(remains.laterLines)}}));
    }
    return problems;
}

std::vector<std::string> historyLines(const HistorySummary& summary, std::size_t columns) {
    constexpr std::size_t NUMBERS = 4;
    Table table;
    table.addLine(message("HISTORY_PERIOD", {{"First", minuteText(summary.first)},
                                             {"Last", minuteText(summary.last)}}));
    table.addLine("");
    table.add({"", message("HISTORY_RUNS"), message("HISTORY_UNITS"), message("HISTORY_FIRST_PASS"),
               message("HISTORY_FINAL"), message("HISTORY_RESULTS")});
    table.add(cellsOf(message("HISTORY_ALL"), summary.all));
    addRows(table, "HISTORY_STATION", summary.stations,
            [](const HistoryRow& row) { return stationName(row.name); });
    addRows(table, "HISTORY_LIMITS", summary.limits,
            [](const HistoryRow& row) { return limitsName(row.limits); });
    addRows(table, "HISTORY_DAY", summary.days, [](const HistoryRow& row) { return row.name; });
    std::vector<std::string> lines = table.lines(NUMBERS, columns);
    lines.emplace_back();
    for (const std::string& remark : historyRemarks(summary)) {
        lines.push_back(remark);
    }
    for (const HistoryLevels& test : summary.levels) {
        lines.emplace_back();
        lines.push_back(mrl::escapeControls(message(
            "HISTORY_LEVELS", {{"Test", test.test}, {"Count", countText(test.levels.size())}})));
        for (std::string& line : levelLines(test, summary.stations.size() > 1, columns)) {
            lines.push_back(std::move(line));
        }
    }
    return lines;
}

} // namespace tesk5
