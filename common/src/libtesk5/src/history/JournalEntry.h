// One line of a journal, as far as a history needs it.
#pragma once

#include <tesk5/Measurement.h>
#include <tesk5/TestResult.h>

#include <mrl/Clock.h>

#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

namespace tesk5 {

/// What names the limits of a run.
struct NamedLimits {
    std::string name;
    std::string version;
    std::string sha256;

    friend bool operator<(const NamedLimits& a, const NamedLimits& b) {
        return std::tie(a.name, a.version, a.sha256) < std::tie(b.name, b.version, b.sha256);
    }
};

/// The first measurement of a test, which its verdict is about.
struct EntryLevel {
    struct Line {
        std::string name;
        Number value;
        Severity severity = Severity::error;
        Limit::Kept kept = Limit::Kept::ABOVE;

        friend bool operator<(const Line& a, const Line& b) {
            return std::tie(a.name, a.value, a.severity, a.kept) <
                   std::tie(b.name, b.value, b.severity, b.kept);
        }
    };

    std::string name;
    std::string unit;
    Number value;
    Number lowest = 0;
    Number highest = 100;
    std::vector<Line> limits;

    friend bool operator<(const EntryLevel& a, const EntryLevel& b) {
        return std::tie(a.name, a.unit, a.value, a.lowest, a.highest, a.limits) <
               std::tie(b.name, b.unit, b.value, b.lowest, b.highest, b.limits);
    }
};

/// A test on a device in a run.
struct EntryTest {
    std::string test;
    TestResult result = TestResult::CANNOTRUN();
    std::optional<EntryLevel> level; ///< nothing when nothing was measured
};

struct JournalEntry {
    std::string identifier; ///< of the run; empty in a line without one
    mrl::Clock::UtcTime started;
    TestResult result = TestResult::CANNOTRUN();
    std::string serial; ///< empty when the run has none, as the others
    std::string part;
    std::string station;
    std::vector<NamedLimits> limits;
    std::vector<EntryTest> tests;
};

/// What a line of a journal is.
enum class JournalLine {
    RUN,
    LATER,     ///< of a later version of this program
    NO_JSON,   ///< a part of a line, or another text
    NO_MEMBERS ///< JSON without what the line of a run has
};

/// Reads a line, without its end, into `entry`, whose former contents go. Any thread.
JournalLine readJournalLine(std::string_view line, JournalEntry& entry);

} // namespace tesk5
