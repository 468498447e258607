// Logging: named loggers, each with a priority, below one global threshold.
//
// A line of priority p is written when the global threshold and the logger's resolved priority are
// both at most p. Nothing is written until a sink is set and the threshold is lowered from OFF.
// Everything here may be called from any thread, and during static initialisation.
#pragma once

#include <mrl/Clock.h>
#include <mrl/String.h>

#include <atomic>
#include <limits>
#include <memory>
#include <string>

namespace mrl {

/// One line on its way to a sink. The views are valid during the call only.
struct LogRecord {
    Clock::UtcTime time;
    int priority;
    std::string_view logger;
    std::string_view text; ///< UTF-8, control characters escaped
};

/// Where lines go. write() is called by one thread at a time.
class LogSink {
public:
    LogSink() = default;
    LogSink(const LogSink&) = delete;
    LogSink& operator=(const LogSink&) = delete;
    virtual ~LogSink();
    virtual void write(const LogRecord& record) = 0;
};

/// A named source of lines. Loggers live for the life of the process and are owned by LogFactory.
class Logger {
public:
    /// A priority of its own for this logger and for those below it that have none.
    void setPriority(int priority) { m_priority = priority; }
    /// Back to the priority of the logger above.
    void clearPriority() { m_priority = INHERITED; }
    /// The priority of its own, or else of the nearest logger above it (the name up to the last
    /// dot) that has one, or else 0.
    int getPriority() const;

    /// Whether a line of `priority` would be written now.
    bool admits(int priority) const;
    /// This logger when it admits `priority`, else null: what an accessor hands to LoggerStream.
    Logger* admitting(int priority) { return admits(priority) ? this : nullptr; }

    /// Writes one line; to be guarded with admits(). Control characters are escaped, so that one
    /// call is one line. A failing sink loses the line, never the program.
    void write(int priority, std::string_view utf8);

    const std::string& name() const { return m_name; }

private:
    friend class LogFactory;
    static constexpr int INHERITED = std::numeric_limits<int>::min();

    Logger(std::string name, const Logger* parent) : m_name(std::move(name)), m_parent(parent) {}

    std::string m_name;
    const Logger* m_parent;
    std::atomic<int> m_priority = INHERITED;
};

class LogFactory {
public:
    /// The threshold at which nothing is written.
    static constexpr int OFF = std::numeric_limits<int>::max();

    /// The logger of that name, made on the first call. Names form a tree by their dots.
    static Logger& createLogger(std::string_view name);

    /// The global threshold; OFF at start.
    static int getPriority() { return s_threshold.load(std::memory_order_relaxed); }
    static void setPriority(int priority) { s_threshold = priority; }

    /// Where lines go from now on; null for nowhere.
    /// \return what was there before
    static std::shared_ptr<LogSink> setSink(std::shared_ptr<LogSink> sink);

private:
    // Here, so that a place that logs costs a look at it while nobody wants to read.
    static inline constinit std::atomic<int> s_threshold{OFF};
};

inline bool Logger::admits(int priority) const {
    return LogFactory::getPriority() <= priority && getPriority() <= priority;
}

/// A sink that appends lines to the file `path` (UTF-8), each flushed as it is written:
/// `2026-11-20T19:55:01.123Z 1 mrlrantenna: text` (time, priority, logger, text).
/// A missing file is made, a missing folder is not.
/// Failure: throws mrl::Exception with path and reason when the file cannot be opened for
/// appending.
std::shared_ptr<LogSink> fileLogSink(std::string_view path);

/// The same lines on standard error, through mrl::cerr.
std::shared_ptr<LogSink> standardErrorLogSink();

} // namespace mrl
