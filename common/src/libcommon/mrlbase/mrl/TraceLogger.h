// Traces operations as scopes in the log.
#pragma once

#include <mrl/Logger.h>

namespace mrl {

/// A scope in the log, at priority 0: `> name (file:line)` when it opens and `< name` when it
/// closes, also when an exception leaves it. The closing line is written only when the opening one
/// was admitted, and priority 0 still is. The arguments must outlive the scope.
class TraceLogger {
public:
    /// The priority of both lines.
    static constexpr int PRIORITY = 0;

    /// `logger` may be null: then nothing is written.
    TraceLogger(Logger* logger, const char* name, const char* file, int line)
        : m_logger(logger == nullptr ? nullptr : logger->admitting(PRIORITY)), m_name(name) {
        if (m_logger != nullptr) {
            open(file, line);
        }
    }
    TraceLogger(const TraceLogger&) = delete;
    TraceLogger& operator=(const TraceLogger&) = delete;
    ~TraceLogger() {
        if (m_logger != nullptr) {
            close();
        }
    }

private:
    void open(const char* file, int line);
    void close();

    Logger* m_logger; // null when the opening line was not admitted
    const char* m_name;
};

} // namespace mrl
