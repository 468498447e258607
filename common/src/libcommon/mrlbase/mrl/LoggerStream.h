// Builds one log line from pieces.
#pragma once

#include <mrl/Logger.h>

#include <concepts>

namespace mrl {

/// One line: pieces go in with <<, the line is written when the object ends (usually at the end of
/// the statement). With a null logger nothing is converted, built or written.
class LoggerStream {
public:
    /// `logger` as an accessor hands it out: null when lines of `priority` are not wanted.
    LoggerStream(Logger* logger, int priority) : m_logger(logger), m_priority(priority) {}
    /// Begins the line with `line`, the number of the place that writes it, and a blank.
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
