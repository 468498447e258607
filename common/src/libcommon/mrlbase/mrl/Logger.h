// Logging: named loggers, each with a priority, below one global threshold.
//
// A line of priority p is written when the global threshold and the logger's resolved priority are
// both at most p, and a sink is set.
//
// Lines that are written before the first setPriority() are kept with their times, up to
// MOST_KEPT_LINES; that call writes those that the new threshold admits to the sink, and discards
// the others. So a log that is opened after the command line is read has the lines before that.
//
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

/// The destination of lines. write() is called by one thread at a time.
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
    /// Sets the priority of this logger, and of the loggers below it that have none of their own.
    void setPriority(int priority) { m_priority = priority; }
    /// Inherits the priority of the logger above again.
    void clearPriority() { m_priority = INHERITED; }
    /// The priority of its own, or else of the nearest logger above it (the name up to the last
    /// dot) that has one, or else 0.
    int getPriority() const;

    /// Whether a line of `priority` would be written now.
    bool admits(int priority) const;
    /// This logger when it admits `priority`, else null; the argument for LoggerStream.
    Logger* admitting(int priority) { return admits(priority) ? this : nullptr; }

    /// Writes one line, whatever the priorities: the caller asks admits() first. Control characters
    /// are escaped, so that one call writes one line.
    /// Failure: when the sink throws, the line is lost; nothing is reported.
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

    /// How many lines are kept before the first setPriority(): the first ones.
    static constexpr std::size_t MOST_KEPT_LINES = 100;

    /// The logger of that name, made on the first call. Names form a tree by their dots.
    static Logger& createLogger(std::string_view name);

    /// The global threshold. Before the first setPriority() it is 0, so that lines are kept; code
    /// that does something only while logging is on does it then too.
    static int getPriority() { return s_threshold.load(std::memory_order_relaxed); }
    /// Sets the threshold. The first call ends the keeping of lines, so set the sink before it; a
    /// run without a log calls it with OFF.
    static void setPriority(int priority);

    /// Sets the destination of lines; null for none.
    /// \return the sink before
    static std::shared_ptr<LogSink> setSink(std::shared_ptr<LogSink> sink);

private:
    // Inline, so that a log that is switched off costs one comparison at each line.
    static inline constinit std::atomic<int> s_threshold{0};
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
