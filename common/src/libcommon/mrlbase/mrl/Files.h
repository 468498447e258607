// Files that people name. A name can lead to what is no file at all: a device, a pipe of another
// program, a folder. Nothing here opens those, because opening alone can already do something.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace mrl {

enum class FileKind {
    missing,
    ordinary,
    directory,
    other ///< a device, pipe or mail slot, by its kind or by a name such as NUL or COM1
};

/// What `path` names, links followed, found out without opening it. What cannot be looked at, for
/// want of permission say, counts as missing.
/// Platform: GetFullPathNameW, GetFileAttributesW; stat
FileKind fileKind(const std::filesystem::path& path);

/// Why a file was not read or written.
struct FileFailure {
    enum class Reason {
        directory,
        notOrdinary, ///< FileKind::other
        tooLarge,
        system ///< the system has its own reason, which is in `error`
    };
    Reason reason;
    std::error_code error;
};

/// The bytes of an ordinary file. A pipe's server is not told who asks.
/// \param limit the most bytes that the file may have
/// Failure: throws FileFailure
/// Platform: CreateFileW, ReadFile; open, read
std::string readWholeFile(const std::filesystem::path& path, std::size_t limit);

/// A file that is made, or emptied, to be written from its beginning.
///
/// The run-time libraries' streams do not serve for that: of a disk that gets full in the middle
/// of a piece some of them know that something went wrong, but no longer what.
class FileToWrite {
public:
    /// Failure: throws FileFailure, with the system's reason
    /// Platform: CreateFileW; open
    explicit FileToWrite(const std::filesystem::path& path);
    FileToWrite(const FileToWrite&) = delete;
    FileToWrite& operator=(const FileToWrite&) = delete;
    /// Closes the file.
    ~FileToWrite();

    /// Adds all of `bytes`.
    /// Failure: throws FileFailure, with the system's reason; a part may have been written then
    /// Platform: WriteFile; write
    void write(std::string_view bytes);
    /// Closes the file; it takes nothing more.
    /// Failure: throws FileFailure: on some disks only the end shows that there was no room
    /// Platform: CloseHandle; close
    void close();

private:
    std::intptr_t m_handle; ///< what the system calls it
};

} // namespace mrl
