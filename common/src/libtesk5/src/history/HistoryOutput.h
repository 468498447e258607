// A history in each form that it is shown in.
#pragma once

#include "history/JournalFiles.h"
#include "history/RunHistory.h"

#include <string>
#include <vector>

namespace tesk5 {

/// For a terminal, in the language in force: tables of the yield, and the last levels as bars.
/// \param columns of the terminal; 0: as wide as needed
std::vector<std::string> historyLines(const HistorySummary& summary, std::size_t columns);

/// For programs: docs/schemas/history.schema.json describes it.
std::string historyJson(const HistorySummary& summary, const JournalRemains& remains,
                        const std::vector<std::string>& files);

/// A page for people, in UTF-8 and in the language in force: the same with drawings of the levels.
std::string historyPage(const HistorySummary& summary, const JournalRemains& remains);

/// A share for people, cut rather than rounded: only of all it is 100%. "-" for none of none.
std::string shareText(std::size_t part, std::size_t whole);

/// "PASS 12, FAIL 1"
std::string resultsText(const Yield& yield);

/// What names limits, for people; says so when there is nothing.
std::string limitsName(const std::vector<NamedLimits>& limits);

/// The name of a station, or that there is none.
std::string stationName(const std::string& station);

/// Date and time of day on this PC's clock, to the minute: "2026-11-20 19:55".
std::string minuteText(mrl::Clock::UtcTime time);

/// How the figures came about, where a person could take them for something else.
std::vector<std::string> historyRemarks(const HistorySummary& summary);

/// The lines of journals that do not count.
std::vector<std::string> journalProblems(const JournalRemains& remains);

} // namespace tesk5
