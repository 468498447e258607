// The request that a run should end.
#pragma once

#include <atomic>

namespace tesk5 {

/// Raised by Ctrl+C or Ctrl+Break during a run, or by a program that hosts the framework; stays
/// until it is cleared. Threads: any, and signal handlers.
class StopRequest {
public:
    void raise() { m_raised.store(true, std::memory_order_relaxed); }
    void clear() { m_raised.store(false, std::memory_order_relaxed); }
    bool raised() const { return m_raised.load(std::memory_order_relaxed); }

private:
    std::atomic<bool> m_raised{false};
    static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler sets it");
};

} // namespace tesk5
