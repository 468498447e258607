// A simulated radio with many networks, and a device on it: the environment of the module's
// benchmarks.
#pragma once

#include <WirelessDevice.h>

#include <radiosim/Engine.h>

#include <mrl/Clock.h>

#include <cstddef>

namespace bench {

/// Time stands still, and pauses return at once.
class StillClock final : public mrl::Clock {
public:
    Duration now() override { return Duration(0); }
    UtcTime utcNow() override { return UtcTime(); }
    std::chrono::minutes utcOffset(UtcTime /*time*/) override { return std::chrono::minutes(0); }
    void sleep(Duration /*duration*/) override {}
    /// Blocks until `condition` is notified.
    void waitUntil(std::unique_lock<std::mutex>& lock, std::condition_variable& condition,
                   Duration deadline) override;

private:
    mrl::ScopedClock m_installed{*this};
};

class Room {
public:
    /// `networks` distinct names, none contained in another; at most 10,000. Switches logging off.
    explicit Room(std::size_t networks);

    WirelessDevice& device() { return m_device; }
    radiosim::Engine& radio() { return m_radio; }

    /// Clears the radio's record of calls, which grows with each call; to be called at intervals,
    /// outside what is measured.
    void forget() { m_radio.clearCalls(); }

private:
    StillClock m_clock;
    radiosim::Engine m_radio;
    WirelessDevice m_device;
};

} // namespace bench
