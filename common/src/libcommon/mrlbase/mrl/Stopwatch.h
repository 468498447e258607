// Measures elapsed time on the clock in use.
#pragma once

#include <mrl/Clock.h>

namespace mrl {

/// Starts with its construction.
class Stopwatch {
public:
    Stopwatch() : m_start(Clock::current().now()) {}

    /// Seconds since construction.
    double getElapsed() const {
        return std::chrono::duration<double>(Clock::current().now() - m_start).count();
    }

private:
    Clock::Duration m_start;
};

} // namespace mrl
