// A journal has a hundred thousand lines with a thousand characters each: they are read without
// making a value of each member.
#include "history/JournalEntry.h"

#include "reports/Journal.h"

#include <mrl/Json.h>

#include <algorithm>
#include <iterator>

namespace tesk5 {

namespace {

enum class Place {
    DOCUMENT,
    OTHER, ///< of no use here
    RUN,
    TAGS,
    LIMITS_LIST,
    LIMITS,
    TESTS,
    TEST,
    MEASUREMENTS,
    MEASUREMENT,
    LEVEL_LIMITS,
    LEVEL_LIMIT
};

// Where an object or a list leads to that is the member `key` of another, or an item of a list.
struct Way {
    Place from;
    std::string_view key;
    bool isList;
    Place to;
};
constexpr Way ways[] = {
    {Place::DOCUMENT, "", false, Place::RUN},
    {Place::RUN, "tags", false, Place::TAGS},
    {Place::RUN, "limits", true, Place::LIMITS_LIST},
    {Place::LIMITS_LIST, "", false, Place::LIMITS},
    {Place::RUN, "tests", true, Place::TESTS},
    {Place::TESTS, "", false, Place::TEST},
    {Place::TEST, "measurements", true, Place::MEASUREMENTS},
    {Place::MEASUREMENTS, "", false, Place::MEASUREMENT},
    {Place::MEASUREMENT, "limits", true, Place::LEVEL_LIMITS},
    {Place::LEVEL_LIMITS, "", false, Place::LEVEL_LIMIT},
};

class EntryReader final : public mrl::JsonParts {
public:
    explicit EntryReader(JournalEntry& entry) : m_entry(entry) {
        m_places.push_back(Place::DOCUMENT);
    }

    JournalLine kind(bool isJson) const {
        if (m_version > JOURNAL_VERSION) {
            return JournalLine::LATER;
        }
        if (!isJson && !m_lacksMember) {
            return JournalLine::NO_JSON;
        }
        const bool whole = m_version == JOURNAL_VERSION && m_hasTime && m_hasResult && m_hasTests;
        return whole && !m_lacksMember ? JournalLine::RUN : JournalLine::NO_MEMBERS;
    }

    bool null() override { return true; }
    bool boolean(bool /*value*/) override { return true; }
    bool number_integer(std::int64_t value) override { return number(Number(value)); }
    bool number_unsigned(std::uint64_t value) override {
        constexpr auto GREATEST = static_cast<std::uint64_t>(Number::GREATEST);
        return number(Number(std::min(value, GREATEST)));
    }
    bool number_float(double value, const std::string& text) override {
        const std::optional<Number> exact = Number::parse(text);
        return number(exact ? *exact : Number::rounded(value, Number::MOST_DECIMALS));
    }
    bool string(std::string& value) override {
        switch (m_places.back()) {
        case Place::RUN:
            return runText(value);
        case Place::TAGS:
            return keep(value, {{"serial", &m_entry.serial},
                                {"part", &m_entry.part},
                                {"station", &m_entry.station}});
        case Place::LIMITS: {
            NamedLimits& limits = m_entry.limits.back();
            return keep(
                value,
                {{"name", &limits.name}, {"version", &limits.version}, {"sha256", &limits.sha256}});
        }
        case Place::TEST:
            return m_key == "result" ? result(value, m_entry.tests.back().result)
                                     : keep(value, {{"test", &m_entry.tests.back().test}});
        case Place::MEASUREMENT:
            return keep(value, {{"name", &level().name}, {"unit", &level().unit}});
        case Place::LEVEL_LIMIT:
            return limitText(value);
        default:
            return true;
        }
    }
    bool binary(mrl::Json::binary_t& /*value*/) override { return true; }

    bool start_object(std::size_t /*elements*/) override { return enter(false); }
    bool key(std::string& name) override {
        if (m_places.back() != Place::OTHER) {
            m_key.assign(name);
        }
        return true;
    }
    bool end_object() override { return leave(); }
    bool start_array(std::size_t /*elements*/) override { return enter(true); }
    bool end_array() override { return leave(); }
    bool parse_error(std::size_t /*place*/, const std::string& /*token*/,
                     const nlohmann::detail::exception& /*failure*/) override {
        return false;
    }

private:
    struct Member {
        std::string_view key;
        std::string* text;
    };

    bool refuse() {
        m_lacksMember = true;
        return false;
    }

    bool keep(std::string& value, std::initializer_list<Member> members) {
        for (const Member& member : members) {
            if (m_key == member.key) {
                *member.text = std::move(value);
                return true;
            }
        }
        return true;
    }

    bool result(const std::string& name, TestResult& to) {
        const std::optional<TestResult> known = TestResult::named(name);
        to = known.value_or(to);
        return known ? true : refuse();
    }

    bool runText(std::string& value) {
        if (m_key == "started") {
            const std::optional<mrl::Clock::UtcTime> time = mrl::parseUtc(value);
            m_entry.started = time.value_or(mrl::Clock::UtcTime());
            m_hasTime = true;
            return time ? true : refuse();
        }
        if (m_key == "result") {
            m_hasResult = true;
            return result(value, m_entry.result);
        }
        return keep(value, {{"runIdentifier", &m_entry.identifier}});
    }

    bool limitText(std::string& value) {
        EntryLevel::Line& limit = level().limits.back();
        if (m_key == "severity") {
            limit.severity =
                value == severityName(Severity::warning) ? Severity::warning : Severity::error;
        } else if (m_key == "kept") {
            for (const Limit::Kept kept : {Limit::Kept::AT_LEAST, Limit::Kept::AT_MOST}) {
                limit.kept = value == keptName(kept) ? kept : limit.kept;
            }
        }
        return keep(value, {{"name", &limit.name}});
    }

    bool number(const Number& value) {
        switch (m_places.back()) {
        case Place::RUN:
            if (m_key == "journal") {
                m_version = value.toDouble();
                // Nothing is known of the other members of a later version.
                return m_version <= JOURNAL_VERSION;
            }
            break;
        case Place::MEASUREMENT:
            if (m_key == "value") {
                level().value = value;
            } else if (m_key == "decimals") {
                setDecimals(value);
            } else if (m_key == "lowest") {
                level().lowest = value;
            } else if (m_key == "highest") {
                level().highest = value;
            }
            break;
        case Place::LEVEL_LIMIT:
            if (m_key == "value") {
                level().limits.back().value = value;
            }
            break;
        default:
            break;
        }
        return true;
    }

    // JSON has -57 where a person reads -57.0.
    void setDecimals(const Number& decimals) {
        const double count = std::clamp<double>(decimals.toDouble(), 0, Number::MOST_DECIMALS);
        level().value = Number::rounded(level().value.toDouble(), static_cast<int>(count));
    }

    EntryLevel& level() { return *m_entry.tests.back().level; }

    bool enter(bool isList) {
        const Place from = m_places.back();
        Place to = Place::OTHER;
        if (from != Place::OTHER) {
            for (const Way& way : ways) {
                if (way.from == from && way.isList == isList && way.key == m_key) {
                    to = way.to;
                }
            }
        }
        switch (to) {
        case Place::LIMITS:
            m_entry.limits.emplace_back();
            break;
        case Place::TESTS:
            m_hasTests = true;
            break;
        case Place::TEST:
            m_entry.tests.emplace_back();
            break;
        case Place::MEASUREMENT:
            if (m_entry.tests.back().level) {
                to = Place::OTHER; // the first one counts
            } else {
                m_entry.tests.back().level.emplace();
            }
            break;
        case Place::LEVEL_LIMIT:
            level().limits.emplace_back();
            break;
        default:
            break;
        }
        m_places.push_back(to);
        m_key.clear();
        return true;
    }

    bool leave() {
        m_places.pop_back();
        m_key.clear();
        return true;
    }

    JournalEntry& m_entry;
    std::vector<Place> m_places;
    std::string m_key; ///< of the member that is read; empty for an item of a list
    double m_version = 0;
    bool m_hasTime = false;
    bool m_hasResult = false;
    bool m_hasTests = false;
    bool m_lacksMember = false; ///< or has one that is no such
};

} // namespace

JournalLine readJournalLine(std::string_view line, JournalEntry& entry) {
    entry = JournalEntry();
    EntryReader reader(entry);
    const bool isJson = mrl::readJson(line, reader);
    return reader.kind(isJson);
}

} // namespace tesk5
