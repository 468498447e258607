// The wish of the person at the console that the run should end.
#pragma once

#include <atomic>
#include <functional>
#include <thread>

namespace tesk5 {

/// Set by Ctrl+C or Ctrl+Break during a run, or by a program that hosts the framework; stays until
/// it is cleared. Any thread, and from a signal handler.
class StopRequest {
public:
    static void raise();
    static void clear();
    static bool raised();
};

/// While it lives, the first Ctrl+C or Ctrl+Break raises the stop request; a second one ends the
/// process at once with the value of USERABORTED. One at a time in a process.
/// Platform: signal, of the runtime library
class InterruptWatch {
public:
    /// \param onFirst called once at the first one, on a thread of this object and not in a signal
    /// handler, so that it may print; has ended when the destructor has
    explicit InterruptWatch(std::function<void()> onFirst = {});
    InterruptWatch(const InterruptWatch&) = delete;
    InterruptWatch& operator=(const InterruptWatch&) = delete;
    ~InterruptWatch();

private:
    std::function<void()> m_onFirst;
    std::atomic<bool> m_ending = false;
    std::thread m_teller;
};

} // namespace tesk5
