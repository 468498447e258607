#include <mrl/Files.h>

#include <mrl/System.h>

#include "AppendedLine.h"

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

namespace {

int openedToRead(const std::filesystem::path& path) {
    // O_NONBLOCK: a pipe without a writer must not hold the program up.
    Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    check(file.get());
    return file.release();
}

} // namespace

FileToRead::FileToRead(const std::filesystem::path& path) : m_handle(openedToRead(path)) {}

FileToRead::~FileToRead() {
    ::close(static_cast<int>(m_handle));
}

std::size_t FileToRead::read(char* bytes, std::size_t size) {
    const ssize_t count = ::read(static_cast<int>(m_handle), bytes, size);
    if (count < 0) {
        failWithLastError();
    }
    return static_cast<std::size_t>(count);
}

std::string readWholeFile(const std::filesystem::path& path, std::size_t limit) {
    FileToRead file(path);
    // Read to the end: the files of /proc, for example, report a size of 0.
    std::string bytes;
    for (;;) {
        constexpr std::size_t PIECE = 0x10000;
        const std::size_t begin = bytes.size();
        bytes.resize(begin + PIECE);
        const std::size_t count = file.read(bytes.data() + begin, PIECE);
        bytes.resize(begin + count);
        if (bytes.size() > limit) {
            throw FileFailure{FileFailure::Reason::tooLarge, {}};
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

void writeAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(file, bytes.data(), bytes.size());
        if (count < 0) {
            failWithLastError();
        }
        bytes.remove_prefix(static_cast<std::size_t>(count)); // the next call says why
    }
}

int created(const std::filesystem::path& path) {
    Descriptor file(
        open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0666));
    check(file.get());
    return file.release();
}

} // namespace

bool createNew(const std::filesystem::path& path) {
    return Descriptor(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666)).get() >= 0;
}

FileToWrite::FileToWrite(const std::filesystem::path& path) : m_handle(created(path)) {}

FileToWrite::~FileToWrite() {
    if (m_handle != CLOSED) {
        ::close(static_cast<int>(m_handle));
    }
}

void FileToWrite::write(std::string_view bytes) {
    writeAll(static_cast<int>(m_handle), bytes);
}

void FileToWrite::close() {
    if (::close(static_cast<int>(std::exchange(m_handle, CLOSED))) != 0) {
        failWithLastError();
    }
}

namespace {

// The lock of a file that several processes extend belongs to the open file: it goes with it.
// Failure: throws FileFailure
void lock(int file, unsigned longest) {
    constexpr unsigned PAUSE = 20;
    struct flock range = {};
    range.l_type = F_WRLCK;
    range.l_whence = SEEK_SET;
    range.l_start = static_cast<off_t>(APPEND_LOCK_BYTE);
    range.l_len = 1;
    for (unsigned waited = 0; fcntl(file, F_OFD_SETLK, &range) != 0; waited += PAUSE) {
        if (errno != EAGAIN && errno != EACCES) { // ENOLCK: the file system has no locks
            failWithLastError();
        }
        if (waited >= longest) {
            throw FileFailure{FileFailure::Reason::system,
                              std::make_error_code(std::errc::device_or_resource_busy)};
        }
        System::mssleep(PAUSE);
    }
}

bool endsWithinLine(int file) {
    char last = '\n';
    struct stat status = {};
    if (fstat(file, &status) != 0 ||
        (status.st_size > 0 && pread(file, &last, 1, status.st_size - 1) < 0)) {
        failWithLastError();
    }
    return last != '\n';
}

constexpr int TO_APPEND = O_RDWR | O_APPEND | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

} // namespace

void appendLine(const std::filesystem::path& path, std::string_view line, unsigned longest) {
    Descriptor file(open(path.c_str(), TO_APPEND | O_CREAT, 0666));
    check(file.get());
    lock(file.get(), longest);
    writeAll(file.get(), appendedText(endsWithinLine(file.get()), line));
    if (::close(file.release()) != 0) {
        failWithLastError();
    }
}

void checkAppendable(const std::filesystem::path& path, unsigned longest) {
    const Descriptor file(open(path.c_str(), TO_APPEND));
    if (file.get() >= 0 || errno != ENOENT) {
        check(file.get());
        lock(file.get(), longest);
    }
}

} // namespace mrl
