#include <watch/Tone.h>

#include <algorithm>
#include <cmath>

namespace watch {

namespace {

constexpr std::chrono::milliseconds SOUND{80};
constexpr std::chrono::milliseconds SILENCE{120};

} // namespace

double pitchOf(LONG dbm) {
    constexpr double LOWEST_HERTZ = 220;
    constexpr double OCTAVE = 20;
    const double level = std::clamp(static_cast<double>(dbm), -110.0, -10.0);
    return LOWEST_HERTZ * std::exp2((level + 100) / OCTAVE);
}

Tone::Tone(std::unique_ptr<Beeper> beeper)
    : m_beeper(std::move(beeper)), m_thread([this] { soundOn(); }) {}

Tone::~Tone() {
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
    }
    m_changed.notify_one();
    m_thread.join();
}

void Tone::follow(std::optional<LONG> dbm) {
    {
        const std::lock_guard lock(m_mutex);
        m_dbm = dbm;
    }
    m_changed.notify_one();
}

void Tone::soundOn() {
    std::unique_lock lock(m_mutex);
    while (!m_ending && !m_failed) {
        if (!m_dbm) {
            m_changed.wait(lock, [this] { return m_ending || m_dbm; });
            continue;
        }
        const double hertz = pitchOf(*m_dbm);
        lock.unlock();
        m_failed = !m_beeper->sound(hertz, SOUND);
        lock.lock();
        m_changed.wait_for(lock, SILENCE, [this] { return m_ending; });
    }
}

} // namespace watch
