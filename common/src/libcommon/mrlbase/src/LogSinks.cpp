// The sinks of the product.
#include <mrl/Exception.h>
#include <mrl/Files.h>
#include <mrl/Logger.h>
#include <mrl/OutputStream.h>
#include <mrl/System.h>

#include <cerrno>
#include <fstream>
#include <system_error>

namespace mrl {

namespace {

std::string lineOf(const LogRecord& record) {
    std::string line = utcText(record.time) + " " + std::to_string(record.priority) + " ";
    return line.append(record.logger).append(": ").append(record.text).append("\n");
}

class ErrorStreamSink final : public LogSink {
public:
    void write(const LogRecord& record) override {
        cerr << lineOf(record);
        cerr.flush();
    }
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

constexpr const char* NOT_ORDINARY = "it is no ordinary file";

[[noreturn]] void failToOpen(std::string_view path, const std::string& reason) {
    throw Exception(String("Failed opening file " + std::string(path) + " for writing: " + reason));
}

// Writes each line in one piece, unbuffered. After a line that was written in part, the next begins
// on a line of its own.
class FileSink final : public LogSink {
public:
    explicit FileSink(std::string_view path) : m_lineOpen(endsInALine(System::path(path))) {
        m_file.pubsetbuf(nullptr, 0);
        if (m_file.open(System::path(path), std::ios::app | std::ios::binary) == nullptr) {
            failToOpen(path, std::generic_category().message(errno));
        }
    }

    void write(const LogRecord& record) override {
        const std::string line = (m_lineOpen ? "\n" : "") + lineOf(record);
        const auto length = static_cast<std::streamsize>(line.size());
        const std::streamsize written = m_file.sputn(line.data(), length);
        if (written > 0) {
            m_lineOpen = written < length;
        }
    }

private:
    std::filebuf m_file;
    bool m_lineOpen;
};

} // namespace

std::shared_ptr<LogSink> fileLogSink(std::string_view path) {
    // Opening alone has effects: a port is claimed, a pipe connected.
    switch (fileKind(System::path(path))) {
    case FileKind::other:
        failToOpen(path, NOT_ORDINARY);
    case FileKind::directory:
        failToOpen(path, "it is a directory");
    default:
        break;
    }
    try {
        checkWritable(System::path(path));
    } catch (const FileFailure& failure) {
        failToOpen(path, failure.error ? failure.error.message() : NOT_ORDINARY);
    }
    return std::make_shared<FileSink>(path);
}

std::shared_ptr<LogSink> standardErrorLogSink() {
    return std::make_shared<ErrorStreamSink>();
}

} // namespace mrl
