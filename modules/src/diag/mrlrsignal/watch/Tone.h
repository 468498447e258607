// A tone whose pitch follows the level, for a person whose eyes are on the antenna.
#pragma once

#include <nativewifi/WlanTypes.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace watch {

/// What makes sounds. The tone's thread alone uses it.
class Beeper {
public:
    Beeper() = default;
    Beeper(const Beeper&) = delete;
    Beeper& operator=(const Beeper&) = delete;
    virtual ~Beeper() = default;

    /// Sounds for that long; returns at the end of the sound.
    /// \return whether it was possible
    virtual bool sound(double hertz, std::chrono::milliseconds length) = 0;
};

/// Null when this PC has no way to sound.
/// Platform: Beep; ALSA (libasound.so.2) on Linux
std::unique_ptr<Beeper> openBeeper();

/// The pitch of a level: 220 Hz at -100 dBm, an octave higher every 20 dB. Levels beyond -110 and
/// -10 dBm sound as these.
double pitchOf(LONG dbm);

/// Short sounds, five a second, on a thread of its own.
class Tone {
public:
    /// \param beeper not null
    explicit Tone(std::unique_ptr<Beeper> beeper);
    Tone(const Tone&) = delete;
    Tone& operator=(const Tone&) = delete;
    /// Waits for the end of a sound.
    ~Tone();

    /// Sounds at the pitch of the level from now on; nothing is silence.
    void follow(std::optional<LONG> dbm);
    /// Whether a sound was not possible; none follow.
    bool hasFailed() const { return m_failed; }

private:
    void soundOn();

    std::unique_ptr<Beeper> m_beeper;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::optional<LONG> m_dbm;
    bool m_ending = false;
    std::atomic<bool> m_failed = false;
    std::thread m_thread;
};

} // namespace watch
