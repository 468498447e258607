#include <watch/Model.h>

#include <algorithm>
#include <utility>

namespace watch {

namespace {

// By how much another radio of the target must be stronger to take over, in dB.
constexpr double TAKES_OVER = 3;

double levelOf(const Track& track, Moment now) {
    const std::optional<Recent> recent = track.recent(now);
    return recent ? recent->median : static_cast<double>(track.last()->dbm);
}

bool isSilent(const Track& track, Moment now) {
    return now - track.last()->at > RECENT;
}

} // namespace

Model::Model(std::string adapter, std::optional<readings::Target> target)
    : m_adapter(std::move(adapter)), m_target(std::move(target)) {}

bool Model::isMeant(const readings::Reading& reading) const {
    return m_target && m_target->matches(reading.ssid, reading.bssid, reading.mhz);
}

void Model::forgetOld(Moment now) {
    for (auto& [bssid, track] : m_tracks) {
        track.forgetOld(now);
    }
    std::erase_if(m_tracks, [this, now](const auto& each) {
        return now - each.second.last()->at > HISTORY && each.first != m_followed;
    });
}

void Model::take(const std::vector<readings::Reading>& readings, Moment now) {
    for (const readings::Reading& reading : readings) {
        m_tracks[reading.bssid].add(reading);
        if (isMeant(reading) && reading.source != readings::Source::SCAN) {
            m_followed = reading.bssid;
        }
    }
    forgetOld(now);
    choose(now);
    if (!m_marked || !m_tracks.contains(*m_marked)) {
        const std::vector<ListedRadio> all = list(now);
        m_marked = all.empty() ? std::nullopt : std::optional(all.front().bssid);
    }
}

void Model::choose(Moment now) {
    const Track* const before = followed();
    if (before != nullptr && before->last()->source != readings::Source::SCAN &&
        !isSilent(*before, now)) {
        return;
    }
    for (const auto& [bssid, track] : m_tracks) {
        if (!isMeant(*track.last()) || isSilent(track, now)) {
            continue;
        }
        const Track* const present = followed();
        if (present == nullptr || isSilent(*present, now) ||
            levelOf(track, now) > levelOf(*present, now) + TAKES_OVER) {
            m_followed = bssid;
        }
    }
}

void Model::watch(readings::Target target) {
    m_target = std::move(target);
    m_followed.reset();
    m_reference.reset();
    m_chains.clear();
}

void Model::listAll() {
    if (m_followed) {
        m_marked = m_followed;
    }
    m_target.reset();
    m_followed.reset();
    m_reference.reset();
    m_chains.clear();
}

void Model::moveMark(int rows, Moment now) {
    const std::vector<ListedRadio> all = list(now);
    const auto marked = std::ranges::find_if(
        all, [this](const ListedRadio& radio) { return radio.bssid == m_marked; });
    if (marked == all.end()) {
        return;
    }
    const auto place = static_cast<int>(marked - all.begin());
    // Not a sum: the ends of the list are asked for by the greatest number.
    const int last = static_cast<int>(all.size()) - 1;
    const int to = rows < 0 ? place - std::min(place, -rows) : place + std::min(last - place, rows);
    m_marked = all[static_cast<std::size_t>(to)].bssid;
}

void Model::setReference(Moment now) {
    const Track* const track = followed();
    const std::optional<Recent> recent = track != nullptr ? track->recent(now) : std::nullopt;
    if (recent) {
        m_reference = recent->median;
    }
}

void Model::restartBest() {
    if (m_followed) {
        m_tracks.at(*m_followed).restartBest();
    }
}

void Model::setTone(bool on, std::string reason) {
    m_tone = on;
    m_toneFailure = std::move(reason);
}

const Track* Model::followed() const {
    const auto known = m_followed ? m_tracks.find(*m_followed) : m_tracks.end();
    return known == m_tracks.end() ? nullptr : &known->second;
}

std::size_t Model::candidates() const {
    return static_cast<std::size_t>(std::ranges::count_if(
        m_tracks, [this](const auto& each) { return isMeant(*each.second.last()); }));
}

std::vector<ListedRadio> Model::list(Moment now) const {
    std::vector<ListedRadio> all;
    for (const auto& [bssid, track] : m_tracks) {
        all.push_back({.bssid = bssid, .track = &track, .level = levelOf(track, now)});
    }
    std::ranges::stable_sort(
        all, [](const ListedRadio& a, const ListedRadio& b) { return a.level > b.level; });
    return all;
}

std::optional<readings::Target> Model::markedTarget() const {
    const auto known = m_marked ? m_tracks.find(*m_marked) : m_tracks.end();
    if (known == m_tracks.end()) {
        return std::nullopt;
    }
    // By address alone: a hidden network's name comes and goes.
    readings::Target target;
    target.bssid = m_marked;
    return target;
}

} // namespace watch
