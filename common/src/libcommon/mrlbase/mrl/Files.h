// Files whose names come from the user. A name can also lead to a device, a pipe of another program
// or a folder. These are not opened, because opening alone can have effects.
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
    other ///< a device, pipe or mail slot, recognised by its kind or by a name such as NUL or COM1
};

/// The kind of what `path` names, links followed, without opening it. It is `missing` too when the
/// system refuses to say, for example without permission.
/// Platform: GetFullPathNameW, GetFileAttributesW; stat
FileKind fileKind(const std::filesystem::path& path);

/// Why a file could not be read or written.
struct FileFailure {
    enum class Reason {
        directory,
        notOrdinary, ///< FileKind::other
        tooLarge,
        system ///< the system's reason, which is in `error`
    };
    Reason reason;
    std::error_code error;
};

/// The bytes of an ordinary file. If the name leads to a pipe after all, its server does not learn
/// the user's identity.
/// \param limit the greatest size of the file in bytes
/// Failure: throws FileFailure
/// Platform: CreateFileW, ReadFile; open, read
std::string readWholeFile(const std::filesystem::path& path, std::size_t limit);

/// A file that is read from its beginning to its end, piece by piece. Other processes may write it
/// meanwhile.
class FileToRead {
public:
    /// Failure: throws FileFailure, also for what is no ordinary file
    /// Platform: CreateFileW, GetFileType; open, fstat
    explicit FileToRead(const std::filesystem::path& path);
    FileToRead(const FileToRead&) = delete;
    FileToRead& operator=(const FileToRead&) = delete;
    /// Closes the file.
    ~FileToRead();

    /// Reads at most `size` bytes.
    /// \return how many; 0 at the end of the file
    /// Failure: throws FileFailure
    /// Platform: ReadFile; read
    std::size_t read(char* bytes, std::size_t size);

private:
    std::intptr_t m_handle; ///< the system's handle or descriptor
};

/// The whole path that the system makes of `path`, the current folder before it if need be. Links
/// are not followed. Empty for a name that cannot be one.
/// Platform: GetFullPathNameW; getcwd
std::filesystem::path fullPath(const std::filesystem::path& path);

/// Whether two names lead to one file or folder; false when one of them leads to none, or to a
/// device.
/// Platform: CreateFileW, GetFileInformationByHandle; stat
bool sameFile(const std::filesystem::path& a, const std::filesystem::path& b);

/// Opens a file for writing if it is there, and leaves it as it is. A link can lead to a device or
/// pipe of which fileKind() learns nothing: what was opened decides.
/// Failure: throws FileFailure; not for a file that is missing
/// Platform: CreateFileW, GetFileType; open, fstat
void checkWritable(const std::filesystem::path& path);

/// Creates an empty file, unless the name leads to something already: of several processes that do
/// it at once, one succeeds.
/// \return whether the file was created
/// Failure: none is reported; false also when the system refuses
/// Platform: CreateFileW; open
bool createNew(const std::filesystem::path& path);

/// A file that is created, or emptied, and written from its beginning.
///
/// The runtime libraries' streams are not used: when a disk becomes full in the middle of a piece,
/// some of them report a failure without its reason.
class FileToWrite {
public:
    /// Failure: throws FileFailure, also for what is no file on a disk
    /// Platform: CreateFileW, GetFileType; open, fstat
    explicit FileToWrite(const std::filesystem::path& path);
    FileToWrite(const FileToWrite&) = delete;
    FileToWrite& operator=(const FileToWrite&) = delete;
    /// Closes the file.
    ~FileToWrite();

    /// Writes all of `bytes`.
    /// Failure: throws FileFailure with the system's reason; a part may have been written
    /// Platform: WriteFile; write
    void write(std::string_view bytes);
    /// Closes the file; nothing more can be written.
    /// Failure: throws FileFailure; some file systems report a full disk only here
    /// Platform: CloseHandle; close
    void close();

private:
    std::intptr_t m_handle; ///< the system's handle or descriptor
};

/// Adds `line` and a line feed to the end of a file that any number of processes extend at once, on
/// a share of the network too. The file is created if it is missing; its folder must be there. A
/// last line without a line end, as a full disk or a killed process leaves one, gets its line end
/// first. All of it is one write, under a lock on a byte far behind the end, which Windows and
/// Linux exclude each other by.
/// \param longest milliseconds to wait while another process has the lock
/// Failure: throws FileFailure, with device_or_resource_busy when the lock does not come free; a
/// part of the line may have been written
/// Platform: CreateFileW, LockFile, WriteFile; open, fcntl, write
void appendLine(const std::filesystem::path& path, std::string_view line, unsigned longest);

/// Whether appendLine() could extend the file: opens it if it is there, takes its lock, and leaves
/// it as it is.
/// Failure: throws FileFailure; not for a file that is missing
void checkAppendable(const std::filesystem::path& path, unsigned longest);

} // namespace mrl
