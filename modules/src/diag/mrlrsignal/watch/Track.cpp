#include <watch/Track.h>

#include <statistics/Robust.h>

#include <algorithm>

namespace watch {

void Track::add(const readings::Reading& reading) {
    m_readings.push_back(reading);
    m_best = std::max(m_best.value_or(reading.dbm), reading.dbm);
    forgetOld(reading.at);
}

void Track::forgetOld(Moment now) {
    while (m_readings.size() > 1 && now - m_readings.front().at > HISTORY) {
        m_readings.pop_front();
    }
}

std::vector<double> Track::since(Moment begin) const {
    std::vector<double> levels;
    for (const readings::Reading& reading : m_readings) {
        if (reading.at > begin) {
            levels.push_back(static_cast<double>(reading.dbm));
        }
    }
    return levels;
}

std::optional<Recent> Track::recent(Moment now) const {
    const std::vector<double> levels = since(now - RECENT);
    if (levels.empty()) {
        return std::nullopt;
    }
    return Recent{.median = statistics::median(levels),
                  .interquartileRange = statistics::spread(levels).interquartileRange,
                  .readings = levels.size()};
}

double Track::rate(Moment now) const {
    const std::size_t count = since(now - RECENT).size();
    const std::chrono::duration<double> whole = RECENT;
    if (count < 2 || now - m_readings.front().at > RECENT) {
        return static_cast<double>(count) / whole.count();
    }
    // Until that time is full: right from the second reading on.
    const std::chrono::duration<double> span = m_readings.back().at - m_readings.front().at;
    return span.count() > 0 ? static_cast<double>(count - 1) / span.count() : 0;
}

std::vector<std::optional<double>> Track::history(Moment now, std::size_t slots) const {
    const Moment width = Moment(HISTORY) / static_cast<Moment::rep>(slots);
    const Moment::rep newest = now / width;
    std::vector<std::vector<double>> levels(slots);
    for (const readings::Reading& reading : m_readings) {
        const Moment::rep age = newest - reading.at / width;
        if (age >= 0 && age < static_cast<Moment::rep>(slots)) {
            levels[slots - 1 - static_cast<std::size_t>(age)].push_back(
                static_cast<double>(reading.dbm));
        }
    }
    std::vector<std::optional<double>> medians;
    medians.reserve(slots);
    for (const std::vector<double>& slot : levels) {
        medians.push_back(slot.empty() ? std::nullopt : std::optional(statistics::median(slot)));
    }
    return medians;
}

} // namespace watch
