// Windows finds devices in every folder (NUL, COM1, con.txt) and opens pipes like files, so names
// are checked before opening, and handles before reading.
#include <mrl/Files.h>

#include <mrl/System.h>
#include <mrl/Types.h>
#include <mrl/Unicode.h>

#include "AppendedLine.h"

#include <windows.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace mrl {

namespace {

CharString fullName(const std::filesystem::path& path) {
    CharString name(MAX_PATH, Char());
    for (;;) {
        const DWORD length =
            GetFullPathNameW(path.c_str(), static_cast<DWORD>(name.size()), name.data(), nullptr);
        if (length < name.size()) {
            name.resize(length); // 0 for an invalid name, such as the empty one
            return name;
        }
        name.resize(length);
    }
}

bool startsWith(CharView text, CharView start) {
    return equalNoCase(text.substr(0, start.size()), start);
}

// Whether a full name leads into the name space for devices, or to another computer's pipes and
// mail slots.
bool namesDevice(CharView name) {
    constexpr CharView DEVICES = L"\\\\.\\";
    constexpr CharView VERBATIM = L"\\\\?\\";
    constexpr CharView VERBATIM_SHARE = L"\\\\?\\UNC\\";
    constexpr CharView SHARE = L"\\\\";
    if (startsWith(name, DEVICES)) {
        return true;
    }
    CharView share;
    if (startsWith(name, VERBATIM_SHARE)) {
        share = name.substr(VERBATIM_SHARE.size());
    } else if (startsWith(name, VERBATIM)) {
        const CharView rest = name.substr(VERBATIM.size());
        return rest.size() < 2 || rest[1] != L':'; // everything except a drive
    } else if (startsWith(name, SHARE)) {
        share = name.substr(SHARE.size());
    } else {
        return false;
    }
    const std::size_t server = share.find(L'\\');
    if (server == CharView::npos) {
        return false;
    }
    share.remove_prefix(server + 1);
    share = share.substr(0, share.find(L'\\'));
    return equalNoCase(share, L"pipe") || equalNoCase(share, L"mailslot");
}

[[noreturn]] void fail(DWORD error) {
    // Characters such as ? and *. The runtime library takes such a file for a missing one.
    if (error == ERROR_INVALID_NAME) {
        throw FileFailure{FileFailure::Reason::system,
                          std::make_error_code(std::errc::invalid_argument)};
    }
    throw FileFailure{FileFailure::Reason::system,
                      {static_cast<int>(error), std::system_category()}};
}

using OpenFile = std::unique_ptr<void, decltype(&CloseHandle)>;

// What CreateFileW returned.
// Failure: throws FileFailure when it is none, or not on a disk
OpenFile checkedFile(HANDLE opened) {
    if (opened == INVALID_HANDLE_VALUE) {
        fail(GetLastError());
    }
    OpenFile file(opened, &CloseHandle);
    if (GetFileType(opened) != FILE_TYPE_DISK) {
        throw FileFailure{FileFailure::Reason::notOrdinary, {}};
    }
    return file;
}

} // namespace

FileKind fileKind(const std::filesystem::path& path) {
    if (namesDevice(fullName(path))) {
        return FileKind::other;
    }
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return FileKind::missing;
    }
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? FileKind::directory : FileKind::ordinary;
}

namespace {

// Failure: throws FileFailure, also for what is no ordinary file
OpenFile opened(const std::filesystem::path& path, DWORD access, DWORD disposition) {
    using Reason = FileFailure::Reason;
    switch (fileKind(path)) {
    case FileKind::other:
        throw FileFailure{Reason::notOrdinary, {}};
    case FileKind::directory:
        throw FileFailure{Reason::directory, {}};
    default:
        break;
    }
    // A link may still lead to a pipe: with SECURITY_ANONYMOUS its server cannot identify the user.
    // ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND, ERROR_ACCESS_DENIED, ERROR_SHARING_VIOLATION,
    // ERROR_INVALID_NAME
    return checkedFile(
        CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, disposition, SECURITY_SQOS_PRESENT | SECURITY_ANONYMOUS, nullptr));
}

HANDLE handleOf(std::intptr_t value) {
    return reinterpret_cast<HANDLE>(value);
}

} // namespace

FileToRead::FileToRead(const std::filesystem::path& path)
    : m_handle(
          reinterpret_cast<std::intptr_t>(opened(path, GENERIC_READ, OPEN_EXISTING).release())) {}

FileToRead::~FileToRead() {
    CloseHandle(handleOf(m_handle));
}

std::size_t FileToRead::read(char* bytes, std::size_t size) {
    constexpr std::size_t PIECE = 0x1000000;
    DWORD count = 0;
    // ERROR_LOCK_VIOLATION, and errors of the disk
    if (ReadFile(handleOf(m_handle), bytes, static_cast<DWORD>(std::min(size, PIECE)), &count,
                 nullptr) == 0) {
        fail(GetLastError());
    }
    return count;
}

std::string readWholeFile(const std::filesystem::path& path, std::size_t limit) {
    const OpenFile file = opened(path, GENERIC_READ, OPEN_EXISTING);
    // One piece of the file's size and one byte, by which the end is seen, when that is small.
    constexpr DWORD PIECE = 0x10000;
    LARGE_INTEGER size{};
    // ERROR_INVALID_PARAMETER: the file system has no sizes; then fixed pieces are read
    const bool known = GetFileSizeEx(file.get(), &size) != 0 && size.QuadPart < PIECE;
    DWORD piece = known ? static_cast<DWORD>(size.QuadPart) + 1 : PIECE;
    std::string bytes;
    for (;; piece = PIECE) {
        const std::size_t begin = bytes.size();
        bytes.resize(begin + piece);
        DWORD count = 0;
        // ERROR_LOCK_VIOLATION, and errors of the disk
        if (ReadFile(file.get(), bytes.data() + begin, piece, &count, nullptr) == 0) {
            fail(GetLastError());
        }
        bytes.resize(begin + count);
        if (bytes.size() > limit) {
            throw FileFailure{FileFailure::Reason::tooLarge, {}};
        }
        if (count < piece) {
            return bytes;
        }
    }
}

std::filesystem::path fullPath(const std::filesystem::path& path) {
    return fullName(path);
}

// Not std::filesystem::equivalent(), which takes the drive of a verbatim path (\\?\C:\x) for the
// current one.
bool sameFile(const std::filesystem::path& a, const std::filesystem::path& b) {
    const auto identify = [](const std::filesystem::path& path, BY_HANDLE_FILE_INFORMATION& info) {
        if (fileKind(path) == FileKind::other) {
            return false; // a pipe would be connected
        }
        const HANDLE opened = CreateFileW(
            path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
            OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | SECURITY_SQOS_PRESENT | SECURITY_ANONYMOUS,
            nullptr);
        if (opened == INVALID_HANDLE_VALUE) {
            return false; // ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND, ERROR_ACCESS_DENIED
        }
        const OpenFile file(opened, &CloseHandle);
        return GetFileInformationByHandle(opened, &info) != 0; // ERROR_INVALID_FUNCTION for a pipe
    };
    BY_HANDLE_FILE_INFORMATION first{};
    BY_HANDLE_FILE_INFORMATION second{};
    return identify(a, first) && identify(b, second) &&
           first.dwVolumeSerialNumber == second.dwVolumeSerialNumber &&
           first.nFileIndexHigh == second.nFileIndexHigh &&
           first.nFileIndexLow == second.nFileIndexLow;
}

void checkWritable(const std::filesystem::path& path) {
    const HANDLE opened = CreateFileW(
        path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
        nullptr, OPEN_EXISTING, SECURITY_SQOS_PRESENT | SECURITY_ANONYMOUS, nullptr);
    if (opened == INVALID_HANDLE_VALUE &&
        (GetLastError() == ERROR_FILE_NOT_FOUND || GetLastError() == ERROR_PATH_NOT_FOUND)) {
        return;
    }
    // ERROR_ACCESS_DENIED, ERROR_SHARING_VIOLATION, ERROR_INVALID_NAME
    checkedFile(opened);
}

namespace {

const auto CLOSED = reinterpret_cast<std::intptr_t>(INVALID_HANDLE_VALUE);

// Failure: throws FileFailure
void writeAll(HANDLE file, std::string_view bytes) {
    constexpr std::size_t PIECE = 0x1000000;
    while (!bytes.empty()) {
        DWORD count = 0;
        // ERROR_DISK_FULL, ERROR_HANDLE_DISK_FULL, and other errors of the disk
        if (WriteFile(file, bytes.data(), static_cast<DWORD>(std::min(bytes.size(), PIECE)), &count,
                      nullptr) == 0) {
            fail(GetLastError());
        }
        if (count == 0) {
            fail(ERROR_DISK_FULL); // some file systems report success here
        }
        bytes.remove_prefix(count); // only a part may have had room; the next call says why
    }
}

} // namespace

bool createNew(const std::filesystem::path& path) {
    // ERROR_FILE_EXISTS, ERROR_PATH_NOT_FOUND, ERROR_ACCESS_DENIED, ERROR_INVALID_NAME
    const HANDLE created = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                       FILE_ATTRIBUTE_NORMAL, nullptr);
    return created != INVALID_HANDLE_VALUE && CloseHandle(created) != 0;
}

FileToWrite::FileToWrite(const std::filesystem::path& path)
    // ERROR_PATH_NOT_FOUND, ERROR_ACCESS_DENIED, ERROR_SHARING_VIOLATION, ERROR_INVALID_NAME,
    // ERROR_DISK_FULL
    : m_handle(reinterpret_cast<std::intptr_t>(
          checkedFile(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                  nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr))
              .release())) {}

FileToWrite::~FileToWrite() {
    if (m_handle != CLOSED) {
        CloseHandle(handleOf(m_handle));
    }
}

void FileToWrite::write(std::string_view bytes) {
    writeAll(handleOf(m_handle), bytes);
}

void FileToWrite::close() {
    // ERROR_INVALID_HANDLE, and errors of the disk
    if (CloseHandle(handleOf(std::exchange(m_handle, CLOSED))) == 0) {
        fail(GetLastError());
    }
}

namespace {

// What extends a file and reads its last byte, where a user may do no more.
constexpr DWORD TO_APPEND = FILE_APPEND_DATA | FILE_READ_DATA | FILE_READ_ATTRIBUTES | SYNCHRONIZE;

// The lock goes with the handle.
// Failure: throws FileFailure
void lock(HANDLE file, unsigned longest) {
    constexpr unsigned PAUSE = 20;
    constexpr unsigned HIGH_HALF = 32;
    constexpr auto LOW = static_cast<DWORD>(APPEND_LOCK_BYTE);
    constexpr auto HIGH = static_cast<DWORD>(APPEND_LOCK_BYTE >> HIGH_HALF);
    for (unsigned waited = 0; LockFile(file, LOW, HIGH, 1, 0) == 0; waited += PAUSE) {
        const DWORD error = GetLastError();
        if (error != ERROR_LOCK_VIOLATION) {
            fail(error); // ERROR_INVALID_FUNCTION: the file system has no locks
        }
        if (waited >= longest) {
            throw FileFailure{FileFailure::Reason::system,
                              std::make_error_code(std::errc::device_or_resource_busy)};
        }
        System::mssleep(PAUSE);
    }
}

bool endsWithinLine(HANDLE file) {
    LARGE_INTEGER size{};
    if (GetFileSizeEx(file, &size) == 0) {
        fail(GetLastError());
    }
    if (size.QuadPart == 0) {
        return false;
    }
    char last = '\n';
    DWORD count = 0;
    size.QuadPart -= 1;
    if (SetFilePointerEx(file, size, nullptr, FILE_BEGIN) == 0 ||
        ReadFile(file, &last, 1, &count, nullptr) == 0) {
        fail(GetLastError());
    }
    return last != '\n';
}

} // namespace

void appendLine(const std::filesystem::path& path, std::string_view line, unsigned longest) {
    OpenFile file = opened(path, TO_APPEND, OPEN_ALWAYS);
    lock(file.get(), longest);
    writeAll(file.get(), appendedText(endsWithinLine(file.get()), line));
    if (CloseHandle(file.release()) == 0) {
        fail(GetLastError());
    }
}

void checkAppendable(const std::filesystem::path& path, unsigned longest) {
    if (fileKind(path) != FileKind::missing) {
        lock(opened(path, TO_APPEND, OPEN_EXISTING).get(), longest);
    }
}

} // namespace mrl
