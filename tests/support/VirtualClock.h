// The virtual clock of tests: it keeps account of the sleeps.
#pragma once

#include <mrl/VirtualClock.h>

#include <mutex>
#include <vector>

namespace test {

/// Starts at 0 s, on 2026-11-20T19:55:01.123Z. It is the clock in use while it lives.
class VirtualClock final : public mrl::VirtualClock {
public:
    VirtualClock();

    /// That of setUtcOffset(), 0 at first.
    std::chrono::minutes utcOffset(UtcTime /*time*/) override { return m_utcOffset; }
    void setUtcOffset(std::chrono::minutes offset) { m_utcOffset = offset; }
    void sleep(Duration duration) override;

    /// Every sleep so far, in order, in milliseconds.
    std::vector<long long> sleeps();
    /// Discards the list of sleeps.
    void forgetSleeps();
    /// Seconds since the start.
    double elapsedSeconds();

private:
    std::chrono::minutes m_utcOffset{0};
    std::mutex m_mutex;
    std::vector<long long> m_sleeps;
    mrl::ScopedClock m_installed;
};

} // namespace test
