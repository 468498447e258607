// The sinks of the product, on spdlog, which no other file uses.
#include <mrl/Exception.h>
#include <mrl/Files.h>
#include <mrl/Logger.h>
#include <mrl/OutputStream.h>
#include <mrl/System.h>

#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/base_sink.h>

#include <cerrno>
#include <cstdio>
#include <fstream>
#include <memory>
#include <system_error>

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

// Writes to Basekit's stream, which gives Windows consoles UTF-16.
class ErrorStreamSink final : public spdlog::sinks::base_sink<spdlog::details::null_mutex> {
    void sink_it_(const spdlog::details::log_msg& message) override {
        spdlog::memory_buf_t line;
        formatter_->format(message, line);
        cerr << std::string_view(line.data(), line.size());
    }
    void flush_() override { cerr.flush(); }
};

// Whether the file ends in the middle of a line, because a process was killed or the disk was full.
bool endsInALine(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    char last = '\n';
    if (file.seekg(-1, std::ios::end)) {
        file.get(last);
    }
    return last != '\n';
}

// Writes each line in one piece, unbuffered. After a line that was written in part, the next begins
// on a line of its own.
class LineFileSink final : public spdlog::sinks::base_sink<spdlog::details::null_mutex> {
public:
    explicit LineFileSink(const std::filesystem::path& path) : m_lineOpen(endsInALine(path)) {
        std::FILE* file = nullptr;
        const spdlog::filename_t& name = path.native();
        if (spdlog::details::os::fopen_s(&file, name, SPDLOG_FILENAME_T("ab"))) {
            spdlog::throw_spdlog_ex("Failed opening file " +
                                        spdlog::details::os::filename_to_str(name) + " for writing",
                                    errno);
        }
        m_file.reset(file);
        std::setvbuf(file, nullptr, _IONBF, 0);
    }

private:
    struct Close {
        void operator()(std::FILE* file) const { static_cast<void>(std::fclose(file)); }
    };

    void sink_it_(const spdlog::details::log_msg& message) override {
        spdlog::memory_buf_t line;
        if (m_lineOpen) {
            line.push_back('\n');
        }
        formatter_->format(message, line);
        const std::size_t written = std::fwrite(line.data(), 1, line.size(), m_file.get());
        if (written > 0) {
            m_lineOpen = written < line.size();
        }
    }
    void flush_() override {}

    std::unique_ptr<std::FILE, Close> m_file;
    bool m_lineOpen;
};

// A missing folder is an error: a mistyped path must not create folders.
void requireFolderOf(std::string_view path) {
    const std::filesystem::path folder = System::path(path).parent_path();
    std::error_code ignored;
    if (!folder.empty() && !std::filesystem::is_directory(folder, ignored)) {
        const auto reason = std::make_error_code(std::errc::no_such_file_or_directory);
        throw Exception(String("Failed opening file " + std::string(path) +
                               " for writing: " + reason.message()));
    }
}

} // namespace

std::shared_ptr<LogSink> fileLogSink(std::string_view path) {
    requireFolderOf(path);
    // Opening alone has effects: a port is claimed, a pipe connected.
    if (fileKind(System::path(path)) == FileKind::other) {
        throw Exception(String("Failed opening file " + std::string(path) +
                               " for writing: it is no ordinary file"));
    }
    try {
        return std::make_shared<SpdlogSink>(std::make_unique<LineFileSink>(System::path(path)));
    } catch (const spdlog::spdlog_ex& failure) {
        throw Exception(String(std::string_view(failure.what())));
    }
}

std::shared_ptr<LogSink> standardErrorLogSink() {
    return std::make_shared<SpdlogSink>(std::make_unique<ErrorStreamSink>());
}

} // namespace mrl
