#include <study/StudySession.h>

#include <readings/DriverNumbers.h>
#include <study/StudyFile.h>

#include <algorithm>
#include <numeric>
#include <utility>

namespace study {

namespace {

using gauge::Design;
using mrl::Json;

// What a file says that is no session of this version.
struct IsNone {};

void need(bool condition) {
    if (!condition) {
        throw IsNone{};
    }
}

const Json& member(const Json& object, const char* name) {
    need(object.is_object() && object.contains(name));
    return object[name];
}

// A number from 1 to `most`, as one from 0.
std::size_t numberIn(const Json& object, const char* name, std::size_t most) {
    const Json& number = member(object, name);
    need(number.is_number_unsigned() && number.get<std::size_t>() >= 1 &&
         number.get<std::size_t>() <= most);
    return number.get<std::size_t>() - 1;
}

std::string textIn(const Json& object, const char* name) {
    const Json& text = member(object, name);
    need(text.is_string());
    return text.get<std::string>();
}

const Json& listIn(const Json& object, const char* name) {
    const Json& list = member(object, name);
    need(list.is_array());
    return list;
}

StudyMeasurement measurementIn(const Json& object, const Design& design) {
    StudyMeasurement measurement;
    measurement.step = {.op = numberIn(object, "operator", design.operators),
                        .part = numberIn(object, "part", design.parts),
                        .trial = numberIn(object, "trial", design.trials)};
    const Json& level = member(object, "level");
    need(level.is_number() && readings::isLevelInDbm(level.get<double>()));
    measurement.level = level.get<double>();
    measurement.readings = numberIn(object, "readings", MOST_READINGS) + 1;
    measurement.time = textIn(object, "time");
    return measurement;
}

Json jsonOf(const StudyMeasurement& measurement) {
    return {{"operator", measurement.step.op + 1}, {"part", measurement.step.part + 1},
            {"trial", measurement.step.trial + 1}, {"level", measurement.level},
            {"readings", measurement.readings},    {"time", measurement.time}};
}

// All parts `trials` times, shuffled each time.
std::vector<std::size_t> shuffled(const Design& design, std::mt19937& random) {
    std::vector<std::size_t> order;
    std::vector<std::size_t> parts(design.parts);
    std::iota(parts.begin(), parts.end(), std::size_t{0});
    for (std::size_t trial = 0; trial < design.trials; ++trial) {
        do {
            std::shuffle(parts.begin(), parts.end(), random);
        } while (design.parts > 1 && !order.empty() && order.back() == parts.front());
        order.insert(order.end(), parts.begin(), parts.end());
    }
    return order;
}

} // namespace

StudySession::StudySession(const Design& design, std::string target, std::mt19937& random)
    : m_design(design), m_target(std::move(target)) {
    for (std::size_t op = 0; op < design.operators; ++op) {
        m_order.push_back(shuffled(design, random));
    }
}

std::optional<StudySession> StudySession::ofFile(const Json& file) {
    try {
        StudySession session;
        session.read(file);
        return session;
    } catch (const IsNone&) {
        return std::nullopt;
    }
}

void StudySession::read(const Json& file) {
    const Json& version = member(file, "studyVersion");
    need(version == STUDY_VERSION);
    const Json& design = member(file, "design");
    m_design = {.parts = numberIn(design, "parts", MOST_PARTS) + 1,
                .operators = numberIn(design, "operators", MOST_OPERATORS) + 1,
                .trials = numberIn(design, "trials", MOST_TRIALS) + 1};
    need(m_design.trials >= 2);
    const Json& session = member(file, "session");
    m_target = textIn(session, "target");
    const Json& orders = listIn(session, "order");
    need(orders.size() == m_design.operators);
    for (const Json& list : orders) {
        need(list.is_array() && list.size() == m_design.parts * m_design.trials);
        std::vector<std::size_t> order;
        std::vector<std::size_t> counts(m_design.parts);
        for (const Json& part : list) {
            order.push_back(numberIn({{"part", part}}, "part", m_design.parts));
            ++counts[order.back()];
        }
        need(std::all_of(counts.begin(), counts.end(),
                         [this](std::size_t count) { return count == m_design.trials; }));
        m_order.push_back(std::move(order));
    }
    for (const Json& object : listIn(session, "measurements")) {
        const StudyMeasurement measurement = measurementIn(object, m_design);
        need(next() == measurement.step);
        m_measurements.push_back(measurement);
    }
    for (const Json& object : listIn(session, "struckOut")) {
        m_struckOut.push_back({measurementIn(object, m_design), textIn(object, "reason")});
    }
}

std::size_t StudySession::doneBy(std::size_t op) const {
    return static_cast<std::size_t>(std::count_if(
        m_measurements.begin(), m_measurements.end(),
        [op](const StudyMeasurement& measurement) { return measurement.step.op == op; }));
}

std::optional<StudyStep> StudySession::next() const {
    for (std::size_t op = 0; op < m_order.size(); ++op) {
        const std::vector<std::size_t>& order = m_order[op];
        const std::size_t place = doneBy(op);
        if (place < order.size()) {
            const auto here = order.begin() + static_cast<std::ptrdiff_t>(place);
            return StudyStep{.op = op,
                             .part = *here,
                             .trial =
                                 static_cast<std::size_t>(std::count(order.begin(), here, *here))};
        }
    }
    return std::nullopt;
}

void StudySession::add(double level, std::size_t readings, std::string time) {
    m_measurements.push_back(
        {.step = *next(), .level = level, .readings = readings, .time = std::move(time)});
}

void StudySession::strikeOut(std::string reason, Again again) {
    const std::size_t op = m_measurements.back().step.op;
    m_struckOut.push_back({m_measurements.back(), std::move(reason)});
    m_measurements.pop_back();
    if (again == Again::LAST) {
        std::vector<std::size_t>& order = m_order[op];
        const auto here = order.begin() + static_cast<std::ptrdiff_t>(doneBy(op));
        std::rotate(here, here + 1, order.end());
    }
}

gauge::CrossedReadings StudySession::readings() const {
    gauge::CrossedReadings readings(m_design);
    for (const StudyMeasurement& measurement : m_measurements) {
        const StudyStep& step = measurement.step;
        readings.at(step.part, step.op, step.trial) = measurement.level;
    }
    return readings;
}

Json StudySession::json() const {
    Json orders = Json::array();
    for (const std::vector<std::size_t>& order : m_order) {
        Json list = Json::array();
        for (const std::size_t part : order) {
            list.push_back(part + 1);
        }
        orders.push_back(std::move(list));
    }
    Json measurements = Json::array();
    for (const StudyMeasurement& measurement : m_measurements) {
        measurements.push_back(jsonOf(measurement));
    }
    Json struckOut = Json::array();
    for (const StruckMeasurement& struck : m_struckOut) {
        Json object = jsonOf(struck.measurement);
        object["reason"] = struck.reason;
        struckOut.push_back(std::move(object));
    }
    return {{"target", m_target},
            {"order", std::move(orders)},
            {"measurements", std::move(measurements)},
            {"struckOut", std::move(struckOut)}};
}

Json StudySession::file() const {
    return {{"studyVersion", STUDY_VERSION},
            {"unit", "dBm"},
            {"design",
             {{"parts", m_design.parts},
              {"operators", m_design.operators},
              {"trials", m_design.trials}}},
            {"session", json()}};
}

} // namespace study
