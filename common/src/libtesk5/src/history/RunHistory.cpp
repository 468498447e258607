#include "history/RunHistory.h"

#include <mrl/Unicode.h>

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <tuple>
#include <unordered_set>
#include <utility>

namespace tesk5 {

namespace {

bool sameText(const std::string& a, const std::string& b) {
    return mrl::equalNoCase(mrl::toUtf16(a), mrl::toUtf16(b));
}

bool passes(const TestResult& result) {
    return result.good() || result == TestResult::WARN();
}

// The day of a time on this PC's clock, since 1970. The offset is asked for once in a quarter of an
// hour, in which it does not change.
class LocalDays {
public:
    std::int64_t dayOf(mrl::Clock::UtcTime time) {
        using namespace std::chrono;
        constexpr minutes QUARTER{15};
        const std::int64_t quarter = time.time_since_epoch() / QUARTER;
        if (quarter != m_quarter) {
            m_quarter = quarter;
            m_offset = mrl::Clock::current().utcOffset(time);
        }
        return floor<days>(time + m_offset).time_since_epoch().count();
    }

private:
    std::int64_t m_quarter = -1;
    std::chrono::minutes m_offset{0};
};

std::string dayText(std::int64_t day) {
    using namespace std::chrono;
    const year_month_day date{sys_days(days(day))};
    char text[32];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
    return text;
}

Measurement measurementOf(const EntryLevel& level, const Number& value) {
    Measurement measurement{.name = TeskString(level.name),
                            .value = value,
                            .unit = TeskString(level.unit),
                            .lowest = level.lowest,
                            .highest = level.highest,
                            .limits = {},
                            .figures = {},
                            .attributes = {}};
    for (const EntryLevel::Line& limit : level.limits) {
        measurement.limits.push_back(
            {TeskString(limit.name), limit.value, limit.severity, limit.kept});
    }
    return measurement;
}

} // namespace

std::uint32_t RunHistory::Names::number(const std::string& name) {
    const auto [known, isNew] =
        m_numbers.try_emplace(name, static_cast<std::uint32_t>(m_names.size()));
    if (isNew) {
        m_names.push_back(&known->first);
    }
    return known->second;
}

RunHistory::RunHistory(HistoryFilter filter) : m_filter(std::move(filter)) {}

bool RunHistory::matches(const JournalEntry& entry) const {
    return (!m_filter.since || entry.started >= *m_filter.since) &&
           (!m_filter.station || sameText(entry.station, *m_filter.station)) &&
           (!m_filter.serial || sameText(entry.serial, *m_filter.serial));
}

bool RunHistory::isAskedFor(const EntryTest& test) const {
    return !m_filter.test || sameText(test.test, *m_filter.test);
}

// Nothing when the run has nothing to do with the test that is asked for.
std::optional<TestResult> RunHistory::resultOf(const JournalEntry& entry) const {
    if (!m_filter.test) {
        return entry.result;
    }
    std::optional<TestResult> worst;
    for (const EntryTest& test : entry.tests) {
        if (isAskedFor(test) && (!worst || test.result.severity() > worst->severity())) {
            worst = test.result;
        }
    }
    return worst;
}

std::uint32_t RunHistory::kindOf(const EntryTest& test) {
    Kind kind{test.test, *test.level};
    kind.second.value = Number();
    const auto [known, isNew] =
        m_kindNumbers.try_emplace(std::move(kind), static_cast<std::uint32_t>(m_kinds.size()));
    if (isNew) {
        m_kinds.push_back(&known->first);
    }
    return known->second;
}

void RunHistory::add(const JournalEntry& entry) {
    const std::optional<TestResult> result =
        matches(entry) ? resultOf(entry) : std::optional<TestResult>();
    if (!result) {
        return;
    }
    // Different products may count their serials alike.
    const std::uint32_t unit =
        entry.serial.empty() ? NO_UNIT : m_names.number(entry.part + '\0' + entry.serial);
    m_runs.push_back(
        {.started = entry.started,
         .identifier = entry.identifier,
         .station = m_names.number(entry.station),
         .unit = unit,
         .serial = m_names.number(entry.serial),
         .limits = m_limits.try_emplace(entry.limits, static_cast<std::uint32_t>(m_limits.size()))
                       .first->second,
         .levels = static_cast<std::uint32_t>(m_levels.size()),
         .result = *result});
    for (const EntryTest& test : entry.tests) {
        if (test.level && isAskedFor(test)) {
            m_levels.push_back(
                {.kind = kindOf(test), .value = test.level->value, .result = test.result});
        }
    }
}

RunHistory::Order RunHistory::inOrder() const {
    Order order(m_runs.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        order[i] = static_cast<std::uint32_t>(i);
    }
    const auto key = [this](std::uint32_t place) {
        return std::tie(m_runs[place].started, m_runs[place].identifier);
    };
    std::stable_sort(order.begin(), order.end(),
                     [&key](std::uint32_t a, std::uint32_t b) { return key(a) < key(b); });
    std::unordered_set<std::string_view> known;
    std::erase_if(order, [this, &known](std::uint32_t place) {
        const std::string& identifier = m_runs[place].identifier;
        return !identifier.empty() && !known.insert(identifier).second;
    });
    return order;
}

RunHistory::Yields
RunHistory::yieldsBy(const Order& order,
                     const std::function<std::int64_t(const Run&)>& keyOf) const {
    struct Part {
        std::int64_t key;
        std::uint32_t unit;
        std::uint32_t place; // in `order`
    };
    std::vector<Part> parts;
    parts.reserve(order.size());
    for (std::size_t place = 0; place < order.size(); ++place) {
        const Run& run = m_runs[order[place]];
        parts.push_back({keyOf(run), run.unit, static_cast<std::uint32_t>(place)});
    }
    std::sort(parts.begin(), parts.end(), [](const Part& a, const Part& b) {
        return std::tie(a.key, a.unit, a.place) < std::tie(b.key, b.unit, b.place);
    });
    Yields yields;
    const Part* before = nullptr;
    for (const Part& part : parts) {
        const bool begins = before == nullptr || before->key != part.key;
        if (begins) {
            yields.emplace_back(part.key, Yield());
        }
        Yield& yield = yields.back().second;
        const TestResult result = m_runs[order[part.place]].result;
        const std::size_t passed = passes(result) ? 1 : 0;
        ++yield.runs;
        ++yield.results[static_cast<std::size_t>(result.value())];
        yield.withoutSerial += part.unit == NO_UNIT ? 1 : 0;
        if (begins || part.unit == NO_UNIT || before->unit != part.unit) {
            ++yield.units;
            yield.firstPass += passed;
            yield.finalPass += passed;
        } else {
            // The unit again: what came last counts.
            const std::size_t earlier = passes(m_runs[order[before->place]].result) ? 1 : 0;
            yield.finalPass = yield.finalPass - earlier + passed;
        }
        before = &part;
    }
    return yields;
}

std::vector<HistoryLevels> RunHistory::lastLevels(const Order& order, std::size_t last) const {
    std::vector<HistoryLevels> tests;
    for (std::size_t next = order.size(); next-- > 0;) {
        const std::uint32_t place = order[next];
        const Run& run = m_runs[place];
        const std::size_t end =
            place + 1 < m_runs.size() ? m_runs[place + 1].levels : m_levels.size();
        for (std::size_t i = end; i-- > run.levels;) {
            const Level& level = m_levels[i];
            const Kind& kind = *m_kinds[level.kind];
            auto found = std::find_if(tests.begin(), tests.end(), [&kind](const auto& known) {
                return known.test == kind.first;
            });
            if (found == tests.end()) {
                found = tests.insert(tests.end(), {kind.first, {}});
            }
            if (found->levels.size() < last) {
                found->levels.push_back({run.started, m_names.name(run.station),
                                         m_names.name(run.serial), level.result,
                                         measurementOf(kind.second, level.value)});
            }
        }
    }
    for (HistoryLevels& test : tests) {
        std::reverse(test.levels.begin(), test.levels.end());
    }
    std::sort(tests.begin(), tests.end(),
              [](const HistoryLevels& a, const HistoryLevels& b) { return a.test < b.test; });
    return tests;
}

HistorySummary RunHistory::summary(std::size_t last) const {
    const Order order = inOrder();
    HistorySummary summary;
    summary.repeated = m_runs.size() - order.size();
    if (order.empty()) {
        return summary;
    }
    summary.first = m_runs[order.front()].started;
    summary.last = m_runs[order.back()].started;
    summary.all = yieldsBy(order, [](const Run& /*run*/) { return 0; }).front().second;
    const Yields byStation = yieldsBy(order, [](const Run& run) { return run.station; });
    for (const auto& [station, yield] : byStation) {
        summary.stations.push_back({m_names.name(static_cast<std::uint32_t>(station)), {}, yield});
    }
    std::vector<const std::vector<NamedLimits>*> limits(m_limits.size());
    for (const auto& [named, number] : m_limits) {
        limits[number] = &named;
    }
    const Yields byLimits = yieldsBy(order, [](const Run& run) { return run.limits; });
    for (const auto& [number, yield] : byLimits) {
        summary.limits.push_back({{}, *limits[static_cast<std::size_t>(number)], yield});
    }
    LocalDays days;
    const Yields byDay =
        yieldsBy(order, [&days](const Run& run) { return days.dayOf(run.started); });
    for (const auto& [day, yield] : byDay) {
        summary.days.push_back({dayText(day), {}, yield});
    }
    const auto byName = [](const HistoryRow& a, const HistoryRow& b) {
        return std::tie(a.name, a.limits) < std::tie(b.name, b.limits);
    };
    std::sort(summary.stations.begin(), summary.stations.end(), byName);
    std::sort(summary.limits.begin(), summary.limits.end(), byName);
    summary.levels = lastLevels(order, last);
    return summary;
}

} // namespace tesk5
