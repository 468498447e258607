// The wish of the person at the console that the run should end.
#pragma once

namespace tesk5 {

/// Set by Ctrl+C or Ctrl+Break during a run, or by a program that hosts the framework. Any thread,
/// and from a signal handler.
class StopRequest {
public:
    static void raise();
    static void clear();
    static bool raised();
};

/// While it lives, the first Ctrl+C or Ctrl+Break raises the stop request; a second one ends the
/// process at once, as the system does by itself.
/// Platform: signal, of the runtime library
class InterruptWatch {
public:
    InterruptWatch();
    InterruptWatch(const InterruptWatch&) = delete;
    InterruptWatch& operator=(const InterruptWatch&) = delete;
    ~InterruptWatch();
};

} // namespace tesk5
