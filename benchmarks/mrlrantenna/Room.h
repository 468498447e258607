// A room of networks on the simulated radio, and a device that looks at it: what the benchmarks of
// the module start from.
#pragma once

#include <WirelessDevice.h>

#include <radiosim/Engine.h>

#include <mrl/Clock.h>

#include <cstddef>

namespace bench {

/// Time stands still, and pauses take none.
class StillClock final : public mrl::Clock {
public:
    Duration now() override { return Duration(0); }
    UtcTime utcNow() override { return UtcTime(); }
    void sleep(Duration /*duration*/) override {}
    /// Until somebody notifies.
    void waitUntil(std::unique_lock<std::mutex>& lock, std::condition_variable& condition,
                   Duration deadline) override;

private:
    mrl::ScopedClock m_installed{*this};
};

class Room {
public:
    /// `networks` distinct names, none contained in another; at most 10,000.
    explicit Room(std::size_t networks);

    WirelessDevice& device() { return m_device; }
    radiosim::Engine& radio() { return m_radio; }

    /// Forgets what the radio has written down of the calls so far; to be called now and then,
    /// outside of what is measured.
    void forget() { m_radio.clearCalls(); }

private:
    StillClock m_clock;
    radiosim::Engine m_radio;
    WirelessDevice m_device;
};

} // namespace bench
