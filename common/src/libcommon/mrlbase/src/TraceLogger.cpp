#include <mrl/TraceLogger.h>

#include <mrl/LoggerStream.h>

namespace mrl {

TraceLogger::TraceLogger(Logger* logger, const char* name, const char* file, int line)
    : m_logger(logger == nullptr ? nullptr : logger->admitting(PRIORITY)), m_name(name) {
    LoggerStream(m_logger, PRIORITY) << "> " << name << " (" << file << ":" << line << ")";
}

TraceLogger::~TraceLogger() {
    LoggerStream(m_logger, PRIORITY) << "< " << m_name;
}

} // namespace mrl
