// What journals say about many runs: yield by station, limits and day, and the last levels.
#pragma once

#include "history/JournalEntry.h"

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace tesk5 {

/// Which runs count. Texts are compared in any letter case.
struct HistoryFilter {
    std::optional<mrl::Clock::UtcTime> since;
    std::optional<std::string> station;
    std::optional<std::string> serial;
    /// Only runs of this test; their result is then the worst of that test in them.
    std::optional<std::string> test;
};

/// How many units passed. A unit is a serial with its part; each run without a serial counts as a
/// unit of its own. PASS, WARN and COMPLETED pass, every other result does not.
struct Yield {
    static constexpr std::size_t RESULTS = 9;

    std::size_t runs = 0;
    std::size_t units = 0;
    std::size_t withoutSerial = 0;              ///< runs
    std::size_t firstPass = 0;                  ///< units whose first run passed
    std::size_t finalPass = 0;                  ///< units whose last run passed
    std::array<std::size_t, RESULTS> results{}; ///< runs by TestResult::value()
};

/// The yield of the runs that have something in common, from these runs alone.
struct HistoryRow {
    std::string name;                ///< of the station, or the day: "2026-11-20"
    std::vector<NamedLimits> limits; ///< for a row by limits
    Yield yield;
};

/// A level with the run that measured it.
struct HistoryLevel {
    mrl::Clock::UtcTime started;
    std::string station;
    std::string serial;
    TestResult result; ///< of the test
    Measurement measurement;
};

/// The levels of one test, the oldest first.
struct HistoryLevels {
    std::string test;
    std::vector<HistoryLevel> levels;
};

struct HistorySummary {
    Yield all;
    std::size_t repeated = 0; ///< runs that were there again, and count once
    mrl::Clock::UtcTime first;
    mrl::Clock::UtcTime last;
    std::vector<HistoryRow> stations; ///< by name; a run without a station has an empty one
    std::vector<HistoryRow> limits;   ///< by name and version
    std::vector<HistoryRow> days;     ///< by date on this PC's clock
    std::vector<HistoryLevels> levels;
};

/// Collects runs; keeps some hundred bytes of each.
class RunHistory {
public:
    explicit RunHistory(HistoryFilter filter);

    void add(const JournalEntry& entry);
    /// \param last of how many levels at most a test shows the last ones
    HistorySummary summary(std::size_t last) const;

private:
    // Texts that many runs share, by number.
    class Names {
    public:
        std::uint32_t number(const std::string& name);
        const std::string& name(std::uint32_t number) const { return *m_names[number]; }

    private:
        std::map<std::string, std::uint32_t> m_numbers;
        std::vector<const std::string*> m_names;
    };

    struct Run {
        mrl::Clock::UtcTime started;
        std::string identifier;
        std::uint32_t station;
        std::uint32_t unit; ///< a name, or NO_UNIT
        std::uint32_t serial;
        std::uint32_t limits;
        std::uint32_t levels; ///< place of the first one; they end where those of the next begin
        TestResult result;
    };
    struct Level {
        std::uint32_t kind; ///< number of a Kind
        Number value;
        TestResult result;
    };
    static constexpr std::uint32_t NO_UNIT = UINT32_MAX;

    // A test with its measurement, which but for the value is the same in many runs.
    using Kind = std::pair<std::string, EntryLevel>;

    bool matches(const JournalEntry& entry) const;
    bool isAskedFor(const EntryTest& test) const;
    std::optional<TestResult> resultOf(const JournalEntry& entry) const;
    std::uint32_t kindOf(const EntryTest& test);

    // Places of runs in the order of their time, each run once.
    using Order = std::vector<std::uint32_t>;
    Order inOrder() const;
    // The yield of the runs that `keyOf` gives one number, by that number.
    using Yields = std::vector<std::pair<std::int64_t, Yield>>;
    Yields yieldsBy(const Order& order, const std::function<std::int64_t(const Run&)>& keyOf) const;
    std::vector<HistoryLevels> lastLevels(const Order& order, std::size_t last) const;

    HistoryFilter m_filter;
    Names m_names;
    std::map<std::vector<NamedLimits>, std::uint32_t> m_limits;
    std::map<Kind, std::uint32_t> m_kindNumbers;
    std::vector<const Kind*> m_kinds; ///< by number
    std::vector<Run> m_runs;
    std::vector<Level> m_levels;
};

} // namespace tesk5
