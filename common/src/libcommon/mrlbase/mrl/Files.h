// Files that people name. A name can lead to what is no file at all: a device, a pipe of another
// program, a folder. Nothing here opens those, because opening alone can already do something.
#pragma once

#include <filesystem>
#include <string>
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

/// Why a file was not read.
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

} // namespace mrl
