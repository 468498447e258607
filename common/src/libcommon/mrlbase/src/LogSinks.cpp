// The sinks of the product, on spdlog. Everything of that library stays inside this file.
#include <mrl/Exception.h>
#include <mrl/Logger.h>
#include <mrl/System.h>

#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/sinks/stdout_sinks.h>

namespace mrl {

namespace {

class SpdlogSink final : public LogSink {
public:
    explicit SpdlogSink(std::unique_ptr<spdlog::sinks::sink> sink) : m_sink(std::move(sink)) {
        m_sink->set_formatter(std::make_unique<spdlog::pattern_formatter>(
            "%Y-%m-%dT%H:%M:%S.%eZ %v", spdlog::pattern_time_type::utc, "\n"));
    }

    void write(const LogRecord& record) override {
        m_line.clear();
        fmt::format_to(std::back_inserter(m_line), "{} {}: {}", record.priority, record.logger,
                       record.text);
        m_sink->log(spdlog::details::log_msg(record.time, spdlog::source_loc(), "",
                                             spdlog::level::info, m_line));
        m_sink->flush();
    }

private:
    std::unique_ptr<spdlog::sinks::sink> m_sink;
    std::string m_line;
};

} // namespace

std::shared_ptr<LogSink> fileLogSink(std::string_view path) {
    try {
        return std::make_shared<SpdlogSink>(
            std::make_unique<spdlog::sinks::basic_file_sink_st>(System::path(path).native()));
    } catch (const spdlog::spdlog_ex& failure) {
        throw Exception(String(std::string_view(failure.what())));
    }
}

std::shared_ptr<LogSink> standardErrorLogSink() {
    return std::make_shared<SpdlogSink>(std::make_unique<spdlog::sinks::stderr_sink_st>());
}

} // namespace mrl
