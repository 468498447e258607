#include "run/LogKeeper.h"

#include <algorithm>
#include <mutex>

namespace tesk5 {

namespace {

constexpr int LEAST_PRIORITY = 1;

std::string cut(std::string_view text) {
    if (text.size() <= KeptLog::LONGEST_TEXT) {
        return std::string(text);
    }
    // Not in the middle of a character: what follows its first byte begins with the bits 10.
    std::size_t end = KeptLog::LONGEST_TEXT;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) {
        --end;
    }
    return std::string(text.substr(0, end)) + "...";
}

} // namespace

class LogKeeper::Sink final : public mrl::LogSink {
public:
    Sink(std::shared_ptr<mrl::LogSink> next, int threshold)
        : m_next(std::move(next)), m_threshold(threshold) {}

    void write(const mrl::LogRecord& record) override {
        keep(record);
        if (m_next != nullptr && record.priority >= m_threshold) {
            m_next->write(record);
        }
    }

    KeptLog log() const {
        const std::lock_guard lock(m_mutex);
        return m_log;
    }

private:
    void keep(const mrl::LogRecord& record) {
        if (record.priority < LEAST_PRIORITY) {
            return;
        }
        LoggedLine line{record.time, record.priority, std::string(record.logger), cut(record.text)};
        const std::lock_guard lock(m_mutex);
        if (m_log.first.size() < KeptLog::FIRST) {
            m_log.first.push_back(std::move(line));
            return;
        }
        m_log.last.push_back(std::move(line));
        if (m_log.last.size() > KeptLog::LAST) {
            m_log.last.pop_front();
            ++m_log.leftOut;
        }
    }

    std::shared_ptr<mrl::LogSink> m_next;
    int m_threshold;
    mutable std::mutex m_mutex;
    KeptLog m_log;
};

LogKeeper::LogKeeper()
    : m_threshold(mrl::LogFactory::getPriority()), m_before(mrl::LogFactory::setSink(nullptr)),
      m_sink(std::make_shared<Sink>(m_before, m_threshold)) {
    mrl::LogFactory::setSink(m_sink);
    mrl::LogFactory::setPriority(std::min(m_threshold, LEAST_PRIORITY));
}

LogKeeper::~LogKeeper() {
    mrl::LogFactory::setPriority(m_threshold);
    mrl::LogFactory::setSink(m_before);
}

KeptLog LogKeeper::log() const {
    return m_sink->log();
}

} // namespace tesk5
