// Keeps the log lines of a run for its report, whether or not they are also written elsewhere.
#pragma once

#include <mrl/Logger.h>

#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace tesk5 {

struct LoggedLine {
    mrl::Clock::UtcTime time;
    int priority;
    std::string logger;
    std::string text; ///< control characters escaped; a very long one is cut and ends in "..."
};

/// A log, or the beginning and the end of a long one. The longest search for an access point among
/// thirty networks fits as a whole; its lines take about 20 MB.
struct KeptLog {
    std::vector<LoggedLine> first;
    std::size_t leftOut = 0; ///< number of lines between the two
    std::deque<LoggedLine> last;

    static constexpr std::size_t FIRST = 20000;
    static constexpr std::size_t LAST = 80000;
    static constexpr std::size_t LONGEST_TEXT = 1000;
};

/// Keeps log lines of priority 1 and above while it lives; one at a time. The previous
/// sink still receives the lines that the previous threshold admits, and no others.
///
/// Loggers admit priority 1 meanwhile, as with --log: code that runs only to build a line runs then
/// too.
/// Threads: lines may come from any; the rest belongs to the thread of the run.
class LogKeeper {
public:
    LogKeeper();
    LogKeeper(const LogKeeper&) = delete;
    LogKeeper& operator=(const LogKeeper&) = delete;
    ~LogKeeper();

    /// What has come so far.
    KeptLog log() const;

private:
    class Sink;
    int m_threshold; ///< as it was before
    std::shared_ptr<mrl::LogSink> m_before;
    std::shared_ptr<Sink> m_sink;
};

} // namespace tesk5
