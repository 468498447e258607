#include <mrl/Files.h>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

namespace mrl {

namespace {

class Descriptor {
public:
    explicit Descriptor(int value) : m_value(value) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (m_value >= 0) {
            close(m_value);
        }
    }
    int get() const { return m_value; }
    /// Gives the descriptor away, unclosed.
    int release() { return std::exchange(m_value, -1); }

private:
    int m_value;
};

[[noreturn]] void failWithLastError() {
    throw FileFailure{FileFailure::Reason::system, {errno, std::generic_category()}};
}

// Failure: throws FileFailure when `file` could not be opened, or is not ordinary
void check(int file) {
    struct stat status = {};
    if (file < 0 || fstat(file, &status) != 0) {
        failWithLastError();
    }
    if (!S_ISREG(status.st_mode)) {
        throw FileFailure{S_ISDIR(status.st_mode) ? FileFailure::Reason::directory
                                                  : FileFailure::Reason::notOrdinary,
                          {}};
    }
}

} // namespace

FileKind fileKind(const std::filesystem::path& path) {
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0) {
        return FileKind::missing;
    }
    if (S_ISDIR(status.st_mode)) {
        return FileKind::directory;
    }
    return S_ISREG(status.st_mode) ? FileKind::ordinary : FileKind::other;
}

std::string readWholeFile(const std::filesystem::path& path, std::size_t limit) {
    using Reason = FileFailure::Reason;
    // O_NONBLOCK: a pipe without a writer must not hold the program up.
    const Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    check(file.get());
    // Read to the end: the files of /proc, for example, report a size of 0.
    std::string bytes;
    for (;;) {
        constexpr std::size_t PIECE = 0x10000;
        const std::size_t begin = bytes.size();
        bytes.resize(begin + PIECE);
        const ssize_t count = read(file.get(), bytes.data() + begin, PIECE);
        if (count < 0) {
            failWithLastError();
        }
        bytes.resize(begin + static_cast<std::size_t>(count));
        if (bytes.size() > limit) {
            throw FileFailure{Reason::tooLarge, {}};
        }
        if (count == 0) {
            return bytes;
        }
    }
}

std::filesystem::path fullPath(const std::filesystem::path& path) {
    std::error_code failure;
    return std::filesystem::absolute(path, failure);
}

bool sameFile(const std::filesystem::path& a, const std::filesystem::path& b) {
    std::error_code failure;
    return std::filesystem::equivalent(a, b, failure);
}

void checkWritable(const std::filesystem::path& path) {
    const Descriptor file(open(path.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (file.get() >= 0 || errno != ENOENT) {
        check(file.get());
    }
}

namespace {

constexpr int CLOSED = -1;

int created(const std::filesystem::path& path) {
    Descriptor file(
        open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0666));
    check(file.get());
    return file.release();
}

} // namespace

FileToWrite::FileToWrite(const std::filesystem::path& path) : m_handle(created(path)) {}

FileToWrite::~FileToWrite() {
    if (m_handle != CLOSED) {
        ::close(static_cast<int>(m_handle));
    }
}

void FileToWrite::write(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(static_cast<int>(m_handle), bytes.data(), bytes.size());
        if (count < 0) {
            failWithLastError();
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

void FileToWrite::close() {
    if (::close(static_cast<int>(std::exchange(m_handle, CLOSED))) != 0) {
        failWithLastError();
    }
}

} // namespace mrl
