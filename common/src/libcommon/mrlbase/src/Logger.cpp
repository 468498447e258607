#include <mrl/LoggerStream.h>
#include <mrl/Unicode.h>

#include <map>
#include <mutex>
#include <optional>
#include <vector>

namespace mrl {

namespace {

struct KeptLine {
    Clock::UtcTime time;
    int priority;
    std::string_view logger; // loggers live for the life of the process
    std::string text;
};

// Loggers and sink, made on first use: other objects log while they are being initialised.
struct Registry {
    std::mutex mutex;
    std::map<std::string, std::unique_ptr<Logger>, std::less<>> loggers;
    std::mutex writing;
    std::shared_ptr<LogSink> sink;
    // The lines before the first setPriority(); empty since.
    std::optional<std::vector<KeptLine>> kept{std::in_place};
};

Registry& registry() {
    // Never destroyed: static objects log from their destructors too.
    static auto* const instance = new Registry;
    return *instance;
}

void writeToSink(Registry& all, const LogRecord& record) {
    if (all.sink == nullptr) {
        return;
    }
    try {
        all.sink->write(record);
    } catch (...) { // a full disk must not change a test's result
    }
}

} // namespace

LogSink::~LogSink() = default;

int Logger::getPriority() const {
    for (const Logger* logger = this; logger != nullptr; logger = logger->m_parent) {
        if (logger->m_priority != INHERITED) {
            return logger->m_priority;
        }
    }
    return 0;
}

void Logger::write(int priority, std::string_view utf8) {
    const std::string text = escapeControls(utf8);
    Registry& all = registry();
    const std::lock_guard lock(all.writing);
    const Clock::UtcTime time = Clock::current().utcNow();
    if (!all.kept) {
        writeToSink(all, {time, priority, m_name, text});
    } else if (all.kept->size() < LogFactory::MOST_KEPT_LINES) {
        all.kept->push_back({time, priority, m_name, text});
    }
}

Logger& LogFactory::createLogger(std::string_view name) {
    Registry& all = registry();
    const std::lock_guard lock(all.mutex);
    const auto known = all.loggers.find(name);
    if (known != all.loggers.end()) {
        return *known->second;
    }
    // Each prefix up to a dot is a logger too, so that a priority set on it later is found.
    const Logger* parent = nullptr;
    Logger* logger = nullptr;
    for (std::size_t dot = name.find('.');; dot = name.find('.', dot + 1)) {
        const std::string_view prefix = name.substr(0, dot);
        auto& slot = all.loggers[std::string(prefix)];
        if (slot == nullptr) {
            // make_unique() cannot reach the constructor, which is the factory's alone.
            slot.reset(new Logger(std::string(prefix), parent));
        }
        logger = slot.get();
        parent = logger;
        if (dot == std::string_view::npos) {
            return *logger;
        }
    }
}

void LogFactory::setPriority(int priority) {
    Registry& all = registry();
    const std::lock_guard lock(all.writing);
    s_threshold = priority;
    if (all.kept) {
        for (const KeptLine& line : *all.kept) {
            if (line.priority >= priority) {
                writeToSink(all, {line.time, line.priority, line.logger, line.text});
            }
        }
        all.kept.reset();
    }
}

std::shared_ptr<LogSink> LogFactory::setSink(std::shared_ptr<LogSink> sink) {
    Registry& all = registry();
    const std::lock_guard lock(all.writing);
    return std::exchange(all.sink, std::move(sink));
}

LoggerStream& LoggerStream::operator<<(CharView text) {
    return m_logger == nullptr ? *this : *this << std::string_view(toUtf8(text));
}

} // namespace mrl
