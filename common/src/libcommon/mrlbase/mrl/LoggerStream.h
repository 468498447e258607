// Builds one log line from pieces.
#pragma once

#include <mrl/Logger.h>

#include <concepts>

namespace mrl {

/// One line: pieces are added with <<, and the line is written by the destructor, usually at the
/// end of the statement. With a null logger nothing is converted or written.
class LoggerStream {
public:
    /// `logger` is null when it does not admit `priority` (Logger::admitting()).
    LoggerStream(Logger* logger, int priority) : m_logger(logger), m_priority(priority) {}
    /// Begins the line with `line`, the source line number, and a blank.
    LoggerStream(Logger* logger, int priority, Uint32 line) : LoggerStream(logger, priority) {
        *this << line << " ";
    }
    LoggerStream(const LoggerStream&) = delete;
    LoggerStream& operator=(const LoggerStream&) = delete;
    ~LoggerStream() {
        if (m_logger != nullptr) {
            m_logger->write(m_priority, m_text);
        }
    }

    LoggerStream& operator<<(std::string_view utf8) {
        if (m_logger != nullptr) {
            m_text += utf8;
        }
        return *this;
    }
    LoggerStream& operator<<(CharView text);
    /// Terminated texts; a null pointer adds nothing.
    LoggerStream& operator<<(const char* utf8) {
        return utf8 == nullptr ? *this : *this << std::string_view(utf8);
    }
    LoggerStream& operator<<(const Char* text) {
        return text == nullptr ? *this : *this << CharView(text);
    }
    LoggerStream& operator<<(const String& text) { return *this << text.view(); }
    /// Whole numbers in decimal.
    template <std::integral Number>
    LoggerStream& operator<<(Number number) {
        return m_logger == nullptr ? *this : *this << std::string_view(std::to_string(number));
    }

private:
    Logger* m_logger;
    int m_priority;
    std::string m_text;
};

} // namespace mrl
