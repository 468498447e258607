#include <mrl/TraceLogger.h>

#include <mrl/LoggerStream.h>

namespace mrl {

void TraceLogger::open(const char* file, int line) {
    LoggerStream(m_logger, PRIORITY) << "> " << m_name << " (" << file << ":" << line << ")";
}

void TraceLogger::close() {
    LoggerStream(m_logger->admitting(PRIORITY), PRIORITY) << "< " << m_name;
}

} // namespace mrl
