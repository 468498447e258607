#include <mrl/AssertionFailure.h>

#include <mrl/LoggerStream.h>

namespace mrl {

namespace {
constexpr int PRIORITY = 5;
} // namespace

void AssertionFailure::logAssert(const char* header, int line, const char* condition) {
    static Logger& logger = LogFactory::createLogger("mrl.assertion");
    LoggerStream(logger.admitting(PRIORITY), PRIORITY)
        << header << ":" << line << " assertion failed: " << condition;
}

} // namespace mrl
