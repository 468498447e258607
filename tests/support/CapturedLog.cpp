#include <support/CapturedLog.h>

#include <support/Journal.h>

#include <mutex>

namespace test {

class CapturedLog::Sink final : public mrl::LogSink {
public:
    void write(const mrl::LogRecord& record) override {
        Journal::note("log " + std::to_string(record.priority) + " " + std::string(record.logger) +
                      ": " + std::string(record.text));
        const std::lock_guard lock(m_mutex);
        m_lines.push_back({record.priority, std::string(record.logger), std::string(record.text)});
    }

    std::vector<Line> lines() {
        const std::lock_guard lock(m_mutex);
        return m_lines;
    }

    void clear() {
        const std::lock_guard lock(m_mutex);
        std::vector<Line>().swap(m_lines); // its room too: memory is counted in some tests
    }

private:
    std::mutex m_mutex;
    std::vector<Line> m_lines;
};

CapturedLog::CapturedLog(int threshold) : m_sink(std::make_shared<Sink>()) {
    // Lines that were kept for the first log come from earlier tests.
    mrl::LogFactory::setPriority(mrl::LogFactory::OFF);
    mrl::LogFactory::setSink(m_sink);
    mrl::LogFactory::setPriority(threshold);
}

CapturedLog::~CapturedLog() {
    mrl::LogFactory::setPriority(mrl::LogFactory::OFF);
    mrl::LogFactory::setSink(nullptr);
}

std::vector<CapturedLog::Line> CapturedLog::lines() const {
    return m_sink->lines();
}

std::vector<std::string> CapturedLog::texts(const std::string& logger) const {
    std::vector<std::string> texts;
    for (const Line& line : lines()) {
        if (logger.empty() || line.logger == logger) {
            texts.push_back(line.text);
        }
    }
    return texts;
}

void CapturedLog::clear() {
    m_sink->clear();
}

} // namespace test
